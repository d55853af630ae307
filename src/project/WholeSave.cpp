// Atomic save: writes all files of a project or none.

#include "project/TreeSaver.h"

#include <algorithm>

#include "project/FileAccess.h"

namespace tarn {

void TreeSaver::SaveAllPending(std::vector<PendingFile>& pending) {
  const FileSaver saver(files_, guard_, types_);
  std::vector<FileBytes> list;
  std::vector<SavedFile> reports;
  Error failure;  // none without a place
  for (PendingFile& file : pending) {
    if (!failure.place.empty()) break;
    if (!file.plan.isNeeded) {
      ReportUnneeded(file.plan, reports);
      continue;
    }
    const std::string& target = file.plan.absolute;
    const auto fail = [&](const std::string& text) { failure = {ErrorCode::Io, text, target}; };
    const auto isSame = [&target](const FileBytes& each) { return each.path == target; };
    const auto same = std::find_if(list.begin(), list.end(), isSame);
    if (same != list.end() && same->bytes != file.plan.text) {
      fail(kSharedFile);
    } else if (!file.plan.problem.empty()) {
      fail(file.plan.problem);
    } else if (const FileAccess access =
                   GetFileAccess(files_, target, kMustBeWritable | kCreateFolder);
               !ReportFileAccess(access, *services_.output, target)) {
      fail(access.reason.place + ": " + access.reason.text);
    } else if (const Status kept = saver.KeepOther(file.plan, reports.emplace_back()); !kept) {
      fail(kept.GetError().text);
    } else if (same == list.end()) {
      list.push_back({target, file.plan.text});
    }
  }
  if (failure.place.empty()) failure = files_.WriteFiles(list).GetError();
  if (!failure.place.empty()) {
    RefuseFiles(pending, failure.text, failure.place);
    return;
  }
  for (const PendingFile& file : pending) {
    MarkSaved(file.plan);
    if (file.plan.isNeeded) protection_.SetDamageOf(file.plan.absolute, {});
  }
  for (SavedFile& each : reports) {
    if (!each.ToLines().empty()) savedFiles_.push_back(std::move(each));
  }
}

}  // namespace tarn
