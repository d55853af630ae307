#pragma once

#include <QCoreApplication>
#include <QObject>
#include <functional>
#include <string>

#include "hosts/core/ProblemList.h"

class QMenu;
class QStatusBar;

namespace tarn::host {

// Jumps to the next or previous error or warning of the last build, and shows its number and the
// total. Borrows the status bar.
class ProblemNavigator : public QObject {
  Q_DECLARE_TR_FUNCTIONS(ProblemNavigator)

 public:
  ProblemNavigator(FileSystem& fileSystem, QStatusBar& statusBar);

  void AddActions(QMenu& menu);
  void SetProject(const std::string& path) { problems_.SetProject(path); }
  ProblemList& GetList() { return problems_; }
  // Records that the user has moved to a position. Like a step, this is deferred until a long log
  // has been read.
  void GoTo(const std::string& file, int line);

  // Opens a file at a line.
  std::function<void(const std::string& file, int line)> open;

 private:
  void WhenRead(std::function<void()> action);
  void Step(bool isForward);

  ProblemList problems_;
  QStatusBar& bar_;
};

}  // namespace tarn::host
