#include "hosts/desktop/CrashRecovery.h"

#include <QMessageBox>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "hosts/desktop/EditorTabs.h"
#include "hosts/desktop/JournalKeeper.h"
#include "hosts/desktop/ProjectActions.h"
#include "hosts/desktop/RecoveryDialog.h"
#include "platform/files/FileTexts.h"
#include "platform/qt/QtText.h"

namespace tarn::host {

CrashRecovery::CrashRecovery(QWidget& parentWindow, FileSystem& fileSystem,
                             ProjectActions& projectActions, EditorTabs& editorTabs,
                             JournalKeeper& journalKeeper,
                             std::vector<std::unique_ptr<Journal>> journals)
    : window_(parentWindow),
      files_(fileSystem),
      project_(projectActions),
      editors_(editorTabs),
      keeper_(journalKeeper),
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

// After the dialog is gone.
void CrashRecovery::GoOn() {
  QTimer::singleShot(0, this, [this] { Offer(); });
}

void CrashRecovery::Discard() {
  static_cast<void>(left_.front()->Clear());
  left_.erase(left_.begin());
}

void CrashRecovery::Restore(const JournalReading& reading) {
  const JournalContent& content = reading.content;
  const std::string texts = content.projectTexts ? *content.projectTexts : std::string();
  const std::string bases = content.projectBases ? *content.projectBases : std::string();
  const bool isOpen =
      content.project.empty() || project_.OpenWithChanges(content.project, texts, bases);
  QStringList tabs;
  for (const std::string& each : content.tabs) tabs += ToQt(each);
  editors_.Restore(tabs, content.texts);
  // All of it is in this window's journal before it goes from the other.
  const bool isKept = isOpen && keeper_.Flush();
  if (isKept && reading.lost.empty()) static_cast<void>(left_.front()->Clear());
  if (!isKept) {
    QMessageBox::warning(&window_, tr("Tarn"),
                         tr("What was not saved is offered again at the next start, as not all of "
                            "it could be restored."));
  }
  left_.erase(left_.begin());
}

}  // namespace tarn::host
