#include "hosts/core/SaveReport.h"

#include "hosts/core/LogEntry.h"
#include "xml/XmlNode.h"

namespace tarn::host {

SaveReport ParseSaveReport(const std::string& xml) {
  SaveReport report;
  const auto root = ParseXml(xml);
  if (root == nullptr) return report;
  for (const CXmlNode* file : root->GetChildren()) {
    const bool isSaved = AttributeOf(file, "Problem").empty();
    if (isSaved) {
      report.written.push_back({AttributeOf(file, "Path"), AttributeOf(file, "Copy"),
                                AttributeOf(file, "Merged") == "Yes",
                                AttributeOf(file, "CopyReason") == "damaged",
                                AttributeOf(file, "Missing") == "Yes"});
    }
    report.isOutside = report.isOutside || AttributeOf(file, "Outside") == "Yes";
    std::vector<std::string>& lines = isSaved ? report.notes : report.problems;
    for (const CXmlNode* each : file->GetChildren()) {
      if (each->NameView() == "Line") {
        lines.push_back(AttributeOf(each, "Text"));
      } else {
        report.conflicts.push_back({AttributeOf(file, "Path"), AttributeOf(each, "Place"),
                                    AttributeOf(each, "Text"), AttributeOf(file, "Copy")});
      }
    }
  }
  return report;
}

}  // namespace tarn::host
