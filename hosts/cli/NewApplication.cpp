#include "hosts/cli/NewApplication.h"

#include <filesystem>
#include <string_view>
#include <vector>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/cli/NewForTarget.h"
#include "hosts/core/FirstSource.h"
#include "hosts/core/LogEntry.h"
#include "hosts/core/ProjectTemplate.h"
#include "hosts/core/ProjectTree.h"
#include "hosts/core/import/StartUpCode.h"
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

// Returns true for options that describe the device, its images and what is done with them, except
// for the kind of product.
bool IsOfTarget(const std::string& section, const std::string& option) {
  if (section == "Linker") return option == "Uf2Family" || option == "ChecksumSection";
  const bool isWhole =
      section == "Target" || section == "Upload" || section == "Simulate" || section == "Debug";
  return isWhole && option != kProduct;
}

// Copies the options of one configuration that describe the target.
void CopyTarget(CXmlNode& options, const CXmlNode& config) {
  for (const CXmlNode* set : config.GetChildren()) {
    if (GetAttribute(set, "Header") != "Application") continue;
    for (const CXmlNode* section : set->GetChildren()) {
      const std::string name = GetAttribute(section, "Header");
      for (const CXmlNode* each : section->GetChildren()) {
        if (!IsOfTarget(name, GetAttribute(each, "Header"))) continue;
        CXmlNode& stored = ChildOf(options, "Config", GetAttribute(&config, "Header"));
        CopyNode(ChildOf(ChildOf(stored, "Set", "Application"), "Section", name), *each);
      }
    }
  }
}

// Sets an option of the target in all configurations.
void SetEverywhere(CXmlNode& options, const CXmlNode* configurations, const char* option,
                   const std::string& value) {
  std::vector<std::string> names{kStandardConfiguration};
  for (int i = 0; configurations != nullptr && i < configurations->GetChildCount(); ++i) {
    names.push_back(GetAttribute(configurations->GetChild(i), "Header"));
  }
  for (const std::string& name : names) {
    CXmlNode& property = ChildOf(TargetIn(options, name), "Property", option);
    property.SetAttrValue("Removable", "Yes");
    property.SetAttrValue("Value", value.c_str());
  }
}

std::string ApplicationText(const NewApplication::Plan& plan, const CXmlNode* similar) {
  const std::string& name = plan.name;
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
  if (stored != nullptr && plan.compiler.empty()) {
    for (const CXmlNode* config : stored->GetChildren()) CopyTarget(*options, *config);
  }
  if (!plan.compiler.empty()) SetEverywhere(*options, configs, "Toolchain", plan.compiler);
  if (plan.isLibrary) SetEverywhere(*options, configs, kProduct, "library");
  if (options->GetChildCount() > 0) CopyNode(*application, *options);
  return application->ToString(g_xmlDisplayOptions);
}

const CXmlNode* FindApplicationNode(const ProjectTree& tree, const std::string& path) {
  if (tree.GetRoot() == nullptr || path.empty()) return nullptr;
  for (const CXmlNode* each : tree.GetRoot()->GetChildren()) {
    if (GetAttribute(each, "Path") == path) return each;
  }
  return nullptr;
}

void CollectFiles(const CXmlNode* node, std::vector<std::string>& paths) {
  if (node == nullptr) return;
  for (const CXmlNode* child : node->GetChildren()) {
    if (!ProjectTree::IsShown(*child)) continue;
    const std::string path = GetAttribute(child, "Path");
    if (!path.empty()) paths.push_back(path);
    CollectFiles(child, paths);
  }
}

}  // namespace

NewApplication::~NewApplication() {
  std::error_code ignored;
  if (!isKept_ && !path_.empty()) std::filesystem::remove(path_, ignored);
}

int NewApplication::Make(CommandContext& context, const Plan& plan) {
  const std::string& name = plan.name;
  if (!plan.compiler.empty()) {
    const std::string problem =
        context.Session().Options().CheckValue("Application", "Target", "Toolchain", plan.compiler);
    if (!problem.empty()) {
      context.Complain("Unknown compiler: " + problem);
      return kExitUsage;
    }
  }
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
  const CXmlNode* model = FindApplicationNode(tree, plan.similar);
  const Status written = context.Files().WriteOwnFile(path, ApplicationText(plan, model));
  if (!written) {
    context.Complain(context.ShowFailure(path, "written", written.GetError().text) + ".");
    return kExitCannotOpen;
  }
  path_ = path;
  if (const int code = context.FindNode(project, ""); code != kExitDone) return code;
  BuildSession& session = context.Session();
  if (session.Manager().AddExistingItem(path) == 0) {
    context.Complain(context.Show(path) + " can't be added.");
    return kExitCannotOpen;
  }
  if (plan.compiler.empty()) return kExitDone;
  session.Inspector().PublishAll();
  session.Inspector().SelectApplication(path);
  StoreFirstOptions(session.Manager());
  return kExitDone;
}

int NewApplication::AddStartUp(CommandContext& context, const Plan& plan,
                               std::vector<std::string>& added) {
  BuildSession& session = context.Session();
  session.Inspector().PublishAll();
  const ProjectTree tree(session.Inspector().GetTree());
  std::vector<std::string> own, similar;
  CollectFiles(FindApplicationNode(tree, path_), own);
  CollectFiles(FindApplicationNode(tree, plan.similar), similar);
  for (const std::string& each : own) {
    const auto text = context.Files().ReadWholeFile(each);
    if (text && HasStartUpCode(*text)) return kExitDone;
  }
  session.Inspector().SelectApplication(path_);
  const auto original = [&](const char* option) {
    return FileNameOf(session.Manager().GetPropertyValue("Application", "Target", option));
  };
  if (plan.isLibrary || original("StartUp").empty()) return kExitDone;
  std::vector<std::string> shared;
  for (const char* option : kTemplateOptions) {
    for (const std::string& each : similar) {
      if (FileNameOf(each) == original(option)) shared.push_back(each);
    }
  }
  if (plan.compiler.empty() && !shared.empty()) {
    for (const std::string& each : shared) session.Manager().AddExistingItem(each);
    added = shared;
    return kExitDone;
  }
  const std::string folder = FolderOf(path_);
  created_.ExpectFolders(JoinPath(folder, "src"));
  const Status status = AddTemplateSources(session, context.Files(), folder, added);
  for (const std::string& each : added) created_.AddWritten(each);
  if (status) return kExitDone;
  context.Complain(context.ShowFailure(status.GetError().place, "copied", status.GetError().text));
  return kExitCannotOpen;
}

}  // namespace tarn::host
