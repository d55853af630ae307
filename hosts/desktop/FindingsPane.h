#pragma once

#include <QCoreApplication>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "hosts/core/check/ProjectCheck.h"

class QLabel;
class QTreeWidget;
class QTreeWidgetItem;

namespace tarn::host {

// The list of what a check of the project has found, in groups, with a line that sums it up. The
// check runs in steps between other events. Borrows the session and the disk.
class FindingsPane : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(FindingsPane)

 public:
  FindingsPane(BuildSession& buildSession, FileSystem& fileSystem, QWidget* parent);

  // Checks the open project from the start. Does nothing while `isBusy`.
  void Start();
  // Ends a check and empties the list, as its project is gone.
  void Clear();
  bool IsChecking() const { return steps.isActive(); }

  // Whether the project can't be looked at now, as during a build.
  std::function<bool()> isBusy;
  // The user has activated a finding.
  std::function<void(const Finding&)> onChosen;

 private:
  void Step();
  void Show();
  void AddGroup(FindingKind kind);
  void Choose(const QTreeWidgetItem& item);

  BuildSession& session;
  FileSystem& files;
  QTimer steps;
  std::unique_ptr<ProjectCheck> check;
  std::vector<Finding> findings;
  std::string folder;  // of the project, with a separator at its end
  QLabel* summary;
  QTreeWidget* list;
};

}  // namespace tarn::host
