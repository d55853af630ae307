#pragma once

#include <memory>
#include <string>

#include "platform/files/FileSystem.h"
#include "reports/GenericRecord.h"

namespace tarn {

// A report whose columns and rows are described by XML:
//
//   <Report>
//     <Def NbCol='2'><Col Type='PT_ICON' Header='Icon' Icon='a.bmp'/><Col .../></Def>
//     <Rows><Row Icon='1' Name='...'><Row .../></Row></Rows>
//   </Report>
//
// Rows are made by AddRows, which kinds of reports replace. Comments are no rows.
class CGenericReport : public CReportControl {
 public:
  // The definition is copied; null for one that comes later, by SetDefinition or Serialize. Of
  // `host` the user is asked what concerns no other window; `fileSystem` is borrowed.
  CGenericReport(FileSystem& fileSystem, WindowHandle host, const CXmlNode* reportDefinition,
                 bool enableDrag, bool enableTree);
  ~CGenericReport() override;

  // Makes the columns and adds the rows that stand in the definition; false without children of
  // it. A picture that doesn't load ends the columns in front of its own, with a message.
  bool BuildFromDefinition();
  // Adds rows, in place of the old ones or behind them, and populates. A `sortColumn` of 0 or more
  // becomes the one that rows are sorted by, ascending, unless it is already. Always true.
  bool Reload(const CXmlNode* rowsNode, bool removeOld, int sortColumn);

  // Reads a report from `node`, whose definition is kept while the columns stay as they are; or
  // writes one below it, of rows only the outermost, each with the shape of what lies below it.
  virtual void Serialize(CXmlNode& node, bool storing);
  // The cells of a row, a tab behind each.
  virtual std::string RecordToText(const CReportRecord& record) const;
  // New rows out of the second child of the node.
  virtual void ReloadFromChild(const CXmlNode& node);
  virtual bool Validate(const CXmlNode& node) const;
  virtual void RemoveAllRows();
  // Behind each Reload.
  virtual void OnReloaded() {}
  // New columns, and the rows of the definition behind those that are there.
  virtual void SetDefinition(const CXmlNode& node);
  // Every 10 ms while the last row says that its work isn't done.
  virtual void OnWaitingTimer(int /*timerId*/) {}
  // In pixels.
  virtual int MeasureText(const std::string& sample) const;
  virtual void AddRows(const CXmlNode& rowsNode);

  const CGenericColumn& GetColumn(int index) const;
  // The value of a cell; empty for a group and where there is none.
  std::string GetValueAt(int row, int column) const;

 protected:
  static constexpr int kWaitingTimer = 601;

  virtual std::unique_ptr<CGenericRecord> MakeRecord(const CXmlNode& element) const;
  // Behind the others, open if the element says so; with a record for each element below it.
  CReportRecord& AddRow(const CXmlNode& element);
  CReportRecord& AddRowAlone(const CXmlNode& element);

  bool OnCreate() override;
  void OnTimer(int timerId) override;
  void OnLeftButtonDown(const ReportHit& hit, bool isShiftDown, bool isControlDown) override;

 private:
  using CReportControl::AddColumn;  // all columns are generic ones

  // No row waits any longer.
  void RemoveRecords();
  void RemoveColumns();
  void CreateColumns(const CXmlNode& definitionNode);
  // False when its picture doesn't load.
  bool CreateColumn(const CXmlNode& column, int index);
  // The number of its first picture; -1 when it doesn't load.
  int AddPictures(const char* path);
  void AddChildRows(CReportRecord& record, const CXmlNode& element);
  void Write(CXmlNode& node) const;

  const std::string rowsName = "Rows";
  const std::string rowName = "Row";
  FileSystem& files;
  const WindowHandle hostWindow;
  const bool dragEnabled;
  const bool treeEnabled;
  std::unique_ptr<CXmlNode> definition;
  std::shared_ptr<CImageList> imageList;
};

}  // namespace tarn
