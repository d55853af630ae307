// Context menu of a column header.

#include <iterator>
#include <memory>
#include <utility>

#include "reports/GlobalsReportWnd.h"
#include "widgets/Toolkit.h"

namespace tarn {

namespace {

// Command ids. The command of a column has the id kColumnFirst plus the column's index.
enum HeaderCommand : int {
  kRemoveColumn = 1,
  kSortAscending = 2,
  kSortDescending = 3,
  kGroupByField = 4,
  kGroupByBox = 5,
  kBestFit = 7,
  kArrangeByFirst = 100,
  kAlignLeft = 201,
  kAlignRight = 202,
  kAlignCenter = 203,
  kColumnFirst = 500,
};

struct AlignmentEntry {
  int command;
  const char* text;
  ReportAlignment alignment;
};

constexpr AlignmentEntry kAlignments[] = {
    {kAlignLeft, "Align Left", ReportAlignment::Left},
    {kAlignRight, "Align Right", ReportAlignment::Right},
    {kAlignCenter, "Align Center", ReportAlignment::Center},
};

}  // namespace

// The area after the last column has a menu too; otherwise the user couldn't restore the last
// column after removing it. Commands that need a column are disabled there.
CMenu CGlobalsReportWnd::MakeHeaderMenu(int column) const {
  const CReportColumns& columns = std::as_const(*report_).GetColumns();
  const CReportColumn* clicked = columns.GetAt(column);
  const bool isColumn = clicked != nullptr;
  auto shown = std::make_unique<CMenu>();
  auto arrange = std::make_unique<CMenu>();
  for (int i = 0; i < columns.GetCount(); ++i) {
    const CReportColumn& each = *columns.GetAt(i);
    shown->AppendCommand(kColumnFirst + i, each.GetCaption()).isChecked = each.IsVisible();
    if (each.IsVisible() && !each.GetCaption().empty()) {
      arrange->AppendCommand(kArrangeByFirst + i, each.GetCaption());
    }
  }
  arrange->AppendSeparator();
  auto align = std::make_unique<CMenu>();
  for (const AlignmentEntry& entry : kAlignments) {
    CMenu::Entry& made = align->AppendCommand(entry.command, entry.text);
    made.isChecked = isColumn && clicked->GetAlignment() == entry.alignment;
    made.isEnabled = isColumn;
  }

  CMenu menu;
  menu.AppendSubmenu(std::move(shown), "Columns");
  menu.AppendSubmenu(std::move(arrange), "Arrange by");
  menu.AppendCommand(kSortAscending, "Sort &Ascending").isEnabled = isColumn;
  menu.AppendCommand(kSortDescending, "Sort &Descending").isEnabled = isColumn;
  menu.AppendSeparator();
  menu.AppendCommand(kGroupByField, "Group by Field").isEnabled =
      isColumn && !report_->GetReportHeader().IsShowItemsInGroups();
  menu.AppendCommand(kGroupByBox, "Group by box").isChecked = report_->IsGroupByVisible();
  menu.AppendSeparator();
  menu.AppendCommand(kRemoveColumn, "Remove Column").isEnabled = isColumn;
  menu.AppendSeparator();
  menu.AppendCommand(kBestFit, "Best Fit").isEnabled = isColumn;
  menu.AppendSubmenu(std::move(align), "Alignment");
  return menu;
}

void CGlobalsReportWnd::ShowHeaderMenu(int column, Point screen) {
  const WindowHandle own = GetHandle();
  const CMenu menu = MakeHeaderMenu(column);
  const int command = WindowToolkit::Current().TrackMenu(menu, screen, *this);
  // The window may have been destroyed while the menu was open.
  if (command != 0 && IsWindow(own)) RunHeaderCommand(command, column);
}

void CGlobalsReportWnd::SortBy(const CReportColumn* column, bool ascending) {
  if (column == nullptr || !column->IsSortable()) return;
  report_->GetColumns().SetSortColumn(column, ascending);
  report_->Populate();
}

void CGlobalsReportWnd::RunHeaderCommand(int command, int column) {
  CReportColumns& columns = report_->GetColumns();
  if (CReportColumn* named = columns.GetAt(command - kColumnFirst)) {
    return named->SetVisible(!named->IsVisible());
  }
  if (const CReportColumn* named = columns.GetAt(command - kArrangeByFirst)) {
    return SortBy(named, true);
  }
  if (command == kGroupByBox) return report_->ShowGroupBy(!report_->IsGroupByVisible());
  CReportColumn* const clicked = columns.GetAt(column);
  if (clicked == nullptr) return;
  for (const AlignmentEntry& entry : kAlignments) {
    if (entry.command == command) return clicked->SetAlignment(entry.alignment);
  }
  switch (command) {
    case kSortAscending:
    case kSortDescending:
      return SortBy(clicked, command == kSortAscending);
    case kGroupByField:
      if (columns.GetGroupsOrder().IndexOf(clicked) < 0) columns.GetGroupsOrder().Add(clicked);
      report_->ShowGroupBy(true);
      return report_->Populate();
    case kRemoveColumn:
      clicked->SetVisible(false);
      return report_->Populate();
    case kBestFit:
      return report_->GetReportHeader().BestFit(*clicked);
    default:
      return;
  }
}

}  // namespace tarn
