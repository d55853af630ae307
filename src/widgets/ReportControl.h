#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "widgets/ImageList.h"
#include "widgets/ReportColumns.h"
#include "widgets/ReportHeader.h"
#include "widgets/ReportLayout.h"
#include "widgets/ReportRecord.h"
#include "widgets/ReportRows.h"
#include "widgets/ReportSelection.h"
#include "widgets/Wnd.h"

namespace tarn {

// Messages from a report to its owner; wParam is the address of a ReportNotice that is valid during
// the call. The owner may refill the report, or destroy it.
enum ReportMessage : std::uint32_t {
  kMsgReportClick = 0x9B01,    // left click; row -1 if it hit no row
  kMsgReportDoubleClick,       // left double click
  kMsgReportEnter,             // the Enter key, on the focused row
  kMsgReportHeaderRightClick,  // column -1 after the last column
  kMsgReportSelection,         // the user changed the selection
  kMsgReportCheck,             // the user toggled a check box
  kMsgReportEdit,              // the user changed a text
};

struct ReportNotice {
  int id = 0;  // id of the report's window
  int row = -1;
  int column = -1;     // index, -1 for none
  int hyperlink = -1;  // index within the cell, -1 for none
  Point screen;        // position of a right click
};

// Draws a report. Reads columns, rows and selection from the control.
class ReportPeer : public WindowPeer {
 public:
  // Columns were added or removed, or their appearance changed; also for group box, grid and
  // colours.
  virtual void OnColumnsChanged() {}
  // All rows are invalid and have to be read again.
  virtual void OnRowsReset() {}
  // Only the rows from `first` to the end are new.
  virtual void OnRowsAppended(int /*first*/) {}
  // The content of a row changed.
  virtual void OnRowChanged(int /*row*/) {}
  virtual void OnSelectionChanged() {}
  // Scroll to make the row visible.
  virtual void OnRowShown(int /*row*/) {}
  // The user wants to edit a cell by keyboard; NotifyEdited() reports the result.
  virtual void OnEditWanted(int /*row*/, int /*column*/) {}
  // Returns what is drawn at a point, or nullopt to let the control compute it.
  virtual std::optional<ReportHit> HitTest(Point /*point*/) { return std::nullopt; }
  // Returns how many rows fit below the header, or nullopt to let the control compute it.
  virtual std::optional<int> GetRowsPerPage() { return std::nullopt; }
};

// Appearance of a report; the toolkit chooses the values that are not set.
struct ReportLook {
  bool hasVerticalLines = true;
  int horizontalLineStyle = 1;  // 0 none, 1 solid
  bool hasToolTips = true;
  std::optional<Color> headerColor;  // background of the captions
  std::optional<Color> selectedTextColor;
  Font captionFont;
};

// A grid with column captions, hierarchical records, sorting and grouping.
//
// Records are the data, rows their presentation: after adding records, the caller must call
// Populate() or PopulateAdded(). Pointers to rows are valid until the next of these calls, pointers
// to records until RemoveAllRecords().
class CReportControl : public CWnd {
 public:
  CReportControl();
  ~CReportControl() override;

  // --- Columns ---

  CReportColumn* AddColumn(std::unique_ptr<CReportColumn> column);
  CReportColumns& GetColumns() { return columns_; }
  const CReportColumns& GetColumns() const { return columns_; }
  CReportHeader& GetReportHeader() { return header_; }
  // The list may be shared with other controls. Repaints the report.
  void SetImageList(std::shared_ptr<const CImageList> list);
  const CImageList* GetImageList() const { return images_.get(); }
  // The box above the header that shows the grouping columns.
  void ShowGroupBy(bool show);
  bool IsGroupByVisible() const { return showsGroupBox_; }
  // Allows the user to edit cells of editable columns.
  void AllowEdit(bool allow) { mayEdit_ = allow; }
  bool IsEditAllowed() const { return mayEdit_; }
  // Convenience setters for parts of the appearance.
  void SetGridStyle(bool verticalLines, int horizontalStyle);
  void EnableToolTips(bool enable);
  void SetLook(const ReportLook& newLook);
  const ReportLook& GetLook() const { return look_; }

  // --- Records and rows ---

