#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/core/LogEntry.h"
#include "platform/paths/Paths.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

std::string LabelOf(const CXmlNode& node) {
  const std::string label = GetAttribute(&node, "Header");
  return label.empty() ? FileNameOf(GetAttribute(&node, "Path")) : label;
}

// Returns the text after a label: the path if it differs from the label, and the reason if the node
// is excluded.
ConsoleText RemarkOf(CommandContext& context, const CXmlNode& node) {
  std::string text;
  const std::string path = GetAttribute(&node, "Path");
  const std::string shown = context.Show(path);
  if (!path.empty() && shown != LabelOf(node)) text += "  " + shown;
  if (GetAttribute(&node, "Exclude") == "Yes") text += "  (not built)";
  if (GetAttribute(&node, "LinkExclude") == "Yes") text += "  (not linked)";
  return context.Out().Dye(Paint::Dim, text);
}

void PrintNode(CommandContext& context, const CXmlNode& node, int depth) {
  const std::string indent(static_cast<std::size_t>(depth) * 2, ' ');
  context.Out().PrintLine(indent + Printable(LabelOf(node)) + RemarkOf(context, node));
  for (const CXmlNode* child : node.GetChildren()) {
    if (ProjectTree::IsShown(*child)) PrintNode(context, *child, depth + 1);
  }
}

void PrintApplication(CommandContext& context, const CXmlNode& node,
                      const ApplicationEntry& entry) {
  context.Out().PrintLine("  " + context.Out().Dye(Paint::Bold, Printable(entry.label)) + "  [" +
                          Printable(entry.configuration) + "]" +
                          (entry.active ? "  (active)" : "") + RemarkOf(context, node));
  for (const CXmlNode* child : node.GetChildren()) {
    if (ProjectTree::IsShown(*child)) PrintNode(context, *child, 2);
  }
}

nlohmann::json ToJson(const CXmlNode& node) {
  nlohmann::json entry = {{"type", node.GetName()}, {"label", LabelOf(node)}};
  for (const auto& [key, attribute] : {std::pair{"path", "Path"},
                                       {"output", "OutputFile"},
                                       {"tool", "TranslateTool"},
                                       {"configuration", "Config"}}) {
    const std::string value = GetAttribute(&node, attribute);
    if (!value.empty()) entry[key] = value;
  }
  if (GetAttribute(&node, "Exclude") == "Yes") entry["notBuilt"] = true;
  if (GetAttribute(&node, "LinkExclude") == "Yes") entry["notLinked"] = true;
  nlohmann::json children = nlohmann::json::array();
  for (const CXmlNode* child : node.GetChildren()) {
    if (ProjectTree::IsShown(*child)) children.push_back(ToJson(*child));
  }
  if (!children.empty()) entry["children"] = children;
  return entry;
}

int RunTree(CommandContext& context) {
  if (const int code = context.OpenProject(); code != kExitDone) return code;
  std::vector<ApplicationEntry> chosen;
  if (const int code = context.ChooseApplications(chosen); code != kExitDone) return code;
  context.Session().Inspector().PublishAll();
  const ProjectTree tree(context.Session().Inspector().GetTree());
  if (tree.GetRoot() == nullptr) return kExitDone;
  if (context.Asked().json) {
    PrintJson(context, ToJson(*tree.GetRoot()));
    return kExitDone;
  }
  context.Out().PrintLine(Printable(LabelOf(*tree.GetRoot())) + RemarkOf(context, *tree.GetRoot()));
  const std::vector<ApplicationEntry> applications = tree.GetApplications();
  std::size_t next = 0;
  for (const CXmlNode* node : tree.GetRoot()->GetChildren()) {
    if (!ProjectTree::IsShown(*node)) continue;
    const ApplicationEntry& entry = applications[next++];
    const bool wanted = context.Asked().application.empty() || entry.path == chosen.front().path;
    if (wanted) PrintApplication(context, *node, entry);
  }
  return kExitDone;
}

}  // namespace

CommandSpec TreeCommand() {
  return {
      .name = "tree",
      .group = CommandGroup::Building,
      .help = "Show applications, groups and files",
      .declare =
          [](CommandArguments& arguments) {
            arguments.AddProjectAndApp();
            arguments.AddConfiguration();
          },
      .run = RunTree,
  };
}

}  // namespace tarn::host
