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

// What a status bar says of builds: while one runs which of how many files is at work, for how
// long, and a button that stops it; behind its end how it went, to be clicked for the log.
class StatusProgress : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(StatusProgress)

 public:
  // Borrows the runner.
  StatusProgress(CommandRunner& commands, QWidget* parent);

  // The runner has been asked for a build. Paths below the folder are shown without it.
  void Begin(const QString& projectFolder);
  void End(BuildEnd end);
  // A text of its own, until the next build.
  void Say(const QString& text);

  std::function<void()> onShowLog;

 private:
  void ShowRunning();
  void ShowIdle(bool isIdle);

  CommandRunner& runner;
  QLabel* text = nullptr;
  QToolButton* outcome = nullptr;
  QProgressBar* bar = nullptr;
  QLabel* clock = nullptr;
  QToolButton* stop = nullptr;
  QTimer ticker;
  QString folder;
};

}  // namespace tarn::host
