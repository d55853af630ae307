#include "project/BackupGuard.h"

#include <utility>

#include "platform/files/KeptCopy.h"
#include "platform/paths/Paths.h"

namespace tarn {

void BackupGuard::RecordRead(const std::string& path, std::string_view bytes, bool damaged) {
  known_[path] = bytes;
  forms_.erase(path);
  if (damaged) damagedFiles_.insert(path);
}

void BackupGuard::RecordWritten(const std::string& path, std::string_view bytes) {
  known_[path] = bytes;
  forms_.erase(path);
  damagedFiles_.erase(path);
}

const std::string* BackupGuard::ContentOf(const std::string& path) const {
  const auto found = known_.find(path);
  return found == known_.end() ? nullptr : &found->second;
}

const std::string* BackupGuard::LastContentOf(const std::string& path) const {
  if (const std::string* const text = ContentOf(path)) return text;
  const auto found = last_.find(path);
  return found == last_.end() ? nullptr : &found->second;
}

const std::string* BackupGuard::FormOf(const std::string& path) const {
  const auto found = forms_.find(path);
  return found == forms_.end() ? ContentOf(path) : &found->second;
}

void BackupGuard::TakeOver(const BackupGuard& former, const std::string& path) {
  forms_[path] = std::move(known_[path]);
  if (const std::string* const text = former.ContentOf(path)) {
    known_[path] = *text;
  } else {
    known_.erase(path);
  }
  if (former.damagedFiles_.contains(path)) damagedFiles_.insert(path);
  if (former.protected_.contains(path)) protected_.insert(path);
}

void BackupGuard::RecordMoved(const std::string& from, const std::string& to,
                              std::string_view text) {
  known_[to] = text;
  if (damagedFiles_.contains(from)) damagedFiles_.insert(to);
}

void BackupGuard::Clear() {
  for (auto& [path, text] : known_) last_[path] = std::move(text);
  known_.clear();
  forms_.clear();
  damagedFiles_.clear();
  protected_.clear();
}

void BackupGuard::ClearAll() {
  Clear();
  last_.clear();
  rescued_.clear();
}

Status BackupGuard::BackUp(const std::string& path, std::string& copy, CopyReason& reason) {
  copy.clear();
  reason = CopyReason::None;
  if (protected_.count(path) != 0) {
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

std::string BackupGuard::Rescue(const std::string& path, std::string_view bytes,
                                const std::string& spare) {
  std::string copy;
  if (KeepCopy(files_, path, bytes, ".unsaved", copy)) return copy;
  return RescueTo(spare, path, bytes);
}

void BackupGuard::RecordRescued(const std::string& path, const std::string& copy,
                                std::string_view bytes) {
  if (!copy.empty()) rescued_[path][copy] = bytes;
}

void BackupGuard::RemoveRescued(const std::string& path) {
  const auto found = rescued_.find(path);
  if (found == rescued_.end()) return;
  for (const auto& [copy, bytes] : found->second) {
    const Result<std::string> present = files_.ReadWholeFile(copy);
    // If it can't be removed, the user has one copy too many.
    if (present && *present == bytes) static_cast<void>(files_.RemoveFile(copy));
  }
  rescued_.erase(found);
}

std::string BackupGuard::RescueTo(const std::string& spare, const std::string& path,
                                  std::string_view bytes) {
  std::string copy;
  if (spare.empty() || !files_.CreateFolders(spare)) return {};
  const std::string inSpare = JoinPath(spare, FileNameOf(path));
  return KeepCopy(files_, inSpare, bytes, ".unsaved", copy) ? copy : std::string();
}

}  // namespace tarn
