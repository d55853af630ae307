#pragma once

#include <QTreeView>
#include <functional>

#include "hosts/desktop/OptionsDelegate.h"
#include "hosts/desktop/OptionsModel.h"

namespace tarn::host {

// The property grid: its lines, and what mouse and keys do in it. Enter, F2 or a click edit, Space
// turns a yes into a no, Del gives the inherited value back.
class OptionsGrid : public QTreeView {
 public:
  explicit OptionsGrid(QWidget* parent = nullptr);

  OptionsModel& Model() { return model; }
  OptionsDelegate& Delegate() { return delegate; }
  // Parts of the width; the rest is for the source.
  struct Shares {
    double name = 0.40;
    double value = 0.34;
  };
  Shares GetShares() const { return shares; }
  // Nothing for those that would leave a column without room.
  void SetShares(Shares newShares);
  // The option that has the keyboard; null for none.
  const OptionRow* CurrentRow() const { return model.RowAt(currentIndex()); }
  void MakeCurrent(const QModelIndex& option);

  // The selected option or its value is another one.
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

  Shares shares;
  bool isLayingOut = false;
  OptionsModel model;
  OptionsDelegate delegate{*this};
};

}  // namespace tarn::host
