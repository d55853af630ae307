#include "hosts/cli/NewApplication.h"

#include <filesystem>
#include <string_view>
#include <vector>

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

constexpr const char* kStandardConfiguration = "Standard";
constexpr const char* kProduct = "Product";

// Returns the child with this name and header, which is created if there is none.
CXmlNode& ChildOf(CXmlNode& parent, const char* name, const std::string& header) {
  for (CXmlNode* child : parent.GetChildren()) {
    if (child->NameView() == name && GetAttribute(child, "Header") == header) return *child;
  }
  CXmlNode* child = parent.AddChild(name);
  child->AddAttr("Header", header);
  return *child;
}

CXmlNode& TargetIn(CXmlNode& options, const std::string& config) {
  CXmlNode& set = ChildOf(ChildOf(options, "Config", config), "Set", "Application");
  return ChildOf(set, "Section", "Target");
}

void CopyNode(CXmlNode& parent, const CXmlNode& node) {
  CXmlNode* copy = parent.AddChild(node.GetName());
  for (const CXmlAttr& each : node.Attributes()) copy->AddAttr(each.GetName(), each.GetValue());
  for (const CXmlNode* child : node.GetChildren()) CopyNode(*copy, *child);
}

// Copies the options in the section Target of one configuration, except for the kind of product.
void CopyTarget(CXmlNode& options, const CXmlNode& config) {
  for (const CXmlNode* set : config.GetChildren()) {
    if (GetAttribute(set, "Header") != "Application") continue;
    for (const CXmlNode* section : set->GetChildren()) {
      if (GetAttribute(section, "Header") != "Target") continue;
      CXmlNode& copy = TargetIn(options, GetAttribute(&config, "Header"));
      for (const CXmlNode* each : section->GetChildren()) {
        if (GetAttribute(each, "Header") != kProduct) CopyNode(copy, *each);
      }
    }
  }
}

// Sets the kind of product in all configurations.
void MakeLibrary(CXmlNode& options, const CXmlNode* configurations) {
  std::vector<std::string> names{kStandardConfiguration};
  for (int i = 0; configurations != nullptr && i < configurations->GetChildCount(); ++i) {
    names.push_back(GetAttribute(configurations->GetChild(i), "Header"));
  }
  for (const std::string& name : names) {
    CXmlNode& property = ChildOf(TargetIn(options, name), "Property", kProduct);
    property.SetAttrValue("Removable", "Yes");
    property.SetAttrValue("Value", "library");
  }
}

std::string ApplicationText(const std::string& name, const CXmlNode* similar, bool isLibrary) {
  const auto application = CXmlNode::CreateNode("Application");
  application->AddAttr("Header", name);
  application->AddAttr("Extern", ".\\" + name + ".tapp");
  application->AddAttr("Path", ".\\" + name + ".tapp");
  const std::string active = GetAttribute(similar, "Config");
  if (!active.empty()) application->AddAttr("Config", active);
  const CXmlNode* configs = similar == nullptr ? nullptr : similar->FindChild("Configs");
  if (configs != nullptr) CopyNode(*application, *configs);
  const auto options = CXmlNode::CreateNode("Options");
  const CXmlNode* stored = similar == nullptr ? nullptr : similar->FindChild("Options");
  if (stored != nullptr) {
    for (const CXmlNode* config : stored->GetChildren()) CopyTarget(*options, *config);
  }
  if (isLibrary) MakeLibrary(*options, configs);
  if (options->GetChildCount() > 0) CopyNode(*application, *options);
  return application->ToString(g_xmlDisplayOptions);
}

}  // namespace

NewApplication::~NewApplication() {
  std::error_code ignored;
  if (!isKept_ && !path_.empty()) std::filesystem::remove(path_, ignored);
}

int NewApplication::Make(CommandContext& context, const std::string& name,
                         const std::string& similar, bool isLibrary) {
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
  const Status written =
      context.Files().WriteOwnFile(path, ApplicationText(name, model, isLibrary));
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
