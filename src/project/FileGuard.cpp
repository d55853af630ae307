#include "project/FileGuard.h"

#include <utility>

#include "platform/files/KeptCopy.h"
#include "platform/paths/Paths.h"

namespace tarn {

void FileGuard::NoteRead(const std::string& path, std::string_view bytes, bool damaged) {
  known[path] = bytes;
  forms.erase(path);
  if (damaged) damagedFiles.insert(path);
}

void FileGuard::NoteWritten(const std::string& path, std::string_view bytes) {
  known[path] = bytes;
  forms.erase(path);
  damagedFiles.erase(path);
}

const std::string* FileGuard::TextOf(const std::string& path) const {
  const auto found = known.find(path);
  return found == known.end() ? nullptr : &found->second;
}

const std::string* FileGuard::LastTextOf(const std::string& path) const {
  if (const std::string* const text = TextOf(path)) return text;
  const auto found = last.find(path);
  return found == last.end() ? nullptr : &found->second;
}

const std::string* FileGuard::FormOf(const std::string& path) const {
  const auto found = forms.find(path);
  return found == forms.end() ? TextOf(path) : &found->second;
}

void FileGuard::TakeOver(const FileGuard& former, const std::string& path) {
  forms[path] = std::move(known[path]);
  if (const std::string* const text = former.TextOf(path)) {
    known[path] = *text;
  } else {
    known.erase(path);
  }
  if (former.damagedFiles.contains(path)) damagedFiles.insert(path);
  if (former.untouchable.contains(path)) untouchable.insert(path);
}

void FileGuard::NoteMoved(const std::string& from, const std::string& to, std::string_view text) {
  known[to] = text;
  if (damagedFiles.contains(from)) damagedFiles.insert(to);
}

void FileGuard::Forget() {
  for (auto& [path, text] : known) last[path] = std::move(text);
  known.clear();
  forms.clear();
  damagedFiles.clear();
  untouchable.clear();
}

void FileGuard::ForgetAll() {
  Forget();
  last.clear();
  rescued.clear();
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
  const Status kept = KeepCopy(files, path, *bytes, isDamaged ? ".bak" : ".orig", copy);
  if (kept) return {};
  reason = CopyReason::None;
  const std::string target = std::exchange(copy, {});
  return Error{kept.GetError().code, "its copy " + target + ": " + kept.GetError().text, path};
}

std::string FileGuard::Rescue(const std::string& path, std::string_view bytes,
                              const std::string& spare) {
  std::string copy;
  if (KeepCopy(files, path, bytes, ".unsaved", copy)) return copy;
  return RescueTo(spare, path, bytes);
}

void FileGuard::NoteRescued(const std::string& path, const std::string& copy,
                            std::string_view bytes) {
  if (!copy.empty()) rescued[path][copy] = bytes;
}

void FileGuard::RemoveRescued(const std::string& path) {
  const auto found = rescued.find(path);
  if (found == rescued.end()) return;
  for (const auto& [copy, bytes] : found->second) {
    const Result<std::string> present = files.ReadWholeFile(copy);
    // If it can't be removed, the user has one copy too many.
    if (present && *present == bytes) static_cast<void>(files.RemoveFile(copy));
  }
  rescued.erase(found);
}

std::string FileGuard::RescueTo(const std::string& spare, const std::string& path,
                                std::string_view bytes) {
  std::string copy;
  if (spare.empty() || !files.CreateFolders(spare)) return {};
  const std::string inSpare = JoinPath(spare, FileNameOf(path));
  return KeepCopy(files, inSpare, bytes, ".unsaved", copy) ? copy : std::string();
}

}  // namespace tarn
