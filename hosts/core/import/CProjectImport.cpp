#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <set>

#include "hosts/core/LogEntry.h"
#include "hosts/core/PathPattern.h"
#include "hosts/core/import/ArduinoCore.h"
#include "hosts/core/import/CProjectTools.h"
#include "hosts/core/import/CompilerCommand.h"
#include "hosts/core/import/Converters.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

constexpr std::size_t kLargestDescription = std::size_t{16} << 20;

class CProject {
 public:
  CProject(const ImportRequest& request, const ImportContext& context)
      : request_(request), context_(context), root_(FolderOf(request.path)) {}

  Result<ImportedProject> Run(const CXmlNode& root);

 private:
  void TakeConfiguration(const CXmlNode& node);
  void AddTarget(ToolSettings settings, ImportedOptions& options);
  std::string FindScript(const std::string& script, const ToolSettings& settings);
  void TakeTools(const CXmlNode& owner, ToolSettings& settings);
  std::optional<std::string> Resolve(const std::string& value);
  std::string FolderPath(const std::string& value);
  ImportedOptions OptionsOf(const ToolSettings& settings, const std::string& toolchain);
  void TakeSources(const CXmlNode& node, const std::string& configuration);
  void TakeFile(const CXmlNode& info, const std::string& configuration);
  void Remark(const std::string& text) {
    if (said_.insert(text).second) project_.remarks.push_back(text);
  }

  const ImportRequest& request_;
  const ImportContext& context_;
  const std::string root_;
  std::string current_;   // the configuration that is being read
  std::string compiler_;  // of its toolchain, for flags
  std::set<std::string> said_;
  std::set<std::string> names_;  // of configurations
  ImportedProject project_;
  ImportedApplication application_;
  std::map<std::string, std::set<std::string>> users_;                 // configurations by file
  std::map<std::string, std::map<std::string, ImportedOptions>> own_;  // by file, configuration
};

// Replaces the variables that name places in the project. Nothing, if another one is left.
std::optional<std::string> CProject::Resolve(const std::string& value) {
  std::string text = value;
  if (text.size() > 1 && text.front() == '"' && text.back() == '"') {
    text = text.substr(1, text.size() - 2);
  }
  for (const char* name : {"${ProjName}", "${ProjectName}"}) {
    text = ReplaceAll(text, name, project_.name);
  }
  constexpr std::string_view kPlace = "${workspace_loc:/";
  for (std::size_t at = text.find(kPlace); at != std::string::npos; at = text.find(kPlace, at)) {
    const std::size_t end = text.find('}', at);
    if (end == std::string::npos) break;
    std::string inside = text.substr(at + kPlace.size(), end - at - kPlace.size());
    const bool isOwn = inside == project_.name || inside.starts_with(project_.name + "/");
    inside =
        isOwn ? root_ + inside.substr(project_.name.size()) : JoinPath(FolderOf(root_), inside);
    text = text.substr(0, at) + inside + text.substr(end + 1);
    at += inside.size();  // the name of a folder may look like a variable
  }
  text = ReplaceAll(text, "${workspace_loc}", FolderOf(root_));
  for (const char* name : {"${ProjDirPath}", "${PWD}/.."}) text = ReplaceAll(text, name, root_);
  if (text.find("${") == std::string::npos) return text;
  Remark(value + " was not imported");
  return std::nullopt;
}

// Relative paths start in the folder that the configuration builds in.
std::string CProject::FolderPath(const std::string& value) {
  const bool isRelative = IsRelativePath(value);
  return CanonicalPath(isRelative ? JoinPath(JoinPath(root_, current_), value) : value);
}

void CProject::TakeTools(const CXmlNode& owner, ToolSettings& settings) {
  const ToolContext tools{compiler_, JoinPath(root_, current_),
                          [this](const std::string& value) { return Resolve(value); },
                          [this](const std::string& text) { Remark(text); }};
  ReadTools(owner, tools, settings);
}

// Returns the path of a linker script, which is searched for like the linker does, and in the
// folder of the project.
std::string CProject::FindScript(const std::string& script, const ToolSettings& settings) {
  const std::string path = FolderPath(script);
  if (!IsRelativePath(script) || context_.files.Exists(path)) return path;
  std::vector<std::string> folders = settings.libraryPaths;
  folders.push_back(root_);
  for (const std::string& each : folders) {
    const std::string found = CanonicalPath(JoinPath(each, script));
    if (context_.files.Exists(found)) return found;
  }
  return path;
}

