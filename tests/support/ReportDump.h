#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "widgets/ReportControl.h"

namespace tarn::test {

// The columns on a line: caption and width; "-" in front of one that is hidden, "^" or "v" behind
// the one that rows are sorted by, "{1}" behind the first that they are grouped by.
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

// A row a line, its cells separated by a bar: "*" in front of what is selected, ">" of the focus, a
// dot for each level above it, "+" or "-" for what is closed or open.
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

// The owner of a report, which keeps what it is told and may act on it.
class ReportOwner : public CWnd {
 public:
  ReportOwner() { Create(kStylePopup, {0, 0, 400, 300}, nullptr, 0); }
  ~ReportOwner() override { DestroyWindow(); }

  std::function<void(std::uint32_t message)> onMessage;
  std::string TakeLines() { return std::exchange(lines, {}); }

 protected:
  std::intptr_t OnMessage(std::uint32_t message, std::intptr_t wParam, std::intptr_t) override {
    static constexpr const char* kNames[] = {"click",     "double", "enter", "header",
                                             "selection", "check",  "edit"};
    const auto& notice = *reinterpret_cast<const ReportNotice*>(wParam);
    lines += std::string(kNames[message - kMsgReportClick]) + " " + std::to_string(notice.id) +
             ":" + std::to_string(notice.row) + "," + std::to_string(notice.column);
    if (notice.hyperlink >= 0) lines += " link " + std::to_string(notice.hyperlink);
    if (message == kMsgReportHeaderRightClick) {
      lines += " at " + std::to_string(notice.screen.x) + "," + std::to_string(notice.screen.y);
    }
    lines += "; ";
    if (onMessage) onMessage(message);
    return 0;
  }

 private:
  std::string lines;
};

}  // namespace tarn::test
