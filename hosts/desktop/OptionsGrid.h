#pragma once

#include <QTreeView>
#include <functional>

#include "hosts/desktop/OptionsDelegate.h"
#include "hosts/desktop/OptionsModel.h"

namespace tarn::host {

// The property grid view, with mouse and keyboard handling. Enter, F2 or a click starts editing,
// Space toggles a yes/no value, Del resets to the inherited value.
class OptionsGrid : public QTreeView {
 public:
  explicit OptionsGrid(QWidget* parent = nullptr);

  OptionsModel& Model() { return model_; }
  OptionsDelegate& Delegate() { return delegate_; }
  // Column widths as fractions of the total; the rest is the source column.
  struct Shares {
    double name = 0.40;
    double value = 0.34;
  };
  Shares GetShares() const { return shares_; }
  // Sets the column widths; no-op if a column would become too narrow.
  void SetShares(Shares newShares);
  // The current option; nullptr if there is none.
  const OptionRow* CurrentRow() const { return model_.RowAt(currentIndex()); }
  // Selects an option by any of its columns.
  void MakeCurrent(const QModelIndex& option);

  // Called when the selection or the value of the selected option has changed.
  std::function<void()> onCurrentChanged;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                   const QList<int>& roles) override;

 private:
  void LayOutColumns();
  bool OnKey(int key);
  void Edit(const QModelIndex& value);

  Shares shares_;
  bool isLayingOut_ = false;
  OptionsModel model_;
  OptionsDelegate delegate_{*this};
};

}  // namespace tarn::host
