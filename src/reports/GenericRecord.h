#pragma once

#include "reports/GenericItem.h"

namespace tarn {

class CXmlNode;

// Row created from an element, with a cell for each column; the value is the attribute with the
// column's name.
class CGenericRecord : public CReportRecord {
 public:
  // All columns must be of type CGenericColumn.
  CGenericRecord(const CXmlNode& element, const CReportColumns& columns);
};

}  // namespace tarn