// Stores what is known about the processor.
void CProject::AddTarget(ToolSettings settings, ImportedOptions& options) {
  std::string device = settings.device;
  ImportedOptions target = context_.target(device);
  // The last two characters may be any package and the range of temperatures.
  const bool hasPackage = StartsWithNoCase(device, "stm32") && EndsWithNoCase(device, "x");
  if (target.empty() && hasPackage) target = context_.target(device.substr(0, device.size() - 2));
  for (const auto& [key, value] : target) options[key] = value;
  if (target.empty() && !device.empty()) {
    options["Application.Target.Device"] = LiteralValue(device);
    Remark("the device " + context_.describeUnknown(device));
  }
  if (!settings.isaBase.empty()) {
    std::string arch = settings.isaBase;
    for (const char part : {'m', 'a', 'f', 'c'}) {
      if (part == 'f') arch += settings.isaFloat;
      if (settings.isaParts.contains(part)) arch += part;
    }
    settings.target["Arch"] = arch;
  }
  if (!settings.abiBase.empty()) settings.target["Abi"] = settings.abiBase + settings.abiFloat;
  for (const auto& [name, value] : settings.target) {
    const std::string key = "Application.Target." + name;
    if (context_.accepts(key, value)) {
      options[key] = LiteralValue(value);
    } else {
      Remark(TargetArgument(name, value) + " was not imported");
    }
  }
}

ImportedOptions CProject::OptionsOf(const ToolSettings& settings, const std::string& toolchain) {
  ImportedOptions options;
  const auto store = [&options](const std::string& key, const std::string& value) {
    if (!value.empty()) options[key] = LiteralValue(value);
  };
  const auto paths = [this](const std::vector<std::string>& list) {
    std::vector<std::string> shown;
    for (const std::string& each : list) shown.push_back(PathInOption(project_.folder, each));
    return ListValue(shown);
  };
  const auto words = [this](const std::vector<FurtherArgument>& list) {
    std::vector<std::string> shown;
    for (const FurtherArgument& each : list) {
      shown.push_back(each.text +
                      (each.path.empty() ? "" : PathInOption(project_.folder, each.path)));
    }
    return WordsValue(shown);
  };
  if (!toolchain.empty() && context_.accepts("Application.Target.Toolchain", toolchain)) {
    store("Application.Target.Toolchain", toolchain);
  }
  AddTarget(settings, options);
  store("Application.Compiler.Optimize", settings.optimize);
  store("Application.Compiler.Debug", settings.debug);
  store("Application.Compiler.Warnings", settings.warnings);
  store("Application.Compiler.Defines", ListValue(settings.defines));
  store("Application.Directories.Include", paths(settings.includes));
  store("Application.Linker.Libraries", ListValue(settings.libraries));
  store("Application.Linker.LibraryPaths", paths(settings.libraryPaths));
  std::vector<FurtherArgument> link = settings.linkFurther;
  for (std::size_t i = 0; i < settings.scripts.size(); ++i) {
    const std::string script = FindScript(settings.scripts[i], settings);
    if (i == 0) {
      store("Application.Linker.Script", PathInOption(project_.folder, script));
    } else {
      link.push_back({"-T", script});
    }
  }
  if (!settings.systemCalls.empty()) link.push_back({settings.systemCalls, ""});
  store("Application.Linker.Extra", words(link));
  for (const char* set : {"C", "Cpp"}) {
    const std::string key = std::string(set) + ".Compiler.";
    for (const std::string& each : settings.standards) {
      if (context_.accepts(key + "Standard", each)) store(key + "Standard", each);
    }
    store(key + "Extra", words(settings.further));
  }
  store("Assembler.Compiler.Extra", words(settings.asmFurther));
  for (const std::string& each : settings.standards) {
    if (!context_.accepts("C.Compiler.Standard", each) &&
        !context_.accepts("Cpp.Compiler.Standard", each)) {
      Remark("the language level " + each + " was not imported");
    }
  }
  return options;
}

// Marks the files that this configuration builds.
void CProject::TakeSources(const CXmlNode& node, const std::string& configuration) {
  bool isAny = false;
  const auto take = [&](const std::string& name, const std::string& excluding) {
    isAny = true;
    const std::string folder = name.empty() ? root_ : CanonicalPath(JoinPath(root_, name));
    for (const std::string& path : ListSources(context_.files, folder)) {
      const std::string type = context_.typeOf(path);
      if (type != "Header" && !IsSourceType(type)) continue;
      const std::string inside = path.substr(std::min(path.size(), folder.size() + 1));
      const auto patterns = Split(excluding, '|');
      const bool isExcluded =
          std::any_of(patterns.begin(), patterns.end(), [&](std::string_view pattern) {
            return FitsPathPattern(inside, "/" + std::string(pattern));
          });
      if (!isExcluded) users_[path].insert(configuration);
    }
  };
  ForEachChild(node, "sourceEntries", [&](const CXmlNode& entries) {
    ForEachChild(entries, "entry", [&](const CXmlNode& entry) {
      take(PlainAttribute(entry, "name"), PlainAttribute(entry, "excluding"));
    });
  });
  if (!isAny) take("", "");
}

