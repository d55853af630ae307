#include "widgets/qt/ReportModel.h"

#include "widgets/qt/QtText.h"

namespace tarn {

Qt::Alignment AlignmentOf(const CReportColumn& column) {
  switch (column.GetAlignment()) {
    case ReportAlignment::Center:
      return Qt::AlignHCenter;
    case ReportAlignment::Right:
      return Qt::AlignRight;
    case ReportAlignment::Left:
      break;
  }
  return Qt::AlignLeft;
}

ReportModel::ReportModel(const CReportControl& shownReport, QObject* parent)
    : QAbstractTableModel(parent), report(&shownReport) {
  Reset();
}

void ReportModel::Detach() {
  report = nullptr;
  Reset();
}

void ReportModel::Reset() {
  beginResetModel();
  knownRows = report == nullptr ? 0 : report->GetRows().GetCount();
  knownColumns = report == nullptr ? 0 : report->GetColumns().GetCount();
  endResetModel();
}

bool ReportModel::HasMore() const {
  return report != nullptr && knownRows < report->GetRows().GetCount();
}

void ReportModel::TakeMore() {
  if (!HasMore()) return;
  const int count = report->GetRows().GetCount();
  beginInsertRows({}, knownRows, count - 1);
  knownRows = count;
  endInsertRows();
}

void ReportModel::TellChanged(int row) {
  if (row < 0 || row >= knownRows || knownColumns == 0) return;
  Q_EMIT dataChanged(index(row, 0), index(row, knownColumns - 1));
}

bool ReportModel::TellColumns() {
  if (report == nullptr || report->GetColumns().GetCount() != knownColumns) return false;
  if (knownColumns > 0) Q_EMIT headerDataChanged(Qt::Horizontal, 0, knownColumns - 1);
  return true;
}

int ReportModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : knownRows;
}

int ReportModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : knownColumns;
}

QVariant ReportModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || report == nullptr) return {};
  const CReportRow* const row = report->GetRows().GetAt(index.row());
  if (row == nullptr) return {};
  const bool isText = role == Qt::DisplayRole || role == Qt::EditRole;
  if (row->IsGroup()) return isText ? ToQt(row->GetGroup()->text) : QVariant();
  const CReportRecordItem* const item = row->GetRecord()->GetItem(index.column());
  if (item == nullptr) return {};
  if (isText) return ToQt(item->GetCaption());
  if (role == Qt::CheckStateRole && item->HasCheckbox()) {
    return item->IsChecked() ? Qt::Checked : Qt::Unchecked;
  }
  return {};
}

QVariant ReportModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (report == nullptr || orientation != Qt::Horizontal) return {};
  const CReportColumn* const column = report->GetColumns().GetAt(section);
  if (column == nullptr || (role != Qt::DisplayRole && role != Qt::ToolTipRole)) return {};
  return ToQt(column->GetCaption());
}

Qt::ItemFlags ReportModel::flags(const QModelIndex& index) const {
  if (!index.isValid() || report == nullptr) return Qt::NoItemFlags;
  Qt::ItemFlags result = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
  result.setFlag(Qt::ItemIsEditable, report->CanEdit(index.row(), index.column()));
  result.setFlag(Qt::ItemIsUserCheckable, report->CanToggle(index.row(), index.column()));
  return result;
}

}  // namespace tarn
