#pragma once

#include <QScopedValueRollback>
#include <QTreeView>

#include "widgets/Wnd.h"
#include "widgets/qt/TypeAhead.h"

namespace tarn {

// A list that shows a control's lines. What is selected, open and at the top is the control's
// matter: the view's own handling of mouse and keys is off, and it follows the control's calls.
// Where it can't, it tells the control how it is.
class FollowingView : public QTreeView {
 public:
  // Takes the control's top line.
  virtual void FollowScroll() = 0;
  // At the next chance: size and top line, where the view can't have them as the control knows.
  void AskToTellState();

 protected:
  using Following = QScopedValueRollback<int>;

  explicit FollowingView(CWnd& shownControl);

  // What AskToTellState has asked for. Only for a control that stands and a view that is seen;
  // either may be gone afterwards.
  virtual void TellState() = 0;
  // The part of it that is the same for all: the control is smaller by the view's bars.
  void TellSize();

  void focusInEvent(QFocusEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;

  const WindowHandle handle;
  int following = 0;  // calls of the control that are running: nothing may be told back in them
  TypeAhead typeAhead;

 private:
  CWnd& control;
  bool isTellingDue = false;
};

}  // namespace tarn
