#include "platform/qt/QtRichText.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextLayout>
#include <QTimer>
#include <algorithm>

#include "platform/qt/QtColor.h"
#include "platform/qt/WidgetPeer.h"
#include "platform/qt/WindowInput.h"

namespace tarn {

namespace {

constexpr qint64 kInsertPeriodMs = 17;
constexpr int kLinesAtOnce = 500;
constexpr int kTabColumns = 8;

class QtRichText;

// Stays at the end of its text as long as it stands there. A link is underlined while the mouse is
// over it; what sets it off otherwise is its colour.
class RichTextView : public QPlainTextEdit {
 public:
  RichTextView();

  // The character that is drawn there; nothing beside the text.
  std::optional<int> PositionAt(QPoint point) const;
  bool IsAtEnd() const { return isAtEnd; }

  QtRichText* peer = nullptr;  // null before and behind its life

  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  bool focusNextPrevChild(bool next) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void ShowPointed(const QTextCursor& link);

  bool isAtEnd = true;
  QPoint pressedAt;
  bool isDark = IsDarkPalette();
};

// The document has the control's text up to `shownEnd`, a block for each line.
class QtRichText final : public WidgetPeer<RichTextPeer, RichTextView> {
 public:
  explicit QtRichText(CRichTextCtrl& shownControl);
  ~QtRichText() override;

  void OnTextAppended(TextRange range) override;
  void OnTextReplaced() override;
  void OnSelectionChanged() override;
  bool HitTest(Point point, std::optional<std::size_t>& position) override;
  void OnFontChanged() override;

  // --- From the view ---

  void OnSelectedByUser();
  // While the user selects by mouse nothing is inserted, which would end the selection.
  void SetSelecting(bool selecting);
  // Over the whole of the link there; null beside links.
  QTextCursor LinkAt(QPoint point) const;
  bool GoToLink(bool next);
  // These may end the peer. True when the key was used.
  bool OnKey(const QKeyEvent& event);

 private:
  using Run = std::vector<RichTextRun>::const_iterator;

  Run FindRun(std::size_t byte) const;
  // A link may have several runs; they share its target.
  TextRange LinkWith(Run run) const;
  QTextCursor Select(TextRange link) const;
  std::size_t TextEnd() const { return control.GetText().size() - 1; }
  std::string_view LineText(std::size_t line) const;
  int ToPosition(std::size_t byte) const;
  std::size_t ToByte(int position) const;

  void Schedule();
  void Insert(int maxLines);
  void ShowSelection();

  CRichTextCtrl& control;
  std::vector<std::size_t> lineStarts = {0};
  std::size_t shownEnd = 0;
  QTimer timer;
  QElapsedTimer sinceInsert;
  bool isShowing = false;  // changes of the view are not the user's
  bool isSelecting = false;
};

QFont FixedFont() {
  static const QString preferred = QStringLiteral("DejaVu Sans Mono");
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  if (QFontDatabase::hasFamily(preferred)) font.setFamily(preferred);
  font.setStyleHint(QFont::Monospace);
  return font;
}

QTextCharFormat ToFormat(const RichTextRun& run) {
  QTextCharFormat format;
  // Black is the desktop's own, which is another one for a view that is disabled.
  if (run.color != 0) format.setForeground(ToTextColor(run.color));
  if (run.isBold) format.setFontWeight(QFont::Bold);
  if (run.target != nullptr) {
    format.setAnchor(true);
    format.setAnchorHref(ToQt(*run.target));
  }
  return format;
}

// As ToQt, but without the characters that a document has for its own structure.
QString ToBlockText(std::string_view line) {
  QString text = ToQt(line);
  for (QChar& c : text) {
    const char16_t code = c.unicode();
    if (code == u'\r' || code == u'\x2028' || code == u'\x2029' || code == u'\xFDD0' ||
        code == u'\xFDD1' || code == u'\xFFFC') {
      c = QChar::ReplacementCharacter;
    }
  }
  return text;
}

// Puts text at the end of a document, what looks the same in one go.
class Inserter {
 public:
  explicit Inserter(QTextCursor& insertionPoint) : cursor(insertionPoint) {}

  void Add(const QString& text, const RichTextRun& run) {
    if (last == nullptr || last->color != run.color || last->isBold != run.isBold ||
        last->target != run.target) {
      Finish();
      format = ToFormat(run);
      last = &run;
    }
    buffer += text;
  }
  void Finish() {
    if (!buffer.isEmpty()) cursor.insertText(buffer, format);
    buffer.clear();
  }

