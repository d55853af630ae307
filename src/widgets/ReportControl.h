#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "widgets/ImageList.h"
#include "widgets/ReportColumns.h"
#include "widgets/ReportRecord.h"
#include "widgets/ReportRows.h"
#include "widgets/Wnd.h"

namespace tarn {

class CReportControl;

// What a report sends its owner; wParam is the address of a ReportNotice that lives during the
// call. The owner may refill the report, or destroy it.
enum ReportMessage : std::uint32_t {
  kMsgReportClick = 0x9B01,    // of the left button; row -1 where none was hit
  kMsgReportDoubleClick,       // ... a second time
  kMsgReportEnter,             // the Enter key, on the row that has the focus
  kMsgReportHeaderRightClick,  // column -1 behind the last one
  kMsgReportSelection,         // the user has selected other rows
  kMsgReportCheck,             // the user has ticked or cleared a check box
  kMsgReportEdit,              // the user has changed a text
};

struct ReportNotice {
  int id = 0;  // of the report's window
  int row = -1;
  int column = -1;     // index, -1 for none
  int hyperlink = -1;  // of the cell, -1 for none
  Point screen;        // of a right click
};

// A place in a report.
struct ReportHit {
  enum class Area { Nowhere, GroupBox, Header, Row };
  enum class Part { Cell, Opener, Check };
  Area area = Area::Nowhere;
  Part part = Part::Cell;
  int row = -1;
  int column = -1;
  int hyperlink = -1;
  friend bool operator==(const ReportHit&, const ReportHit&) = default;
};

// What draws a report. It reads columns, rows and selection from the control.
class ReportPeer : public WindowPeer {
 public:
  // Columns came, went, or look another way; so do group box, grid and colours.
  virtual void OnColumnsChanged() {}
  // Nothing is as it was: no row that was known exists any more.
  virtual void OnRowsReset() {}
  // Only `first` to the last row are new.
  virtual void OnRowsAppended(int /*first*/) {}
  // The same row shows something else.
  virtual void OnRowChanged(int /*row*/) {}
  virtual void OnSelectionChanged() {}
  // The row must be seen.
  virtual void OnRowShown(int /*row*/) {}
  // The user wants to edit a cell, by key; NotifyEdited brings what became of it.
  virtual void OnEditWanted(int /*row*/, int /*column*/) {}
  // What is drawn at a point; nothing when the control is to work it out.
  virtual std::optional<ReportHit> HitTest(Point /*point*/) { return std::nullopt; }
  // How many rows fit below the header; nothing when the control is to work it out.
  virtual std::optional<int> GetRowsPerPage() { return std::nullopt; }
};

// How a report is to look; what has no value is the toolkit's choice.
struct ReportLook {
  bool hasVerticalLines = true;
  int horizontalLineStyle = 1;  // 0 none, 1 solid
  bool hasToolTips = true;
  std::optional<Color> headerColor;  // behind the captions
  std::optional<Color> selectedTextColor;
  Font captionFont;
};

// The head of the columns.
class CReportHeader {
 public:
  explicit CReportHeader(CReportControl& control) : report(control) {}

  // Whatever rows are sorted by makes groups of them as well.
  void ShowItemsInGroups(bool show);
  bool IsShowItemsInGroups() const { return showsInGroups; }
  // What the user may do to the columns with the mouse.
  void AllowColumnRemove(bool allow) { mayRemove = allow; }
  bool IsColumnRemoveAllowed() const { return mayRemove; }
  void AllowColumnReorder(bool allow) { mayReorder = allow; }
  bool IsColumnReorderAllowed() const { return mayReorder; }
  // As wide as its caption and its cells. Of the cells those in sight are measured, and of all
  // others the 1,000 with the longest texts: a wider one may be among the rest, where a shorter
  // text has wider letters.
  void BestFit(CReportColumn& column);

 private:
  CReportControl& report;
  bool showsInGroups = false;
  bool mayRemove = true;
  bool mayReorder = true;
};

// A grid of records below captions, with children of records, sorting and groups.
//
// Records are the data, rows what is shown of them: whoever adds records calls Populate (or
// PopulateAdded) afterwards. Pointers to rows live until the next of these calls, records until
// RemoveAllRecords.
class CReportControl : public CWnd {
 public:
  CReportControl();
  ~CReportControl() override;

  // --- Columns ---

  CReportColumn* AddColumn(std::unique_ptr<CReportColumn> column);
  CReportColumns& GetColumns() { return columns; }
  const CReportColumns& GetColumns() const { return columns; }
  CReportHeader& GetReportHeader() { return header; }
  void SetImageList(std::shared_ptr<const CImageList> list);
  const CImageList* GetImageList() const { return images.get(); }
  // The box above the header that shows what is grouped by.
  void ShowGroupBy(bool show);
  bool IsGroupByVisible() const { return showsGroupBox; }
  // Whether the user may edit cells of columns that can be edited.
  void AllowEdit(bool allow) { mayEdit = allow; }
  bool IsEditAllowed() const { return mayEdit; }
  void SetGridStyle(bool verticalLines, int horizontalStyle);
  void EnableToolTips(bool enable);
  void SetLook(const ReportLook& newLook);
  const ReportLook& GetLook() const { return look; }

  // --- Records and rows ---

