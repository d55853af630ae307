#include "platform/files/KeptCopy.h"

namespace tarn {

namespace {

constexpr int kMaxCopies = 100;

}  // namespace

Status KeepCopy(FileSystem& files, const std::string& path, std::string_view bytes,
                const std::string& suffix, std::string& copy) {
  for (int i = 1; i <= kMaxCopies; ++i) {
    copy = path + suffix + (i == 1 ? std::string() : std::to_string(i));
    if (files.ExamineLink(copy)) continue;
    const Result<bool> exists = files.CheckExists(copy);
    if (!exists) return exists.GetError();
    if (*exists) {
      const Result<std::string> old = files.ReadWholeFile(copy);
      if (old && *old == bytes) return {};
      continue;
    }
    return files.WriteOwnFile(copy, bytes);
  }
  return Error{ErrorCode::AlreadyExists, "too many copies", path};
}

}  // namespace tarn
