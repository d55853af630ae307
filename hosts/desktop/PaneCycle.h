#pragma once

#include <QCoreApplication>
#include <QList>
#include <functional>
#include <vector>

class QAction;
class QMainWindow;
class QWidget;

namespace tarn::host {

// Leads the keyboard from one part of the main window to the next: the editors, the docks that are
// seen, from left to right, and around again. A part gets it where it had it last. Borrows the
// window, which owns the actions.
class PaneCycle {
  Q_DECLARE_TR_FUNCTIONS(PaneCycle)

 public:
  explicit PaneCycle(QMainWindow& mainWindow);

  // For a menu; their keys work without one.
  QList<QAction*> Actions() const { return {next, previous}; }

  // What has the keyboard among the editors; null when that is no matter.
  std::function<QWidget*()> editor;

 private:
  std::vector<QWidget*> Panes() const;
  void Step(int way);
  void Enter(QWidget& pane);

  QMainWindow& window;
  QAction* next = nullptr;
  QAction* previous = nullptr;
};

}  // namespace tarn::host
