#pragma once

#include <QAbstractTableModel>

#include "widgets/ReportControl.h"

namespace tarn {

// Alignment of a column's cells and header.
Qt::Alignment AlignmentOf(const CReportColumn& column);

// Item model of a report control: a flat list of its rows, with all of its columns. Nothing is
// copied. The owner must call the functions below when it is notified of changes of the control.
class ReportModel : public QAbstractTableModel {
 public:
  ReportModel(const CReportControl& shownReport, QObject* parent);

  // The control is being destroyed: the model is empty afterwards.
  void Detach();
  // Everything has changed.
  void Reset();
  // Rows of the control that have been added after the ones known here.
  bool HasMore() const;
  void TakeMore();
  void NotifyChanged(int row);
  // The headers have changed. Returns false if their number changed, which needs a reset.
  bool NotifyColumns();

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  const CReportControl* report_;
  int knownRows_ = 0;
  int knownColumns_ = 0;
};

}  // namespace tarn
