#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "reports/GenericReport.h"

namespace tarn {

// Table of build errors and warnings, with a row for each log message that is flagged for the
// report.
class COutputReport : public CGenericReport {
 public:
  COutputReport(FileSystem& fileSystem, WindowHandle host, const CXmlNode& reportDefinition);
  ~COutputReport() override;

  // Shows the messages below `root`. Within one generation, the tree only grows at its end (see
  // IReportView), so only new messages are added, with the same result as a Reload().
  void Update(const CXmlNode& root, std::uint64_t generation);

  void AddRows(const CXmlNode& rowsNode) override;

 protected:
  // Shows the description as the tool wrote it, like the log view.
  std::unique_ptr<CGenericRecord> MakeRecord(const CXmlNode& element) const override;

 private:
  // Extent of the rows shown. Stores numbers instead of pointers, since the tree may have been
  // destroyed.
  struct Shown {
    std::uint64_t generation = 0;
    int messages = 0;
    int records = 0;
  };
  void AddMessage(const CXmlNode& message);

  std::optional<Shown> shown_;
};

}  // namespace tarn
