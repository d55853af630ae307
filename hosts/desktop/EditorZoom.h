#pragma once

#include <QCoreApplication>
#include <QList>
#include <QObject>

class QAction;

namespace tarn::host {

class CodeEditor;
class EditorTabs;

// How much larger or smaller than usual the texts of all editors are; kept from one run to the
// next. The editors know the usual keys and the wheel with Ctrl by themselves. Borrows the tabs.
class EditorZoom : public QObject {
  Q_DECLARE_TR_FUNCTIONS(EditorZoom)

 public:
  explicit EditorZoom(EditorTabs& editorTabs);

  // One that has been made.
  void Add(CodeEditor& editor);
  // In points; what would be too much or too little is the most or the least.
  void Set(int morePoints);
  // Larger, smaller and the usual size; the tabs own them.
  QList<QAction*> MakeActions();

 private:
  EditorTabs& editors;
  int points = 0;
};

}  // namespace tarn::host
