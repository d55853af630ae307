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
constexpr std::string_view kRecordHead = "Tarn undo 2\n";
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
    : files_(fileSystem), folder_(FolderOf(projectPath)), recordPath_(UndoPathOf(projectPath)) {
  const auto text = files_.ReadOwnFile(recordPath_);
  if (!text) {
    status_ = Error{text.GetError().code, text.GetError().text, recordPath_};
  } else if (text->starts_with(kMagic) && !text->starts_with(kRecordHead)) {
    status_ = Error{ErrorCode::Unsupported, "another version of the program wrote it", recordPath_};
  } else if (!Read(*text)) {
    status_ = Error{ErrorCode::Io, "it is damaged", recordPath_};
  }
}

// Returns false if the text doesn't have the format written by Write.
bool EditRecord::Read(std::string_view text) {
  const std::size_t end = text.find('\n', kRecordHead.size());
  if (!text.starts_with(kRecordHead) || end == text.npos) return false;
  const std::string_view body = text.substr(end + 1);
  if (text.substr(kRecordHead.size(), end - kRecordHead.size()) != ChecksumOf(body)) return false;
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
        if (IsRelativePath(file.path)) file.path = JoinPath(folder_, file.path);
      }
    }
    found.push_back({each->path, FindChanges(*before, *after)});
  }
  const int count = ParseDecimal(list->front().path.c_str());
  if (count < 0 || static_cast<std::size_t>(count) > found.size()) return false;
  steps_ = std::move(found);
  done_ = static_cast<std::size_t>(count);
  return true;
}

void EditRecord::Add(ProjectStep step) {
  steps_.erase(steps_.begin() + static_cast<std::ptrdiff_t>(done_), steps_.end());
  steps_.push_back(std::move(step));
  done_ = steps_.size();
}

// The next step in either direction is never dropped.
void EditRecord::DropOldest() {
  std::size_t bytes = 0;
  for (const ProjectStep& each : steps_) bytes += SizeOf(each);
  while (done_ > 1 && (steps_.size() > kMostSteps || bytes > kMostBytes)) {
    bytes -= SizeOf(steps_.front());
    steps_.erase(steps_.begin());
    --done_;
  }
}

Status EditRecord::Write() {
  DropOldest();
  std::vector<FileText> list = {{ToDecimal(static_cast<std::int64_t>(done_)), {}}};
  for (const ProjectStep& each : steps_) {
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
  return files_.WriteOwnFile(recordPath_,
                             std::string(kRecordHead) + ChecksumOf(body) + "\n" + body);
}

void EditRecord::Remove() {
  if (!files_.ExamineLink(recordPath_)) static_cast<void>(files_.RemoveFile(recordPath_));
}

std::string EditRecord::NameOf(const std::string& path) const {
  const std::string start = AddSeparator(folder_);
  return path.starts_with(start) ? path.substr(start.size()) : path;
}

}  // namespace tarn::host