  CReportRecord* AddRecord(std::unique_ptr<CReportRecord> record);
  const CReportRecords& GetRecords() const { return records; }
  // Records, rows and selection go at once.
  void RemoveAllRecords();
  // Makes the rows; what is selected stays so if it still has a row.
  void Populate();
  // The same for records that were only added since the last time, at the cost of what is new.
  void PopulateAdded();
  void SortRows() { Populate(); }
  const ReportRows& GetRows() const { return rows; }
  // Null for a group, and where there is no such cell.
  CReportRecordItem* GetItemAt(int row, int column) const;

  const CReportSelectedRows& GetSelectedRows() const { return selected; }
  // The row that keys act on; -1 for none.
  int GetFocusedRow() const { return focusedRow; }
  // Selects this row alone, -1 for none, and shows it. Nobody is told.
  void SelectRow(int row);

  // --- Geometry; where nothing is drawn, a row is 16 pixels high ---

  static constexpr int kGroupBoxHeight = 32;
  static constexpr int kHeaderHeight = 20;
  static constexpr int kRowHeight = 16;
  static constexpr int kCellMargin = 4;
  static constexpr int kOpenerWidth = 16;
  static constexpr int kPictureWidth = 16;  // without an image list
  static constexpr int kLeastElasticWidth = 40;

  struct ColumnSpan {
    int column = 0;
    int left = 0;
    int width = 0;
  };
  // The visible columns from left to right. Those that size themselves share what is left over, or
  // what is missing, as long as none gets narrower than kLeastElasticWidth.
  std::vector<ColumnSpan> LayOutColumns() const;
  ReportHit HitTest(Point point) const;
  // The number of the first row below the header. It stays through a refill, as far as there are
  // rows then.
  int GetTopRow() const { return topRow; }
  // What a cell needs to be seen whole.
  int MeasureCell(int row, const CReportColumn& column) const;

  // --- From the toolkit: what the user does ---

  // The left button went down on a place; then it came up again on the same place, or again.
  void NotifyPressed(const ReportHit& hit, bool isShiftDown, bool isControlDown);
  void NotifyClicked(const ReportHit& hit);
  void NotifyDoubleClicked(const ReportHit& hit);
  // Sorts, the other way round when it is the sorted column already.
  void NotifyHeaderClicked(int column);
  void NotifyHeaderRightClicked(int column, Point screen);
  // What the column gains or loses goes to those on its right that size themselves, as far as they
  // have it, so that the report stays as wide as it is.
  void NotifyColumnResized(int column, int width);
  // The rows are grouped by the column as well, as the innermost one, or no longer.
  void NotifyGrouped(int column);
  void NotifyUngrouped(int column);
  // Opens or closes a record with children, or a group.
  void NotifyOpened(int row, bool open);
  // Nothing where the user may not change it.
  void NotifyCheckToggled(int row, int column);
  void NotifyEdited(int row, int column, const std::string& newText);
  bool CanEdit(int row, int column) const;
  bool CanToggle(int row, int column) const;
  bool CanOpen(const CReportRow& row) const;
  // The rows that the user has selected by other means, and the one with the focus.
  void NotifySelected(std::vector<int> indexes, int focused);
  void NotifyScrolled(int newTopRow);

 protected:
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) override;
  void OnMouse(const MouseEvent& event) override;
  bool OnKeyDown(const KeyEvent& event) override;
  // The left button went down: selects. The owner has been told when it returns, so that the window
  // may be gone.
  virtual void OnLeftButtonDown(const ReportHit& hit, bool isShiftDown, bool isControlDown);
  virtual void OnLeftButtonDblClk(const ReportHit& hit);

 private:
  friend class CReportHeader;

  void OnColumnsChanged();
  void ResetRows();
  void Send(ReportMessage message, const ReportNotice& notice);
  // Null while nothing is drawn.
  ReportPeer* DrawnBy() const { return IsCreated() ? reportPeer : nullptr; }
  // The selection as records and groups, while rows are made anew.
  struct RememberedSelection {
    std::unordered_set<const CReportRecord*> records;
    std::unordered_set<std::string> groups;
    const CReportRecord* focusedRecord = nullptr;
    std::string focusedGroup;
  };
  RememberedSelection RememberSelection() const;
  void RestoreSelection(const RememberedSelection& remembered);
  // Whether it changed. Does not tell anybody but the peer.
  bool Select(std::vector<int> indexes, int focused);
  // ... and tells the owner if it did. False when the control must not be touched any more: it was
  // destroyed, or its rows are others.
  bool SelectByUser(std::vector<int> indexes, int focused);
  std::vector<int> Range(int from, int to) const;
  void MoveFocus(int row, bool extends);
  bool StepInTree(bool opens);
  void ShowRow(int row);
  int RowsPerPage() const;
  int PictureWidth() const;
  ReportHit HitCell(Point point, int row) const;

  ReportPeer* reportPeer = nullptr;
  CReportColumns columns;
  CReportHeader header;
  CReportRecords records;
  ReportRows rows;
  CReportSelectedRows selected;
  std::shared_ptr<const CImageList> images;
  ReportLook look;
  int populated = 0;            // records that have rows
  bool isArrangedAnew = false;  // columns have changed since the rows were made
  std::uint64_t epoch = 0;      // of the rows: counts their changes
  bool showsGroupBox = false;
  bool mayEdit = false;
  int focusedRow = -1;
  int anchorRow = -1;  // where an extended selection starts
  int topRow = 0;
  ReportHit pressed;
};

}  // namespace tarn
