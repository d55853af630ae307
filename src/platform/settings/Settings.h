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

// The user's home folder; the root of the disk if there is none. Supplied by the port.
std::string HomeFolder();

// Locations of the system's and the user's settings. The environment variable `TARN_SETTINGS` moves
// all of them below one other folder, as "machine", "user", "data" and "state".
struct SettingsFolders {
  std::string machine;         // /etc/tarn
  std::string user;            // $XDG_CONFIG_HOME/tarn
  std::string userData;        // $XDG_DATA_HOME/tarn: files that the user's programs create
  std::string userState = {};  // $XDG_STATE_HOME/tarn: state that they persist

  // Reads the environment of the process.
  static SettingsFolders FromEnvironment();
  // Returns the folders that apply without `TARN_SETTINGS`. Supplied by the port.
  static SettingsFolders OfSystem();
};

// Path of the registry file in one of these folders.
std::string RegistryFileIn(const std::string& folder);

// The settings stores: the registry (read-only here), the application profile and the drive table.
// Keys are paths with backslashes; names are case-insensitive. Every store is an INI file with one
// section per key: registry.ini in the system's folder and in the user's, whose entries precede the
// system's as if both were one file, and profile.ini in the user's folder, where the section name
// is the profile key, a backslash and the profile's section. Nothing is cached; a write replaces
// the file atomically and preserves unknown lines. Main thread only.
class Settings {
 public:
  Settings(FileSystem& fileSystem, SettingsFolders settingsFolders);

  // Returns a registry value of at most 259 bytes. Returns nullopt if it is longer or missing, or
  // if the store cannot be read.
  std::optional<std::string> ReadRegistry(std::string_view key, std::string_view name) const;
  // Returns all values of the key that ReadRegistry() would return, in file order.
  std::vector<std::pair<std::string, std::string>> RegistryValues(std::string_view key) const;
  // Names of the keys directly below `key`, in file order.
  std::vector<std::string> RegistrySubkeys(std::string_view key) const;

  // Key of the profile; "Corvane\Tarn" until set.
  void SetProfileKey(std::string_view key);
  const std::string& GetProfileKey() const { return profileKey_; }
  // Returns nullopt for a missing value and an unreadable store.
  std::optional<std::string> ReadProfile(std::string_view section, std::string_view name) const;
  std::string ReadProfile(std::string_view section, std::string_view name,
                          std::string_view fallback) const {
    return ReadProfile(section, name).value_or(std::string(fallback));
  }
  // Written immediately; the folder is created if missing. Returns false if that fails, or for
  // names and values with line breaks. A store that exists but cannot be read is left alone.
  bool WriteProfile(std::string_view section, std::string_view name, std::string_view value);
  // Removes the value, so that readers get their fallback again. Returns false if the store could
  // not be written.
  bool RemoveProfile(std::string_view section, std::string_view name);

  const SettingsFolders& GetFolders() const { return folders_; }

  // Returns the settings of this system and user.
  static Settings& Native();

 private:
  friend class ProfileOverride;

  // A profile value that is overridden in memory.
  struct HeldValue {
    std::string section;
    std::string name;
    std::optional<std::string> value;
  };
  // Returns the innermost override, or nullptr if the stored value is effective.
  HeldValue* FindHeld(std::string_view section, std::string_view name) const;

  // The registries in order of precedence.
  std::array<IniFile, 2> ReadRegistries() const;
  std::string ProfileSection(std::string_view section) const;

  FileSystem& files_;
  SettingsFolders folders_;
  std::string profileKey_;
  std::vector<std::unique_ptr<HeldValue>> held_;
};

// Overrides a profile value in memory for the lifetime of the object: reads return it, and writes
// and removals change only it. The stored value is neither read nor written. Overrides must be
// destroyed in the reverse order of their creation.
class ProfileOverride {
 public:
  ProfileOverride(Settings& userSettings, std::string_view section, std::string_view name,
                  std::string_view value);
  ~ProfileOverride();
  ProfileOverride(const ProfileOverride&) = delete;
  ProfileOverride& operator=(const ProfileOverride&) = delete;

 private:
  Settings& settings_;
};

}  // namespace tarn
