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

// Writes what isn't saved, of the editors and the project, into the journal of this process about a
// second after it changed, and clears the journal as soon as everything is saved. Writes on a
// thread of its own, so that no key waits for the disk. A journal that can't be written is tried
// again every few seconds; a banner says why until it works.
//
// Borrows all but the journal. On the main thread.
class JournalKeeper : public QObject {
  Q_DECLARE_TR_FUNCTIONS(JournalKeeper)

 public:
  // Without a journal in `taken`, one below `rootFolder` is taken as soon as that is possible.
  JournalKeeper(FileSystem& fileSystem, std::string rootFolder, TakenJournals& taken,
                BuildSession& buildSession, EditorTabs& editorTabs, Banner& journalBanner);
  ~JournalKeeper() override;

  // Writes now, and waits for that. False if it can't be written.
  bool Flush();
  // For the end of the program, when nothing is left to be kept.
  void End();

  // Files have been opened, closed, or come into view, if set.
  std::function<void()> onTabsChanged;

 private:
  // All that a journal depends on, except for the places of cursors.
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
  const std::string root_;            // of all journals
  std::unique_ptr<Journal> journal_;  // used by the pool's thread while one is busy
  BuildSession& session_;
  EditorTabs& editors_;
  Banner& banner_;
  QTimer timer_;
  QThreadPool pool_;
  Signature signature_;  // of what the journal holds; empty if that is unknown
  QStringList tabs_;
  QStringList tooLarge_;  // paths of texts that the journal leaves out
  QString problem_;       // in the banner, unless the user has hidden it
  bool isWriting_ = false;
  bool isEmpty_ = true;
  // Of the last write, so that what stays the same isn't written again.
  JournalContent last_;
  std::int32_t lastCount_ = -1;  // change count of its project
};

}  // namespace tarn::host
