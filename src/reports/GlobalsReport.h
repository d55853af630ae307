#pragma once

#include "reports/GenericReport.h"

namespace tarn {

// Table of the globals with a row for each symbol.
class CGlobalsReport : public CGenericReport {
 public:
  CGlobalsReport(FileSystem& fileSystem, WindowHandle host, const CXmlNode& reportDefinition);
  ~CGlobalsReport() override;

  void AddRows(const CXmlNode& root) override;
};

}  // namespace tarn
