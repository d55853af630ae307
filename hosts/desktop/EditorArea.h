#pragma once

#include <QWidget>

class QStackedWidget;

namespace tarn::host {

class EditorTabs;
class WelcomePage;

// The middle of the window: the editors, and while no file is open the page of ways to one.
class EditorArea : public QWidget {
 public:
  // Takes both as its own.
  EditorArea(EditorTabs& editorTabs, WelcomePage& welcomePage, QWidget* parent);

 private:
  QStackedWidget* pages = nullptr;
};

}  // namespace tarn::host
