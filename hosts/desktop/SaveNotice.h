#pragma once

#include <QCoreApplication>
#include <functional>
#include <string>

#include "hosts/core/SaveReport.h"

class QTreeWidget;
class QWidget;

namespace tarn::host {

class Banner;

// Shows the result of a save for files that another program had changed since they were read:
// merged changes, conflicts, and the location of the other version. The banner stays until the user
// hides it, even if the next save has nothing to report.
//
// Borrows everything; `window` is the parent of the list. Main thread only.
class SaveNotice {
  Q_DECLARE_TR_FUNCTIONS(SaveNotice)

 public:
  SaveNotice(QWidget& parentWindow, Banner& saveBanner);

  // Shows a report; no-op if it is empty.
  void Show(const SaveReport& report);
  // Call this before a window is closed: shows the list as a modal dialog. Returns immediately if
  // there are no conflicts.
  void ShowConflictsNow(const SaveReport& report);

  // Called when the user wants to see a backup copy.
  std::function<void(const std::string& path)> onShowFile;

 private:
  void Tell();
  QString Describe(bool hasCopies) const;
  std::vector<std::string> ListCopies() const;
  void ShowList(bool mayOpen);
  void Fill(QTreeWidget& list) const;

  QWidget& window_;
  Banner& banner_;
  SaveReport shown_;  // accumulated since the user hid the banner
};

}  // namespace tarn::host
