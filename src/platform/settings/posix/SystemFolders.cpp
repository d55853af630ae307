#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

#include "platform/paths/Paths.h"
#include "platform/settings/Settings.h"
#include "platform/text/Text.h"

namespace tarn {

namespace {

// Folder of the XDG base directory specification. The environment variable is used only if it is an
// absolute path.
std::string UserFolder(const char* variable, std::string_view belowHome) {
  const std::string base = OrEmpty(std::getenv(variable));
  return JoinPath(base.starts_with(kSeparator) ? base : JoinPath(HomeFolder(), belowHome), "tarn");
}

}  // namespace

std::string HomeFolder() {
  const std::string home = OrEmpty(std::getenv("HOME"));
  if (home.starts_with(kSeparator)) return home;
  passwd entry{};
  passwd* found = nullptr;
  std::string buffer(16384, '\0');
  getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found);
  return found == nullptr ? "/" : OrEmpty(found->pw_dir);
}

SettingsFolders SettingsFolders::OfSystem() {
  return {"/etc/tarn", UserFolder("XDG_CONFIG_HOME", ".config"),
          UserFolder("XDG_DATA_HOME", ".local/share"),
          UserFolder("XDG_STATE_HOME", ".local/state")};
}

}  // namespace tarn
