#include "hosts/desktop/PaneFocusCycle.h"

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QKeySequence>
#include <QMainWindow>
#include <algorithm>
#include <utility>

namespace tarn::host {

namespace {

bool Holds(const QWidget& pane, const QWidget* widget) {
  return widget != nullptr && (widget == &pane || pane.isAncestorOf(widget));
}

bool TakesKeyboard(const QWidget& widget) {
  return widget.isVisible() && widget.isEnabled() && (widget.focusPolicy() & Qt::TabFocus) != 0;
}

// Returns the first widget in tab order inside the pane; nullptr if there is none.
QWidget* FirstIn(QWidget& pane) {
  for (QWidget* each = pane.nextInFocusChain(); each != &pane; each = each->nextInFocusChain()) {
    if (Holds(pane, each) && TakesKeyboard(*each)) return each;
  }
  return nullptr;
}

std::pair<int, int> PositionOf(const QWidget& widget) {
  const QPoint corner = widget.mapToGlobal(QPoint(0, 0));
  return {corner.x(), corner.y()};
}

}  // namespace

PaneFocusCycle::PaneFocusCycle(QMainWindow& mainWindow)
    : window_(mainWindow),
      next_(new QAction(tr("&Next pane"), &mainWindow)),
      previous_(new QAction(tr("&Previous pane"), &mainWindow)) {
  next_->setShortcut(Qt::Key_F6);
  previous_->setShortcut(Qt::SHIFT | Qt::Key_F6);
  QObject::connect(next_, &QAction::triggered, &window_, [this] { Step(1); });
  QObject::connect(previous_, &QAction::triggered, &window_, [this] { Step(-1); });
  window_.addActions(Actions());
}

std::vector<QWidget*> PaneFocusCycle::Panes() const {
  std::vector<QWidget*> panes;
  for (QDockWidget* const dock : window_.findChildren<QDockWidget*>()) {
    // A dock hidden behind a tab counts as visible, but has no visible region.
    if (dock->isVisible() && !dock->visibleRegion().isEmpty()) panes.push_back(dock);
  }
  std::sort(panes.begin(), panes.end(),
            [](const QWidget* a, const QWidget* b) { return PositionOf(*a) < PositionOf(*b); });
  panes.insert(panes.begin(), window_.centralWidget());
  return panes;
}

void PaneFocusCycle::Step(int way) {
  const std::vector<QWidget*> panes = Panes();
  const int count = static_cast<int>(panes.size());
  const auto here = std::find_if(panes.begin(), panes.end(), [](const QWidget* pane) {
    return Holds(*pane, QApplication::focusWidget());
  });
  int from = static_cast<int>(here - panes.begin());
  // Coming from a tool bar, start at one end of the row.
  if (here == panes.end()) from = way > 0 ? -1 : 0;
  Enter(*panes[static_cast<std::size_t>((from + way + count) % count)]);
}

void PaneFocusCycle::Enter(QWidget& pane) {
  QWidget* wanted = nullptr;
  if (&pane == window_.centralWidget() && editor) wanted = editor();
  if (wanted == nullptr) wanted = pane.focusWidget();
  if (wanted == nullptr || !TakesKeyboard(*wanted)) {
    const auto* const dock = qobject_cast<const QDockWidget*>(&pane);
    wanted = dock == nullptr ? nullptr : dock->widget()->focusProxy();
  }
  if (wanted == nullptr || !wanted->isVisible()) wanted = FirstIn(pane);
  if (wanted == nullptr) return;
  pane.window()->activateWindow();
  wanted->setFocus(Qt::ShortcutFocusReason);
}

}  // namespace tarn::host
