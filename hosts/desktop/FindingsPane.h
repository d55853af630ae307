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

// List of the findings of a project check, in groups, with a summary line. The check runs in steps
// between other events. Borrows session and file system.
class FindingsPane : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(FindingsPane)

 public:
  FindingsPane(BuildSession& buildSession, FileSystem& fileSystem, QWidget* parent);

  // Starts a check of the open project from scratch. No-op while `isBusy` returns true.
  void Start();
  // Aborts a check and empties the list, because the project was closed.
  void Clear();
  bool IsChecking() const { return steps_.isActive(); }

  // Returns true if the project can't be checked now, as during a build.
  std::function<bool()> isBusy;
  // Called when the user activates a finding.
  std::function<void(const Finding&)> onChosen;

 private:
  void Step();
  void Show();
  void AddGroup(FindingKind kind);
  void Choose(const QTreeWidgetItem& item);

  BuildSession& session_;
  FileSystem& files_;
  QTimer steps_;
  std::unique_ptr<ProjectCheck> check_;
  std::vector<Finding> findings_;
  std::string folder_;  // of the project, with a separator at its end
  QLabel* summary_;
  QTreeWidget* list_;
};

}  // namespace tarn::host
