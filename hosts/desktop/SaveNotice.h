#pragma once

#include <QCoreApplication>
#include <functional>
#include <string>

#include "hosts/core/SaveReport.h"

class QTreeWidget;
class QWidget;

namespace tarn::host {

class Banner;

// Shows what a save made of files that another program had changed since they were read: what was
// merged, what is in conflict, and where the other version is. The banner stays until the user
// hides it, also if the next save has nothing to say.
//
// Borrows everything; `window` is the parent of the list. On the main thread.
class SaveNotice {
  Q_DECLARE_TR_FUNCTIONS(SaveNotice)

 public:
  SaveNotice(QWidget& parentWindow, Banner& saveBanner);

  // Nothing changes if there is nothing to say.
  void Show(const SaveReport& report);
  // For a window that is about to close: shows the list, and waits until the user has seen it.
  // Returns at once if there are no conflicts.
  void ShowConflictsNow(const SaveReport& report);

  // The user wants to see a copy that was kept.
  std::function<void(const std::string& path)> onShowFile;

 private:
  void Tell();
  QString Describe(bool hasCopies) const;
  std::vector<std::string> ListCopies() const;
  void ShowList(bool mayOpen);
  void Fill(QTreeWidget& list) const;

  QWidget& window_;
  Banner& banner_;
  SaveReport shown_;  // since the user has hidden the banner
};

}  // namespace tarn::host
