#pragma once

#include <QCoreApplication>
#include <QString>
#include <QTimer>
#include <QWidget>
#include <functional>

#include "hosts/desktop/CommandRunner.h"

class QLabel;
class QProgressBar;
class QToolButton;

namespace tarn::host {

// Build status in a status bar: during a build the number of files that were built, the running
// tools, with their files in the tooltip, the elapsed and the remaining time, and a button to stop;
// after its end the result, which opens the log when clicked.
class StatusProgress : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(StatusProgress)

 public:
  // Borrows the runner.
  StatusProgress(CommandRunner& commands, QWidget* parent);

  // Call this when a build was requested. Paths below the folder are shown relative to it.
  void Begin(const QString& projectFolder);
  // Shows the result of the build.
  void End(BuildEnd end);
  // Shows a text until the next build.
  void Say(const QString& text);

  // Called when the user clicks the result.
  std::function<void()> onShowLog;

 private:
  void ShowRunning();
  void ShowTimes(const BuildProgress& progress);
  QString ShortName(const std::string& file) const;
  void ShowIdle(bool isIdle);

  CommandRunner& runner_;
  QLabel* text_ = nullptr;
  QToolButton* outcome_ = nullptr;
  QProgressBar* bar_ = nullptr;
  QLabel* clock_ = nullptr;
  QToolButton* stop_ = nullptr;
  QTimer ticker_;
  QString folder_;
};

}  // namespace tarn::host
