#include "project/FileGuard.h"

#include "platform/files/KeptCopy.h"
#include "platform/paths/Paths.h"

namespace tarn {

void FileGuard::NoteRead(const std::string& path, std::string_view bytes, bool damaged) {
  known[path] = bytes;
  if (damaged) damagedFiles.insert(path);
}

void FileGuard::NoteWritten(const std::string& path, std::string_view bytes) {
  known[path] = bytes;
  damagedFiles.erase(path);
}

const std::string* FileGuard::TextOf(const std::string& path) const {
  const auto found = known.find(path);
  return found == known.end() ? nullptr : &found->second;
}

void FileGuard::Forget() {
  known.clear();
  damagedFiles.clear();
  untouchable.clear();
}

Status FileGuard::PutAside(const std::string& path, std::string& copy, CopyReason& reason) {
  copy.clear();
  reason = CopyReason::None;
  if (untouchable.count(path) != 0) {
    return Error{ErrorCode::Changed, "what it holds was not read", path};
  }
  const Result<std::string> bytes = files.ReadWholeFile(path);
  if (!bytes) {
    const bool nothingToLose = bytes.GetError().code == ErrorCode::NotFound;
    return nothingToLose ? Status() : Status(bytes.GetError());
  }
  const auto found = known.find(path);
  if (damagedFiles.count(path) != 0) {
    reason = CopyReason::Damaged;
  } else if (found == known.end() || found->second != *bytes) {
    reason = CopyReason::ChangedByOthers;
  }
  if (reason == CopyReason::None) return {};
  const bool isDamaged = reason == CopyReason::Damaged;
  return KeepCopy(files, path, *bytes, isDamaged ? ".bak" : ".orig", copy);
}

std::string FileGuard::Rescue(const std::string& path, std::string_view bytes,
                              const std::string& spare) {
  std::string copy;
  if (KeepCopy(files, path, bytes, ".unsaved", copy)) return copy;
  return RescueTo(spare, path, bytes);
}

std::string FileGuard::RescueTo(const std::string& spare, const std::string& path,
                                std::string_view bytes) {
  std::string copy;
  if (spare.empty() || !files.CreateFolders(spare)) return {};
  const std::string inSpare = JoinPath(spare, FileNameOf(path));
  return KeepCopy(files, inSpare, bytes, ".unsaved", copy) ? copy : std::string();
}

}  // namespace tarn
