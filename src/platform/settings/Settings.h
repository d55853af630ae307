#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/files/FileSystem.h"
#include "platform/settings/IniFile.h"

namespace tarn {

// The user's own folder; the root of the disk when nothing names one.
std::string HomeFolder();

// Where the settings of this machine and user lie. `TARN_SETTINGS` in the environment puts all
// of them below one other folder, as "machine", "user", "data" and "state".
struct SettingsFolders {
  std::string machine;   // /etc/tarn
  std::string user;      // $XDG_CONFIG_HOME/tarn
  std::string userData;  // $XDG_DATA_HOME/tarn: files that the user's programs make for themselves
  std::string userState = {};  // $XDG_STATE_HOME/tarn: what they remember

  static SettingsFolders FromEnvironment();
};

// The registry that lies in one of these folders.
std::string RegistryFileIn(const std::string& folder);

// The settings stores: the registry (read only here), the application profile and the drive table.
// Keys are paths with backslashes; names compare without regard to case. Every store is a text file
// in the INI form, one section per key: registry.ini in the machine's folder and in the user's,
// whose entries count in front of the machine's as if both were one file, and profile.ini in the
// user's, where a section of the profile is its key, a backslash and its name.
// Nothing is cached; a write replaces the file in one step and keeps unknown lines. Host's thread
// only.
class Settings {
 public:
  Settings(FileSystem& fileSystem, SettingsFolders settingsFolders);

  // A value of the registry, at most 259 bytes long; a longer one, a missing one and an
  // unreadable store give nothing.
  std::optional<std::string> ReadRegistry(std::string_view key, std::string_view name) const;
  // All values of the key that ReadRegistry would give, in the order of the files.
  std::vector<std::pair<std::string, std::string>> RegistryValues(std::string_view key) const;
  // Names of the keys directly below `key`, in the order of the files.
  std::vector<std::string> RegistrySubkeys(std::string_view key) const;

  // The profile's place; "Corvane\Tarn" until set.
  void SetProfileKey(std::string_view key);
  const std::string& GetProfileKey() const { return profileKey; }
  // Nothing for a missing value and an unreadable store.
  std::optional<std::string> ReadProfile(std::string_view section, std::string_view name) const;
  std::string ReadProfile(std::string_view section, std::string_view name,
                          std::string_view fallback) const {
    return ReadProfile(section, name).value_or(std::string(fallback));
  }
  // Written at once, with the folder made when it is missing. False when that fails, or for names
  // and values with line breaks; a store that is there and cannot be read is left alone.
  bool WriteProfile(std::string_view section, std::string_view name, std::string_view value);
  // Whoever reads it gets his own fallback again. False when the store could not be written.
  bool RemoveProfile(std::string_view section, std::string_view name);

  const SettingsFolders& GetFolders() const { return folders; }

  static Settings& Native();

 private:
  friend class ProfileOverride;

  // A value of the profile that is held in memory in place of the stored one.
  struct HeldValue {
    std::string section;
    std::string name;
    std::optional<std::string> value;
  };
  // Returns the innermost one, nullptr if the stored value is in effect.
  HeldValue* FindHeld(std::string_view section, std::string_view name) const;

  // In the order in which they are asked.
  std::array<IniFile, 2> ReadRegistries() const;
  std::string ProfileSection(std::string_view section) const;

  FileSystem& files;
  SettingsFolders folders;
  std::string profileKey;
  std::vector<std::unique_ptr<HeldValue>> held;
};

// Holds a value of the profile in memory while the object lives: reads return it, and writes and
// removals change it alone. The stored value is neither read nor written. Overrides are destroyed
// in the reverse order of their creation.
class ProfileOverride {
 public:
  ProfileOverride(Settings& userSettings, std::string_view section, std::string_view name,
                  std::string_view value);
  ~ProfileOverride();
  ProfileOverride(const ProfileOverride&) = delete;
  ProfileOverride& operator=(const ProfileOverride&) = delete;

 private:
  Settings& settings;
};

}  // namespace tarn
