#pragma once

#include <memory>
#include <string>

#include "platform/files/FileSystem.h"
#include "reports/GenericRecord.h"

namespace tarn {

// Report whose columns and rows are described by XML:
//
//   <Report>
//     <Def NbCol='2'><Col Type='PT_ICON' Header='Icon' Icon='a.bmp'/><Col .../></Def>
//     <Rows><Row Icon='1' Name='...'><Row .../></Row></Rows>
//   </Report>
//
// AddRows() creates the rows; derived reports override it. Comments are ignored.
class CGenericReport : public CReportControl {
 public:
  // Copies the definition; null if it is supplied later by SetDefinition() or Serialize(). Messages
  // to the user that don't concern another window appear over `host`. `fileSystem` is borrowed.
  CGenericReport(FileSystem& fileSystem, WindowHandle host, const CXmlNode* reportDefinition,
                 bool enableDrag, bool enableTree);
  ~CGenericReport() override;

  // Creates the columns and adds the rows of the definition. Returns false if the definition has no
  // children. If an image doesn't load, creates only the columns before that one and shows a
  // message.
  bool BuildFromDefinition();
  // Replaces the rows if `removeOld`, or else appends to them, and populates the report. If
  // `sortColumn` is 0 or more, it becomes the sort column, ascending, unless it already is. Always
  // returns true.
  bool Reload(const CXmlNode* rowsNode, bool removeOld, int sortColumn);

  // Loads a report from `node`: stores it as the definition and replaces the rows; the existing
  // columns are not rebuilt. If `storing`, appends a report to `node` instead: only the top-level
  // rows, each with the expansion state of its descendants.
  virtual void Serialize(CXmlNode& node, bool storing);
  // Returns the cells of a row, each followed by a tab.
  virtual std::string RecordToText(const CReportRecord& record) const;
  // Replaces the rows by those in the second child of the node.
  virtual void ReloadFromChild(const CXmlNode& node);
  // Always returns false; derived reports may override it.
  virtual bool Validate(const CXmlNode& node) const;
  // Removes all rows, stops the waiting timer and updates the display.
  virtual void RemoveAllRows();
  // Called after each Reload().
  virtual void OnReloaded() {}
  // Replaces the columns, and appends the rows of the definition to the existing ones.
  virtual void SetDefinition(const CXmlNode& node);
  // Called every 10 ms while the last row is flagged as waiting for its work to finish.
  virtual void OnWaitingTimer(int /*timerId*/) {}
  // Returns the width in pixels.
  virtual int MeasureText(const std::string& sample) const;
  // Appends a row for each child element of `rowsNode`. If the last one has the attribute
  // "WaitingProcess", OnWaitingTimer() is called periodically from then on.
  virtual void AddRows(const CXmlNode& rowsNode);

  const CGenericColumn& GetColumn(int index) const;
  // Returns the value of a cell; an empty string for a group or if there is no such cell.
  std::string GetValueAt(int row, int column) const;

 protected:
  static constexpr int kWaitingTimer = 601;

  virtual std::unique_ptr<CGenericRecord> MakeRecord(const CXmlNode& element) const;
  // Appends a row, expanded if the element says so, with a child record for each child element.
  // AddRowAlone() adds the row without children.
  CReportRecord& AddRow(const CXmlNode& element);
  CReportRecord& AddRowAlone(const CXmlNode& element);

  bool OnCreate() override;
  void OnTimer(int timerId) override;
  void OnLeftButtonDown(const ReportHit& hit, bool isShiftDown, bool isControlDown) override;

 private:
  using CReportControl::AddColumn;  // all columns are of type CGenericColumn

  // Removes all records and stops waiting.
  void RemoveRecords();
  void RemoveColumns();
  void CreateColumns(const CXmlNode& definitionNode);
  // Returns false if the column's image doesn't load.
  bool CreateColumn(const CXmlNode& column, int index);
  // Returns the number of the first image added; -1 if the file doesn't load.
  int AddPictures(const char* path);
  void AddChildRows(CReportRecord& record, const CXmlNode& element);
  void Write(CXmlNode& node) const;

  const std::string rowsName_ = "Rows";
  const std::string rowName_ = "Row";
  FileSystem& files_;
  const WindowHandle hostWindow_;
  const bool dragEnabled_;
  const bool treeEnabled_;
  std::unique_ptr<CXmlNode> definition_;
  std::shared_ptr<CImageList> imageList_;
};

}  // namespace tarn
