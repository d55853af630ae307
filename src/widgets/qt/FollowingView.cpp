#include "widgets/qt/FollowingView.h"

#include <QTimer>

namespace tarn {

FollowingView::FollowingView(CWnd& shownControl)
    : handle(shownControl.GetHandle()), control_(shownControl) {
  // The control's layout is left-to-right regardless of the user's language.
  setLayoutDirection(Qt::LeftToRight);
  setUniformRowHeights(true);
  setEditTriggers(NoEditTriggers);
  setAutoScroll(false);
  setTabKeyNavigation(false);
  // The scroll bar's value is the control's top line.
  setVerticalScrollMode(ScrollPerItem);
  setHorizontalScrollMode(ScrollPerPixel);
}

void FollowingView::ScheduleNotifyState() {
  if (isTellingDue_) return;
  isTellingDue_ = true;
  QTimer::singleShot(0, this, [this] {
    isTellingDue_ = false;
    if (IsWindow(handle) && isVisible()) NotifyState();
  });
}

void FollowingView::NotifySize() {
  const Rect known = control_.GetClientRect();
  const QSize size = viewport()->size();
  if (size.width() != known.Width() || size.height() != known.Height()) {
    control_.NotifyResized({size.width(), size.height()});
  }
}

// Skips the base class, which would select a line of its own choice.
void FollowingView::focusInEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusInEvent(event);  // NOLINT(bugprone-parent-virtual-call)
  viewport()->update();
}

void FollowingView::resizeEvent(QResizeEvent* event) {
  QTreeView::resizeEvent(event);
  ScheduleNotifyState();
}

void FollowingView::showEvent(QShowEvent* event) {
  QTreeView::showEvent(event);
  if (!IsWindow(handle)) return;
  FollowScroll();
  ScheduleNotifyState();
}

}  // namespace tarn
