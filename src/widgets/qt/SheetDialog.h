#pragma once

#include <QDialog>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <functional>
#include <memory>

#include "widgets/PropertySheet.h"

namespace tarn {

// Shows a sheet as a dialog: header, page, Finish and Cancel. If the page cannot be finished, it
// stays open and shows the reason.
class SheetDialog : public QDialog {
 public:
  // Embeds the page's widget, after all windows of the sheet have been created.
  void Build(const CPropertySheet& sheet);
  void EnableFinish(bool enable);
  // See QtDialogs::findProblem.
  std::function<std::string(const CPropertySheet& sheet)> findProblem;

 private:
  QWidget* MakeHeader(const CPropertySheet& sheet);
  QWidget* MakeProblemRow();
  // Accepts the dialog, or shows the reason why that is impossible.
  void TryFinish(const CPropertySheet& sheet);

  QPointer<QWidget> problemRow_;
  QPointer<QLabel> problemText_;
  QPointer<QPushButton> finishButton_;
};

// Peer that creates the dialog of a sheet.
std::unique_ptr<PropertySheetPeer> MakeSheetPeer(CPropertySheet& sheet);

}  // namespace tarn
