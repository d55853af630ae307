#pragma once

#include <QCoreApplication>
#include <QList>
#include <QObject>

class QAction;

namespace tarn::host {

class CodeEditor;
class EditorTabs;

// Zoom factor of all editors, persisted in the settings. The editors handle the usual shortcuts and
// Ctrl+wheel by themselves. Borrows the tabs.
class EditorZoom : public QObject {
  Q_DECLARE_TR_FUNCTIONS(EditorZoom)

 public:
  explicit EditorZoom(EditorTabs& editorTabs);

  // Applies the zoom to a new editor.
  void Add(CodeEditor& editor);
  // Sets the zoom in points, clamped to the supported range.
  void Set(int morePoints);
  // Returns actions for zoom in, zoom out and reset; owned by the tabs.
  QList<QAction*> MakeActions();

 private:
  EditorTabs& editors_;
  int points_ = 0;
};

}  // namespace tarn::host
