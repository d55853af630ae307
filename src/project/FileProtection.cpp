#include "project/FileProtection.h"

#include <algorithm>
#include <utility>

#include "output/MessageTable.h"
#include "platform/text/Text.h"
#include "widgets/Dialogs.h"

namespace tarn {

FileProtection::FileProtection(ProjectServices& projectServices, const ProjectState& projectState,
                               const ProjectPaths& projectPaths)
    : services_(projectServices),
      files_(projectServices.files),
      state_(projectState),
      paths_(projectPaths),
      guard_(files_),
      trust_(files_),
      editLock_(files_, trust_) {}

void FileProtection::BeginOpen(bool isOther) {
  if (isOther) guard_.ClearAll();
  Clear();
  // After a failure, the placeholder project is opened; it must not clear the damage.
  if (!state_.IsDefaultProject()) failedDamage_.clear();
}

void FileProtection::KeepFailedDamage() {
  if (!state_.IsDefaultProject()) failedDamage_ = std::exchange(damage_, {});
}

void FileProtection::Clear() {
  guard_.Clear();
  damage_.clear();
}

// Logged rather than sent as messages: hosts can query the damage.
void FileProtection::SetDamageOf(const std::string& absolute, std::vector<FileDamage> found) {
  std::erase_if(damage_, [&](const FileDamage& each) { return each.file == absolute; });
  for (FileDamage& each : found) AddDamage(std::move(each));
}

void FileProtection::AddDamage(FileDamage found) {
  services_.output->AddOutput(found.ToString());
  // The placeholder project contains nothing of the user's.
  if (state_.isDefaultProject == 0) damage_.push_back(std::move(found));
}

std::vector<FileText> FileProtection::GetBaseTexts() const {
  std::vector<FileText> texts;
  for (const auto& [path, text] : guard_.GetKnown()) texts.push_back({path, text});
  return texts;
}

bool FileProtection::MayOverwrite(const std::string& path) const {
  const std::string question =
      FormatMessageText(GetMessageText(kRowOverwriteQuestion), std::vector<std::string>{path});
  return AskOkCancel(services_.mainframeHandle, question, GetMessageText(kRowProjectWord));
}

bool FileProtection::PutAsideReplaced(const std::string& path) {
  std::string copy;
  CopyReason reason = CopyReason::None;
  Status kept = files_.CheckWritable(path);
  if (files_.IsFolder(path)) kept = Error{ErrorCode::NotAFile, "it is a folder", path};
  if (kept) kept = guard_.BackUp(path, copy, reason);
  if (!kept) {
    services_.output->WriteMessage(kRowCannotSave, {path}, kept.GetError().text);
    return false;
  }
  // Not a message to the host: the user was asked before.
  if (!copy.empty()) services_.output->AddOutput("The file that was replaced is kept as " + copy);
  return true;
}

}  // namespace tarn
