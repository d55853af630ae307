#include "platform/settings/InstalledData.h"

#include "platform/modules/Modules.h"
#include "platform/paths/Paths.h"

namespace tarn {

std::string InstalledDataFolder(FileSystem& files) {
  const std::string folder = ModuleFolder() + kSeparator;
  std::string above = folder + ".." + kSeparator;
  const std::string shared = folder + TARN_DATA_FROM_LIBRARY + kSeparator;
  const bool isShared = !files.IsFolder(above + "config") && files.IsFolder(shared + "config");
  return isShared ? shared : above;
}

}  // namespace tarn
