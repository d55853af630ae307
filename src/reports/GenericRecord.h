#pragma once

#include "reports/GenericItem.h"
#include "xml/XmlNode.h"

namespace tarn {

// A row made from an element: a cell for each column, out of the attribute of the column's name.
class CGenericRecord : public CReportRecord {
 public:
  // The columns are CGenericColumn.
  CGenericRecord(const CXmlNode& element, const CReportColumns& columns);
};

}  // namespace tarn
