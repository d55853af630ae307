#include "hosts/desktop/OptionsDelegate.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>
#include <QTreeView>

#include "hosts/desktop/OptionEditors.h"
#include "widgets/qt/QtColor.h"

namespace tarn::host {

namespace {

constexpr int kRowPadding = 8;  // top and bottom together
constexpr int kResetSize = 18;  // the button, square
constexpr int kBubbleMargin = 6;

// In a dark palette some styles draw boxes that are indistinguishable from the background.
void OutlineCheckBox(QPainter& painter, const QStyleOptionViewItem& cell) {
  const QStyle& style = cell.widget == nullptr ? *QApplication::style() : *cell.widget->style();
  const QRect box = style.subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &cell, cell.widget);
  QColor colour = cell.palette.color(QPalette::Text);
  colour.setAlphaF(0.4F);
  painter.setPen(colour);
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(box.adjusted(0, 0, -1, -1));
}

QRect ResetRect(const QRect& cell) {
  return QRect(cell.right() - kResetSize - 1, cell.center().y() - kResetSize / 2 + 1, kResetSize,
               kResetSize);
}

// Draws a circular arrow.
void DrawReset(QPainter& painter, const QRect& place, const QColor& colour) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF circle = QRectF(place).adjusted(4.5, 4.5, -4.5, -4.5);
  QPainterPath arc;
  arc.arcMoveTo(circle, 150);
  arc.arcTo(circle, 150, -290);
  painter.setPen(QPen(colour, 1.5, Qt::SolidLine, Qt::RoundCap));
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(arc);
  QPainterPath start;
  start.arcMoveTo(circle, 150);
  const QPointF tip = start.currentPosition();
  const QPolygonF head{tip + QPointF(-2.2, -4), tip + QPointF(-1.6, 2), tip + QPointF(3.8, -0.6)};
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  painter.drawPolygon(head);
  painter.restore();
}

}  // namespace

OptionsDelegate::OptionsDelegate(QTreeView& treeView)
    : QStyledItemDelegate(&treeView), view_(treeView) {}

const OptionRow* OptionsDelegate::RowOf(const QModelIndex& index) const {
  const auto* const model = dynamic_cast<const OptionsModel*>(index.model());
  return model == nullptr ? nullptr : model->RowAt(index);
}

bool OptionsDelegate::HasResetButton(const QModelIndex& index) const {
  if (index.column() != OptionsModel::kSourceColumn) return false;
  const OptionRow* const row = RowOf(index);
  const auto* const model = dynamic_cast<const OptionsModel*>(index.model());
  return row != nullptr && row->MayReset() && model->MayEdit(index);
}

void OptionsDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
  QStyleOptionViewItem cell = option;
  // The focus is shown on the whole row.
  cell.state &= ~QStyle::State_HasFocus;
  if (!HasResetButton(index)) {
    QStyledItemDelegate::paint(painter, cell, index);
    if (IsDarkPalette() && index.data(Qt::CheckStateRole).isValid()) {
      initStyleOption(&cell, index);
      OutlineCheckBox(*painter, cell);
    }
    return;
  }
  const QRect place = ResetRect(option.rect);
  const bool isSelected = (option.state & QStyle::State_Selected) != 0;
  if (isSelected) {
    const QPalette::ColorGroup group =
        (option.state & QStyle::State_Active) != 0 ? QPalette::Active : QPalette::Inactive;
    painter->fillRect(option.rect, option.palette.color(group, QPalette::Highlight));
  }
  cell.rect.setRight(place.left() - 2);
  QStyledItemDelegate::paint(painter, cell, index);
  DrawReset(*painter, place,
            option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text));
}

void OptionsDelegate::initStyleOption(QStyleOptionViewItem* option,
                                      const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  const OptionRow* const row = RowOf(index);
  const bool isPath =
      row != nullptr && (row->kind == OptionKind::File || row->kind == OptionKind::Folder);
  // The ends of paths are the most significant part.
  if (isPath && index.column() == OptionsModel::kValueColumn) {
    option->textElideMode = Qt::ElideMiddle;
  }
}

