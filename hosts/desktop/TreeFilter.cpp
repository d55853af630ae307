#include "hosts/desktop/TreeFilter.h"

#include <QDialog>
#include <QKeyEvent>
#include <QListView>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QVBoxLayout>
#include <algorithm>

#include "hosts/desktop/EmptyHint.h"
#include "hosts/desktop/NodeListModel.h"
#include "hosts/desktop/SearchField.h"

namespace tarn::host {

namespace {

constexpr int kSpace = 6;
constexpr int kPage = 10;
constexpr int kFieldMargin = 4;

// Draws the label, followed in a fainter colour by the text that distinguishes nodes with the same
// label.
class NodeDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    QStyledItemDelegate::paint(painter, option, index);
    const QString remark = index.data(NodeListModel::kRemarkRole).toString();
    const int used = option.decorationSize.width() + 3 * kSpace +
                     option.fontMetrics.horizontalAdvance(index.data().toString());
    const QRect rest = option.rect.adjusted(used, 0, -kSpace, 0);
    if (remark.isEmpty() || rest.width() < option.fontMetrics.averageCharWidth() * 4) return;
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    QColor colour = option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text);
    colour.setAlphaF(0.6F);
    painter->save();
    painter->setPen(colour);
    painter->drawText(rest, Qt::AlignLeft | Qt::AlignVCenter,
                      option.fontMetrics.elidedText(remark, Qt::ElideMiddle, rest.width()));
    painter->restore();
  }
};

}  // namespace

TreeFilter::TreeFilter(QWidget& treeWidget, const QString& pictureFolder, QWidget* parent)
    : QWidget(parent),
      tree_(treeWidget),
      field_(new SearchField(tr("Find in project"), this)),
      list_(new QListView(this)),
      model_(new NodeListModel(pictureFolder, this)) {
  field_->setObjectName("treeFilter");
  field_->setToolTip(tr("Lists all nodes whose name or path contains this text (Ctrl+P)"));
  field_->installEventFilter(this);
  connect(field_, &QLineEdit::textChanged, this, [this](const QString& text) { Show(text); });
  list_->setModel(model_);
  list_->setItemDelegate(new NodeDelegate(list_));
  list_->setUniformItemSizes(true);
  list_->setFrameShape(QFrame::NoFrame);
  list_->setEditTriggers(QListView::NoEditTriggers);
  list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list_->setAccessibleName(tr("Matching nodes"));
  list_->installEventFilter(this);
  AddEmptyHint(*list_, tr("Nothing matches."));
  list_->hide();
  connect(list_, &QListView::clicked, this,
          [this](const QModelIndex& index) { Choose(index.row()); });
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  margin_ = new QVBoxLayout;
  margin_->setContentsMargins(kFieldMargin, kFieldMargin, kFieldMargin, kFieldMargin);
  margin_->addWidget(field_);
  column->addLayout(margin_);
  column->addWidget(&tree_, 1);
  column->addWidget(list_, 1);
  setFocusProxy(&tree_);
}

void TreeFilter::Begin() {
  field_->setFocus();
  field_->selectAll();
}

void TreeFilter::SetPurpose(const QString& purpose, const QString& help) {
  field_->setPlaceholderText(purpose);
  field_->setAccessibleName(purpose);
  field_->setToolTip(help);
}

void TreeFilter::AlignWithFrame() {
  margin_->setContentsMargins(0, 0, 0, kFieldMargin);
  list_->setFrameShape(QFrame::StyledPanel);
}

void TreeFilter::Show(const QString& text) {
  const bool isWanted = !text.trimmed().isEmpty();
  if (isWanted && !list_->isVisible() && queryNodes) model_->SetNodes(queryNodes());
  if (isWanted) {
    model_->SetText(text);
    list_->setCurrentIndex(model_->index(0));
    ShowCurrent();
  }
  tree_.setVisible(!isWanted);
  list_->setVisible(isWanted);
}

void TreeFilter::Choose(int row) {
  if (row < 0 || row >= model_->rowCount()) return;
  const IndexedNode node = model_->NodeAt(row);
  // The tree may have changed in the meantime, so that a different node is at this position.
  std::vector<IndexedNode> present = queryNodes ? queryNodes() : std::vector<IndexedNode>();
  if (std::find(present.begin(), present.end(), node) == present.end()) {
    model_->SetNodes(std::move(present));
    Show(field_->text());
    return;
  }
  Leave();
  if (onCurrent) onCurrent(&node);
  if (onChosen) onChosen(node);
}

void TreeFilter::Leave() {
  field_->clear();
  tree_.setFocus();
}

void TreeFilter::Move(int rows) {
  const int last = model_->rowCount() - 1;
  if (last >= 0) {
    list_->setCurrentIndex(model_->index(std::clamp(list_->currentIndex().row() + rows, 0, last)));
    ShowCurrent();
  }
}

void TreeFilter::ShowCurrent() {
  if (!onCurrent) return;
  const int row = list_->currentIndex().row();
  onCurrent(row < 0 ? nullptr : &model_->NodeAt(row));
}

bool TreeFilter::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  // Without a search, the keys are those of a dialog that contains the tree.
  const bool isDialogs = field_->text().isEmpty() && qobject_cast<QDialog*>(window()) != nullptr;
  const int key = static_cast<QKeyEvent*>(event)->key();
  if (isDialogs && key != Qt::Key_Down) return QWidget::eventFilter(watched, event);
  if (isDialogs) {
    tree_.setFocus();
    return true;
  }
  switch (key) {
    case Qt::Key_Escape:
      Leave();
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      Choose(list_->currentIndex().row());
      return true;
    case Qt::Key_Down:
      Move(1);
      return true;
    case Qt::Key_Up:
      Move(-1);
      return true;
    case Qt::Key_PageDown:
      Move(kPage);
      return true;
    case Qt::Key_PageUp:
      Move(-kPage);
      return true;
    default:
      return QWidget::eventFilter(watched, event);
  }
}

}  // namespace tarn::host
