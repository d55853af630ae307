#include "platform/settings/InstalledData.h"

#include "platform/modules/Modules.h"

namespace tarn {

std::string InstalledDataFolder(FileSystem& files) {
  std::string above = ModuleFolder() + "/../";
  const std::string shared = ModuleFolder() + "/" TARN_DATA_FROM_LIBRARY "/";
  const bool isShared = !files.IsFolder(above + "config") && files.IsFolder(shared + "config");
  return isShared ? shared : above;
}

}  // namespace tarn
