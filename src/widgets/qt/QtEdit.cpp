#include "widgets/qt/QtEdit.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScopedValueRollback>
#include <QTextCursor>
#include <QTextDocument>
#include <algorithm>
#include <limits>

#include "widgets/qt/WidgetPeer.h"
#include "widgets/qt/WindowInput.h"

namespace tarn {

namespace {

struct Selected {
  int start;
  int end;
};

// The widget that receives mouse events.
QWidget& AreaOf(QLineEdit& field) {
  return field;
}
QWidget& AreaOf(QPlainTextEdit& field) {
  return *field.viewport();
}

QString ContentOf(const QLineEdit& field) {
  return field.text();
}
// Converts the raw text: toPlainText() would replace a non-breaking space by an ordinary one.
QString ContentOf(const QPlainTextEdit& field) {
  QString text = field.document()->toRawText();
  for (QChar& c : text) {
    if (c == QChar::ParagraphSeparator || c == QChar::LineSeparator) c = QLatin1Char('\n');
  }
  return text;
}

void SetText(QLineEdit& field, const QString& text) {
  field.setMaxLength(std::numeric_limits<int>::max());  // otherwise a long text would be truncated
  field.setText(text);
}
void SetText(QPlainTextEdit& field, const QString& text) {
  field.setPlainText(text);
}

Selected SelectionOf(const QLineEdit& field) {
  if (field.hasSelectedText()) return {field.selectionStart(), field.selectionEnd()};
  return {field.cursorPosition(), field.cursorPosition()};
}
Selected SelectionOf(const QPlainTextEdit& field) {
  const QTextCursor cursor = field.textCursor();
  return {cursor.selectionStart(), cursor.selectionEnd()};
}

void Select(QLineEdit& field, Selected range) {
  field.setCursorPosition(range.start);
  if (range.end > range.start) field.setSelection(range.start, range.end - range.start);
}
void Select(QPlainTextEdit& field, Selected range) {
  QTextCursor cursor = field.textCursor();
  cursor.setPosition(range.start);
  cursor.setPosition(range.end, QTextCursor::KeepAnchor);
  field.setTextCursor(cursor);
}

// Applies the user's change, which turned `before` into `shown`. Only the part between the common
// prefix and suffix is replaced: the rest keeps its bytes, even if these are invalid UTF-8. Linear
// in the length of the text.
std::string WithChange(const std::string& before, const QString& shown) {
  const QString old = ToQt(before);
  const qsizetype shorter = std::min(old.size(), shown.size());
  qsizetype front = 0;
  while (front < shorter && old[front] == shown[front]) ++front;
  qsizetype back = 0;
  while (back < shorter - front && old[old.size() - 1 - back] == shown[shown.size() - 1 - back]) {
    ++back;
  }
  // Not inside a surrogate pair.
  if (front > 0 && old[front - 1].isHighSurrogate()) --front;
  if (back > 0 && old[old.size() - back].isLowSurrogate()) --back;
  const std::size_t start = FromQtPosition(before, static_cast<int>(front));
  const std::size_t end = FromQtPosition(before, static_cast<int>(old.size() - back));
  return before.substr(0, start) + FromQt(shown.mid(front, shown.size() - back - front)) +
         before.substr(end);
}

template <class Field>
class QtEdit final : public WidgetPeer<EditPeer, Field> {
  using Base = WidgetPeer<EditPeer, Field>;
  using Base::handle;
  using Base::widget;

 public:
  explicit QtEdit(CEdit& shownEdit) : Base(shownEdit, new Field), edit_(shownEdit) {
    // The context menu is the field's own.
    new WindowInput(edit_, *widget, kInputSize | kInputFocus | kInputKeys);
    new WindowInput(edit_, AreaOf(*widget), kInputMouseHeard | kInputFileDrops);
    QtEdit::OnReadOnlyChanged();
    QtEdit::OnTextChanged();
    QObject::connect(widget.data(), &Field::textChanged, &context_, [this] { OnEdited(); });
    QObject::connect(widget.data(), &Field::cursorPositionChanged, &context_,
                     [this] { OnSelected(); });
    QObject::connect(widget.data(), &Field::selectionChanged, &context_, [this] { OnSelected(); });
  }

  void OnTextChanged() override {
    if (widget == nullptr) return;
    const QScopedValueRollback<bool> own(isShowing_, true);
    SetText(*widget, ToQt(edit_.GetControlText()));
    OnSelectionChanged();
  }
  void OnSelectionChanged() override {
    if (widget == nullptr) return;
    const QScopedValueRollback<bool> own(isShowing_, true);
    const std::string& text = edit_.GetControlText();
    const TextRange range = edit_.GetSelection();
    Select(*widget, {ToQtPosition(text, range.start), ToQtPosition(text, range.end)});
  }
  void OnReadOnlyChanged() override {
    if (widget != nullptr) widget->setReadOnly(edit_.IsReadOnly());
  }

 private:
  void OnEdited() {
    if (isShowing_) return;
    const std::string text = WithChange(edit_.GetControlText(), ContentOf(*widget));
    edit_.NotifyTextEdited(text, SelectedBytes(text));
  }
  void OnSelected() {
    // A selection signal that precedes its text change is reported together with that.
    if (isShowing_ || ContentOf(*widget) != ToQt(edit_.GetControlText())) return;
    edit_.NotifySelected(SelectedBytes(edit_.GetControlText()));
  }
  TextRange SelectedBytes(const std::string& text) const {
    const Selected range = SelectionOf(*widget);
    return {FromQtPosition(text, range.start), FromQtPosition(text, range.end)};
  }

  CEdit& edit_;
  bool isShowing_ = false;  // changes of the field were not made by the user
  QObject context_;         // disconnects the field's signals at the end of the peer
};

}  // namespace

std::unique_ptr<EditPeer> MakeEditPeer(CEdit& edit) {
  if (edit.IsMultiLine()) {
    auto peer = std::make_unique<QtEdit<QPlainTextEdit>>(edit);
    auto* const field = static_cast<QPlainTextEdit*>(WidgetOf(edit));
    field->setTabChangesFocus(true);
    if (!HasFrame(edit)) field->setFrameShape(QFrame::NoFrame);
    if ((edit.GetStyle() & kEditAutoScroll) != 0) field->setLineWrapMode(QPlainTextEdit::NoWrap);
    return peer;
  }
  auto peer = std::make_unique<QtEdit<QLineEdit>>(edit);
  auto* const field = static_cast<QLineEdit*>(WidgetOf(edit));
  field->setFrame(HasFrame(edit));
  return peer;
}

}  // namespace tarn
