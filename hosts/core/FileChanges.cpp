#include "hosts/core/FileChanges.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

#include "platform/text/Text.h"

namespace tarn::host {

namespace {

// Returns the next line that is not empty and advances `at` past it; an empty view at the end.
std::string_view NextLine(std::string_view text, std::size_t& at) {
  while (at < text.size()) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    const std::string_view line = Trim(text.substr(at, end - at));
    at = end + 1;
    if (!line.empty()) return line;
  }
  return {};
}

bool IsSameText(std::string_view one, std::string_view other) {
  if (one == other) return true;
  std::size_t here = 0;
  std::size_t there = 0;
  while (true) {
    const std::string_view line = NextLine(one, here);
    if (line != NextLine(other, there)) return false;
    if (line.empty()) return true;
  }
}

std::vector<FileText> TextsOf(const FileChanges& changes,
                              std::optional<std::string> FileChange::*version) {
  std::vector<FileText> texts;
  for (const FileChange& each : changes) {
    if (each.*version) texts.push_back({each.path, *(each.*version)});
  }
  return texts;
}

}  // namespace

std::vector<FileText> ReadProjectFiles(InspectorDriver& inspector) {
  return SplitFileTexts(inspector.GetFileTexts()).value_or(std::vector<FileText>());
}

FileChanges FindChanges(const std::vector<FileText>& before, const std::vector<FileText>& after) {
  std::map<std::string, FileChange> all;
  for (const FileText& each : before) all[each.path].before = each.text;
  for (const FileText& each : after) all[each.path].after = each.text;
  FileChanges changes;
  for (auto& [path, change] : all) {
    if (change.before && change.after && IsSameText(*change.before, *change.after)) continue;
    change.path = path;
    changes.push_back(std::move(change));
  }
  return changes;
}

FileChanges Reverse(FileChanges changes) {
  for (FileChange& each : changes) std::swap(each.before, each.after);
  return changes;
}

std::vector<FileText> TextsBefore(const FileChanges& changes) {
  return TextsOf(changes, &FileChange::before);
}

std::vector<FileText> TextsAfter(const FileChanges& changes) {
  return TextsOf(changes, &FileChange::after);
}

Status ApplyChanges(InspectorDriver& inspector, const FileChanges& changes) {
  std::string problems = inspector.ApplyChange(JoinFileTexts(TextsBefore(changes)),
                                               JoinFileTexts(TextsAfter(changes)));
  if (problems.empty()) return {};
  return Error{ErrorCode::Changed, std::move(problems), {}};
}

}  // namespace tarn::host
