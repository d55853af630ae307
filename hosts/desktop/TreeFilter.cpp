#include "hosts/desktop/TreeFilter.h"

#include <QKeyEvent>
#include <QListView>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QVBoxLayout>
#include <algorithm>

#include "hosts/desktop/NodeListModel.h"
#include "hosts/desktop/SearchField.h"

namespace tarn::host {

namespace {

constexpr int kSpace = 6;
constexpr int kPage = 10;

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
      tree(treeWidget),
      field(new SearchField(tr("Find in project"), this)),
      list(new QListView(this)),
      model(new NodeListModel(pictureFolder, this)) {
  field->setObjectName("treeFilter");
  field->setToolTip(tr("Lists all nodes whose name or path contains this text (Ctrl+P)"));
  field->installEventFilter(this);
  connect(field, &QLineEdit::textChanged, this, [this](const QString& text) { Show(text); });
  list->setModel(model);
  list->setItemDelegate(new NodeDelegate(list));
  list->setUniformItemSizes(true);
  list->setFrameShape(QFrame::NoFrame);
  list->setEditTriggers(QListView::NoEditTriggers);
  list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list->setAccessibleName(tr("Matching nodes"));
  list->installEventFilter(this);
  list->hide();
  connect(list, &QListView::clicked, this,
          [this](const QModelIndex& index) { Choose(index.row()); });
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  auto* const margin = new QVBoxLayout;
  margin->setContentsMargins(4, 4, 4, 4);
  margin->addWidget(field);
  column->addLayout(margin);
  column->addWidget(&tree, 1);
  column->addWidget(list, 1);
  setFocusProxy(&tree);
}

void TreeFilter::Begin() {
  field->setFocus();
  field->selectAll();
}

void TreeFilter::Show(const QString& text) {
  const bool isWanted = !text.trimmed().isEmpty();
  if (isWanted && !list->isVisible() && askNodes) model->SetNodes(askNodes());
  if (isWanted) {
    model->SetText(text);
    list->setCurrentIndex(model->index(0));
  }
  tree.setVisible(!isWanted);
  list->setVisible(isWanted);
}

void TreeFilter::Choose(int row) {
  if (row < 0 || row >= model->rowCount()) return;
  const IndexedNode node = model->NodeAt(row);
  // The tree may have changed in the meantime, so that a different node is at this position.
  std::vector<IndexedNode> present = askNodes ? askNodes() : std::vector<IndexedNode>();
  if (std::find(present.begin(), present.end(), node) == present.end()) {
    model->SetNodes(std::move(present));
    Show(field->text());
    return;
  }
  Leave();
  if (onChosen) onChosen(node);
}

void TreeFilter::Leave() {
  field->clear();
  tree.setFocus();
}

void TreeFilter::Move(int rows) {
  const int last = model->rowCount() - 1;
  if (last >= 0) {
    list->setCurrentIndex(model->index(std::clamp(list->currentIndex().row() + rows, 0, last)));
  }
}

bool TreeFilter::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Escape:
      Leave();
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      Choose(list->currentIndex().row());
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
