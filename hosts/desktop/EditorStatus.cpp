#include "hosts/desktop/EditorStatus.h"

#include <QHBoxLayout>
#include <QLabel>

#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/EditorTabs.h"

namespace tarn::host {

EditorStatus::EditorStatus(EditorTabs& editorTabs, QWidget* parent)
    : QWidget(parent),
      editors_(editorTabs),
      place_(new QLabel(this)),
      indentation_(new QLabel(this)),
      lineEnds_(new QLabel(this)),
      encoding_(new QLabel(this)) {
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(6, 0, 6, 0);
  row->setSpacing(18);
  for (QLabel* const each : {place_, indentation_, lineEnds_, encoding_}) row->addWidget(each);
  // Wide enough for most positions, so that the layout is stable while the user types.
  place_->setMinimumWidth(
      fontMetrics().horizontalAdvance(tr("Line %1, column %2").arg(999).arg(99)));
  place_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  connect(&editors_, &QTabWidget::currentChanged, this, [this] { Follow(); });
  Follow();
}

void EditorStatus::Follow() {
  disconnect(followed_);
  CodeEditor* const editor = editors_.Current();
  setVisible(editor != nullptr);
  if (editor == nullptr) return;
  followed_ = connect(editor, &QsciScintilla::cursorPositionChanged, this, [this] { Show(); });
  Show();
}

void EditorStatus::Show() {
  const CodeEditor* const editor = editors_.Current();
  if (editor == nullptr) return;
  int line = 0;
  int column = 0;
  editor->getCursorPosition(&line, &column);
  place_->setText(tr("Line %1, column %2").arg(line + 1).arg(column + 1));
  indentation_->setText(
      editor->indentationsUseTabs() ? tr("Tabs") : tr("%1 spaces").arg(editor->indentationWidth()));
  lineEnds_->setText(editor->eolMode() == QsciScintilla::EolWindows ? "CRLF" : "LF");
  encoding_->setText(editor->IsUtf8() ? QString("UTF-8") : tr("8-bit"));
}

}  // namespace tarn::host
