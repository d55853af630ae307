// The first line of the input is the requested change, the rest is the contents of an INI file.
// Nothing may be lost by reading and writing, and the written value must be the only change.

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

// Returns everything that can be read, except for one value.
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
  // If the file already has this section and name, the write would replace an existing value.
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

  // A name that can be written on a line must read back; any other must be rejected without a
  // change.
  const std::string untouched = ini.ToText();
  if (ini.Write(value, value, "1")) {
    Require(tarn::IniFile(ini.ToText()).Read(value, value) == "1");
  } else {
    Require(ini.ToText() == untouched);
  }
  return 0;
}
