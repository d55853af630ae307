#include "hosts/core/SaveReport.h"

#include "hosts/core/LogEntry.h"
#include "xml/XmlNode.h"

namespace tarn::host {

SaveReport ParseSaveReport(const std::string& xml) {
  SaveReport report;
  const auto root = ParseXml(xml);
  if (root == nullptr) return report;
  for (const CXmlNode* file : root->GetChildren()) {
    const bool isSaved = GetAttribute(file, "Problem").empty();
    if (isSaved) {
      report.written.push_back({GetAttribute(file, "Path"), GetAttribute(file, "Copy"),
                                GetAttribute(file, "Merged") == "Yes",
                                GetAttribute(file, "CopyReason") == "damaged",
                                GetAttribute(file, "Missing") == "Yes"});
    }
    report.isOutside = report.isOutside || GetAttribute(file, "Outside") == "Yes";
    std::vector<std::string>& lines = isSaved ? report.notes : report.problems;
    for (const CXmlNode* each : file->GetChildren()) {
      if (each->NameView() == "Line") {
        lines.push_back(GetAttribute(each, "Text"));
      } else {
        report.conflicts.push_back({GetAttribute(file, "Path"), GetAttribute(each, "Place"),
                                    GetAttribute(each, "Text"), GetAttribute(file, "Copy")});
      }
    }
  }
  return report;
}

}  // namespace tarn::host