 private:
  QTextCursor& cursor;
  const RichTextRun* last = nullptr;
  QTextCharFormat format;
  QString buffer;
};

// --- RichTextView ---

RichTextView::RichTextView() {
  setUndoRedoEnabled(false);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setLineWrapMode(QPlainTextEdit::NoWrap);
  QScrollBar* const bar = verticalScrollBar();
  connect(bar, &QScrollBar::valueChanged, this,
          [this, bar](int value) { isAtEnd = value >= bar->maximum(); });
  connect(bar, &QScrollBar::rangeChanged, this, [this, bar] {
    if (isAtEnd) bar->setValue(bar->maximum());
  });
  const auto tell = [this] {
    if (peer != nullptr) peer->OnSelectedByUser();
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
    // Right of the last character.
    if (position >= line.textStart() + line.textLength()) return std::nullopt;
    return block.position() + position;
  }
  return std::nullopt;
}

bool RichTextView::focusNextPrevChild(bool next) {
  if (peer != nullptr && peer->GoToLink(next)) return true;
  return QPlainTextEdit::focusNextPrevChild(next);
}

void RichTextView::keyPressEvent(QKeyEvent* event) {
  if (peer != nullptr && peer->OnKey(*event)) return;
  QPlainTextEdit::keyPressEvent(event);
}

// Ahead of the window's: the end of a selection that happens to lie on a link is no click on it.
bool RichTextView::eventFilter(QObject* watched, QEvent* event) {
  if (watched != viewport() || event->type() != QEvent::MouseButtonRelease) {
    return QPlainTextEdit::eventFilter(watched, event);
  }
  auto& release = static_cast<QMouseEvent&>(*event);
  const QPoint way = release.position().toPoint() - pressedAt;
  if (release.button() != Qt::LeftButton ||
      way.manhattanLength() < QApplication::startDragDistance()) {
    return false;
  }
  mouseReleaseEvent(&release);
  return true;
}

void RichTextView::mousePressEvent(QMouseEvent* event) {
  pressedAt = event->position().toPoint();
  if (peer != nullptr) peer->SetSelecting(event->button() == Qt::LeftButton);
  QPlainTextEdit::mousePressEvent(event);
}

// The second press goes on selecting, by words.
void RichTextView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (peer != nullptr) peer->SetSelecting(event->button() == Qt::LeftButton);
  QPlainTextEdit::mouseDoubleClickEvent(event);
}

void RichTextView::mouseMoveEvent(QMouseEvent* event) {
  QPlainTextEdit::mouseMoveEvent(event);
  // The release may have been a drag's.
  if (peer != nullptr && event->buttons() == Qt::NoButton) peer->SetSelecting(false);
  ShowPointed(peer == nullptr ? QTextCursor() : peer->LinkAt(event->position().toPoint()));
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
  if (peer != nullptr) peer->SetSelecting(false);
}

void RichTextView::hideEvent(QHideEvent* event) {
  QPlainTextEdit::hideEvent(event);
  if (peer != nullptr) peer->SetSelecting(false);
}

void RichTextView::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() != QEvent::PaletteChange || isDark == IsDarkPalette()) return;
  isDark = IsDarkPalette();
  if (peer != nullptr) peer->OnTextReplaced();
}

// --- QtRichText ---

QtRichText::QtRichText(CRichTextCtrl& shownControl)
    : WidgetPeer(shownControl, new RichTextView), control(shownControl) {
  if (!HasFrame(control)) widget->setFrameShape(QFrame::NoFrame);
  QtRichText::OnFontChanged();
  widget->peer = this;
  new WindowInput(control, *widget, kInputSize | kInputFocus | kInputKeys | kInputContextMenu);
  new WindowInput(control, *widget->viewport(),
                  kInputMouseHeard | kInputContextMenu | kInputFileDrops);
  widget->viewport()->installEventFilter(widget);
  timer.setSingleShot(true);
  QObject::connect(&timer, &QTimer::timeout, &timer, [this] { Insert(kLinesAtOnce); });
  sinceInsert.start();
  Schedule();
}

QtRichText::~QtRichText() {
  if (widget != nullptr) widget->peer = nullptr;
}

