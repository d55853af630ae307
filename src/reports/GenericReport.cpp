#include "reports/GenericReport.h"

#include <chrono>
#include <utility>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "widgets/Dialogs.h"
#include "widgets/Toolkit.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

constexpr std::chrono::milliseconds kWaitingPeriod{10};
constexpr int kUsualWidth = 50;

const CXmlNode* FindChildNoCase(const CXmlNode& node, const std::string& name) {
  for (int i = 0; i < node.GetChildCount(); ++i) {
    if (EqualNoCase(node.GetChild(i)->NameView(), name)) return node.GetChild(i);
  }
  return nullptr;
}

int NumberOf(const CXmlNode& node, const char* name, int usual) {
  const char* text = node.GetAttrValue(name);
  return text == nullptr ? usual : ParseDecimal(text);
}

// Returns the expansion state of the record as digits: one for the record and one for each
// descendant that has children, depth first.
std::string ShapeOf(CReportRecord& record) {
  std::string shape = record.IsExpanded() ? "1" : "0";
  CReportRecords& children = record.GetChildren();
  for (int i = 0; i < children.GetCount(); ++i) {
    if (children.GetAt(i)->HasChildren()) shape += ShapeOf(*children.GetAt(i));
  }
  return shape;
}

std::string ValueOf(const CReportRecordItem* item) {
  const auto* generic = dynamic_cast<const CGenericItem*>(item);
  return generic == nullptr ? std::string() : generic->GetValue();
}

}  // namespace

CGenericReport::CGenericReport(FileSystem& fileSystem, WindowHandle host,
                               const CXmlNode* reportDefinition, bool enableDrag, bool enableTree)
    : files_(fileSystem), hostWindow_(host), dragEnabled_(enableDrag), treeEnabled_(enableTree) {
  if (reportDefinition == nullptr) return;
  definition_ = std::make_unique<CXmlNode>();
  definition_->CopyFrom(*reportDefinition);
}

CGenericReport::~CGenericReport() {
  DestroyWindow();
}

bool CGenericReport::OnCreate() {
  // If the window is created a second time, old rows and columns are removed first.
  RemoveAllRecords();
  RemoveColumns();
  if (!BuildFromDefinition()) return false;
  AllowEdit(true);
  GetReportHeader().ShowItemsInGroups(false);
  CReportColumn* first = GetColumns().GetAt(0);
  if (treeEnabled_ && first != nullptr) first->SetTreeColumn(true);
  GetReportHeader().AllowColumnRemove(false);
  GetReportHeader().AllowColumnReorder(false);
  Populate();
  return true;
}

bool CGenericReport::BuildFromDefinition() {
  if (definition_ == nullptr || definition_->GetChildCount() == 0) return false;
  if (const CXmlNode* head = FindChildNoCase(*definition_, "Def")) CreateColumns(*head);
  if (const CXmlNode* body = FindChildNoCase(*definition_, rowsName_)) AddRows(*body);
  return true;
}

// Also removes the column images, since image numbers start with those of the first column.
void CGenericReport::RemoveColumns() {
  GetColumns().Clear();
  imageList_.reset();
  SetImageList(nullptr);
}

void CGenericReport::CreateColumns(const CXmlNode& definitionNode) {
  const int count = ParseDecimal(definitionNode.GetAttrValue("NbCol"));
  for (int i = 0; i < count && i < definitionNode.GetChildCount(); ++i) {
    if (CreateColumn(*definitionNode.GetChild(i), i)) continue;
    ShowMessage(hostWindow_, "Resource not found", "");
    return;
  }
}

bool CGenericReport::CreateColumn(const CXmlNode& column, int index) {
  const std::string type = OrEmpty(column.GetAttrValue("Type"));
  const char* sample = column.GetAttrValue("sizeCache");
  const char* pictures = column.GetAttrValue("Icon");
  bool isAutoSize = NumberOf(column, "AutoSize", 1) != 0;
  bool isSortable = NumberOf(column, "Sortable", 0) != 0;
  bool isEditable = NumberOf(column, "Edit", 0) != 0;
  int width = kUsualWidth;
  int icon = CReportColumn::kNoIcon;
  if (EqualNoCase(type, "PT_STRING")) {
    if (sample != nullptr) width = MeasureText(sample);
  } else if (EqualNoCase(type, "PT_BOOL")) {
    if (sample != nullptr) width = ParseDecimal(sample);
    isAutoSize = false;
    isSortable = true;
    if (pictures != nullptr) icon = AddPictures(pictures);
  } else if (EqualNoCase(type, "PT_ICON")) {
    if (sample != nullptr) width = ParseDecimal(sample);
    isEditable = false;
    if (pictures == nullptr || AddPictures(pictures) < 0) return false;
    icon = 0;
  } else {
    isEditable = false;
  }
  auto made = std::make_unique<CGenericColumn>(index, OrEmpty(column.GetAttrValue("Header")), width,
                                               isAutoSize, icon, isSortable,
                                               NumberOf(column, "Visible", 1) != 0);
  made->SetEditable(isEditable);
  made->SetHasHyperlink(column.GetAttr("HyperLink") != nullptr);
  if (const char* name = column.GetAttrValue("Name")) made->SetName(name);
  AddColumn(std::move(made));
  return true;
}

int CGenericReport::AddPictures(const char* path) {
  std::shared_ptr<const Bitmap> bitmap = ReadBitmapFile(files_, ToNativeSeparators(path));
  if (bitmap == nullptr) return CReportColumn::kNoIcon;
  if (imageList_ == nullptr) {
    const int side = bitmap->size.height;
    imageList_ = std::make_shared<CImageList>(Size{side, side});
    SetImageList(imageList_);
  }
  return imageList_->Add(std::move(bitmap));
}

