#pragma once

#include <QScopedValueRollback>
#include <QTreeView>

#include "widgets/Wnd.h"
#include "widgets/qt/TypeAhead.h"

namespace tarn {

// Base of list views that mirror a control. The control owns selection, expansion and scroll
// position: the view's own mouse and key handling is disabled, and it follows the control's
// notifications. If the view cannot adopt a state, it reports its own state to the control.
class FollowingView : public QTreeView {
 public:
  // Adopts the control's top line.
  virtual void FollowScroll() = 0;
  // Schedules a NotifyState() for size and top line, in case the view cannot adopt the control's
  // values.
  void ScheduleNotifyState();

 protected:
  using Following = QScopedValueRollback<int>;

  explicit FollowingView(CWnd& shownControl);

  // Executes what ScheduleNotifyState() has scheduled. Called only if the control exists and the
  // view is visible; either may be destroyed by it.
  virtual void NotifyState() = 0;
  // The part common to all views: the control's size is the view's without its scroll bars.
  void NotifySize();

  void focusInEvent(QFocusEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;

  const WindowHandle handle;
  int following = 0;  // running calls of the control; nothing is reported during them
  TypeAhead typeAhead;

 private:
  CWnd& control_;
  bool isTellingDue_ = false;
};

}  // namespace tarn
