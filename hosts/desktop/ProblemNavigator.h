#pragma once

#include <QCoreApplication>
#include <QObject>
#include <functional>
#include <string>

#include "hosts/core/ProblemList.h"

class QMenu;
class QStatusBar;

namespace tarn::host {

// Leads from one error or warning of the last build to the next, and says which of how many it is.
// Borrows the bar.
class ProblemNavigator : public QObject {
  Q_DECLARE_TR_FUNCTIONS(ProblemNavigator)

 public:
  ProblemNavigator(FileSystem& fileSystem, QStatusBar& statusBar);

  void AddActions(QMenu& menu);
  void SetProject(const std::string& path) { problems.SetProject(path); }
  ProblemList& GetList() { return problems; }
  // The user has gone to a place by himself. Like a step, behind what a long log still has to be
  // read.
  void GoTo(const std::string& file, int line);

  // Shows a place.
  std::function<void(const std::string& file, int line)> open;

 private:
  void WhenRead(std::function<void()> action);
  void Step(bool isForward);

  ProblemList problems;
  QStatusBar& bar;
};

}  // namespace tarn::host
