#pragma once

#include <string>
#include <utility>

#include "widgets/ReportControl.h"

// The cells and columns of a report that is described by XML.
namespace tarn {

class CGenericItem : public CReportRecordItem {
 public:
  // The cell as text, for files and drags.
  virtual std::string GetValue() const { return {}; }
};

class CGenericTextItem : public CGenericItem {
 public:
  CGenericTextItem(std::string text, Color foreground, Color background)
      : foreColor(foreground), backColor(background), value(std::move(text)) {}

  std::string GetValue() const override { return value; }
  void SetValue(std::string text) { value = std::move(text); }
  // Its own caption if it has one, else the value, in its format.
  std::string GetCaption() const override;
  void GetItemMetrics(ReportItemMetrics& metrics) const override;
  void OnEditChanged(const std::string& text) override { value = text; }

 private:
  Color foreColor;
  Color backColor;
  std::string value;
};

// A check box.
class CGenericBoolItem : public CGenericItem {
 public:
  explicit CGenericBoolItem(bool isTicked) {
    SetHasCheckbox(true);
    SetChecked(isTicked);
  }

  std::string GetValue() const override { return IsChecked() ? "TRUE" : "FALSE"; }
};

class CGenericIconItem : public CGenericItem {
 public:
  std::string GetValue() const override;
};

class CGenericHyperlink : public CReportHyperlink {
 public:
  using CReportHyperlink::CReportHyperlink;
};

class CGenericColumn : public CReportColumn {
 public:
  CGenericColumn(int columnIndex, const std::string& columnCaption, int columnWidth, bool autoSize,
                 int icon, bool sortable, bool visible)
      : CReportColumn(columnIndex, columnCaption, columnWidth, autoSize, icon, sortable, visible),
        name(columnCaption) {}

  // The attribute of a row that fills it.
  const std::string& GetName() const { return name; }
  void SetName(std::string attribute) { name = std::move(attribute); }
  // Every text of it is a hyperlink.
  bool HasHyperlink() const { return hasHyperlink; }
  void SetHasHyperlink(bool has) { hasHyperlink = has; }

 private:
  bool hasHyperlink = false;
  std::string name;
};

}  // namespace tarn
