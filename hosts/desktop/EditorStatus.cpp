#include "hosts/desktop/EditorStatus.h"

#include <QHBoxLayout>
#include <QLabel>

#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/EditorTabs.h"

namespace tarn::host {

EditorStatus::EditorStatus(EditorTabs& editorTabs, QWidget* parent)
    : QWidget(parent),
      editors(editorTabs),
      place(new QLabel(this)),
      indentation(new QLabel(this)),
      lineEnds(new QLabel(this)),
      encoding(new QLabel(this)) {
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(6, 0, 6, 0);
  row->setSpacing(18);
  for (QLabel* const each : {place, indentation, lineEnds, encoding}) row->addWidget(each);
  // Wide enough for most positions, so that the layout is stable while the user types.
  place->setMinimumWidth(
      fontMetrics().horizontalAdvance(tr("Line %1, column %2").arg(999).arg(99)));
  place->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  connect(&editors, &QTabWidget::currentChanged, this, [this] { Follow(); });
  Follow();
}

void EditorStatus::Follow() {
  disconnect(followed);
  CodeEditor* const editor = editors.Current();
  setVisible(editor != nullptr);
  if (editor == nullptr) return;
  followed = connect(editor, &QsciScintilla::cursorPositionChanged, this, [this] { Show(); });
  Show();
}

void EditorStatus::Show() {
  const CodeEditor* const editor = editors.Current();
  if (editor == nullptr) return;
  int line = 0;
  int column = 0;
  editor->getCursorPosition(&line, &column);
  place->setText(tr("Line %1, column %2").arg(line + 1).arg(column + 1));
  indentation->setText(
      editor->indentationsUseTabs() ? tr("Tabs") : tr("%1 spaces").arg(editor->indentationWidth()));
  lineEnds->setText(editor->eolMode() == QsciScintilla::EolWindows ? "CRLF" : "LF");
  encoding->setText(editor->IsUtf8() ? QString("UTF-8") : tr("8-bit"));
}

}  // namespace tarn::host
