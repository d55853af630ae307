#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// The columns of a report, in their order, and how the rows are sorted and grouped.
namespace tarn {

enum class ReportAlignment : int { Left = 0, Center = 1, Right = 2 };

class CReportColumn {
 public:
  static constexpr int kNoIcon = -1;
  // A width read from a file is clamped to this.
  static constexpr int kMaxWidth = 0x7FFF;

  // `columnIndex` is the index of the record item that the column shows; the width is in pixels.
  CReportColumn(int columnIndex, std::string columnCaption, int columnWidth, bool autoSize,
                int icon, bool sortable, bool visible)
      : index_(columnIndex),
        caption_(std::move(columnCaption)),
        width_(std::clamp(columnWidth, 0, kMaxWidth)),
        iconId_(icon),
        isAutoSize_(autoSize),
        isSortable_(sortable),
        isVisible_(visible) {}
  virtual ~CReportColumn() = default;
  CReportColumn(const CReportColumn&) = delete;
  CReportColumn& operator=(const CReportColumn&) = delete;

  int GetIndex() const { return index_; }
  const std::string& GetCaption() const { return caption_; }
  // The configured width; ReportLayout::LayOutColumns() computes the actual one.
  int GetWidth() const { return width_; }
  void SetWidth(int pixels);
  // Takes a share of the surplus or missing width.
  bool IsAutoSize() const { return isAutoSize_; }
  // Number of an image, for a column whose cells show images or check boxes.
  int GetIconId() const { return iconId_; }
  bool IsSortable() const { return isSortable_; }
  bool IsVisible() const { return isVisible_; }
  void SetVisible(bool visible);
  bool IsEditable() const { return isEditable_; }
  void SetEditable(bool editable) { isEditable_ = editable; }
  // Shows the depth of a record and the button that expands it.
  bool IsTreeColumn() const { return isTreeColumn_; }
  void SetTreeColumn(bool isTree) { isTreeColumn_ = isTree; }
  ReportAlignment GetAlignment() const { return alignment_; }
  void SetAlignment(ReportAlignment align);
  bool IsSorted() const { return isSorted_; }
  // Meaningful only if IsSorted().
  bool IsSortedAscending() const { return isAscending_; }

 private:
  friend class CReportColumns;
  void Changed() const {
    if (onChange_) onChange_();
  }

  int index_;
  std::string caption_;
  int width_;
  int iconId_;
  bool isAutoSize_;
  bool isSortable_;
  bool isVisible_;
  bool isEditable_ = false;
  bool isTreeColumn_ = false;
  bool isSorted_ = false;
  bool isAscending_ = true;
  ReportAlignment alignment_ = ReportAlignment::Left;
  std::function<void()> onChange_;
};

// The columns that rows are grouped by, outermost first. The columns are borrowed.
class CReportColumnOrder {
 public:
  explicit CReportColumnOrder(std::function<void()> changed) : onChange_(std::move(changed)) {}

  void Add(const CReportColumn* column);
  void Clear();
  // -1 if the column is not part of it.
  int IndexOf(const CReportColumn* column) const;
  const std::vector<const CReportColumn*>& GetColumns() const { return columns_; }

 private:
  std::vector<const CReportColumn*> columns_;
  std::function<void()> onChange_;
};

// Owns the columns of a report and holds the sort and grouping order. All changes are reported
// through one callback.
class CReportColumns {
 public:
  // `changed` is called whenever a column, the sorting or the grouping has changed.
  explicit CReportColumns(std::function<void()> changed)
      : onChange_(std::move(changed)), groups_(onChange_) {}

  int GetCount() const { return static_cast<int>(columns_.size()); }
  // Returns null if the index is out of range.
  CReportColumn* GetAt(int index) const;
  // Appends a column and returns it.
  CReportColumn* Add(std::unique_ptr<CReportColumn> column);
  // Removes the columns, and with them sorting and grouping.
  void Clear();
  // Sets the only column that rows are sorted by; null restores the order of the records. Takes
  // effect when the report is populated.
  void SetSortColumn(const CReportColumn* column, bool ascending);
  // Null if the rows are not sorted.
  const CReportColumn* GetSortColumn() const;
  CReportColumnOrder& GetGroupsOrder() { return groups_; }
  const CReportColumnOrder& GetGroupsOrder() const { return groups_; }

 private:
  std::vector<std::unique_ptr<CReportColumn>> columns_;
  std::function<void()> onChange_;
  CReportColumnOrder groups_;
};

}  // namespace tarn
