#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QStringList>
#include <memory>
#include <string>
#include <vector>

#include "hosts/desktop/Journal.h"

class QWidget;

namespace tarn::host {

class EditorTabs;
class JournalKeeper;
class ProjectActions;

// Offers what windows that crashed have left in their journals: one journal after the other, the
// user restores it, discards it, or leaves it for the next start. A journal is cleared only if the
// user discards it, or after its content is in the journal of this window, except for what doesn't
// fit to what was restored before: that is written to files in the folder for rescued texts.
//
// Borrows all but the journals; `window` is where it asks. On the main thread.
class CrashRecovery : public QObject {
  Q_DECLARE_TR_FUNCTIONS(CrashRecovery)

 public:
  CrashRecovery(QWidget& parentWindow, FileSystem& fileSystem, ProjectActions& projectActions,
                EditorTabs& editorTabs, JournalKeeper& journalKeeper, std::string rescueFolder,
                std::vector<std::unique_ptr<Journal>> journals);

  // Shows the dialog for the next journal, if there is one. Returns at once.
  void Offer();

 private:
  // Leaves out what has been saved in the end.
  void DropSaved(JournalReading& reading) const;
  void Ask(const JournalReading& reading);
  void Restore(const JournalReading& reading);
  // Returns whether all of it is in the window now, or in a rescue copy.
  bool RestoreContent(const JournalReading& reading);
  bool RestoreProject(const JournalContent& content);
  std::vector<UnsavedText> KeepRivals(const std::vector<UnsavedText>& texts);
  void OfferCopies(const JournalReading& reading);
  void Rescue(const std::string& folder, const std::string& path, const std::string& bytes);
  void Tell();
  void Discard();
  void GoOn();

  QWidget& window_;
  FileSystem& files_;
  ProjectActions& project_;
  EditorTabs& editors_;
  JournalKeeper& keeper_;
  const std::string rescueFolder_;
  std::vector<std::unique_ptr<Journal>> left_;  // the first is the one that is offered
  // What there is to say of a journal after it was restored.
  QStringList problems_;
  QStringList copies_;      // paths of rescue copies
  bool isComplete_ = true;  // all rescue copies could be written
};

}  // namespace tarn::host
