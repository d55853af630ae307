#include "widgets/qt/QtRichText.h"

#include <QElapsedTimer>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTextBlock>
#include <QTimer>
#include <algorithm>

#include "widgets/qt/RichTextInserter.h"
#include "widgets/qt/RichTextView.h"
#include "widgets/qt/WidgetPeer.h"
#include "widgets/qt/WindowInput.h"

namespace tarn {

namespace {

constexpr qint64 kInsertPeriodMs = 17;
constexpr int kLinesAtOnce = 500;
constexpr int kTabColumns = 8;

// The document contains the control's text up to `shownEnd`, one block per line.
class QtRichText final : public WidgetPeer<RichTextPeer, RichTextView>, public RichTextListener {
 public:
  explicit QtRichText(CRichTextCtrl& shownControl);
  ~QtRichText() override;

  void OnTextAppended(TextRange range) override;
  void OnTextReplaced() override;
  void OnSelectionChanged() override;
  bool HitTest(Point point, std::optional<std::size_t>& position) override;
  void OnFontChanged() override;

  void OnSelectedByUser() override;
  // While selecting, nothing is inserted, since that would end the selection.
  void OnSelecting(bool begins) override;
  void OnPaletteTurned() override { OnTextReplaced(); }
  QTextCursor LinkAt(QPoint point) const override;
  bool GoToLink(bool next) override;
  bool OnKey(const QKeyEvent& event) override;

 private:
  using Run = std::vector<RichTextRun>::const_iterator;

  Run FindRun(std::size_t byte) const;
  // A link may consist of several runs with the same target.
  TextRange LinkWith(Run run) const;
  QTextCursor Select(TextRange link) const;
  std::size_t TextEnd() const { return control_.GetText().size() - 1; }
  std::string_view LineText(std::size_t line) const;
  int ToPosition(std::size_t byte) const;
  std::size_t ToByte(int position) const;

  void Schedule();
  void Insert(int maxLines);
  void ShowSelection();

  CRichTextCtrl& control_;
  std::vector<std::size_t> lineStarts_ = {0};
  std::size_t shownEnd_ = 0;
  QTimer timer_;
  QElapsedTimer sinceInsert_;
  bool isShowing_ = false;  // changes of the view were not made by the user
  bool isSelecting_ = false;
};

QFont FixedFont() {
  static const QString preferred = QStringLiteral("DejaVu Sans Mono");
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  if (QFontDatabase::hasFamily(preferred)) font.setFamily(preferred);
  font.setStyleHint(QFont::Monospace);
  return font;
}

QtRichText::QtRichText(CRichTextCtrl& shownControl)
    : WidgetPeer(shownControl, new RichTextView), control_(shownControl) {
  if (!HasFrame(control_)) widget->setFrameShape(QFrame::NoFrame);
  QtRichText::OnFontChanged();
  widget->listener = this;
  new WindowInput(control_, *widget, kInputSize | kInputFocus | kInputKeys | kInputContextMenu);
  new WindowInput(control_, *widget->viewport(),
                  kInputMouseHeard | kInputContextMenu | kInputFileDrops);
  widget->viewport()->installEventFilter(widget);
  timer_.setSingleShot(true);
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { Insert(kLinesAtOnce); });
  sinceInsert_.start();
  Schedule();
}

QtRichText::~QtRichText() {
  if (widget != nullptr) widget->listener = nullptr;
}

void QtRichText::OnTextAppended(TextRange /*range*/) {
  Schedule();
}

void QtRichText::OnTextReplaced() {
  lineStarts_ = {0};
  shownEnd_ = 0;
  if (widget == nullptr) return;
  const QScopedValueRollback<bool> own(isShowing_, true);
  widget->clear();
  Schedule();
}

void QtRichText::OnSelectionChanged() {
  // While text is pending, the selection is shown after its insertion.
  if (widget != nullptr && shownEnd_ == TextEnd()) ShowSelection();
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
  QFont font = ToQtFont(control_.GetFont(), fixed);
  // The fallback of a missing font may not be monospaced.
  if (!QFontDatabase::hasFamily(font.family())) font.setFamily(fixed.family());
  widget->setFont(font);
  widget->setTabStopDistance(kTabColumns *
                             QFontMetricsF(widget->font()).horizontalAdvance(QLatin1Char(' ')));
}

void QtRichText::OnSelectedByUser() {
  if (isShowing_) return;
  const QTextCursor cursor = widget->textCursor();
  control_.NotifySelected({ToByte(cursor.selectionStart()), ToByte(cursor.selectionEnd())});
}

void QtRichText::OnSelecting(bool begins) {
  isSelecting_ = begins;
  if (isSelecting_) timer_.stop();
  Schedule();
}

QTextCursor QtRichText::LinkAt(QPoint point) const {
  const auto position = widget->PositionAt(point);
  if (!position) return {};
  const std::vector<RichTextRun>& runs = control_.GetRuns();
  const auto run = FindRun(ToByte(*position));
  if (run == runs.end() || run->target == nullptr) return {};
  return Select(LinkWith(run));
}

QtRichText::Run QtRichText::FindRun(std::size_t byte) const {
  const std::vector<RichTextRun>& runs = control_.GetRuns();
  return std::partition_point(runs.begin(), runs.end(),
                              [byte](const RichTextRun& run) { return run.range.end <= byte; });
}

TextRange QtRichText::LinkWith(Run run) const {
  const std::vector<RichTextRun>& runs = control_.GetRuns();
  Run first = run;
  while (first != runs.begin() && (first - 1)->target == run->target) --first;
  Run last = run;
  while (last + 1 != runs.end() && (last + 1)->target == run->target) ++last;
  return {first->range.start, last->range.end};
}

// Places the cursor at the start, so that the beginning of a long link is visible.
QTextCursor QtRichText::Select(TextRange link) const {
  QTextCursor cursor = widget->textCursor();
  cursor.setPosition(ToPosition(link.end));
  cursor.setPosition(ToPosition(link.start), QTextCursor::KeepAnchor);
  return cursor;
}

bool QtRichText::GoToLink(bool next) {
  const std::vector<RichTextRun>& runs = control_.GetRuns();
  const TextRange selected = control_.GetSelection();
  const std::string* const left = control_.GetLinkAt(selected.start);
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
  while (shownEnd_ < link.end) Insert(kLinesAtOnce);
  widget->setTextCursor(Select(link));
  return true;
}

bool QtRichText::OnKey(const QKeyEvent& event) {
  if (event.matches(QKeySequence::Copy)) {
    control_.Copy();
    return true;
  }
  if (event.key() != Qt::Key_Return && event.key() != Qt::Key_Enter) return false;
  const std::size_t position = control_.GetSelection().start;
  if (control_.GetLinkAt(position) == nullptr) return false;
  control_.NotifyLinkKey(position);
  return true;
}

std::string_view QtRichText::LineText(std::size_t line) const {
  const std::size_t start = lineStarts_[line];
  const std::size_t end = line + 1 < lineStarts_.size() ? lineStarts_[line + 1] - 1 : shownEnd_;
  return std::string_view(control_.GetText()).substr(start, end - start);
}

int QtRichText::ToPosition(std::size_t byte) const {
  const auto behind = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), byte);
  const auto line = static_cast<std::size_t>(behind - lineStarts_.begin()) - 1;
  const QTextBlock block = widget->document()->findBlockByNumber(static_cast<int>(line));
  return block.position() + ToQtPosition(LineText(line), byte - lineStarts_[line]);
}

