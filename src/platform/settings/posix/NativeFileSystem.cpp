#include <atomic>
#include <memory>

#include "platform/files/posix/PosixFileSystem.h"
#include "platform/paths/Paths.h"
#include "platform/settings/Settings.h"
#include "platform/text/Text.h"

namespace tarn {

namespace {

// The registry key "Drives" has one value per drive letter, with or without its colon: a folder.
posix::NameLookup::DriveTable MappedDrives() {
  PosixFileSystem undriven;  // the settings themselves must not be on a mapped drive
  posix::NameLookup::DriveTable drives;
  const Settings settings(undriven, SettingsFolders::FromEnvironment());
  for (const auto& [name, folder] : settings.RegistryValues("Drives")) {
    const std::string letter = FoldCase(name.substr(0, name.find(':')));
    if (HasDrive(letter + ":") && letter.size() == 1 && folder.starts_with(kSeparator)) {
      drives[letter[0]] = folder;
    }
  }
  return drives;
}

std::atomic<FileSystem*> g_replacement = nullptr;

}  // namespace

FileSystem& FileSystem::Native() {
  if (FileSystem* const replacement = g_replacement) return *replacement;
  // Never destroyed: threads may still be writing while the process exits.
  static PosixFileSystem& disk = *std::make_unique<PosixFileSystem>(MappedDrives).release();
  return disk;
}

void FileSystem::ReplaceNative(FileSystem& disk) {
  g_replacement = &disk;
}

}  // namespace tarn
