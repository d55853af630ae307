#include "hosts/frame/FileText.h"

namespace tarn::host {

Status WriteAllFiles(FileSystem& files, const std::vector<FileText>& texts) {
  std::vector<FileBytes> list;
  for (const FileText& each : texts) {
    const auto present = files.ReadWholeFile(each.path);
    if (!present || *present != each.text) list.push_back({each.path, each.text});
  }
  return files.WriteFiles(list);
}

}  // namespace tarn::host
