#include "hosts/cli/EditRecord.h"

#include <cstdint>
#include <string_view>
#include <utility>

#include "hosts/core/ProjectFile.h"
#include "platform/paths/Paths.h"
#include "platform/text/Hash.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr std::string_view kMagic = "Tarn undo ";
constexpr std::string_view kHead = "Tarn undo 2\n";
constexpr std::size_t kMostSteps = 20;
constexpr std::size_t kMostBytes = 4 << 20;

std::string ChecksumOf(std::string_view body) {
  return std::to_string(HashBytes(body));
}

std::size_t SizeOf(const ProjectStep& step) {
  std::size_t bytes = 0;
  for (const FileChange& each : step.changes) {
    for (const auto* text : {&each.before, &each.after}) bytes += *text ? (*text)->size() : 0;
  }
  return bytes;
}

}  // namespace

EditRecord::EditRecord(FileSystem& fileSystem, const std::string& projectPath)
    : files(fileSystem), folder(FolderOf(projectPath)), recordPath(UndoPathOf(projectPath)) {
  const auto text = files.ReadOwnFile(recordPath);
  if (!text) {
    status = Error{text.GetError().code, text.GetError().text, recordPath};
  } else if (text->starts_with(kMagic) && !text->starts_with(kHead)) {
    status = Error{ErrorCode::Unsupported, "another version of the program wrote it", recordPath};
  } else if (!Read(*text)) {
    status = Error{ErrorCode::Io, "it is damaged", recordPath};
  }
}

// Returns false if the text doesn't have the format written by Write.
bool EditRecord::Read(std::string_view text) {
  const std::size_t end = text.find('\n', kHead.size());
  if (!text.starts_with(kHead) || end == text.npos) return false;
  const std::string_view body = text.substr(end + 1);
  if (text.substr(kHead.size(), end - kHead.size()) != ChecksumOf(body)) return false;
  const auto list = SplitFileTexts(body);
  if (!list || list->empty()) return false;
  std::vector<ProjectStep> found;
  for (auto each = list->begin() + 1; each != list->end(); ++each) {
    const auto versions = SplitFileTexts(each->text);
    if (!versions || versions->size() != 2) return false;
    auto before = SplitFileTexts(versions->front().text);
    auto after = SplitFileTexts(versions->back().text);
    if (!before || !after) return false;
    for (auto* version : {&*before, &*after}) {
      for (FileText& file : *version) {
        if (IsRelativePath(file.path)) file.path = JoinPath(folder, file.path);
      }
    }
    found.push_back({each->path, FindChanges(*before, *after)});
  }
  const int count = ParseDecimal(list->front().path.c_str());
  if (count < 0 || static_cast<std::size_t>(count) > found.size()) return false;
  steps = std::move(found);
  done = static_cast<std::size_t>(count);
  return true;
}

void EditRecord::Add(ProjectStep step) {
  steps.erase(steps.begin() + static_cast<std::ptrdiff_t>(done), steps.end());
  steps.push_back(std::move(step));
  done = steps.size();
}

// The next step in either direction is never dropped.
void EditRecord::DropOldest() {
  std::size_t bytes = 0;
  for (const ProjectStep& each : steps) bytes += SizeOf(each);
  while (done > 1 && (steps.size() > kMostSteps || bytes > kMostBytes)) {
    bytes -= SizeOf(steps.front());
    steps.erase(steps.begin());
    --done;
  }
}

Status EditRecord::Write() {
  DropOldest();
  std::vector<FileText> list = {{ToDecimal(static_cast<std::int64_t>(done)), {}}};
  for (const ProjectStep& each : steps) {
    std::vector<FileText> before = TextsBefore(each.changes);
    std::vector<FileText> after = TextsAfter(each.changes);
    for (auto* version : {&before, &after}) {
      for (FileText& file : *version) file.path = NameOf(file.path);
    }
    const std::vector<FileText> versions = {{"before", JoinFileTexts(before)},
                                            {"after", JoinFileTexts(after)}};
    list.push_back({each.label, JoinFileTexts(versions)});
  }
  const std::string body = JoinFileTexts(list);
  return files.WriteOwnFile(recordPath, std::string(kHead) + ChecksumOf(body) + "\n" + body);
}

void EditRecord::Remove() {
  if (!files.ExamineLink(recordPath)) static_cast<void>(files.RemoveFile(recordPath));
}

std::string EditRecord::NameOf(const std::string& path) const {
  const std::string start = AddSeparator(folder);
  return path.starts_with(start) ? path.substr(start.size()) : path;
}

}  // namespace tarn::host
