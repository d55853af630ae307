#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "widgets/Geometry.h"

// What a report shows: records of items, one item for each column, and records below records.
// Records belong to their list and are used on the report's thread alone.
namespace tarn {

class CReportRecords;

// The look of a cell; the control has its own idea first, the item may change it.
struct ReportItemMetrics {
  Color foreColor = MakeColor(0, 0, 0);
  Color backColor = MakeColor(255, 255, 255);
  friend bool operator==(const ReportItemMetrics&, const ReportItemMetrics&) = default;
};

// A part of a cell's text that can be clicked on, in bytes.
class CReportHyperlink {
 public:
  CReportHyperlink(int firstByte, int byteCount) : start(firstByte), length(byteCount) {}
  virtual ~CReportHyperlink() = default;

  int GetStart() const { return start; }
  int GetLength() const { return length; }

 private:
  int start;
  int length;
};

// One cell. A plain item shows its caption, a picture of the report's image list, or a check box;
// kinds of items replace what is virtual.
class CReportRecordItem {
 public:
  static constexpr const char* kPlainFormat = "%s";

  CReportRecordItem() = default;
  virtual ~CReportRecordItem() = default;
  CReportRecordItem(const CReportRecordItem&) = delete;
  CReportRecordItem& operator=(const CReportRecordItem&) = delete;

  // The text that is shown.
  virtual std::string GetCaption() const { return GetOwnCaption(); }
  virtual void GetItemMetrics(ReportItemMetrics& /*metrics*/) const {}
  // The user has typed another text.
  virtual void OnEditChanged(const std::string& text) { SetOwnCaption(text); }
  virtual void SetChecked(bool check) { isChecked = check; }
  virtual bool IsChecked() const { return isChecked; }

  void SetOwnCaption(std::string text) { Rare().caption = std::move(text); }
  std::string GetOwnCaption() const { return rare ? rare->caption : std::string(); }
  // What the text is put into; "%s" stands for it.
  void SetFormat(std::string text) { Rare().format = std::move(text); }
  std::string GetFormat() const { return rare ? rare->format : kPlainFormat; }

  // Number of a picture; -1 for none.
  void SetIconIndex(int index) { iconIndex = index; }
  int GetIconIndex() const { return iconIndex; }
  void SetHasCheckbox(bool has) { hasCheckbox = has; }
  bool HasCheckbox() const { return hasCheckbox; }

  void AddHyperlink(std::unique_ptr<CReportHyperlink> link) {
    Rare().links.push_back(std::move(link));
  }
  // The number of the hyperlink that covers this byte of the text; -1 for none.
  int FindHyperlink(int position) const;
  int GetHyperlinkCount() const { return rare ? static_cast<int>(rare->links.size()) : 0; }
  const CReportHyperlink& GetHyperlink(int index) const {
    return *rare->links.at(static_cast<std::size_t>(index));
  }

 private:
  // A report may have a million cells, and hardly one of them has any of these.
  struct RareParts {
    std::string caption;
    std::string format = kPlainFormat;
    std::vector<std::unique_ptr<CReportHyperlink>> links;
  };
  RareParts& Rare();

  std::unique_ptr<RareParts> rare;
  int iconIndex = -1;
  bool hasCheckbox = false;
  bool isChecked = false;
};

class CReportRecord {
 public:
  CReportRecord();
  virtual ~CReportRecord();
  CReportRecord(const CReportRecord&) = delete;
  CReportRecord& operator=(const CReportRecord&) = delete;

  // Behind the items that are there; gives the item.
  CReportRecordItem* AddItem(std::unique_ptr<CReportRecordItem> item);
  // Null when there is none for that column.
  CReportRecordItem* GetItem(int column) const;
  int GetItemCount() const { return static_cast<int>(items.size()); }

  CReportRecords& GetChildren();
  bool HasChildren() const;
  // Whether its children have rows of their own, from the next time that the report is populated.
  bool IsExpanded() const { return isExpanded; }
  void SetExpanded(bool expand) { isExpanded = expand; }

 private:
  std::vector<std::unique_ptr<CReportRecordItem>> items;
  std::unique_ptr<CReportRecords> children;
  bool isExpanded = false;
};

// Records in the order in which they were added. Only the report takes them away, since rows point
// to them.
class CReportRecords {
 public:
  // Gives the record.
  CReportRecord* Add(std::unique_ptr<CReportRecord> record);
  // Null when there is no such record.
  CReportRecord* GetAt(int index) const;
  int GetCount() const { return static_cast<int>(records.size()); }

 private:
  friend class CReportControl;
  void RemoveAll() { records.clear(); }

  std::vector<std::unique_ptr<CReportRecord>> records;
};

}  // namespace tarn
