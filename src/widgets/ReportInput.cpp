// User input of the report control. The owner is notified of each step and may refill or destroy
// the report in response, so each step checks whether the next one still makes sense.

#include <algorithm>
#include <utility>

#include "widgets/ReportControl.h"

namespace tarn {

void CReportControl::Send(ReportMessage message, const ReportNotice& notice) {
  ReportNotice sent = notice;
  sent.id = GetId();
  SendOwner(message, reinterpret_cast<std::intptr_t>(&sent), 0);
}

bool CReportControl::SelectByUser(std::vector<int> indexes, int focused) {
  if (!Select(std::move(indexes), focused)) return true;
  const WindowHandle own = GetHandle();
  const std::uint64_t before = epoch_;
  ReportNotice notice;
  notice.row = focused;
  Send(kMsgReportSelection, notice);
  return IsWindow(own) && epoch_ == before;
}

void CReportControl::NotifySelected(std::vector<int> indexes, int focused) {
  std::erase_if(indexes, [this](int row) { return rows_.GetAt(row) == nullptr; });
  std::sort(indexes.begin(), indexes.end());
  indexes.erase(std::unique(indexes.begin(), indexes.end()), indexes.end());
  if (rows_.GetAt(focused) == nullptr) focused = -1;
  selection_.SetAnchor(focused);
  SelectByUser(std::move(indexes), focused);
}

void CReportControl::NotifyScrolled(int newTopRow) {
  topRow_ = std::clamp(newTopRow, 0, std::max(0, rows_.GetCount() - 1));
}

void CReportControl::NotifyPressed(const ReportHit& hit, bool isShiftDown, bool isControlDown) {
  if (!IsCreated()) return;
  pressed_ = hit;
  OnLeftButtonDown(hit, isShiftDown, isControlDown);
}

void CReportControl::OnLeftButtonDown(const ReportHit& hit, bool isShiftDown, bool isControlDown) {
  if (hit.area != ReportHit::Area::Row || rows_.GetAt(hit.row) == nullptr) return;
  if (isShiftDown) {
    SelectByUser(selection_.RangeTo(hit.row), hit.row);
    return;
  }
  selection_.SetAnchor(hit.row);
  if (isControlDown) {
    std::vector<int> indexes = GetSelectedRows().GetIndexes();
    const auto place = std::lower_bound(indexes.begin(), indexes.end(), hit.row);
    if (place != indexes.end() && *place == hit.row) {
      indexes.erase(place);
    } else {
      indexes.insert(place, hit.row);
    }
    SelectByUser(std::move(indexes), hit.row);
    return;
  }
  // A press on one of several selected rows may start a drag of all of them.
  const bool keeps = GetSelectedRows().Contains(hit.row);
  SelectByUser(keeps ? GetSelectedRows().GetIndexes() : std::vector<int>{hit.row}, hit.row);
}

void CReportControl::NotifyClicked(const ReportHit& hit) {
  if (!IsCreated()) return;
  ReportNotice notice;
  const CReportRow* const row = hit.area == ReportHit::Area::Row ? rows_.GetAt(hit.row) : nullptr;
  if (row != nullptr) {
    if (hit.part == ReportHit::Part::Opener) return NotifyOpened(hit.row, !rows_.IsOpen(*row));
    const WindowHandle own = GetHandle();
    const std::uint64_t before = epoch_;
    if (hit.part == ReportHit::Part::Check) NotifyCheckToggled(hit.row, hit.column);
    if (!IsWindow(own) || epoch_ != before) return;
    notice.row = hit.row;
    notice.column = hit.column;
    notice.hyperlink = hit.hyperlink;
  }
  Send(kMsgReportClick, notice);
}

void CReportControl::NotifyDoubleClicked(const ReportHit& hit) {
  if (IsCreated()) OnLeftButtonDblClk(hit);
}

void CReportControl::OnLeftButtonDblClk(const ReportHit& hit) {
  ReportNotice notice;
  const CReportRow* const row = hit.area == ReportHit::Area::Row ? rows_.GetAt(hit.row) : nullptr;
  if (row != nullptr) {
    if (row->IsGroup()) return NotifyOpened(hit.row, !rows_.IsOpen(*row));
    notice.row = hit.row;
    notice.column = hit.column;
  }
  Send(kMsgReportDoubleClick, notice);
}

// Expand buttons are drawn only in a tree column.
bool CReportControl::CanOpen(const CReportRow& row) const {
  if (row.IsGroup()) return true;
  if (!row.GetRecord()->HasChildren()) return false;
  for (int i = 0; i < columns_.GetCount(); ++i) {
    if (columns_.GetAt(i)->IsTreeColumn()) return true;
  }
  return false;
}

void CReportControl::NotifyOpened(int row, bool open) {
  const CReportRow* opened = rows_.GetAt(row);
  if (!IsCreated() || opened == nullptr || !CanOpen(*opened)) return;
  if (!rows_.SetOpen(*opened, open)) return;
  const bool hadFocus = GetFocusedRow() >= 0;
  Populate();
  // The focused row is no longer visible.
  if (hadFocus && GetFocusedRow() < 0) SelectRow(row);
}

bool CReportControl::CanToggle(int row, int column) const {
  const CReportColumn* found = columns_.GetAt(column);
  const CReportRecordItem* item = GetItemAt(row, column);
  return mayEdit_ && found != nullptr && found->IsEditable() && item != nullptr &&
         item->HasCheckbox();
}

bool CReportControl::CanEdit(int row, int column) const {
  const CReportColumn* found = columns_.GetAt(column);
  const CReportRecordItem* item = GetItemAt(row, column);
  return mayEdit_ && found != nullptr && found->IsEditable() && item != nullptr &&
         !item->HasCheckbox() && found->GetIconId() == CReportColumn::kNoIcon;
}

void CReportControl::NotifyCheckToggled(int row, int column) {
  if (!IsCreated() || !CanToggle(row, column)) return;
  CReportRecordItem& item = *GetItemAt(row, column);
  item.SetChecked(!item.IsChecked());
  if (ReportPeer* drawn = DrawnBy()) drawn->OnRowChanged(row);
  ReportNotice notice;
  notice.row = row;
  notice.column = column;
  Send(kMsgReportCheck, notice);
}

void CReportControl::NotifyEdited(int row, int column, const std::string& newText) {
  if (!IsCreated() || !CanEdit(row, column)) return;
  GetItemAt(row, column)->OnEditChanged(newText);
  if (ReportPeer* drawn = DrawnBy()) drawn->OnRowChanged(row);
  ReportNotice notice;
  notice.row = row;
  notice.column = column;
  Send(kMsgReportEdit, notice);
}

void CReportControl::OnMouse(const MouseEvent& event) {
  const ReportHit hit = HitTest(event.point);
  const bool isHeader = hit.area == ReportHit::Area::Header;
  if (event.button == MouseButton::Right) {
    if (event.action != MouseAction::Release || !isHeader) return;
    return header_.NotifyRightClicked(hit.column, ClientToScreen(event.point));
  }
  if (event.button != MouseButton::Left) return;
  switch (event.action) {
    case MouseAction::Press:
      return NotifyPressed(hit, event.isShiftDown, event.isControlDown);
    case MouseAction::Release: {
      const ReportHit start = std::exchange(pressed_, ReportHit());
      if (start != hit) return;
      if (isHeader) return header_.NotifyClicked(hit.column);
      const bool isPlain = !event.isShiftDown && !event.isControlDown;
      // A click, unlike a drag, reduces the selection to one row.
      const bool isRow = rows_.GetAt(hit.row) != nullptr;
      if (isPlain && isRow && !SelectByUser({hit.row}, hit.row)) return;
      return NotifyClicked(hit);
    }
    case MouseAction::DoubleClick:
      pressed_ = ReportHit();
      return NotifyDoubleClicked(hit);
    case MouseAction::Move:
      break;
  }
}

void CReportControl::MoveFocus(int row, bool extends) {
  if (rows_.GetCount() == 0) return;
  row = std::clamp(row, 0, rows_.GetCount() - 1);
  if (!extends) {
    selection_.SetAnchor(row);
  } else if (selection_.GetAnchor() < 0) {
    selection_.SetAnchor(std::max(GetFocusedRow(), 0));
  }
  ShowRow(row);
  SelectByUser(selection_.RangeTo(row), row);
}

bool CReportControl::StepInTree(bool opens) {
  const CReportRow* row = rows_.GetAt(GetFocusedRow());
  if (row == nullptr) return false;
  const bool hasMore = CanOpen(*row);
  const bool isOpen = hasMore && rows_.IsOpen(*row);
  if (hasMore && isOpen != opens) {
    NotifyOpened(GetFocusedRow(), opens);
  } else if (opens && isOpen) {
    MoveFocus(GetFocusedRow() + 1, false);
  } else if (!opens) {
    int above = GetFocusedRow() - 1;
    while (above >= 0 && rows_.GetAt(above)->GetDepth() >= row->GetDepth()) --above;
    if (above >= 0) MoveFocus(above, false);
  }
  return true;
}

bool CReportControl::OnKeyDown(const KeyEvent& event) {
  const auto firstColumn = [this](bool (CReportControl::*can)(int, int) const) {
    for (int i = 0; i < columns_.GetCount(); ++i) {
      if (columns_.GetAt(i)->IsVisible() && (this->*can)(GetFocusedRow(), i)) return i;
    }
    return -1;
  };
  switch (event.key) {
    case kKeyUp:
      MoveFocus(GetFocusedRow() - 1, event.isShiftDown);
      return true;
    case kKeyDown:
      MoveFocus(GetFocusedRow() + 1, event.isShiftDown);
      return true;
    case kKeyPageUp:
      MoveFocus(GetFocusedRow() - RowsPerPage(), event.isShiftDown);
      return true;
    case kKeyPageDown:
      MoveFocus(GetFocusedRow() + RowsPerPage(), event.isShiftDown);
      return true;
    case kKeyHome:
      MoveFocus(0, event.isShiftDown);
      return true;
    case kKeyEnd:
      MoveFocus(rows_.GetCount() - 1, event.isShiftDown);
      return true;
    case kKeyLeft:
    case kKeyRight:
      return StepInTree(event.key == kKeyRight);
    case kKeySpace: {
      const int column = firstColumn(&CReportControl::CanToggle);
      if (column < 0) return false;
      NotifyCheckToggled(GetFocusedRow(), column);
      return true;
    }
    case kKeyF2: {
      const int column = firstColumn(&CReportControl::CanEdit);
      ReportPeer* drawn = DrawnBy();
      if (column >= 0 && drawn != nullptr) drawn->OnEditWanted(GetFocusedRow(), column);
      return true;
    }
    case kKeyEnter: {
      if (rows_.GetAt(GetFocusedRow()) == nullptr) return false;
      ReportNotice notice;
      notice.row = GetFocusedRow();
      Send(kMsgReportEnter, notice);
      return true;
    }
    default:
      return false;
  }
}

}  // namespace tarn
