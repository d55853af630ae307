#include "platform/settings/Settings.h"

#include <algorithm>
#include <cstdlib>

#include "platform/paths/Paths.h"
#include "platform/settings/IniStore.h"
#include "platform/text/Text.h"

namespace tarn {

namespace {

// Capacity of a caller's buffer of 260 bytes without the terminating zero.
constexpr std::size_t kLongestRegistryValue = 259;

std::string WithoutOuterBackslashes(std::string_view key) {
  while (key.starts_with('\\')) key.remove_prefix(1);
  while (key.ends_with('\\')) key.remove_suffix(1);
  return std::string(key);
}

// Returns false if the name already exists.
bool AddName(std::vector<std::string>& names, const std::string& name) {
  const bool known = std::any_of(names.begin(), names.end(), [&name](const std::string& each) {
    return EqualNoCase(each, name);
  });
  if (!known) names.push_back(name);
  return !known;
}

std::string ProfileFile(const SettingsFolders& folders) {
  return JoinPath(folders.user, "profile.ini");
}

}  // namespace

SettingsFolders SettingsFolders::FromEnvironment() {
  std::string root = OrEmpty(std::getenv("TARN_SETTINGS"));
  if (!root.empty()) {
    // Make it absolute now: the current folder changes with every project.
    if (IsRelativePath(root)) root = JoinPath(FileSystem::Native().CurrentFolder(), root);
    return {JoinPath(root, "machine"), JoinPath(root, "user"), JoinPath(root, "data"),
            JoinPath(root, "state")};
  }
  return OfSystem();
}

std::string RegistryFileIn(const std::string& folder) {
  return JoinPath(folder, "registry.ini");
}

Settings::Settings(FileSystem& fileSystem, SettingsFolders settingsFolders)
    : files_(fileSystem), folders_(std::move(settingsFolders)), profileKey_("Corvane\\Tarn") {}

std::array<IniFile, 2> Settings::ReadRegistries() const {
  return {ReadIniStore(files_, RegistryFileIn(folders_.user)),
          ReadIniStore(files_, RegistryFileIn(folders_.machine))};
}

std::optional<std::string> Settings::ReadRegistry(std::string_view key,
                                                  std::string_view name) const {
  for (const IniFile& store : ReadRegistries()) {
    std::optional<std::string> value = store.Read(WithoutOuterBackslashes(key), name);
    if (!value) continue;
    if (value->size() > kLongestRegistryValue) return std::nullopt;
    return value;
  }
  return std::nullopt;
}

std::vector<std::pair<std::string, std::string>> Settings::RegistryValues(
    std::string_view key) const {
  const std::string section = WithoutOuterBackslashes(key);
  std::vector<std::string> names;
  std::vector<std::pair<std::string, std::string>> values;
  for (const IniFile& store : ReadRegistries()) {
    for (const std::string& name : store.ValueNames(section)) {
      if (!AddName(names, name)) continue;
      const std::string value = store.Read(section, name).value_or("");
      if (value.size() <= kLongestRegistryValue) values.emplace_back(name, value);
    }
  }
  return values;
}

std::vector<std::string> Settings::RegistrySubkeys(std::string_view key) const {
  const std::string prefix = WithoutOuterBackslashes(key) + "\\";
  std::vector<std::string> names;
  for (const IniFile& store : ReadRegistries()) {
    for (const std::string& section : store.SectionNames()) {
      if (!StartsWithNoCase(section, prefix)) continue;
      // A key exists if it has a subkey.
      const std::string name(Split(section.substr(prefix.size()) + "\\", '\\').front());
      if (!name.empty()) AddName(names, name);
    }
  }
  return names;
}

void Settings::SetProfileKey(std::string_view key) {
  profileKey_ = WithoutOuterBackslashes(key);
}

std::string Settings::ProfileSection(std::string_view section) const {
  return profileKey_ + "\\" + std::string(section);
}

std::optional<std::string> Settings::ReadProfile(std::string_view section,
                                                 std::string_view name) const {
  if (const HeldValue* const here = FindHeld(section, name)) return here->value;
  return ReadIniStore(files_, ProfileFile(folders_)).Read(ProfileSection(section), name);
}

bool Settings::WriteProfile(std::string_view section, std::string_view name,
                            std::string_view value) {
  if (HeldValue* const here = FindHeld(section, name)) {
    here->value = value;
    return true;
  }
  const Status written = EditIniStore(files_, ProfileFile(folders_), [&](IniFile& store) {
    return store.Write(ProfileSection(section), name, IniFile::Quoted(value));
  });
  return static_cast<bool>(written);
}

bool Settings::RemoveProfile(std::string_view section, std::string_view name) {
  if (HeldValue* const here = FindHeld(section, name)) {
    here->value.reset();
    return true;
  }
  const Status written = EditIniStore(files_, ProfileFile(folders_), [&](IniFile& store) {
    store.Remove(ProfileSection(section), name);
    return true;
  });
  return static_cast<bool>(written);
}

Settings::HeldValue* Settings::FindHeld(std::string_view section, std::string_view name) const {
  const auto found = std::find_if(held_.rbegin(), held_.rend(), [&](const auto& each) {
    return EqualNoCase(each->section, section) && EqualNoCase(each->name, name);
  });
  return found == held_.rend() ? nullptr : found->get();
}

ProfileOverride::ProfileOverride(Settings& userSettings, std::string_view section,
                                 std::string_view name, std::string_view value)
    : settings_(userSettings) {
  settings_.held_.push_back(std::make_unique<Settings::HeldValue>(
      Settings::HeldValue{std::string(section), std::string(name), std::string(value)}));
}

ProfileOverride::~ProfileOverride() {
  settings_.held_.pop_back();
}

Settings& Settings::Native() {
  static Settings settings(FileSystem::Native(), SettingsFolders::FromEnvironment());
  return settings;
}

}  // namespace tarn