void CProject::TakeFile(const CXmlNode& info, const std::string& configuration) {
  const std::string path = CanonicalPath(JoinPath(root_, PlainAttribute(info, "resourcePath")));
  if (PlainAttribute(info, "exclude") == "true") {
    users_[path].erase(configuration);
    return;
  }
  ToolSettings settings;
  TakeTools(info, settings);
  const std::string type = context_.typeOf(path);
  if (!IsSourceType(type)) return;
  for (const auto& [key, value] : OptionsOf(settings, "")) {
    const std::size_t dot = key.find('.');
    const std::string set = key.substr(0, dot);
    const bool isList = key.ends_with(".Defines") || key.ends_with(".Include");
    const bool isOwn = set == type || (set == "Application" && key.find(".Linker.") == key.npos &&
                                       key.find(".Target.") == key.npos);
    if (isOwn)
      own_[path][configuration][type + key.substr(dot)] = isList ? "$(Inherited);" + value : value;
  }
}

void CProject::TakeConfiguration(const CXmlNode& node) {
  current_ = PlainAttribute(node, "name");
  const std::string name = UniqueName(SafeName(current_, "Configuration"), names_);
  ToolSettings settings;
  std::string toolchain;
  ForEachChild(node, "folderInfo", [&](const CXmlNode& info) {
    if (const std::string path = PlainAttribute(info, "resourcePath"); !path.empty()) {
      Remark("the options of the folder " + path + " in " + name + " were not imported");
      return;
    }
    ForEachChild(info, "toolChain", [&](const CXmlNode& chain) {
      toolchain = ToolchainOfNode(chain);
      compiler_ = toolchain.ends_with("-gcc") ? CompilerOf(toolchain) : "gcc";
      TakeTools(chain, settings);
    });
  });
  if (toolchain.empty() || !context_.accepts("Application.Target.Toolchain", toolchain)) {
    Remark("the tool chain of " + name + " is not known; set Target.Toolchain");
  }
  for (const char* step : {"prebuildStep", "postbuildStep"}) {
    if (const std::string command = PlainAttribute(node, step); !command.empty()) {
      Remark("the build step " + command + " was not imported");
    }
  }
  ImportedOptions options = OptionsOf(settings, toolchain);
  if (PlainAttribute(node, "artifactExtension") == "a" ||
      GetAttribute(&node, "buildArtefactType").ends_with("staticLib")) {
    options["Application.Target.Product"] = "library";
  }
  application_.configurations.push_back({name, std::move(options)});
  TakeSources(node, name);
  ForEachChild(node, "fileInfo", [&](const CXmlNode& info) { TakeFile(info, name); });
}

Result<ImportedProject> CProject::Run(const CXmlNode& root) {
  project_.folder = request_.folder.empty() ? root_ : request_.folder;
  project_.name = SafeName(FileNameOf(root_), "imported");
  const auto description =
      ReadForImport(context_.files, JoinPath(root_, ".project"), kLargestDescription);
  if (const auto tree = description ? ParseXml(*description) : nullptr) {
    const CXmlNode* name = tree->FindChild("name");
    if (name != nullptr) project_.name = SafeName(name->GetValue(), project_.name);
    if (tree->FindChild("linkedResources") != nullptr) {
      Remark("linked resources were not imported");
    }
  }
  application_.label = project_.name;
  const std::function<void(const CXmlNode&)> search = [&](const CXmlNode& node) {
    for (const CXmlNode* child : node.GetChildren()) {
      const bool isOne = child->NameView() == "configuration" &&
                         node.NameView() == "storageModule" && child->FindChild("folderInfo");
      if (isOne) {
        TakeConfiguration(*child);
      } else {
        search(*child);
      }
    }
  };
  search(root);
  if (application_.configurations.empty()) {
    return Error{ErrorCode::Unsupported, "it contains no configurations", request_.path};
  }
  const std::string first = application_.configurations.front().name;
  for (const auto& [path, users] : users_) {
    if (users.empty()) continue;
    ImportedFile file{path, GroupsBelow(root_, path), context_.typeOf(path), own_[path]};
    for (const ImportedConfiguration& each : application_.configurations) {
      if (users.contains(each.name) || !IsSourceType(file.type)) continue;
      file.options[each.name][file.type + ".Build.Exclude"] = "Yes";
    }
    // The configuration that is added has the options of the first one.
    if (file.options.contains(first)) file.options["Standard"] = file.options[first];
    application_.files.push_back(std::move(file));
  }
  project_.applications.push_back(std::move(application_));
  return std::move(project_);
}

}  // namespace

Result<ImportedProject> ImportCProject(const ImportRequest& request, const ImportContext& context) {
  const auto text = ReadForImport(context.files, request.path, kLargestDescription);
  if (!text) return text.GetError();
  const auto root = ParseXml(*text);
  if (root == nullptr || root->NameView() != "cproject") {
    return Error{ErrorCode::Unsupported, "it is not a C/C++ project description", request.path};
  }
  if (const std::string damage = FindLogDamage(*text); !damage.empty()) {
    return Error{ErrorCode::Unsupported, "it is damaged: line " + damage, request.path};
  }
  return CProject(request, context).Run(*root);
}

}  // namespace tarn::host
