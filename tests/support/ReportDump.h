#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "widgets/ReportControl.h"

namespace tarn::test {

// Formats the columns on one line: caption and width; "-" before a hidden column, "^" or "v" after
// the sorted one, "{1}" after the first grouping column.
inline std::string ColumnsText(const CReportControl& report) {
  std::string text;
  for (int i = 0; i < report.GetColumns().GetCount(); ++i) {
    const CReportColumn& column = *report.GetColumns().GetAt(i);
    if (i > 0) text += " | ";
    if (!column.IsVisible()) text += "-";
    text += column.GetCaption() + " " + std::to_string(column.GetWidth());
    if (column.IsSorted()) text += column.IsSortedAscending() ? " ^" : " v";
    const int group = report.GetColumns().GetGroupsOrder().IndexOf(&column);
    if (group >= 0) text += " {" + std::to_string(group + 1) + "}";
  }
  return text;
}

inline std::string CellText(const CReportRecordItem* item) {
  if (item == nullptr) return "~";
  if (item->HasCheckbox()) return item->IsChecked() ? "[x]" : "[ ]";
  return item->GetIconIndex() >= 0 ? "#" + std::to_string(item->GetIconIndex())
                                   : item->GetCaption();
}

// Formats one line per row, with its cells separated by a bar: "*" before a selected row, ">"
// before the focused one, a dot for each level of depth, "+" or "-" for collapsed or expanded rows.
inline std::string RowsText(const CReportControl& report) {
  std::string text;
  for (int i = 0; i < report.GetRows().GetCount(); ++i) {
    const CReportRow& row = *report.GetRows().GetAt(i);
    if (report.GetSelectedRows().Contains(i)) text += "*";
    if (report.GetFocusedRow() == i) text += ">";
    text += std::string(static_cast<std::size_t>(row.GetDepth()), '.');
    if (row.IsGroup() || row.GetRecord()->HasChildren()) {
      text += report.GetRows().IsOpen(row) ? "-" : "+";
    }
    if (row.IsGroup()) text += row.GetGroup()->text;
    for (int cell = 0; !row.IsGroup() && cell < row.GetRecord()->GetItemCount(); ++cell) {
      text += (cell > 0 ? "|" : "") + CellText(row.GetRecord()->GetItem(cell));
    }
    text += "\n";
  }
  return text;
}

// Owner of a report that records its messages and may react to them.
class ReportOwner : public CWnd {
 public:
  ReportOwner() { Create(kStylePopup, {0, 0, 400, 300}, nullptr, 0); }
  ~ReportOwner() override { DestroyWindow(); }

  std::function<void(std::uint32_t message)> onMessage;
  std::string TakeLines() { return std::exchange(lines_, {}); }

 protected:
  std::intptr_t OnMessage(std::uint32_t message, std::intptr_t wParam, std::intptr_t) override {
    static constexpr const char* kNames[] = {"click",     "double", "enter", "header",
                                             "selection", "check",  "edit"};
    const auto& notice = *reinterpret_cast<const ReportNotice*>(wParam);
    lines_ += std::string(kNames[message - kMsgReportClick]) + " " + std::to_string(notice.id) +
              ":" + std::to_string(notice.row) + "," + std::to_string(notice.column);
    if (notice.hyperlink >= 0) lines_ += " link " + std::to_string(notice.hyperlink);
    if (message == kMsgReportHeaderRightClick) {
      lines_ += " at " + std::to_string(notice.screen.x) + "," + std::to_string(notice.screen.y);
    }
    lines_ += "; ";
    if (onMessage) onMessage(message);
    return 0;
  }

 private:
  std::string lines_;
};

}  // namespace tarn::test
