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
class JournalManager;
class ProjectActions;

// Offers the content of journals left by crashed windows. For one journal after the other, the user
// can restore it, discard it, or postpone it to the next start. A journal is cleared only after the
// user has discarded it, or after its content has been written to this window's journal. Content
// that conflicts with what was restored earlier is written to files in the folder for rescued
// texts.
//
// Borrows everything except the journals; `window` is the parent of dialogs. Main thread only.
class CrashRecovery : public QObject {
  Q_DECLARE_TR_FUNCTIONS(CrashRecovery)

 public:
  CrashRecovery(QWidget& parentWindow, FileSystem& fileSystem, ProjectActions& projectActions,
                EditorTabs& editorTabs, JournalManager& journalManager, std::string rescueFolder,
                std::vector<std::unique_ptr<Journal>> journals);

  // Shows the dialog for the next journal, if there is one. Returns immediately.
  void Offer();

 private:
  // Removes texts that were saved later after all.
  void DropSaved(JournalReading& reading) const;
  void Ask(const JournalReading& reading);
  void Restore(const JournalReading& reading);
  // Returns true if everything is in this window now, or in a rescue copy.
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
  JournalManager& manager_;
  const std::string rescueFolder_;
  std::vector<std::unique_ptr<Journal>> left_;  // the first one is being offered
  // Messages to the user after a journal was restored.
  QStringList problems_;
  QStringList copies_;      // paths of rescue copies
  bool isComplete_ = true;  // all rescue copies were written
};

}  // namespace tarn::host
