#include "project/FileGuard.h"

#include <utility>

#include "platform/files/KeptCopy.h"
#include "platform/paths/Paths.h"

namespace tarn {

void FileGuard::NoteRead(const std::string& path, std::string_view bytes, bool damaged) {
  known_[path] = bytes;
  forms_.erase(path);
  if (damaged) damagedFiles_.insert(path);
}

void FileGuard::NoteWritten(const std::string& path, std::string_view bytes) {
  known_[path] = bytes;
  forms_.erase(path);
  damagedFiles_.erase(path);
}

const std::string* FileGuard::TextOf(const std::string& path) const {
  const auto found = known_.find(path);
  return found == known_.end() ? nullptr : &found->second;
}

const std::string* FileGuard::LastTextOf(const std::string& path) const {
  if (const std::string* const text = TextOf(path)) return text;
  const auto found = last_.find(path);
  return found == last_.end() ? nullptr : &found->second;
}

const std::string* FileGuard::FormOf(const std::string& path) const {
  const auto found = forms_.find(path);
  return found == forms_.end() ? TextOf(path) : &found->second;
}

void FileGuard::TakeOver(const FileGuard& former, const std::string& path) {
  forms_[path] = std::move(known_[path]);
  if (const std::string* const text = former.TextOf(path)) {
    known_[path] = *text;
  } else {
    known_.erase(path);
  }
  if (former.damagedFiles_.contains(path)) damagedFiles_.insert(path);
  if (former.untouchable_.contains(path)) untouchable_.insert(path);
}

void FileGuard::NoteMoved(const std::string& from, const std::string& to, std::string_view text) {
  known_[to] = text;
  if (damagedFiles_.contains(from)) damagedFiles_.insert(to);
}

void FileGuard::Forget() {
  for (auto& [path, text] : known_) last_[path] = std::move(text);
  known_.clear();
  forms_.clear();
  damagedFiles_.clear();
  untouchable_.clear();
}

void FileGuard::ForgetAll() {
  Forget();
  last_.clear();
  rescued_.clear();
}

Status FileGuard::PutAside(const std::string& path, std::string& copy, CopyReason& reason) {
  copy.clear();
  reason = CopyReason::None;
  if (untouchable_.count(path) != 0) {
    return Error{ErrorCode::Changed, "what it holds was not read", path};
  }
  const Result<std::string> bytes = files_.ReadWholeFile(path);
  if (!bytes) {
    const bool nothingToLose = bytes.GetError().code == ErrorCode::NotFound;
    return nothingToLose ? Status() : Status(bytes.GetError());
  }
  const auto found = known_.find(path);
  if (damagedFiles_.count(path) != 0) {
    reason = CopyReason::Damaged;
  } else if (found == known_.end() || found->second != *bytes) {
    reason = CopyReason::ChangedByOthers;
  }
  if (reason == CopyReason::None) return {};
  const bool isDamaged = reason == CopyReason::Damaged;
  const Status kept = KeepCopy(files_, path, *bytes, isDamaged ? ".bak" : ".orig", copy);
  if (kept) return {};
  reason = CopyReason::None;
  const std::string target = std::exchange(copy, {});
  return Error{kept.GetError().code, "its copy " + target + ": " + kept.GetError().text, path};
}

std::string FileGuard::Rescue(const std::string& path, std::string_view bytes,
                              const std::string& spare) {
  std::string copy;
  if (KeepCopy(files_, path, bytes, ".unsaved", copy)) return copy;
  return RescueTo(spare, path, bytes);
}

void FileGuard::NoteRescued(const std::string& path, const std::string& copy,
                            std::string_view bytes) {
  if (!copy.empty()) rescued_[path][copy] = bytes;
}

void FileGuard::RemoveRescued(const std::string& path) {
  const auto found = rescued_.find(path);
  if (found == rescued_.end()) return;
  for (const auto& [copy, bytes] : found->second) {
    const Result<std::string> present = files_.ReadWholeFile(copy);
    // If it can't be removed, the user has one copy too many.
    if (present && *present == bytes) static_cast<void>(files_.RemoveFile(copy));
  }
  rescued_.erase(found);
}

std::string FileGuard::RescueTo(const std::string& spare, const std::string& path,
                                std::string_view bytes) {
  std::string copy;
  if (spare.empty() || !files_.CreateFolders(spare)) return {};
  const std::string inSpare = JoinPath(spare, FileNameOf(path));
  return KeepCopy(files_, inSpare, bytes, ".unsaved", copy) ? copy : std::string();
}

}  // namespace tarn
