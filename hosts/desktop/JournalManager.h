#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QStringList>
#include <QThreadPool>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>

#include "hosts/core/BuildSession.h"
#include "hosts/desktop/Journal.h"

namespace tarn::host {

class Banner;
class EditorTabs;

// Writes unsaved content of the editors and the project to the process's journal about one second
// after a change, and clears the journal as soon as everything is saved. Writing is done on a
// separate thread, so that typing never waits for the disk. If the journal can't be written, this
// is retried every few seconds, and a banner shows the reason until it succeeds.
//
// Borrows everything except the journal. Main thread only.
class JournalManager : public QObject {
  Q_DECLARE_TR_FUNCTIONS(JournalManager)

 public:
  // If `taken` has no journal, one below `rootFolder` is taken as soon as possible.
  JournalManager(FileSystem& fileSystem, std::string rootFolder, TakenJournals& taken,
                 BuildSession& buildSession, EditorTabs& editorTabs, Banner& journalBanner);
  ~JournalManager() override;

  // Writes immediately and waits for completion. Returns false on error.
  bool Flush();
  // Clears the journal at the end of the program, when nothing is left to be protected.
  void End();

  // Called when files were opened, closed or brought to the front; may be empty.
  std::function<void()> onTabsChanged;

 private:
  // Everything that the journal's content depends on, except for cursor positions.
  struct Signature {
    std::int32_t changeCount = -1;
    bool isModified = false;
    QStringList tabs;
    QStringList texts;
    bool operator==(const Signature&) const = default;
  };

  Signature Sign();
  JournalContent Collect();
  bool Retake();
  void Show(const QString& problem);
  Status Store(const JournalContent& content);
  void Follow();
  void Finish(const Status& stored);

  FileSystem& files_;
  const std::string root_;            // contains all journals
  std::unique_ptr<Journal> journal_;  // used by the pool's thread during a write
  BuildSession& session_;
  EditorTabs& editors_;
  Banner& banner_;
  QTimer timer_;
  QThreadPool pool_;
  Signature signature_;  // of the journal's content; empty if unknown
  QStringList tabs_;
  QStringList tooLarge_;  // paths of texts that are not in the journal
  QString problem_;       // shown in the banner, unless hidden by the user
  bool isWriting_ = false;
  bool isEmpty_ = true;
  // Content of the last write, so that unchanged parts aren't written again.
  JournalContent last_;
  std::int32_t lastCount_ = -1;  // change count of its project
};

}  // namespace tarn::host
