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
    : QAbstractTableModel(parent), report_(&shownReport) {
  Reset();
}

void ReportModel::Detach() {
  report_ = nullptr;
  Reset();
}

void ReportModel::Reset() {
  beginResetModel();
  knownRows_ = report_ == nullptr ? 0 : report_->GetRows().GetCount();
  knownColumns_ = report_ == nullptr ? 0 : report_->GetColumns().GetCount();
  endResetModel();
}

bool ReportModel::HasMore() const {
  return report_ != nullptr && knownRows_ < report_->GetRows().GetCount();
}

void ReportModel::TakeMore() {
  if (!HasMore()) return;
  const int count = report_->GetRows().GetCount();
  beginInsertRows({}, knownRows_, count - 1);
  knownRows_ = count;
  endInsertRows();
}

void ReportModel::NotifyChanged(int row) {
  if (row < 0 || row >= knownRows_ || knownColumns_ == 0) return;
  Q_EMIT dataChanged(index(row, 0), index(row, knownColumns_ - 1));
}

bool ReportModel::NotifyColumns() {
  if (report_ == nullptr || report_->GetColumns().GetCount() != knownColumns_) return false;
  if (knownColumns_ > 0) Q_EMIT headerDataChanged(Qt::Horizontal, 0, knownColumns_ - 1);
  return true;
}

int ReportModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : knownRows_;
}

int ReportModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : knownColumns_;
}

QVariant ReportModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || report_ == nullptr) return {};
  const CReportRow* const row = report_->GetRows().GetAt(index.row());
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
  if (report_ == nullptr || orientation != Qt::Horizontal) return {};
  const CReportColumn* const column = report_->GetColumns().GetAt(section);
  if (column == nullptr || (role != Qt::DisplayRole && role != Qt::ToolTipRole)) return {};
  return Translated(column->GetCaption());
}

Qt::ItemFlags ReportModel::flags(const QModelIndex& index) const {
  if (!index.isValid() || report_ == nullptr) return Qt::NoItemFlags;
  Qt::ItemFlags result = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
  result.setFlag(Qt::ItemIsEditable, report_->CanEdit(index.row(), index.column()));
  result.setFlag(Qt::ItemIsUserCheckable, report_->CanToggle(index.row(), index.column()));
  return result;
}

}  // namespace tarn
