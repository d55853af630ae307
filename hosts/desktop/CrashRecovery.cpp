#include "hosts/desktop/CrashRecovery.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "hosts/core/FileChanges.h"
#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/EditorTabs.h"
#include "hosts/desktop/JournalManager.h"
#include "hosts/desktop/ProjectActions.h"
#include "hosts/desktop/RecoveryDialog.h"
#include "platform/files/FileTexts.h"
#include "platform/files/KeptCopy.h"
#include "platform/paths/Paths.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

CrashRecovery::CrashRecovery(QWidget& parentWindow, FileSystem& fileSystem,
                             ProjectActions& projectActions, EditorTabs& editorTabs,
                             JournalManager& journalManager, std::string rescueFolder,
                             std::vector<std::unique_ptr<Journal>> journals)
    : window_(parentWindow),
      files_(fileSystem),
      project_(projectActions),
      editors_(editorTabs),
      manager_(journalManager),
      rescueFolder_(std::move(rescueFolder)),
      left_(std::move(journals)) {}

void CrashRecovery::Offer() {
  while (!left_.empty()) {
    JournalReading reading = left_.front()->Read();
    DropSaved(reading);
    const bool isGood = reading.state == JournalReading::State::Good;
    if (!isGood || !reading.content.IsEmpty() || !reading.lost.empty()) {
      Ask(reading);
      return;
    }
    Discard();
  }
}

void CrashRecovery::DropSaved(JournalReading& reading) const {
  JournalContent& content = reading.content;
  std::erase_if(content.texts, [this](const UnsavedText& each) {
    const auto disk = files_.ReadWholeFile(each.path);
    return disk && *disk == each.ToBytes();
  });
  if (content.projectTexts == nullptr) return;
  const auto texts = SplitFileTexts(*content.projectTexts);
  const bool isSaved =
      texts && std::all_of(texts->begin(), texts->end(), [this](const FileText& each) {
        const auto disk = files_.ReadWholeFile(each.path);
        return disk && *disk == each.text;
      });
  if (isSaved) content.projectTexts = nullptr;
}

void CrashRecovery::Ask(const JournalReading& reading) {
  auto* const dialog = new RecoveryDialog(reading, files_, &window_);
  dialog->onRestore = [this, reading] {
    Restore(reading);
    GoOn();
  };
  dialog->onDiscard = [this] {
    Discard();
    GoOn();
  };
  dialog->onLater = [this] {
    left_.erase(left_.begin());
    GoOn();
  };
  dialog->show();
}

// Deferred until the dialog is closed.
void CrashRecovery::GoOn() {
  QTimer::singleShot(0, this, [this] { Offer(); });
}

void CrashRecovery::Discard() {
  static_cast<void>(left_.front()->Clear());
  left_.erase(left_.begin());
}

void CrashRecovery::Restore(const JournalReading& reading) {
  const std::string& project = reading.content.project;
  if (!project.empty() && !files_.IsFolder(FolderOf(project))) {
    OfferCopies(reading);
  } else if (project.empty() || project_.MayReplaceWith(project)) {
    problems_.clear();
    copies_.clear();
    isComplete_ = true;
    // The other journal is cleared only if its whole content is in this window's journal or in a
    // file.
    const bool isKept = RestoreContent(reading) && manager_.Flush();
    if (isKept && reading.lost.empty()) static_cast<void>(left_.front()->Clear());
    if (!isKept) {
      problems_ +=
          tr("Not everything could be restored. The unsaved changes will be offered again at the "
             "next start.");
    }
    Tell();
  }
  left_.erase(left_.begin());
}

bool CrashRecovery::RestoreContent(const JournalReading& reading) {
  const JournalContent& content = reading.content;
  const bool isOpen = content.project.empty() || RestoreProject(content);
  QStringList tabs;
  for (const std::string& each : content.tabs) tabs += ToQt(each);
  editors_.Restore(tabs, KeepRivals(content.texts));
  for (const QString& each : copies_) editors_.OpenFile(FromQt(each), 0);
  return isOpen && isComplete_;
}