std::size_t QtRichText::ToByte(int position) const {
  const QTextBlock block = widget->document()->findBlock(position);
  const auto line = static_cast<std::size_t>(block.blockNumber());
  return lineStarts_[line] + FromQtPosition(LineText(line), position - block.position());
}

void QtRichText::Schedule() {
  if (timer_.isActive() || isSelecting_ || shownEnd_ == TextEnd()) return;
  const qint64 due = std::max<qint64>(0, kInsertPeriodMs - sinceInsert_.elapsed());
  timer_.start(static_cast<int>(due));
}

void QtRichText::Insert(int maxLines) {
  const std::size_t end = TextEnd();
  if (shownEnd_ == end) return;
  if (widget == nullptr) {
    shownEnd_ = end;
    return;
  }
  const QScopedValueRollback<bool> own(isShowing_, true);
  const bool stoodAtEnd = widget->IsAtEnd();
  const int top = widget->verticalScrollBar()->value();
  const int left = widget->horizontalScrollBar()->value();

  QTextCursor cursor(widget->document());
  cursor.beginEditBlock();
  // Rewrites an incomplete last line: its next part may complete a character.
  cursor.movePosition(QTextCursor::End);
  cursor.movePosition(QTextCursor::StartOfBlock, QTextCursor::KeepAnchor);
  cursor.removeSelectedText();
  const std::string& text = control_.GetText();
  std::size_t start = lineStarts_.back();
  RichTextInserter inserter(cursor, text, control_.GetRuns(), start);
  for (int lines = 0; lines < maxLines && shownEnd_ != end; ++lines) {
    shownEnd_ = std::min(text.find('\n', start), end);
    inserter.AddLine({start, shownEnd_});
    if (shownEnd_ == end) break;
    inserter.AddBreak(shownEnd_);
    start = ++shownEnd_;
    lineStarts_.push_back(start);
  }
  inserter.Finish();
  cursor.endEditBlock();

  if (shownEnd_ == end) ShowSelection();
  QScrollBar* const bar = widget->verticalScrollBar();
  bar->setValue(stoodAtEnd ? bar->maximum() : top);
  widget->horizontalScrollBar()->setValue(left);
  sinceInsert_.restart();
  Schedule();
}

void QtRichText::ShowSelection() {
  const QScopedValueRollback<bool> own(isShowing_, true);
  const TextRange wanted = control_.GetSelection().Within(TextEnd());
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
