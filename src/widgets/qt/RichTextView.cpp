#include "widgets/qt/RichTextView.h"

#include <QApplication>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>

namespace tarn {

RichTextView::RichTextView() {
  setUndoRedoEnabled(false);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setLineWrapMode(QPlainTextEdit::NoWrap);
  QScrollBar* const bar = verticalScrollBar();
  connect(bar, &QScrollBar::valueChanged, this,
          [this, bar](int value) { isAtEnd_ = value >= bar->maximum(); });
  connect(bar, &QScrollBar::rangeChanged, this, [this, bar] {
    if (isAtEnd_) bar->setValue(bar->maximum());
  });
  const auto tell = [this] {
    if (listener != nullptr) listener->OnSelectedByUser();
  };
  connect(this, &QPlainTextEdit::selectionChanged, this, tell);
  connect(this, &QPlainTextEdit::cursorPositionChanged, this, tell);
}

std::optional<int> RichTextView::PositionAt(QPoint point) const {
  const QTextBlock block = cursorForPosition(point).block();
  const QPointF corner = blockBoundingGeometry(block).translated(contentOffset()).topLeft();
  const QPointF inside = point - corner;
  const QTextLayout* const layout = block.layout();
  for (int i = 0; i < layout->lineCount(); ++i) {
    const QTextLine line = layout->lineAt(i);
    if (!line.naturalTextRect().contains(inside)) continue;
    const int position = line.xToCursor(inside.x(), QTextLine::CursorOnCharacter);
    // The point is to the right of the last character.
    if (position >= line.textStart() + line.textLength()) return std::nullopt;
    return block.position() + position;
  }
  return std::nullopt;
}

bool RichTextView::focusNextPrevChild(bool next) {
  if (listener != nullptr && listener->GoToLink(next)) return true;
  return QPlainTextEdit::focusNextPrevChild(next);
}

void RichTextView::keyPressEvent(QKeyEvent* event) {
  if (listener != nullptr && listener->OnKey(*event)) return;
  QPlainTextEdit::keyPressEvent(event);
}

// Runs before the window's event filter: the end of a selection that happens to be on a link is not
// a click on it.
bool RichTextView::eventFilter(QObject* watched, QEvent* event) {
  if (watched != viewport() || event->type() != QEvent::MouseButtonRelease) {
    return QPlainTextEdit::eventFilter(watched, event);
  }
  auto& release = static_cast<QMouseEvent&>(*event);
  const QPoint way = release.position().toPoint() - pressedAt_;
  if (release.button() != Qt::LeftButton ||
      way.manhattanLength() < QApplication::startDragDistance()) {
    return false;
  }
  mouseReleaseEvent(&release);
  return true;
}

void RichTextView::mousePressEvent(QMouseEvent* event) {
  pressedAt_ = event->position().toPoint();
  if (listener != nullptr) listener->OnSelecting(event->button() == Qt::LeftButton);
  QPlainTextEdit::mousePressEvent(event);
}

// The second press continues selecting, by words.
void RichTextView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (listener != nullptr) listener->OnSelecting(event->button() == Qt::LeftButton);
  QPlainTextEdit::mouseDoubleClickEvent(event);
}

void RichTextView::mouseMoveEvent(QMouseEvent* event) {
  QPlainTextEdit::mouseMoveEvent(event);
  // The release may have been consumed by a drag.
  if (listener != nullptr && event->buttons() == Qt::NoButton) listener->OnSelecting(false);
  ShowPointed(listener == nullptr ? QTextCursor() : listener->LinkAt(event->position().toPoint()));
}

void RichTextView::ShowPointed(const QTextCursor& link) {
  viewport()->setCursor(link.isNull() ? Qt::IBeamCursor : Qt::PointingHandCursor);
  QList<QTextEdit::ExtraSelection> marks;
  if (!link.isNull()) {
    QTextEdit::ExtraSelection mark;
    mark.cursor = link;
    mark.format.setFontUnderline(true);
    marks.append(mark);
  }
  const QList<QTextEdit::ExtraSelection> shown = extraSelections();
  const bool isSame = marks.size() == shown.size() &&
                      (marks.isEmpty() || (marks[0].cursor.anchor() == shown[0].cursor.anchor() &&
                                           marks[0].cursor == shown[0].cursor));
  if (!isSame) setExtraSelections(marks);
}

void RichTextView::leaveEvent(QEvent* event) {
  QPlainTextEdit::leaveEvent(event);
  ShowPointed({});
}

void RichTextView::mouseReleaseEvent(QMouseEvent* event) {
  QPlainTextEdit::mouseReleaseEvent(event);
  if (listener != nullptr) listener->OnSelecting(false);
}

void RichTextView::hideEvent(QHideEvent* event) {
  QPlainTextEdit::hideEvent(event);
  if (listener != nullptr) listener->OnSelecting(false);
}

void RichTextView::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() != QEvent::PaletteChange || isDark_ == IsDarkPalette()) return;
  isDark_ = IsDarkPalette();
  if (listener != nullptr) listener->OnPaletteTurned();
}

}  // namespace tarn
