#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QStringList>
#include <QThreadPool>
#include <QTimer>
#include <functional>
#include <memory>
#include <set>
#include <string>

#include "hosts/desktop/Journal.h"
#include "hosts/frame/BuildSession.h"

class QStatusBar;

namespace tarn::host {

class EditorTabs;

// Writes what isn't saved, of the editors and the project, into the journal of this process about a
// second after it changed, and clears the journal as soon as everything is saved. Writes on a
// thread of its own, so that no key waits for the disk; if the journal can't be written, the status
// bar says so once.
//
// Borrows all but the journal. On the main thread.
class JournalKeeper : public QObject {
  Q_DECLARE_TR_FUNCTIONS(JournalKeeper)

 public:
  // Without a journal nothing is written, and `problem` says why there is none.
  JournalKeeper(TakenJournals& taken, BuildSession& buildSession, EditorTabs& editorTabs,
                QStatusBar& statusBar);
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
  void TellTooLarge(const std::string& path);
  Status Store(const JournalContent& content);
  void Follow();
  void Finish(const Status& stored);

  std::unique_ptr<Journal> journal_;  // used by the pool's thread while one is busy
  BuildSession& session_;
  EditorTabs& editors_;
  QStatusBar& bar_;
  QTimer timer_;
  QThreadPool pool_;
  Signature signature_;
  std::set<std::string> tooLarge_;  // files that the user has been told of
  bool isWriting_ = false;
  bool hasFailed_ = false;
  bool isEmpty_ = true;
  // Of the last write, so that what stays the same isn't written again.
  JournalContent last_;
  std::int32_t lastCount_ = -1;  // change count of its project
};

}  // namespace tarn::host
