#pragma once

#include <QByteArray>
#include <QList>
#include <functional>

class QAction;
class QMainWindow;
class QMenu;

namespace tarn::host {

// Persists the positions of the main window, its docks and tool bars. Borrows the window, in which
// all of them have object names.
class WindowLayout {
 public:
  explicit WindowLayout(QMainWindow& mainWindow) : window_(mainWindow) {}

  // Restores the stored layout; call this after everything has its default position.
  void Restore();
  void Save() const;
  // Hides the docks and tool bars until ShowPanes(), so that the centre stands alone. No-op if they
  // are hidden already; the stored layout is that with them.
  void HidePanes();
  void ShowPanes();
  // Restores the default positions.
  void Reset();
  // Called after Reset, to restore the layout inside the docks; may be empty.
  std::function<void()> onReset;
  // Creates a menu that shows and hides docks and tool bars, followed by these groups of actions,
  // and resets the layout. The window owns it.
  QMenu* MakeMenu(const QList<QList<QAction*>>& groups);

 private:
  void Fill(QMenu& menu, const QList<QList<QAction*>>& groups);

  QMainWindow& window_;
  QByteArray firstState_;
  QByteArray shownState_;  // while the panes are hidden
};

}  // namespace tarn::host
