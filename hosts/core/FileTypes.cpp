#include "hosts/core/FileTypes.h"

#include "hosts/core/ProjectTemplate.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

const std::string& FileTypes::Of(const std::string& path) {
  const std::string extension = FoldCase(ExtensionOf(path));
  std::string& type = types_[extension];
  if (!type.empty()) return type;
  type = "Text";
  if (extension.size() > 1) {
    type = FindSourceType(files_, configuration_, extension.substr(1), type);
  }
  return type;
}

}  // namespace tarn::host
