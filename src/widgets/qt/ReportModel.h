#pragma once

#include <QAbstractTableModel>

#include "widgets/ReportControl.h"

namespace tarn {

// Of a column's texts, its head included.
Qt::Alignment AlignmentOf(const CReportColumn& column);

// The rows of a report control as they stand, one below the other, and all of its columns; nothing
// is copied. Whoever hears of the control's changes calls the functions below.
class ReportModel : public QAbstractTableModel {
 public:
  ReportModel(const CReportControl& shownReport, QObject* parent);

  // The control is going: empty from now on.
  void Detach();
  // Nothing is as it was.
  void Reset();
  // The control's rows behind those that are known.
  bool HasMore() const;
  void TakeMore();
  void TellChanged(int row);
  // The heads look another way. False when there are more or fewer of them, which needs a reset.
  bool TellColumns();

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  const CReportControl* report;
  int knownRows = 0;
  int knownColumns = 0;
};

}  // namespace tarn
