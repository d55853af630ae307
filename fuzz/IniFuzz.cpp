// The first line of the input asks for a change, the rest is the text of an INI file. Nothing may
// be lost on the way through, and what was written must be there, alone changed.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/settings/IniFile.h"
#include "platform/text/Text.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

// All that can be read, without one value.
std::string Contents(const tarn::IniFile& ini, std::string_view section, std::string_view name) {
  std::string contents;
  for (const auto& each : ini.SectionNames()) {
    for (const auto& value : ini.ValueNames(each)) {
      Require(ini.Read(each, value).has_value());
      if (tarn::EqualNoCase(each, section) && tarn::EqualNoCase(value, name)) continue;
      contents += each + '\n' + value + '\n' + *ini.Read(each, value) + '\n';
    }
  }
  return contents;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::size_t end = std::min(input.find('\n'), input.size());
  const std::string value(input.substr(0, end));
  const std::string text(input.substr(std::min(end + 1, input.size())));
  const std::string section = "new section";
  const std::string name = "new name";

  tarn::IniFile ini(text);
  Require(ini.ToText() == text);
  // A text that knows these names already is changed elsewhere.
  if (ini.Read(section, name)) return 0;
  const std::string before = Contents(ini, section, name);
  const bool fits = value.find_first_of(std::string_view("\r\n\0", 3)) == value.npos;
  Require(ini.Write(section, name, tarn::IniFile::Quoted(value)) == fits);
  Require(fits || ini.ToText() == text);
  const tarn::IniFile again(ini.ToText());
  Require(!fits || again.Read(section, name) == value);
  Require(Contents(again, section, name) == before);
  Require(ini.Remove(section, name) == fits);
  Require(Contents(ini, section, name) == before);

  // Any name that a line can hold comes back; any other is refused without a trace.
  const std::string untouched = ini.ToText();
  if (ini.Write(value, value, "1")) {
    Require(tarn::IniFile(ini.ToText()).Read(value, value) == "1");
  } else {
    Require(ini.ToText() == untouched);
  }
  return 0;
}