QSize OptionsDelegate::sizeHint(const QStyleOptionViewItem& option,
                                const QModelIndex& index) const {
  QSize size = QStyledItemDelegate::sizeHint(option, index);
  size.setHeight(QFontMetrics(view_.font()).height() + kRowPadding);
  return size;
}

QWidget* OptionsDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                       const QModelIndex& index) const {
  const OptionRow* const row = RowOf(index);
  if (row == nullptr) return nullptr;
  auto* const self = const_cast<OptionsDelegate*>(this);
  edited_ = index;
  hasText_ = false;
  if (row->kind == OptionKind::Choice) {
    auto* const editor = new ChoiceEditor(*row, parent);
    QObject::connect(editor, &QComboBox::activated, self, [self, editor] { self->Finish(editor); });
    editor->onClosed = [self, editor] { self->Close(editor); };
    open_ = editor;
    return editor;
  }
  auto* const editor = new TextEditor(*row, baseFolder, parent);
  editor->Line()->installEventFilter(self);
  QObject::connect(editor->Line(), &QLineEdit::textEdited, self, [self, editor] {
    self->hasText_ = true;
    self->Fits(*editor);
  });
  editor->onChosen = [self, editor] { self->Finish(editor); };
  open_ = editor;
  return editor;
}

void OptionsDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
  const QString text = index.data(Qt::EditRole).toString();
  if (auto* const choice = dynamic_cast<ChoiceEditor*>(editor)) {
    if (!choice->view()->isVisible()) choice->SetText(text);
  } else if (auto* const line = dynamic_cast<TextEditor*>(editor); line != nullptr && !hasText_) {
    // A refresh from the server must not discard the user's input.
    line->SetText(text);
    line->Line()->selectAll();
  }
}

void OptionsDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                   const QModelIndex& index) const {
  if (const auto* const choice = dynamic_cast<ChoiceEditor*>(editor)) {
    if (choice->IsInherit()) {
      if (onReset) onReset(index);
    } else {
      model->setData(index, choice->GetText(), Qt::EditRole);
    }
  } else if (const auto* const text = dynamic_cast<TextEditor*>(editor)) {
    model->setData(index, text->GetText(), Qt::EditRole);
  }
}

void OptionsDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                           const QModelIndex&) const {
  editor->setGeometry(option.rect);
}

void OptionsDelegate::destroyEditor(QWidget* editor, const QModelIndex& index) const {
  delete bubble_.data();
  edited_ = QPersistentModelIndex();
  QStyledItemDelegate::destroyEditor(editor, index);
}

bool OptionsDelegate::editorEvent(QEvent* event, QAbstractItemModel* model,
                                  const QStyleOptionViewItem& option, const QModelIndex& index) {
  if (event->type() == QEvent::MouseButtonRelease && HasResetButton(index)) {
    const auto* const mouse = static_cast<QMouseEvent*>(event);
    const bool isHit = ResetRect(option.rect).contains(mouse->position().toPoint());
    if (mouse->button() == Qt::LeftButton && isHit) {
      if (onReset) onReset(index);
      return true;
    }
  }
  return QStyledItemDelegate::editorEvent(event, model, option, index);
}

bool OptionsDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* itemView,
                                const QStyleOptionViewItem& option, const QModelIndex& index) {
  const bool isTip = event->type() == QEvent::ToolTip && HasResetButton(index);
  if (isTip && ResetRect(option.rect).contains(event->pos())) {
    QToolTip::showText(event->globalPos(), tr("Reset to the inherited value (Del)"), itemView);
    return true;
  }
  return QStyledItemDelegate::helpEvent(event, itemView, option, index);
}

bool OptionsDelegate::Fits(QWidget& editor) {
  const OptionRow* const row = RowOf(edited_);
  const auto* const text = dynamic_cast<TextEditor*>(&editor);
  QString problem;
  if (row != nullptr && text != nullptr && check && text->GetText() != EditText(*row)) {
    problem = check(*row, text->GetText());
  }
  ShowProblem(editor, problem);
  return problem.isEmpty();
}