void QtRichText::OnTextAppended(TextRange /*range*/) {
  Schedule();
}

void QtRichText::OnTextReplaced() {
  lineStarts = {0};
  shownEnd = 0;
  if (widget == nullptr) return;
  const QScopedValueRollback<bool> own(isShowing, true);
  widget->clear();
  Schedule();
}

void QtRichText::OnSelectionChanged() {
  // With text that is still to come it is shown behind that.
  if (widget != nullptr && shownEnd == TextEnd()) ShowSelection();
}

bool QtRichText::HitTest(Point point, std::optional<std::size_t>& position) {
  position.reset();
  if (widget == nullptr) return true;
  if (const auto at = widget->PositionAt({point.x, point.y})) position = ToByte(*at);
  return true;
}

void QtRichText::OnFontChanged() {
  if (widget == nullptr) return;
  const QFont fixed = FixedFont();
  QFont font = ToQtFont(control.GetFont(), fixed);
  // What would stand in for a missing face may not be of one width.
  if (!QFontDatabase::hasFamily(font.family())) font.setFamily(fixed.family());
  widget->setFont(font);
  widget->setTabStopDistance(kTabColumns *
                             QFontMetricsF(widget->font()).horizontalAdvance(QLatin1Char(' ')));
}

void QtRichText::OnSelectedByUser() {
  if (isShowing) return;
  const QTextCursor cursor = widget->textCursor();
  control.NotifySelected({ToByte(cursor.selectionStart()), ToByte(cursor.selectionEnd())});
}

void QtRichText::SetSelecting(bool selecting) {
  isSelecting = selecting;
  if (isSelecting) timer.stop();
  Schedule();
}

QTextCursor QtRichText::LinkAt(QPoint point) const {
  const auto position = widget->PositionAt(point);
  if (!position) return {};
  const std::vector<RichTextRun>& runs = control.GetRuns();
  const auto run = FindRun(ToByte(*position));
  if (run == runs.end() || run->target == nullptr) return {};
  return Select(LinkWith(run));
}

QtRichText::Run QtRichText::FindRun(std::size_t byte) const {
  const std::vector<RichTextRun>& runs = control.GetRuns();
  return std::partition_point(runs.begin(), runs.end(),
                              [byte](const RichTextRun& run) { return run.range.end <= byte; });
}

TextRange QtRichText::LinkWith(Run run) const {
  const std::vector<RichTextRun>& runs = control.GetRuns();
  Run first = run;
  while (first != runs.begin() && (first - 1)->target == run->target) --first;
  Run last = run;
  while (last + 1 != runs.end() && (last + 1)->target == run->target) ++last;
  return {first->range.start, last->range.end};
}

// The end first, so that the beginning of a long one is seen.
QTextCursor QtRichText::Select(TextRange link) const {
  QTextCursor cursor = widget->textCursor();
  cursor.setPosition(ToPosition(link.end));
  cursor.setPosition(ToPosition(link.start), QTextCursor::KeepAnchor);
  return cursor;
}

bool QtRichText::GoToLink(bool next) {
  const std::vector<RichTextRun>& runs = control.GetRuns();
  const TextRange selected = control.GetSelection();
  const std::string* const left = control.GetLinkAt(selected.start);
  const auto isOther = [left](const RichTextRun& run) {
    return run.target != nullptr && run.target.get() != left;
  };
  const Run here = FindRun(selected.start);
  auto found = runs.end();
  if (next) {
    found = std::find_if(here, runs.end(), isOther);
  } else {
    const auto before = std::find_if(std::make_reverse_iterator(here), runs.rend(), isOther);
    if (before != runs.rend()) found = before.base() - 1;
  }
  if (found == runs.end()) return false;
  const TextRange link = LinkWith(found);
  while (shownEnd < link.end) Insert(kLinesAtOnce);
  widget->setTextCursor(Select(link));
  return true;
}

bool QtRichText::OnKey(const QKeyEvent& event) {
  if (event.matches(QKeySequence::Copy)) {
    control.Copy();
    return true;
  }
  if (event.key() != Qt::Key_Return && event.key() != Qt::Key_Enter) return false;
  const std::size_t position = control.GetSelection().start;
  if (control.GetLinkAt(position) == nullptr) return false;
  control.NotifyLinkKey(position);
  return true;
}

