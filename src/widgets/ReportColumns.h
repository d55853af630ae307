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
      : index(columnIndex),
        caption(std::move(columnCaption)),
        width(std::clamp(columnWidth, 0, kMaxWidth)),
        iconId(icon),
        isAutoSize(autoSize),
        isSortable(sortable),
        isVisible(visible) {}
  virtual ~CReportColumn() = default;
  CReportColumn(const CReportColumn&) = delete;
  CReportColumn& operator=(const CReportColumn&) = delete;

  int GetIndex() const { return index; }
  const std::string& GetCaption() const { return caption; }
  // The configured width; CReportControl::LayOutColumns() computes the actual one.
  int GetWidth() const { return width; }
  void SetWidth(int pixels);
  // Takes a share of the surplus or missing width.
  bool IsAutoSize() const { return isAutoSize; }
  // Number of an image, for a column whose cells show images or check boxes.
  int GetIconId() const { return iconId; }
  bool IsSortable() const { return isSortable; }
  bool IsVisible() const { return isVisible; }
  void SetVisible(bool visible);
  bool IsEditable() const { return isEditable; }
  void SetEditable(bool editable) { isEditable = editable; }
  // Shows the depth of a record and the button that expands it.
  bool IsTreeColumn() const { return isTreeColumn; }
  void SetTreeColumn(bool isTree) { isTreeColumn = isTree; }
  ReportAlignment GetAlignment() const { return alignment; }
  void SetAlignment(ReportAlignment align);
  bool IsSorted() const { return isSorted; }
  // Meaningful only if IsSorted().
  bool IsSortedAscending() const { return isAscending; }

 private:
  friend class CReportColumns;
  void Changed() const {
    if (onChange) onChange();
  }

  int index;
  std::string caption;
  int width;
  int iconId;
  bool isAutoSize;
  bool isSortable;
  bool isVisible;
  bool isEditable = false;
  bool isTreeColumn = false;
  bool isSorted = false;
  bool isAscending = true;
  ReportAlignment alignment = ReportAlignment::Left;
  std::function<void()> onChange;
};

// The columns that rows are grouped by, outermost first. The columns are borrowed.
class CReportColumnOrder {
 public:
  explicit CReportColumnOrder(std::function<void()> changed) : onChange(std::move(changed)) {}

  void Add(const CReportColumn* column);
  void Clear();
  // -1 if the column is not part of it.
  int IndexOf(const CReportColumn* column) const;
  const std::vector<const CReportColumn*>& GetColumns() const { return columns; }

 private:
  std::vector<const CReportColumn*> columns;
  std::function<void()> onChange;
};

// Owns the columns of a report and holds the sort and grouping order. All changes are reported
// through one callback.
class CReportColumns {
 public:
  // `changed` is called whenever a column, the sorting or the grouping has changed.
  explicit CReportColumns(std::function<void()> changed)
      : onChange(std::move(changed)), groups(onChange) {}

  int GetCount() const { return static_cast<int>(columns.size()); }
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
  CReportColumnOrder& GetGroupsOrder() { return groups; }
  const CReportColumnOrder& GetGroupsOrder() const { return groups; }

 private:
  std::vector<std::unique_ptr<CReportColumn>> columns;
  std::function<void()> onChange;
  CReportColumnOrder groups;
};

}  // namespace tarn
