#include "hosts/core/ProjectStatus.h"

#include <algorithm>
#include <iterator>

#include "hosts/core/LogEntry.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

// Placeholders: %1 is the file that the reason refers to, %2 its kind, %3 the node's output, %4 the
// OS's reason.
struct ReasonText {
  const char* reason;
  const char* text;
};

constexpr ReasonText kReasons[] = {
    {"no-output-name", "has no output file; check the option Build.OutputFile"},
    {"output-missing", "its output %1 is missing"},
    {"never-built", "was not built yet"},
    {"output-changed", "its output %1 was changed by something else since it was built"},
    {"source-missing", "its source %1 is missing"},
    {"source-newer", "is newer than %3"},
    {"source-renamed", "its source %1 was built under a different spelling of its name"},
    {"dependency-missing", "its %2 %1 is missing"},
    {"dependency-newer", "its %2 %1 is newer than %3"},
    {"part-missing", "its input %1 is missing"},
    {"part-newer", "its input %1 is newer than %3"},
    {"parts-stale", "its inputs will be rebuilt"},
    {"command-changed", "its command line changed since it was built"},
    {"run-failed", "could not be built the last time"},
    {"source-changed", "its source %1 changed since it was built"},
    {"dependency-changed", "its %2 %1 changed since it was built"},
    {"program-changed", "%1 is missing, or changed since it was built"},
    {"changed-during-run", "%1 changed while it was built"},
    {"shadowed", "%1 is new or gone and can change what is included or linked"},
    {"unknown-test", "%1 tests for a file by a name that only the compiler knows"},
    {"unreadable", "%1 can't be read: %4"},
    {"no-tool", "has no tool; check the option Build.TranslateTool"},
    {"no-type", "is of a type that the configuration file doesn't define"},
};

std::string KindOfFile(const std::string& path) {
  const std::string extension = FoldCase(ExtensionOf(path));
  const bool header = extension.starts_with(".h") || extension == ".inc";
  return header ? "header" : "dependency";
}

}  // namespace

std::vector<ApplicationStatus> ParseStatus(const std::string& xml) {
  std::vector<ApplicationStatus> list;
  const auto root = ParseXml(xml);
  if (root == nullptr) return list;
  for (const CXmlNode* application : root->GetChildren()) {
    if (application->NameView() != "Application") continue;
    ApplicationStatus& status = list.emplace_back();
    status.label = GetAttribute(application, "Header");
    status.path = GetAttribute(application, "Path");
    status.configuration = GetAttribute(application, "Config");
    status.active = GetAttribute(application, "Active") == "Yes";
    for (const CXmlNode* node : application->GetChildren()) {
      if (node->NameView() == "Uses") status.uses.push_back(GetAttribute(node, "Header"));
      if (node->NameView() != "Node") continue;
      status.stale.push_back({GetAttribute(node, "Header"), GetAttribute(node, "Path"),
                              GetAttribute(node, "OutputFile"), GetAttribute(node, "Tool"),
                              GetAttribute(node, "Reason"), GetAttribute(node, "File"),
                              GetAttribute(node, "Detail")});
    }
  }
  return list;
}

std::string ParseStatusProblem(const std::string& xml) {
  const auto root = ParseXml(xml);
  return GetAttribute(root.get(), "Problem");
}

std::string DescribeReason(const StaleNode& node, bool isApplication,
                           const std::function<std::string(const std::string&)>& shorten) {
  const auto* row = std::find_if(std::begin(kReasons), std::end(kReasons),
                                 [&node](const ReasonText& r) { return node.reason == r.reason; });
  if (row == std::end(kReasons)) return node.reason;
  const std::string made = isApplication ? "the program" : "the object";
  std::string text = row->text;
  text = ReplaceAll(text, "%2", KindOfFile(node.file));
  text = ReplaceAll(text, "%3", made);
  text = ReplaceAll(text, "%4", node.detail);
  return ReplaceAll(text, "%1", shorten(node.file.empty() ? node.outputFile : node.file));
}

}  // namespace tarn::host
