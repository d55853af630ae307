#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// The columns of a report, in their order, and what the rows are arranged by.
namespace tarn {

enum class ReportAlignment : int { Left = 0, Center = 1, Right = 2 };

class CReportColumn {
 public:
  static constexpr int kNoIcon = -1;
  // A width that is read from a file may be anything.
  static constexpr int kMaxWidth = 0x7FFF;

  // `columnIndex` is the item of a record that it shows; the width is in pixels.
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
  // Its own; what it gets in a window of another width stands in CReportControl::LayOutColumns.
  int GetWidth() const { return width; }
  void SetWidth(int pixels);
  // Takes a share of the width that is left over or missing.
  bool IsAutoSize() const { return isAutoSize; }
  // Number of a picture, for a column whose cells show pictures or check boxes.
  int GetIconId() const { return iconId; }
  bool IsSortable() const { return isSortable; }
  bool IsVisible() const { return isVisible; }
  void SetVisible(bool visible);
  bool IsEditable() const { return isEditable; }
  void SetEditable(bool editable) { isEditable = editable; }
  // Shows how deep a record lies, and the button that opens it.
  bool IsTreeColumn() const { return isTreeColumn; }
  void SetTreeColumn(bool isTree) { isTreeColumn = isTree; }
  ReportAlignment GetAlignment() const { return alignment; }
  void SetAlignment(ReportAlignment align);
  bool IsSorted() const { return isSorted; }
  // Only of meaning while it is the sorted one.
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

// What rows are grouped by, the outermost first. The columns are borrowed.
class CReportColumnOrder {
 public:
  explicit CReportColumnOrder(std::function<void()> changed) : onChange(std::move(changed)) {}

  void Add(const CReportColumn* column);
  void Clear();
  // -1 when it isn't in it.
  int IndexOf(const CReportColumn* column) const;
  const std::vector<const CReportColumn*>& GetColumns() const { return columns; }

 private:
  std::vector<const CReportColumn*> columns;
  std::function<void()> onChange;
};

class CReportColumns {
 public:
  // `changed` is called whenever a column or the order of the rows has changed.
  explicit CReportColumns(std::function<void()> changed)
      : onChange(std::move(changed)), groups(onChange) {}

  int GetCount() const { return static_cast<int>(columns.size()); }
  // Null when there is no such column.
  CReportColumn* GetAt(int index) const;
  CReportColumn* Add(std::unique_ptr<CReportColumn> column);
  // The columns go, and with them sorting and grouping.
  void Clear();
  // The one column that rows are sorted by; null for the order of the records. Rows follow when the
  // report is populated.
  void SetSortColumn(const CReportColumn* column, bool ascending);
  // Null for none.
  const CReportColumn* GetSortColumn() const;
  CReportColumnOrder& GetGroupsOrder() { return groups; }
  const CReportColumnOrder& GetGroupsOrder() const { return groups; }

 private:
  std::vector<std::unique_ptr<CReportColumn>> columns;
  std::function<void()> onChange;
  CReportColumnOrder groups;
};

}  // namespace tarn
