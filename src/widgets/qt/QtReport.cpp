#include "widgets/qt/QtReport.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>
#include <string>
#include <utility>
#include <vector>

#include "widgets/qt/ReportView.h"
#include "widgets/qt/WidgetPeer.h"
#include "widgets/qt/WindowInput.h"

namespace tarn {

namespace {

constexpr int kBoxMargin = 6;
constexpr int kBoxSpacing = 4;

// Bar with a button for each grouping column, which removes the column from the grouping. Column
// headers can be dropped here.
class GroupBox : public QWidget {
 public:
  explicit GroupBox(CReportControl& shownReport)
      : report_(shownReport), handle_(shownReport.GetHandle()), row_(new QHBoxLayout(this)) {
    row_->setContentsMargins(kBoxMargin, kBoxSpacing, kBoxMargin, kBoxSpacing);
    row_->setSpacing(kBoxSpacing);
  }

  void Follow() {
    setVisible(report_.IsGroupByVisible());
    const std::vector<const CReportColumn*>& columns =
        report_.GetColumns().GetGroupsOrder().GetColumns();
    std::vector<std::pair<int, std::string>> groups;
    groups.reserve(columns.size());
    for (const CReportColumn* const column : columns) {
      groups.emplace_back(column->GetIndex(), column->GetCaption());
    }
    // Also called for each step of a column resize.
    const bool isKnown = row_->count() > 0 && groups == shownGroups_;
    if (isKnown || !report_.IsGroupByVisible()) return;
    shownGroups_ = std::move(groups);
    while (QLayoutItem* const item = row_->takeAt(0)) {
      // This may be called from a press on one of them.
      if (item->widget() != nullptr) {
        item->widget()->hide();
        item->widget()->deleteLater();
      }
      delete item;
    }
    auto* const label = new QLabel(
        columns.empty() ? QCoreApplication::translate(
                              "GroupBox", "Drag a column header here to group by that column")
                        : QCoreApplication::translate("GroupBox", "Grouped by"));
    label->setEnabled(!columns.empty());
    row_->addWidget(label);
    for (const CReportColumn* const column : columns) row_->addWidget(MakeButton(*column));
    row_->addStretch();
  }

 private:
  QToolButton* MakeButton(const CReportColumn& column) {
    auto* const button = new QToolButton;
    const QString caption = Translated(column.GetCaption());
    button->setText(ToQtLabel(column.GetCaption()));
    button->setIcon(style()->standardIcon(QStyle::SP_DockWidgetCloseButton));
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    const QString what =
        QCoreApplication::translate("GroupBox", "Stop grouping by %1").arg(caption);
    button->setToolTip(what);
    button->setAccessibleName(what);
    button->setFocusPolicy(Qt::TabFocus);
    const int index = column.GetIndex();
    connect(button, &QToolButton::clicked, this, [this, index] {
      if (IsWindow(handle_)) report_.GetReportHeader().NotifyUngrouped(index);
    });
    return button;
  }

  CReportControl& report_;
  const WindowHandle handle_;
  QHBoxLayout* row_;
  std::vector<std::pair<int, std::string>> shownGroups_;  // index and caption
};

class ReportFrame : public QWidget {
 public:
  explicit ReportFrame(CReportControl& report)
      : box(new GroupBox(report)), view(new ReportView(report)) {
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(box);
    column->addWidget(view, 1);
    setFocusProxy(view);
    const WindowHandle handle = report.GetHandle();
    view->Head().onDropped = [this, &report, handle](int dropped, QPoint screen) {
      const bool isOnBox = box->isVisible() && box->rect().contains(box->mapFromGlobal(screen));
      if (isOnBox && IsWindow(handle)) report.GetReportHeader().NotifyGrouped(dropped);
    };
  }

  GroupBox* box;
  ReportView* view;
};

class QtReport final : public WidgetPeer<ReportPeer, ReportFrame> {
 public:
  explicit QtReport(CReportControl& shownReport)
      : WidgetPeer(shownReport, new ReportFrame(shownReport)), report_(shownReport) {
    new WindowInput(report_, *widget->view, kInputFocus | kInputKeys);
    new WindowInput(report_, *widget->view->viewport(), kInputMouseHeard | kInputFileDrops);
    QtReport::OnTextChanged();
    QtReport::OnColumnsChanged();
    widget->view->FollowMeasures();
  }
  ~QtReport() override {
    if (widget != nullptr) widget->view->Detach();
  }

  void OnMoved() override {
    WidgetPeer::OnMoved();
    if (widget != nullptr) widget->view->ScheduleNotifyState();
  }
  void OnTextChanged() override {
    WidgetPeer::OnTextChanged();
    if (widget != nullptr) widget->view->setAccessibleName(ToQt(report_.GetControlText()));
  }
  // The images may have been replaced by ones of another size.
  void OnInvalidated() override {
    if (widget == nullptr) return;
    widget->view->FollowMeasures();
    widget->view->viewport()->update();
  }
  std::optional<Point> GetScreenOrigin() override {
    if (widget == nullptr) return std::nullopt;
    const QPoint origin = widget->view->viewport()->mapToGlobal(QPoint(0, 0));
    return Point{origin.x(), origin.y()};
  }

  void OnColumnsChanged() override {
    if (widget == nullptr) return;
    widget->box->Follow();
    widget->view->FollowColumns();
  }
  void OnRowsReset() override {
    if (widget != nullptr) widget->view->FollowRows();
  }
  void OnRowsAppended(int /*first*/) override {
    if (widget != nullptr) widget->view->FollowAppended();
  }
  void OnRowChanged(int row) override {
    if (widget != nullptr) widget->view->FollowRow(row);
  }
  void OnSelectionChanged() override {
    if (widget != nullptr) widget->view->FollowSelection();
  }
  void OnRowShown(int /*row*/) override {
    if (widget != nullptr) widget->view->FollowScroll();
  }
  void OnEditWanted(int row, int column) override {
    if (widget != nullptr) widget->view->RequestEdit(row, column);
  }
  std::optional<ReportHit> HitTest(Point point) override {
    if (widget == nullptr) return std::nullopt;
    return widget->view->HitAt({point.x, point.y});
  }
  std::optional<int> GetRowsPerPage() override {
    if (widget == nullptr) return std::nullopt;
    return widget->view->RowsPerPage();
  }

 private:
  CReportControl& report_;
};

}  // namespace

std::unique_ptr<ReportPeer> MakeReportPeer(CReportControl& report) {
  return std::make_unique<QtReport>(report);
}

}  // namespace tarn
