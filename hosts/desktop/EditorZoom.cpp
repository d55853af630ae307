#include "hosts/desktop/EditorZoom.h"

#include <QAction>
#include <QKeySequence>
#include <algorithm>
#include <utility>

#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/DesktopSettings.h"
#include "hosts/desktop/EditorTabs.h"

namespace tarn::host {

namespace {

constexpr const char* kKey = "editor/zoom";
constexpr int kLeast = -6;
constexpr int kMost = 20;

int ZoomOf(const CodeEditor& editor) {
  return static_cast<int>(editor.SendScintilla(QsciScintillaBase::SCI_GETZOOM));
}

}  // namespace

EditorZoom::EditorZoom(EditorTabs& editorTabs)
    : editors_(editorTabs),
      points_(std::clamp(DesktopSettings().value(kKey).toInt(), kLeast, kMost)) {}

void EditorZoom::Add(CodeEditor& editor) {
  editor.zoomTo(points_);
  connect(&editor, &QsciScintilla::SCN_ZOOM, this, [this, &editor] { Set(ZoomOf(editor)); });
}

void EditorZoom::Set(int morePoints) {
  const int before = std::exchange(points_, std::clamp(morePoints, kLeast, kMost));
  for (int index = 0; index < editors_.count(); ++index) {
    // Each editor sends a notification of the change.
    if (ZoomOf(*editors_.At(index)) != points_) editors_.At(index)->zoomTo(points_);
  }
  if (points_ != before) DesktopSettings().setValue(kKey, points_);
}

QList<QAction*> EditorZoom::MakeActions() {
  const auto make = [this](const QString& text, const QList<QKeySequence>& keys, auto target) {
    auto* const action = new QAction(text, &editors_);
    action->setShortcuts(keys);
    editors_.addAction(action);
    connect(action, &QAction::triggered, this, [this, target] { Set(target()); });
    return action;
  };
  return {
      // On layouts where plus requires Shift, the key without Shift works too.
      make(tr("Zoom &in"), {Qt::CTRL | Qt::Key_Plus, Qt::CTRL | Qt::Key_Equal},
           [this] { return points_ + 1; }),
      make(tr("Zoom &out"), {Qt::CTRL | Qt::Key_Minus}, [this] { return points_ - 1; }),
      make(tr("Reset &zoom"), {Qt::CTRL | Qt::Key_0}, [] { return 0; }),
  };
}

}  // namespace tarn::host
