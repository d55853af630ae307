#include "reports/ReportDefinition.h"

#include "platform/paths/Paths.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

// A sample of letters has the width of a typical value; images are in the folder of resources.
constexpr const char* kOutputText =
    "<Report><Def NbCol='5'>"
    "<Col Type='PT_ICON' Header='Icon' sizeCache='16' AutoSize='1' Edit='0' Sortable='0'"
    " Icon='errors.bmp' />"
    "<Col Type='PT_STRING' Header='Description' sizeCache='DDDDDDDDDDDDDDDDDDDDDDDDDDDDDD'"
    " AutoSize='1' Edit='0' Sortable='0' />"
    "<Col Type='PT_STRING' Header='File' sizeCache='DDDDDDDDDDDDDDDDDDDDDDDDDDDDDD'"
    " AutoSize='1' Edit='0' Sortable='1' />"
    "<Col Type='PT_STRING' Header='Line' sizeCache='DDDDDDDDDD' AutoSize='1' Edit='0'"
    " Sortable='0' />"
    "<Col Type='PT_STRING' Header='Help' Edit='0' Sortable='0' Visible='0' />"
    "</Def></Report>";

constexpr const char* kGlobalsText =
    "<Report><Def Header='GlobalsReport' NbCol='5'>"
    "<Col Type='PT_ICON' Header='Icon' sizeCache='20' AutoSize='0' Edit='0' Sortable='1'"
    " Icon='globals.bmp' />"
    "<Col Type='PT_STRING' Header='Name' Name='Header' sizeCache='DDDDDDDDDD' AutoSize='1'"
    " Edit='0' Sortable='1' />"
    "<Col Type='PT_STRING' Header='Definition' Name='Desc'"
    " sizeCache='DDDDDDDDDDDDDDDDDDDDDDDDDDDDDDDDDDDDDDDDDDDDDDDDDD' AutoSize='1' Edit='0'"
    " Sortable='1' />"
    "<Col Type='PT_STRING' Header='File' Name='DeclFile'"
    " sizeCache='DDDDDDDDDDDDDDDDDDDDDDDDDDDDDDD' AutoSize='1' Edit='0' Sortable='1'"
    " Visible='0' />"
    "<Col Type='PT_STRING' Header='Line' Name='DeclLine' sizeCache='DDDDD' AutoSize='1' Edit='0'"
    " Sortable='0' Visible='0' />"
    "</Def></Report>";

// The folder is inserted into the tree instead of the XML string, where a quote in it would end the
// attribute value.
std::unique_ptr<CXmlNode> MakeDefinition(const char* text, const std::string& configFolder) {
  auto definition = std::make_unique<CXmlNode>();
  CXmlParseInfo info;
  definition->Load(text, info);
  const CXmlNode& columns = *definition->GetChild(0);
  const std::string folder = JoinPath(configFolder, "resources");
  for (int i = 0; i < columns.GetChildCount(); ++i) {
    CXmlNode& column = *columns.GetChild(i);
    const char* name = column.GetAttrValue("Icon");
    if (name != nullptr) column.SetAttrValue("Icon", JoinPath(folder, name));
  }
  return definition;
}

}  // namespace

std::unique_ptr<CXmlNode> MakeOutputDefinition(const std::string& configFolder) {
  return MakeDefinition(kOutputText, configFolder);
}

std::unique_ptr<CXmlNode> MakeGlobalsDefinition(const std::string& configFolder) {
  return MakeDefinition(kGlobalsText, configFolder);
}

void ShowPicturesAsNumbers(CXmlNode& definition) {
  const CXmlNode& columns = *definition.GetChild(0);
  for (int i = 0; i < columns.GetChildCount(); ++i) {
    CXmlNode& column = *columns.GetChild(i);
    if (column.GetAttr("Icon") != nullptr) column.SetAttrValue("Type", "PT_STRING");
  }
}

ReportLook MakeReportLook() {
  ReportLook look;
  look.hasVerticalLines = false;
  look.horizontalLineStyle = 1;
  look.hasToolTips = false;
  look.headerColor = 0xFFEFE8;
  look.selectedTextColor = 0x6A240A;
  return look;
}

}  // namespace tarn
