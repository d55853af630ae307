#pragma once

#include <QByteArray>
#include <QList>
#include <functional>

class QAction;
class QMainWindow;
class QMenu;

namespace tarn::host {

// Where the main window, its docks and tool bars stand, from one run to the next. Borrows the
// window, which names all of them.
class WindowLayout {
 public:
  explicit WindowLayout(QMainWindow& mainWindow) : window(mainWindow) {}

  // As soon as everything has its first place: puts it where the user left it.
  void Restore();
  void Save() const;
  // Back to the first places.
  void Reset();
  // Behind Reset, if set: what stands inside of a dock goes back as well.
  std::function<void()> onReset;
  // A menu that shows and hides what there is, with these groups of actions below, and resets the
  // layout; the window owns it.
  QMenu* MakeMenu(const QList<QList<QAction*>>& groups);

 private:
  void Fill(QMenu& menu, const QList<QList<QAction*>>& groups);

  QMainWindow& window;
  QByteArray firstState;
};

}  // namespace tarn::host