const CGenericColumn& CGenericReport::GetColumn(int index) const {
  return static_cast<const CGenericColumn&>(*GetColumns().GetAt(index));
}

std::string CGenericReport::GetValueAt(int row, int column) const {
  return ValueOf(GetItemAt(row, column));
}

bool CGenericReport::Reload(const CXmlNode* rowsNode, bool removeOld, int sortColumn) {
  if (removeOld) RemoveRecords();
  if (rowsNode != nullptr) AddRows(*rowsNode);
  const CReportColumn* sorted = GetColumns().GetAt(sortColumn);
  if (sorted != nullptr && !sorted->IsSorted()) GetColumns().SetSortColumn(sorted, true);
  Populate();
  OnReloaded();
  return true;
}

void CGenericReport::AddRows(const CXmlNode& rowsNode) {
  const CXmlNode* last = nullptr;
  for (int i = 0; i < rowsNode.GetChildCount(); ++i) {
    const CXmlNode& element = *rowsNode.GetChild(i);
    if (element.GetType() != XmlElement) continue;
    AddRow(element);
    last = &element;
  }
  KillTimer(kWaitingTimer);
  const bool isWaiting = last != nullptr && last->GetAttr("WaitingProcess") != nullptr;
  if (isWaiting) SetTimer(kWaitingTimer, kWaitingPeriod);
}

std::unique_ptr<CGenericRecord> CGenericReport::MakeRecord(const CXmlNode& element) const {
  return std::make_unique<CGenericRecord>(element, GetColumns());
}

CReportRecord& CGenericReport::AddRowAlone(const CXmlNode& element) {
  CReportRecord& record = *AddRecord(MakeRecord(element));
  record.SetExpanded(NumberOf(element, "Expand", 0) == 1);
  return record;
}

CReportRecord& CGenericReport::AddRow(const CXmlNode& element) {
  CReportRecord& record = AddRowAlone(element);
  AddChildRows(record, element);
  return record;
}

void CGenericReport::AddChildRows(CReportRecord& record, const CXmlNode& element) {
  for (int i = 0; i < element.GetChildCount(); ++i) {
    const CXmlNode& child = *element.GetChild(i);
    if (child.GetType() != XmlElement) continue;
    CReportRecord& below = *record.GetChildren().Add(MakeRecord(child));
    below.SetExpanded(NumberOf(child, "Expand", 0) == 1);
    AddChildRows(below, child);
  }
}

void CGenericReport::Serialize(CXmlNode& node, bool storing) {
  if (storing) return Write(node);
  if (definition_ == nullptr) definition_ = std::make_unique<CXmlNode>();
  definition_->CopyFrom(node);
  Reload(definition_->FindDescendant(rowsName_), true, -1);
}

void CGenericReport::Write(CXmlNode& node) const {
  CXmlNode& report = *node.AddChild("Report");
  const CXmlNode* head = definition_ == nullptr ? nullptr : definition_->FindDescendant("Def");
  if (head != nullptr) report.AppendCopy(*head);
  CXmlNode& body = *report.AddChild(rowsName_);
  for (int i = 0; i < GetRecords().GetCount(); ++i) {
    CReportRecord& record = *GetRecords().GetAt(i);
    CXmlNode& row = *body.AddChild(rowName_);
    if (record.HasChildren()) row.AddAttr("Expand", ShapeOf(record));
    for (int column = 0; column < GetColumns().GetCount(); ++column) {
      row.AddAttr(GetColumn(column).GetName(), ValueOf(record.GetItem(column)));
    }
  }
}

std::string CGenericReport::RecordToText(const CReportRecord& record) const {
  std::string line;
  for (int i = 0; i < record.GetItemCount(); ++i) line += ValueOf(record.GetItem(i)) + "\t";
  return line;
}

void CGenericReport::ReloadFromChild(const CXmlNode& node) {
  Reload(node.GetChild(1), true, -1);
}

bool CGenericReport::Validate(const CXmlNode& /*node*/) const {
  return false;
}

void CGenericReport::RemoveRecords() {
  RemoveAllRecords();
  KillTimer(kWaitingTimer);
}

void CGenericReport::RemoveAllRows() {
  RemoveRecords();
  Populate();
}

void CGenericReport::SetDefinition(const CXmlNode& node) {
  RemoveColumns();
  if (definition_ == nullptr) definition_ = std::make_unique<CXmlNode>();
  definition_->CopyFrom(node);
  BuildFromDefinition();
}

int CGenericReport::MeasureText(const std::string& sample) const {
  return WindowToolkit::Current().MeasureText(GetFont(), sample).width;
}

void CGenericReport::OnTimer(int timerId) {
  if (timerId == kWaitingTimer) OnWaitingTimer(timerId);
}

void CGenericReport::OnLeftButtonDown(const ReportHit& hit, bool isShiftDown, bool isControlDown) {
  const WindowHandle own = GetHandle();
  CReportControl::OnLeftButtonDown(hit, isShiftDown, isControlDown);
  if (!IsWindow(own) || !dragEnabled_ || hit.area != ReportHit::Area::Row) return;
  if (GetSelectedRows().GetCount() == 0 || GetRecords().GetCount() == 0) return;
  std::string lines;
  for (int at = GetSelectedRows().GetFirstSelectedRowPosition(); at >= 0;) {
    const CReportRow* row = GetSelectedRows().GetNextSelectedRow(at);
    if (!row->IsGroup()) lines += RecordToText(*row->GetRecord()) + "\n";
  }
  WindowToolkit::Current().DragText(*this, lines);
}

}  // namespace tarn
