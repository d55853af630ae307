#include "hosts/desktop/NodeListModel.h"

namespace tarn::host {

namespace {

struct TypePicture {
  const char* type;
  const char* picture;
};

constexpr TypePicture kPictures[] = {
    {"Project", "project"},
    {"Application", "application"},
    {"Group", "group"},
    {"C", "c"},
    {"Cpp", "cpp"},
    {"Assembler", "asm"},
    {"Header", "header"},
    {"Library", "library"},
    {"LinkerScript", "linker"},
    {"DebugApplication", "debug"},
    {"AutoDebugApplication", "debug-live"},
};

}  // namespace

NodeListModel::NodeListModel(QString pictureFolder, QObject* parent)
    : QAbstractListModel(parent), pictures_(std::move(pictureFolder)) {}

void NodeListModel::SetNodes(std::vector<IndexedNode> allNodes) {
  beginResetModel();
  nodes_ = std::move(allNodes);
  rows_.clear();
  endResetModel();
}

void NodeListModel::SetText(const QString& text) {
  beginResetModel();
  rows_ = FindNodes(nodes_, text);
  endResetModel();
}

const IndexedNode& NodeListModel::NodeAt(int row) const {
  return nodes_[static_cast<std::size_t>(rows_[static_cast<std::size_t>(row)])];
}

int NodeListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant NodeListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) return {};
  const IndexedNode& node = NodeAt(index.row());
  switch (role) {
    case Qt::DisplayRole:
      return node.label;
    case Qt::DecorationRole:
      return PictureOf(node.type);
    case Qt::ToolTipRole:
      return node.path.isEmpty() ? node.above : node.path;
    case kRemarkRole: {
      const QString remark = node.path.isEmpty() ? node.above : node.path;
      return remark == node.label ? QString() : remark;
    }
    default:
      return {};
  }
}

QIcon NodeListModel::PictureOf(const QString& type) const {
  const auto found = icons_.constFind(type);
  if (found != icons_.cend()) return *found;
  QString name = "text";
  for (const TypePicture& each : kPictures) {
    if (type == QLatin1String(each.type)) name = QLatin1String(each.picture);
  }
  const QString file = type == QLatin1String("Target") ? QString("target") : "node-" + name;
  return *icons_.insert(type, QIcon(pictures_ + file + ".svg"));
}

}  // namespace tarn::host
