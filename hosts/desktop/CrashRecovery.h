#pragma once

#include <QCoreApplication>
#include <QObject>
#include <memory>
#include <vector>

#include "hosts/desktop/Journal.h"

class QWidget;

namespace tarn::host {

class EditorTabs;
class JournalKeeper;
class ProjectActions;

// Offers what windows that crashed have left in their journals: one journal after the other, the
// user restores it, discards it, or leaves it for the next start. A journal is cleared only if the
// user discards it, or after its content is in the journal of this window.
//
// Borrows all but the journals; `window` is where it asks. On the main thread.
class CrashRecovery : public QObject {
  Q_DECLARE_TR_FUNCTIONS(CrashRecovery)

 public:
  CrashRecovery(QWidget& parentWindow, FileSystem& fileSystem, ProjectActions& projectActions,
                EditorTabs& editorTabs, JournalKeeper& journalKeeper,
                std::vector<std::unique_ptr<Journal>> journals);

  // Shows the dialog for the next journal, if there is one. Returns at once.
  void Offer();

 private:
  // Leaves out what has been saved in the end.
  void DropSaved(JournalReading& reading) const;
  void Ask(const JournalReading& reading);
  void Restore(const JournalReading& reading);
  void Discard();
  void GoOn();

  QWidget& window_;
  FileSystem& files_;
  ProjectActions& project_;
  EditorTabs& editors_;
  JournalKeeper& keeper_;
  std::vector<std::unique_ptr<Journal>> left_;  // the first is the one that is offered
};

}  // namespace tarn::host
