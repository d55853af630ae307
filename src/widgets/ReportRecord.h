#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "widgets/Geometry.h"

// Data of a report: records with one item for each column, and child records. Records belong to
// their list. Only for the report's thread.
namespace tarn {

class CReportRecords;

// Appearance of a cell: the control sets the defaults, the item may change them.
struct ReportItemMetrics {
  Color foreColor = MakeColor(0, 0, 0);
  Color backColor = MakeColor(255, 255, 255);
  friend bool operator==(const ReportItemMetrics&, const ReportItemMetrics&) = default;
};

// A clickable part of a cell's text, as a range of bytes.
class CReportHyperlink {
 public:
  CReportHyperlink(int firstByte, int byteCount) : start_(firstByte), length_(byteCount) {}
  virtual ~CReportHyperlink() = default;

  int GetStart() const { return start_; }
  int GetLength() const { return length_; }

 private:
  int start_;
  int length_;
};

// One cell. A plain item shows its caption, an image of the report's image list, or a check box;
// derived classes override the virtual functions.
class CReportRecordItem {
 public:
  static constexpr const char* kPlainFormat = "%s";

  CReportRecordItem() = default;
  virtual ~CReportRecordItem() = default;
  CReportRecordItem(const CReportRecordItem&) = delete;
  CReportRecordItem& operator=(const CReportRecordItem&) = delete;

  // The displayed text.
  virtual std::string GetCaption() const { return GetOwnCaption(); }
  virtual void GetItemMetrics(ReportItemMetrics& /*metrics*/) const {}
  // The user entered a new text.
  virtual void OnEditChanged(const std::string& text) { SetOwnCaption(text); }
  virtual void SetChecked(bool check) { isChecked_ = check; }
  virtual bool IsChecked() const { return isChecked_; }

  void SetOwnCaption(std::string text) { Rare().caption = std::move(text); }
  std::string GetOwnCaption() const { return rare_ ? rare_->caption : std::string(); }
  // Format of the displayed text, in which "%s" stands for the item's value.
  void SetFormat(std::string text) { Rare().format = std::move(text); }
  std::string GetFormat() const { return rare_ ? rare_->format : kPlainFormat; }

  // Number of an image; -1 for none.
  void SetIconIndex(int index) { iconIndex_ = index; }
  int GetIconIndex() const { return iconIndex_; }
  void SetHasCheckbox(bool has) { hasCheckbox_ = has; }
  bool HasCheckbox() const { return hasCheckbox_; }

  void AddHyperlink(std::unique_ptr<CReportHyperlink> link) {
    Rare().links.push_back(std::move(link));
  }
  // Returns the index of the hyperlink that covers this byte of the text; -1 if there is none.
  int FindHyperlink(int position) const;
  int GetHyperlinkCount() const { return rare_ ? static_cast<int>(rare_->links.size()) : 0; }
  const CReportHyperlink& GetHyperlink(int index) const {
    return *rare_->links.at(static_cast<std::size_t>(index));
  }

 private:
  // Allocated on demand: a report may have a million cells, and very few of them use these fields.
  struct RareParts {
    std::string caption;
    std::string format = kPlainFormat;
    std::vector<std::unique_ptr<CReportHyperlink>> links;
  };
  RareParts& Rare();

  std::unique_ptr<RareParts> rare_;
  int iconIndex_ = -1;
  bool hasCheckbox_ = false;
  bool isChecked_ = false;
};

class CReportRecord {
 public:
  CReportRecord();
  virtual ~CReportRecord();
  CReportRecord(const CReportRecord&) = delete;
  CReportRecord& operator=(const CReportRecord&) = delete;

  // Appends an item and returns it.
  CReportRecordItem* AddItem(std::unique_ptr<CReportRecordItem> item);
  // Returns null if the column has no item.
  CReportRecordItem* GetItem(int column) const;
  int GetItemCount() const { return static_cast<int>(items_.size()); }

  CReportRecords& GetChildren();
  bool HasChildren() const;
  // If set, its children get rows of their own the next time the report is populated.
  bool IsExpanded() const { return isExpanded_; }
  void SetExpanded(bool expand) { isExpanded_ = expand; }

 private:
  std::vector<std::unique_ptr<CReportRecordItem>> items_;
  std::unique_ptr<CReportRecords> children_;
  bool isExpanded_ = false;
};

// Records in order of insertion. Only the report removes them, since rows point to them.
class CReportRecords {
 public:
  // Returns the record.
  CReportRecord* Add(std::unique_ptr<CReportRecord> record);
  // Returns null if the index is out of range.
  CReportRecord* GetAt(int index) const;
  int GetCount() const { return static_cast<int>(records_.size()); }

 private:
  friend class CReportControl;
  void RemoveAll() { records_.clear(); }

  std::vector<std::unique_ptr<CReportRecord>> records_;
};

}  // namespace tarn
