#include "hosts/cli/NewApplication.h"

#include <filesystem>
#include <string_view>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/core/LogEntry.h"
#include "hosts/core/ProjectTemplate.h"
#include "hosts/core/ProjectTree.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

void CopyNode(CXmlNode& parent, const CXmlNode& node) {
  CXmlNode* copy = parent.AddChild(node.GetName());
  for (const CXmlAttr& each : node.Attributes()) copy->AddAttr(each.GetName(), each.GetValue());
  for (const CXmlNode* child : node.GetChildren()) CopyNode(*copy, *child);
}

// Copies the options in the section Target of one configuration.
void CopyTarget(CXmlNode& options, const CXmlNode& config) {
  for (const CXmlNode* set : config.GetChildren()) {
    if (GetAttribute(set, "Header") != "Application") continue;
    for (const CXmlNode* section : set->GetChildren()) {
      if (GetAttribute(section, "Header") != "Target") continue;
      CXmlNode* copy = options.AddChild("Config");
      copy->AddAttr("Header", GetAttribute(&config, "Header"));
      CXmlNode* setCopy = copy->AddChild("Set");
      setCopy->AddAttr("Header", "Application");
      CopyNode(*setCopy, *section);
    }
  }
}

std::string ApplicationText(const std::string& name, const CXmlNode* similar) {
  const auto application = CXmlNode::CreateNode("Application");
  application->AddAttr("Header", name);
  application->AddAttr("Extern", ".\\" + name + ".tapp");
  application->AddAttr("Path", ".\\" + name + ".tapp");
  if (similar == nullptr) return application->ToString(g_xmlDisplayOptions);
  const std::string active = GetAttribute(similar, "Config");
  if (!active.empty()) application->AddAttr("Config", active);
  if (const CXmlNode* configs = similar->FindChild("Configs")) CopyNode(*application, *configs);
  if (const CXmlNode* stored = similar->FindChild("Options")) {
    const auto options = CXmlNode::CreateNode("Options");
    for (const CXmlNode* config : stored->GetChildren()) CopyTarget(*options, *config);
    if (options->GetChildCount() > 0) CopyNode(*application, *options);
  }
  return application->ToString(g_xmlDisplayOptions);
}

}  // namespace

NewApplication::~NewApplication() {
  std::error_code ignored;
  if (!isKept_ && !path_.empty()) std::filesystem::remove(path_, ignored);
}

int NewApplication::Make(CommandContext& context, const std::string& name,
                         const std::string& similar) {
  if (const std::string problem = CheckFileTitle(name, "application"); !problem.empty()) {
    context.Complain(problem);
    return kExitUsage;
  }
  for (const ApplicationEntry& each : ListApplications(context.Session().Inspector())) {
    if (!EqualNoCase(each.label, name)) continue;
    context.Complain("The application \"" + each.label + "\" already exists.");
    return kExitUsage;
  }
  const std::string project = context.Session().GetProjectPath();
  const std::string path = JoinPath(FolderOf(project), name + ".tapp");
  const Result<bool> exists = context.Files().CheckExists(path);
  if (!exists || *exists) {
    context.Complain(exists ? context.Show(path) + " already exists. Use `tarn add` to add it."
                            : context.ShowFailure(path, "written", exists.GetError().text) + ".");
    return kExitUsage;
  }
  const ProjectTree tree(context.Session().Inspector().GetTree());
  const CXmlNode* model = nullptr;
  if (tree.GetRoot() != nullptr && !similar.empty()) {
    for (const CXmlNode* each : tree.GetRoot()->GetChildren()) {
      if (GetAttribute(each, "Path") == similar) model = each;
    }
  }
  const Status written = context.Files().WriteOwnFile(path, ApplicationText(name, model));
  if (!written) {
    context.Complain(context.ShowFailure(path, "written", written.GetError().text) + ".");
    return kExitCannotOpen;
  }
  path_ = path;
  if (const int code = context.FindNode(project, ""); code != kExitDone) return code;
  if (context.Session().Manager().AddExistingItem(path) != 0) return kExitDone;
  context.Complain(context.Show(path) + " can't be added.");
  return kExitCannotOpen;
}

}  // namespace tarn::host
