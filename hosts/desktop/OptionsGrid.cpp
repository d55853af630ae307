#include "hosts/desktop/OptionsGrid.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

namespace tarn::host {

namespace {

constexpr int kIndent = 14;
constexpr double kLeastShare = 0.05;

QModelIndex ValueOf(const QModelIndex& index) {
  return index.siblingAtColumn(OptionsModel::kValueColumn);
}

}  // namespace

OptionsGrid::OptionsGrid(QWidget* parent) : QTreeView(parent) {
  setModel(&model_);
  setItemDelegate(&delegate_);
  setAccessibleName(OptionsModel::tr("Options"));
  setUniformRowHeights(true);
  setIndentation(kIndent);
  setFrameShape(QFrame::NoFrame);
  setAllColumnsShowFocus(true);
  setSelectionBehavior(SelectRows);
  setEditTriggers(EditKeyPressed | AnyKeyPressed);
  setExpandsOnDoubleClick(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  header()->setStretchLastSection(false);
  header()->setSectionsMovable(false);
  header()->setHighlightSections(false);
  header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  connect(this, &QTreeView::doubleClicked, this, [this](const QModelIndex& index) {
    const bool isName = index.column() == OptionsModel::kNameColumn;
    if (isName && model_.RowAt(index) != nullptr) Edit(ValueOf(index));
  });
  connect(header(), &QHeaderView::sectionResized, this, [this](int column, int, int size) {
    if (isLayingOut_ || viewport()->width() <= 0) return;
    const double share = static_cast<double>(size) / viewport()->width();
    if (column == OptionsModel::kNameColumn) shares_.name = share;
    if (column == OptionsModel::kValueColumn) shares_.value = share;
    LayOutColumns();
  });
}

void OptionsGrid::MakeCurrent(const QModelIndex& option) {
  setCurrentIndex(ValueOf(option));
}

void OptionsGrid::SetShares(Shares newShares) {
  const double source = 1 - newShares.name - newShares.value;
  // The comparisons also reject NaN.
  const bool isUsable =
      newShares.name >= kLeastShare && newShares.value >= kLeastShare && source >= 0;
  if (!isUsable) return;
  shares_ = newShares;
  LayOutColumns();
}

void OptionsGrid::LayOutColumns() {
  const int width = viewport()->width();
  const int name = qRound(width * shares_.name);
  const int value = qRound(width * shares_.value);
  isLayingOut_ = true;
  setColumnWidth(OptionsModel::kNameColumn, name);
  setColumnWidth(OptionsModel::kValueColumn, value);
  setColumnWidth(OptionsModel::kSourceColumn, std::max(width - name - value, 0));
  isLayingOut_ = false;
}

void OptionsGrid::resizeEvent(QResizeEvent* event) {
  QTreeView::resizeEvent(event);
  if (event->size().width() != event->oldSize().width()) LayOutColumns();
}

void OptionsGrid::Edit(const QModelIndex& value) {
  const Qt::ItemFlags flags = model_.flags(value);
  if ((flags & Qt::ItemIsEditable) != 0) {
    edit(value);
  } else if ((flags & Qt::ItemIsUserCheckable) != 0) {
    const bool isOn = value.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    model_.setData(value, isOn ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
  }
}

bool OptionsGrid::OnKey(int key) {
  const OptionRow* const row = CurrentRow();
  switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (row == nullptr) {
        setExpanded(currentIndex(), !isExpanded(currentIndex()));
      } else {
        Edit(ValueOf(currentIndex()));
      }
      return true;
    case Qt::Key_Delete:
      if (row == nullptr) return false;
      if (row->MayReset() && model_.MayEdit(currentIndex()) && delegate_.onReset) {
        delegate_.onReset(currentIndex());
      }
      return true;
    default:
      return false;
  }
}

void OptionsGrid::keyPressEvent(QKeyEvent* event) {
  const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == 0;
  if (isPlain && currentIndex().isValid() && state() != EditingState && OnKey(event->key())) {
    event->accept();
    return;
  }
  QTreeView::keyPressEvent(event);
}

void OptionsGrid::mouseReleaseEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->position().toPoint());
  const bool isValue = event->button() == Qt::LeftButton &&
                       index.column() == OptionsModel::kValueColumn && index == currentIndex();
  QTreeView::mouseReleaseEvent(event);
  // A check box has already handled the click.
  if (isValue && (model_.flags(index) & Qt::ItemIsEditable) != 0 && state() != EditingState) {
    edit(index);
  }
}

// The current cell is always a value, so that keys edit it no matter where the row was clicked.
void OptionsGrid::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTreeView::currentChanged(current, previous);
  const int wanted = model_.RowAt(current) == nullptr ? int{OptionsModel::kNameColumn}
                                                      : OptionsModel::kValueColumn;
  if (current.isValid() && current.column() != wanted) {
    selectionModel()->setCurrentIndex(current.siblingAtColumn(wanted),
                                      QItemSelectionModel::NoUpdate);
    return;
  }
  if (onCurrentChanged) onCurrentChanged();
}

void OptionsGrid::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                              const QList<int>& roles) {
  QTreeView::dataChanged(topLeft, bottomRight, roles);
  if (currentIndex().parent() == topLeft.parent() && onCurrentChanged) onCurrentChanged();
}

void OptionsGrid::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const {
  const bool isSection = model_.SectionAt(index) != nullptr;
  if (isSection) painter->fillRect(option.rect, option.palette.alternateBase());
  QTreeView::drawRow(painter, option, index);
  QColor colour = option.palette.color(QPalette::Text);
  colour.setAlphaF(0.12F);
  painter->setPen(colour);
  painter->drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
  if (isSection) return;
  for (const int column : {OptionsModel::kValueColumn, OptionsModel::kSourceColumn}) {
    const int x = columnViewportPosition(column) - 1;
    painter->drawLine(x, option.rect.top(), x, option.rect.bottom());
  }
}

}  // namespace tarn::host
