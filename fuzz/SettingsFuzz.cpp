// The first three lines of the input are a section, a name and a value; the rest is the contents of
// the registry and profile files. Any contents must be readable, and a write must change only the
// requested value.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/settings/Settings.h"
#include "platform/text/Text.h"
#include "support/MemoryFileSystem.h"

namespace {

using tarn::IniFile;
using tarn::Settings;
using tarn::testing::MemoryFileSystem;

constexpr const char* kProfileFile = "/user/profile.ini";
constexpr std::size_t kLongestValue = 259;
constexpr int kDeepest = 8;
constexpr std::size_t kMostKeys = 4;  // on each level, since each one costs a read of the file

void Require(bool holds) {
  if (!holds) std::abort();
}

std::string TakeLine(std::string_view& text) {
  const std::string line(text.substr(0, text.find('\n')));
  text.remove_prefix(std::min(line.size() + 1, text.size()));
  return line;
}

void ReadKey(const Settings& settings, const std::string& key, int depth) {
  for (const auto& [name, value] : settings.RegistryValues(key)) {
    Require(value.size() <= kLongestValue);
    Require(settings.ReadRegistry(key, name) == value);
  }
  std::size_t count = 0;
  for (const std::string& name : settings.RegistrySubkeys(key)) {
    Require(!name.empty() && name.find('\\') == name.npos);
    if (depth < kDeepest && count++ < kMostKeys) ReadKey(settings, key + "\\" + name, depth + 1);
  }
}

// Returns all values of a store, except for one.
std::map<std::string, std::string> ValuesBut(const std::string& text, const std::string& section,
                                             const std::string& name) {
  std::map<std::string, std::string> values;
  const IniFile store(text);
  for (const std::string& each : store.SectionNames()) {
    for (const std::string& value : store.ValueNames(each)) {
      const bool isIt = tarn::EqualNoCase(each, tarn::Trim(section)) &&
                        tarn::EqualNoCase(value, tarn::Trim(name));
      if (!isIt) values[each + "\n" + value] = store.Read(each, value).value_or("");
    }
  }
  return values;
}

void ChangeProfile(MemoryFileSystem& disk, Settings& settings, const std::string& section,
                   const std::string& name, const std::string& value) {
  const std::string before = *disk.BytesOf(kProfileFile);
  const std::string full = settings.GetProfileKey() + "\\" + section;
  const auto others = ValuesBut(before, full, name);
  if (!settings.WriteProfile(section, name, value)) {
    Require(disk.BytesOf(kProfileFile) == before);
    return;
  }
  Require(settings.ReadProfile(section, name) == value);
  Require(ValuesBut(*disk.BytesOf(kProfileFile), full, name) == others);
  Require(settings.RemoveProfile(section, name));
  Require(settings.ReadProfile(section, name) == std::nullopt);
  Require(ValuesBut(*disk.BytesOf(kProfileFile), full, name) == others);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string section = TakeLine(input);
  const std::string name = TakeLine(input);
  const std::string value = TakeLine(input);
  MemoryFileSystem disk;
  disk.AddFile("/machine/registry.ini", input);
  disk.AddFile(kProfileFile, input);
  Settings settings(disk, {"/machine", "/user", "/data"});
  ReadKey(settings, "Software", 0);
  ReadKey(settings, section, 0);
  ChangeProfile(disk, settings, section, name, value);
  return 0;
}
