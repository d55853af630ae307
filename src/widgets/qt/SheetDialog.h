#pragma once

#include <QDialog>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <memory>

#include "widgets/PropertySheet.h"

namespace tarn {

// A sheet as a dialog: header, page, Finish and Cancel. It stays open, and shows why, if the page
// can't be finished.
class SheetDialog : public QDialog {
 public:
  // Takes the page's widget in, once all windows of the sheet stand.
  void Build(const CPropertySheet& sheet);
  void EnableFinish(bool enable);

 private:
  QWidget* MakeHeader(const CPropertySheet& sheet);
  QWidget* MakeProblemRow();
  void TryFinish(const CPropertySheet& sheet);

  QPointer<QWidget> problemRow;
  QPointer<QLabel> problemText;
  QPointer<QPushButton> finishButton;
};

std::unique_ptr<PropertySheetPeer> MakeSheetPeer(CPropertySheet& sheet);

}  // namespace tarn
