#include "platform/files/WriteFiles.h"

#include <utility>
#include <vector>

#include "platform/files/FileSystem.h"

namespace tarn {

Status WriteOneByOne(FileSystem& files, std::span<const FileBytes> list) {
  std::vector<std::pair<std::string, Result<std::string>>> before;
  for (const FileBytes& each : list) {
    auto present = files.ReadWholeFile(each.path);
    if (present && *present == each.bytes) continue;
    const bool isKnown = present || present.GetError().code == ErrorCode::NotFound;
    const Status written =
        isKnown ? files.WriteWholeFile(each.path, each.bytes) : Status(present.GetError());
    if (written) {
      before.emplace_back(each.path, std::move(present));
      continue;
    }
    Error error{written.GetError().code, written.GetError().text, each.path};
    for (const auto& [path, text] : before) {
      const Status back = text ? files.WriteWholeFile(path, *text) : files.RemoveFile(path);
      if (!back) error.text += "; " + path + " has been written and can't be put back";
    }
    return error;
  }
  return {};
}

}  // namespace tarn
