#include "reports/GlobalsReport.h"

#include "xml/XmlNode.h"

namespace tarn {

CGlobalsReport::CGlobalsReport(FileSystem& fileSystem, WindowHandle host,
                               const CXmlNode& reportDefinition)
    : CGenericReport(fileSystem, host, &reportDefinition, false, false) {}

CGlobalsReport::~CGlobalsReport() {
  DestroyWindow();
}

void CGlobalsReport::AddRows(const CXmlNode& root) {
  for (int i = 0; i < root.GetChildCount(); ++i) AddRow(*root.GetChild(i));
  AllowEdit(true);
}

}  // namespace tarn