void OptionsDelegate::ShowProblem(QWidget& editor, const QString& problem) {
  auto* const text = dynamic_cast<TextEditor*>(&editor);
  if (text != nullptr) {
    QPalette colours = view_.palette();
    if (!problem.isEmpty()) {
      colours.setColor(QPalette::Base, IsDarkPalette() ? QColor(0x5c2323) : QColor(0xffe3e0));
    }
    text->Line()->setPalette(colours);
    text->Line()->setAccessibleDescription(problem);
  }
  if (problem.isEmpty()) {
    delete bubble_.data();
    return;
  }
  if (!bubble_) {
    bubble_ = new QLabel(view_.viewport());
    bubble_->setObjectName("problem");
    bubble_->setTextFormat(Qt::PlainText);
    bubble_->setWordWrap(true);
    bubble_->setMargin(kBubbleMargin);
    bubble_->setFrameStyle(QFrame::Box | QFrame::Plain);
    bubble_->setAutoFillBackground(true);
    bubble_->setBackgroundRole(QPalette::Window);
    bubble_->setForegroundRole(QPalette::WindowText);
    const bool isDark = IsDarkPalette();
    QPalette colours = view_.palette();
    colours.setColor(QPalette::Window, isDark ? QColor(0x3a1c1c) : QColor(0xfff4f2));
    colours.setColor(QPalette::WindowText, isDark ? QColor(0xffb4ab) : QColor(0xa3140a));
    bubble_->setPalette(colours);
  }
  bubble_->setText(problem);
  // Placed below the field, or above it if there is not enough space.
  const int width = view_.viewport()->width() - 2 * kBubbleMargin;
  const int height = bubble_->heightForWidth(width);
  const QRect field = editor.geometry();
  const bool isBelow = field.bottom() + height + 2 < view_.viewport()->height();
  bubble_->setGeometry(kBubbleMargin, isBelow ? field.bottom() + 2 : field.top() - height - 2,
                       width, height);
  bubble_->show();
  bubble_->raise();
}

// Commits the value and closes the editor, unless the value is invalid.
void OptionsDelegate::Finish(QWidget* editor) {
  if (editor != open_ || !Fits(*editor)) return;
  Q_EMIT commitData(editor);
  Close(editor);
}

// Closing an editor makes it lose the focus, which must not close it a second time.
void OptionsDelegate::Close(QWidget* editor) {
  if (editor != open_) return;
  open_.clear();
  Q_EMIT closeEditor(editor, NoHint);
}

void OptionsDelegate::FinishOpen() {
  if (open_ && hasText_) Finish(open_);
}

void OptionsDelegate::Abandon() {
  if (open_) Close(open_);
}

bool OptionsDelegate::OnKey(QWidget* editor, int key) {
  switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
      Finish(editor);
      return true;
    case Qt::Key_Escape:
      Close(editor);
      return true;
    default:
      return false;
  }
}

bool OptionsDelegate::eventFilter(QObject* object, QEvent* event) {
  auto* editor = qobject_cast<QWidget*>(object);
  if (editor == nullptr) return false;
  if (editor->parentWidget() != view_.viewport()) editor = editor->parentWidget();
  const auto* const text = dynamic_cast<TextEditor*>(editor);
  switch (event->type()) {
    case QEvent::KeyPress:
      return OnKey(editor, static_cast<QKeyEvent*>(event)->key());
    case QEvent::ShortcutOverride:
      if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) event->accept();
      return false;
    case QEvent::FocusOut: {
      // The field's context menu or dialog takes the focus only temporarily.
      const bool isLent =
          QApplication::activePopupWidget() != nullptr || (text != nullptr && text->IsDialogOpen());
      if (text != nullptr && !isLent) Finish(editor);
      return false;
    }
    default:
      return false;
  }
}

}  // namespace tarn::host
