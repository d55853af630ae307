#include "hosts/core/HostFolders.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/paths/Paths.h"
#include "platform/settings/Settings.h"

namespace tarn::host {

namespace {

std::string ProgramFolder() {
  std::error_code failure;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", failure);
  return failure ? std::string() : FolderOf(program.string());
}

std::string InstallationRoot(FileSystem& files) {
  if (const char* root = std::getenv("TARN_ROOT"); root != nullptr && *root != '\0') {
    return IsRelativePath(root) ? JoinPath(files.CurrentFolder(), root) : std::string(root);
  }
  return files.Canonical(JoinPath(ProgramFolder(), "../share/tarn"));
}

}  // namespace

HostFolders HostFolders::FromEnvironment(FileSystem& files) {
  HostFolders folders;
  folders.application = AddSeparator(InstallationRoot(files));
  const SettingsFolders settings = SettingsFolders::FromEnvironment();
  folders.data = settings.userData;
  folders.state = settings.userState;
  folders.settings = settings.user;
  return folders;
}

std::string HostFolders::Definitions() const {
  return settings.empty() ? std::string() : JoinPath(settings, "definitions");
}

std::string HostFolders::ConfigFile(FileSystem& files) const {
  const std::string folder = application + "config" + kSeparator;
  const std::string own = folder + FileNameOf(data) + "_projectmanager.config";
  return files.Exists(own) ? own : folder + "projectmanager.config";
}

}  // namespace tarn::host