std::string_view QtRichText::LineText(std::size_t line) const {
  const std::size_t start = lineStarts[line];
  const std::size_t end = line + 1 < lineStarts.size() ? lineStarts[line + 1] - 1 : shownEnd;
  return std::string_view(control.GetText()).substr(start, end - start);
}

int QtRichText::ToPosition(std::size_t byte) const {
  const auto behind = std::upper_bound(lineStarts.begin(), lineStarts.end(), byte);
  const auto line = static_cast<std::size_t>(behind - lineStarts.begin()) - 1;
  const QTextBlock block = widget->document()->findBlockByNumber(static_cast<int>(line));
  return block.position() + ToQtPosition(LineText(line), byte - lineStarts[line]);
}

std::size_t QtRichText::ToByte(int position) const {
  const QTextBlock block = widget->document()->findBlock(position);
  const auto line = static_cast<std::size_t>(block.blockNumber());
  return lineStarts[line] + FromQtPosition(LineText(line), position - block.position());
}

void QtRichText::Schedule() {
  if (timer.isActive() || isSelecting || shownEnd == TextEnd()) return;
  const qint64 due = std::max<qint64>(0, kInsertPeriodMs - sinceInsert.elapsed());
  timer.start(static_cast<int>(due));
}

void QtRichText::Insert(int maxLines) {
  const std::size_t end = TextEnd();
  if (shownEnd == end) return;
  if (widget == nullptr) {
    shownEnd = end;
    return;
  }
  const QScopedValueRollback<bool> own(isShowing, true);
  const bool stoodAtEnd = widget->IsAtEnd();
  const int top = widget->verticalScrollBar()->value();
  const int left = widget->horizontalScrollBar()->value();

  QTextCursor cursor(widget->document());
  cursor.beginEditBlock();
  // A line that had begun is written anew: its next part may complete a character.
  cursor.movePosition(QTextCursor::End);
  cursor.movePosition(QTextCursor::StartOfBlock, QTextCursor::KeepAnchor);
  cursor.removeSelectedText();
  const std::string& text = control.GetText();
  const std::vector<RichTextRun>& runs = control.GetRuns();
  std::size_t start = lineStarts.back();
  auto run = std::partition_point(runs.begin(), runs.end(), [start](const RichTextRun& each) {
    return each.range.end <= start;
  });
  Inserter inserter(cursor);
  for (int lines = 0; lines < maxLines && shownEnd != end; ++lines) {
    const std::size_t lineEnd = std::min(text.find('\n', start), end);
    const std::string_view line = std::string_view(text).substr(start, lineEnd - start);
    const QString shown = ToBlockText(line);
    int from = 0;
    for (; run->range.end < lineEnd; ++run) {
      const int to = ToQtPosition(line, run->range.end - start);
      inserter.Add(shown.mid(from, to - from), *run);
      from = to;
    }
    inserter.Add(shown.mid(from), *run);
    shownEnd = lineEnd;
    if (lineEnd == end) break;
    if (run->range.end == lineEnd) ++run;
    inserter.Add(QStringLiteral("\n"), *run);
    start = lineEnd + 1;
    if (run->range.end == start && start != end) ++run;
    shownEnd = start;
    lineStarts.push_back(start);
  }
  inserter.Finish();
  cursor.endEditBlock();

  if (shownEnd == end) ShowSelection();
  QScrollBar* const bar = widget->verticalScrollBar();
  bar->setValue(stoodAtEnd ? bar->maximum() : top);
  widget->horizontalScrollBar()->setValue(left);
  sinceInsert.restart();
  Schedule();
}

void QtRichText::ShowSelection() {
  const QScopedValueRollback<bool> own(isShowing, true);
  const TextRange wanted = control.GetSelection().Within(TextEnd());
  const int start = ToPosition(wanted.start);
  const int end = ToPosition(wanted.end);
  QTextCursor cursor = widget->textCursor();
  // The user may have selected backwards.
  if (cursor.selectionStart() == start && cursor.selectionEnd() == end) return;
  cursor.setPosition(start);
  cursor.setPosition(end, QTextCursor::KeepAnchor);
  widget->setTextCursor(cursor);
}

}  // namespace

std::unique_ptr<RichTextPeer> MakeRichTextPeer(CRichTextCtrl& control) {
  return std::make_unique<QtRichText>(control);
}

}  // namespace tarn
