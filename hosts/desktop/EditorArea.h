#pragma once

#include <QWidget>

class QStackedWidget;

namespace tarn::host {

class EditorTabs;
class FindBar;
class WelcomePage;

// The middle of the window: the editors with a bar that finds below them, and while no file is open
// the page of ways to one.
class EditorArea : public QWidget {
 public:
  // Takes both as its own.
  EditorArea(EditorTabs& editorTabs, WelcomePage& welcomePage, QWidget* parent);

  FindBar& Finder() { return *findBar; }

 private:
  QStackedWidget* pages = nullptr;
  FindBar* findBar = nullptr;
};

}  // namespace tarn::host
