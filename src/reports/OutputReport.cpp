#include "reports/OutputReport.h"

#include "platform/text/Text.h"
#include "reports/ReportDefinition.h"
#include "xml/XmlEscape.h"
#include "xml/XmlNode.h"

namespace tarn {

COutputReport::COutputReport(FileSystem& fileSystem, WindowHandle host,
                             const CXmlNode& reportDefinition)
    : CGenericReport(fileSystem, host, &reportDefinition, false, false) {}

COutputReport::~COutputReport() {
  DestroyWindow();
}

void COutputReport::Update(const CXmlNode& root, std::uint64_t generation) {
  const bool hasGrown = shown_ && shown_->generation == generation &&
                        shown_->records == GetRecords().GetCount() &&
                        shown_->messages <= root.GetChildCount();
  if (hasGrown) {
    for (int i = shown_->messages; i < root.GetChildCount(); ++i) AddMessage(*root.GetChild(i));
    PopulateAdded();
  } else {
    Reload(&root, true, -1);
  }
  shown_ = Shown{generation, root.GetChildCount(), GetRecords().GetCount()};
}

void COutputReport::AddRows(const CXmlNode& rowsNode) {
  shown_.reset();
  for (int i = 0; i < rowsNode.GetChildCount(); ++i) AddMessage(*rowsNode.GetChild(i));
}

std::unique_ptr<CGenericRecord> COutputReport::MakeRecord(const CXmlNode& element) const {
  std::unique_ptr<CGenericRecord> record = CGenericReport::MakeRecord(element);
  auto* description = dynamic_cast<CGenericTextItem*>(record->GetItem(kOutputDescription));
  if (description == nullptr) return record;
  description->SetValue(UnescapeXml(description->GetValue()));
  // File and line have columns of their own, so the message alone is shown instead of the line of
  // the tool.
  const std::string message = UnescapeXml(OrEmpty(element.GetAttrValue("Contain")));
  if (!message.empty() && !OrEmpty(element.GetAttrValue("File")).empty()) {
    description->SetOwnCaption(message);
  }
  return record;
}

void COutputReport::AddMessage(const CXmlNode& message) {
  const char* isWanted = message.GetAttrValue("ShowInReport");
  if (isWanted == nullptr || !EqualNoCase(isWanted, "Yes")) return;
  // Children of a message get rows only if the message is expanded, since the user can't expand it
  // later.
  if (ParseDecimal(message.GetAttrValue("Expand")) == 1) {
    AddRow(message);
  } else {
    AddRowAlone(message);
  }
}

}  // namespace tarn
