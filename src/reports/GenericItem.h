#pragma once

#include <string>
#include <utility>

#include "widgets/ReportControl.h"

// Cells and columns of a report that is described by XML.
namespace tarn {

// Base class of all cells.
class CGenericItem : public CReportRecordItem {
 public:
  // Returns the value of the cell for files and drags.
  virtual std::string GetValue() const { return {}; }
};

// Editable text with its own colours.
class CGenericTextItem : public CGenericItem {
 public:
  CGenericTextItem(std::string text, Color foreground, Color background)
      : foreColor_(foreground), backColor_(background), value_(std::move(text)) {}

  std::string GetValue() const override { return value_; }
  void SetValue(std::string text) { value_ = std::move(text); }
  // Returns the item's own caption if it has one, else the formatted value.
  std::string GetCaption() const override;
  void GetItemMetrics(ReportItemMetrics& metrics) const override;
  void OnEditChanged(const std::string& text) override { value_ = text; }

 private:
  Color foreColor_;
  Color backColor_;
  std::string value_;
};

// Check box.
class CGenericBoolItem : public CGenericItem {
 public:
  explicit CGenericBoolItem(bool isTicked) {
    SetHasCheckbox(true);
    SetChecked(isTicked);
  }

  std::string GetValue() const override { return IsChecked() ? "TRUE" : "FALSE"; }
};

// Cell that shows an image of the column's image list.
class CGenericIconItem : public CGenericItem {
 public:
  std::string GetValue() const override;
};

class CGenericHyperlink : public CReportHyperlink {
 public:
  using CReportHyperlink::CReportHyperlink;
};

// Column with the attribute name that its cells are read from.
class CGenericColumn : public CReportColumn {
 public:
  CGenericColumn(int columnIndex, const std::string& columnCaption, int columnWidth, bool autoSize,
                 int icon, bool sortable, bool visible)
      : CReportColumn(columnIndex, columnCaption, columnWidth, autoSize, icon, sortable, visible),
        name_(columnCaption) {}

  // Name of the row attribute that supplies the value.
  const std::string& GetName() const { return name_; }
  void SetName(std::string attribute) { name_ = std::move(attribute); }
  // If true, every cell of the column is a hyperlink.
  bool HasHyperlink() const { return hasHyperlink_; }
  void SetHasHyperlink(bool has) { hasHyperlink_ = has; }

 private:
  bool hasHyperlink_ = false;
  std::string name_;
};

}  // namespace tarn