// Returns false if the project could not be opened.
bool CrashRecovery::RestoreProject(const JournalContent& content) {
  const auto split = [](const std::shared_ptr<const std::string>& texts) {
    const auto list = texts ? SplitFileTexts(*texts) : std::nullopt;
    return list.value_or(std::vector<FileText>());
  };
  const std::vector<FileText> texts = split(content.projectTexts);
  const std::vector<FileText> bases = split(content.projectBases);
  const Status restored = project_.Restore(content.project, texts, bases);
  if (restored) return true;
  const Error& error = restored.GetError();
  if (error.code != ErrorCode::Changed) {
    problems_ += tr("%1 can't be opened.").arg(ToQt(content.project)) + "\n" + ToQt(error.text);
    return false;
  }
  problems_ += tr("These project changes conflict with changes that were already restored:") +
               "\n" + ToQt(error.text);
  for (const FileChange& each : FindChanges(bases, texts)) {
    if (each.after) Rescue(rescueFolder_, each.path, *each.after);
  }
  return true;
}

// Returns the texts, except for those of files that already have a different unsaved text; these
// are written to rescue copies.
std::vector<UnsavedText> CrashRecovery::KeepRivals(const std::vector<UnsavedText>& texts) {
  std::vector<UnsavedText> rest;
  for (const UnsavedText& each : texts) {
    const CodeEditor* const editor = editors_.Find(each.path);
    if (editor == nullptr || !editor->isModified() || *editor->GetUnsaved().text == *each.text) {
      rest.push_back(each);
      continue;
    }
    problems_ += tr("%1 already has other unsaved changes.").arg(ToQt(each.path));
    Rescue(rescueFolder_, each.path, each.ToBytes().value_or(*each.text));
  }
  return rest;
}

// Offers rescue copies for a project whose folder no longer exists. The journal is not cleared in
// any case.
void CrashRecovery::OfferCopies(const JournalReading& reading) {
  const JournalContent& content = reading.content;
  QMessageBox box(QMessageBox::Warning, tr("Tarn"),
                  tr("%1 and its folder no longer exist. The unsaved changes will be offered again "
                     "at the next start. You can also save copies of them in another folder now.")
                      .arg(ToQt(content.project)),
                  QMessageBox::Close, &window_);
  const QPushButton* const save = box.addButton(tr("&Save copies..."), QMessageBox::ActionRole);
  box.exec();
  if (box.clickedButton() != save) return;
  const QString folder = QFileDialog::getExistingDirectory(
      &window_, tr("Folder for the copies"),
      QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
  if (folder.isEmpty()) return;
  problems_ = QStringList(tr("Unsaved changes to %1").arg(ToQt(content.project)));
  copies_.clear();
  const auto texts = content.projectTexts ? SplitFileTexts(*content.projectTexts) : std::nullopt;
  for (const FileText& each : texts.value_or(std::vector<FileText>())) {
    Rescue(FromQt(folder), each.path, each.text);
  }
  for (const UnsavedText& each : content.texts) {
    Rescue(FromQt(folder), each.path, each.ToBytes().value_or(*each.text));
  }
  Tell();
}

// Writes a copy whose name has the suffix ".unsaved", without overwriting any file.
void CrashRecovery::Rescue(const std::string& folder, const std::string& path,
                           const std::string& bytes) {
  std::string copy = JoinPath(folder, FileNameOf(path));
  Status kept = files_.CreateFolders(folder);
  if (kept) kept = KeepCopy(files_, copy, bytes, ".unsaved", copy);
  if (kept) {
    copies_ += ToQt(copy);
    return;
  }
  isComplete_ = false;
  problems_ += tr("%1 can't be written: %2").arg(ToQt(copy), ToQt(kept.GetError().text));
}

void CrashRecovery::Tell() {
  if (problems_.isEmpty()) return;
  QString text = problems_.join("\n\n");
  if (!copies_.isEmpty()) text += "\n\n" + tr("Saved as:") + "\n" + copies_.join('\n');
  QMessageBox::warning(&window_, tr("Tarn"), text);
}

}  // namespace tarn::host
