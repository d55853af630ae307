#include "project/FileGuard.h"

#include "platform/files/KeptCopy.h"
#include "platform/paths/Paths.h"
#include "platform/text/Hash.h"

namespace tarn {

void FileGuard::NoteRead(const std::string& path, std::string_view bytes, bool damaged) {
  known[path] = HashBytes(bytes);
  if (damaged) damagedFiles.insert(path);
}

void FileGuard::NoteWritten(const std::string& path, std::string_view bytes) {
  known[path] = HashBytes(bytes);
  damagedFiles.erase(path);
}

void FileGuard::Forget() {
  known.clear();
  damagedFiles.clear();
  untouchable.clear();
}

Status FileGuard::PutAside(const std::string& path, std::string& copy) {
  copy.clear();
  if (untouchable.count(path) != 0) {
    return Error{ErrorCode::Changed, "what it holds was not read", path};
  }
  const Result<std::string> bytes = files.ReadWholeFile(path);
  const bool damaged = damagedFiles.count(path) != 0;
  if (!bytes) {
    const bool nothingToLose = bytes.GetError().code == ErrorCode::NotFound;
    return nothingToLose ? Status() : Status(bytes.GetError());
  }
  if (damaged) return KeepCopy(files, path, *bytes, ".bak", copy);
  const auto found = known.find(path);
  const bool changedByOthers = found == known.end() || found->second != HashBytes(*bytes);
  return changedByOthers ? KeepCopy(files, path, *bytes, ".orig", copy) : Status();
}

std::string FileGuard::Rescue(const std::string& path, std::string_view bytes,
                              const std::string& spare) {
  std::string copy;
  if (KeepCopy(files, path, bytes, ".unsaved", copy)) return copy;
  if (spare.empty() || !files.CreateFolders(spare)) return {};
  const std::string inSpare = JoinPath(spare, FileNameOf(path));
  return KeepCopy(files, inSpare, bytes, ".unsaved", copy) ? copy : std::string();
}

}  // namespace tarn
