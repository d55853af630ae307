#pragma once

#include <QCoreApplication>
#include <QList>
#include <functional>
#include <vector>

class QAction;
class QMainWindow;
class QWidget;

namespace tarn::host {

// Moves the keyboard focus between the parts of the main window: the editors and the visible docks
// from left to right, wrapping around. Each part restores the widget that had the focus last.
// Borrows the window, which owns the actions.
class PaneFocusCycle {
  Q_DECLARE_TR_FUNCTIONS(PaneFocusCycle)

 public:
  explicit PaneFocusCycle(QMainWindow& mainWindow);

  // Actions for a menu; their shortcuts work without one.
  QList<QAction*> Actions() const { return {next_, previous_}; }

  // Returns the editor that should get the focus; nullptr if there is none.
  std::function<QWidget*()> editor;

 private:
  std::vector<QWidget*> Panes() const;
  void Step(int way);
  void Enter(QWidget& pane);

  QMainWindow& window_;
  QAction* next_ = nullptr;
  QAction* previous_ = nullptr;
};

}  // namespace tarn::host
