#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "reports/GenericReport.h"

namespace tarn {

// The errors and warnings of a build: a row for each message of the log that is marked for it.
class COutputReport : public CGenericReport {
 public:
  COutputReport(FileSystem& fileSystem, WindowHandle host, const CXmlNode& reportDefinition);
  ~COutputReport() override;

  // Shows the messages below `root`. Of one generation the tree only grows at its end, see
  // IReportView; then just what is new is added, with the result of a Reload.
  void Update(const CXmlNode& root, std::uint64_t generation);

  void AddRows(const CXmlNode& rowsNode) override;

 protected:
  // With the description as the tool said it, like the log view.
  std::unique_ptr<CGenericRecord> MakeRecord(const CXmlNode& element) const override;

 private:
  // What is shown; a copy of numbers, since the tree may be gone.
  struct Shown {
    std::uint64_t generation = 0;
    int messages = 0;
    int records = 0;
  };
  void AddMessage(const CXmlNode& message);

  std::optional<Shown> shown;
};

}  // namespace tarn