  // Appends a top-level record, which gets a row only with the next Populate() or PopulateAdded().
  CReportRecord* AddRecord(std::unique_ptr<CReportRecord> record);
  const CReportRecords& GetRecords() const { return records_; }
  // Clears records, rows and selection.
  void RemoveAllRecords();
  // Rebuilds the rows, in O(n log n) for n records if sorted or grouped, otherwise O(n). Selected
  // records and groups stay selected if they still have a row.
  void Populate();
  // Like Populate(), if records were only added since the last time; the cost depends only on the
  // number of new records.
  void PopulateAdded();
  void SortRows() { Populate(); }
  const ReportRows& GetRows() const { return rows_; }
  // Returns null for a group and if there is no such cell.
  CReportRecordItem* GetItemAt(int row, int column) const;

  // Valid as long as the control; its content changes with the selection.
  const CReportSelectedRows& GetSelectedRows() const { return selection_.GetSelected(); }
  // Row that keys act on; -1 for none.
  int GetFocusedRow() const { return selection_.GetFocusedRow(); }
  // Selects only this row (-1 for none) and scrolls to it. Sends no message to the owner.
  void SelectRow(int row);

  // --- Geometry ---

  // Computes the widths of the columns, and what a peer doesn't override.
  const ReportLayout& GetLayout() const { return layout_; }
  // Returns the position at a point in client coordinates.
  ReportHit HitTest(Point point) const;
  // Number of the first row below the header. Preserved by a refill, limited to the number of rows.
  int GetTopRow() const { return topRow_; }

  // --- Called by the toolkit: user actions, in addition to those of CReportHeader ---

  // The left button was pressed; it was released at the same position; or it was double-clicked.
  void NotifyPressed(const ReportHit& hit, bool isShiftDown, bool isControlDown);
  void NotifyClicked(const ReportHit& hit);
  void NotifyDoubleClicked(const ReportHit& hit);
  // Expands or collapses a record with children, or a group.
  void NotifyOpened(int row, bool open);
  // No-op if the user may not change the cell.
  void NotifyCheckToggled(int row, int column);
  void NotifyEdited(int row, int column, const std::string& newText);
  bool CanEdit(int row, int column) const;
  bool CanToggle(int row, int column) const;
  bool CanOpen(const CReportRow& row) const;
  // Selection and focused row that the toolkit has determined itself.
  void NotifySelected(std::vector<int> indexes, int focused);
  void NotifyScrolled(int newTopRow);

 protected:
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) override;
  void OnMouse(const MouseEvent& event) override;
  bool OnKeyDown(const KeyEvent& event) override;
  // The left button was pressed: selects. The owner has been notified when this returns, so the
  // window may have been destroyed.
  virtual void OnLeftButtonDown(const ReportHit& hit, bool isShiftDown, bool isControlDown);
  virtual void OnLeftButtonDblClk(const ReportHit& hit);

 private:
  friend class CReportHeader;

  void OnColumnsChanged();
  void ResetRows();
  void Send(ReportMessage message, const ReportNotice& notice);
  // Null while there is no peer.
  ReportPeer* DrawnBy() const { return IsCreated() ? reportPeer_ : nullptr; }
  void RestoreSelection(const ReportSelection::Remembered& remembered);
  // Returns whether the selection changed. Notifies only the peer.
  bool Select(std::vector<int> indexes, int focused);
  // Like Select(), and notifies the owner of a change. Returns false if the control must not be
  // accessed any more because it was destroyed or its rows were replaced.
  bool SelectByUser(std::vector<int> indexes, int focused);
  void MoveFocus(int row, bool extends);
  bool StepInTree(bool opens);
  void ShowRow(int row);
  int RowsPerPage() const;

  ReportPeer* reportPeer_ = nullptr;
  CReportColumns columns_;
  CReportHeader header_;
  CReportRecords records_;
  ReportRows rows_;
  ReportSelection selection_{rows_};
  ReportLayout layout_{*this};
  std::shared_ptr<const CImageList> images_;
  ReportLook look_;
  int populated_ = 0;          // records that have rows
  bool isRearranged_ = false;  // columns have changed since the rows were built
  std::uint64_t epoch_ = 0;    // number of changes of the rows
  bool showsGroupBox_ = false;
  bool mayEdit_ = false;
  int topRow_ = 0;
  ReportHit pressed_;
};

}  // namespace tarn
