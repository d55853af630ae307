#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <set>

#include "hosts/core/LogEntry.h"
#include "hosts/core/PathPattern.h"
#include "hosts/core/import/ArduinoCore.h"
#include "hosts/core/import/CompilerCommand.h"
#include "hosts/core/import/Converters.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlEntities.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

constexpr std::size_t kLargestDescription = std::size_t{16} << 20;

// The values of one tool chain, tool or file.
struct Settings {
  std::vector<std::string> defines, includes, libraries, libraryPaths;
  std::string optimize, debug, standard, script, device;
  std::vector<FurtherArgument> further, linkFurther;
};

std::string Attribute(const CXmlNode& node, const char* name) {
  const std::string text = g_xmlEntitiesFull.Decode(GetAttribute(&node, name).c_str());
  return std::string(Trim(text));
}

void ForEach(const CXmlNode& node, std::string_view name,
             const std::function<void(const CXmlNode&)>& onNode) {
  for (const CXmlNode* child : node.GetChildren()) {
    if (child->NameView() == name) onNode(*child);
  }
}

std::string ToolchainFor(const std::string& id) {
  if (id.find("avr") != std::string::npos) return "avr-gcc";
  if (id.find("riscv") != std::string::npos) return "riscv-gcc";
  if (id.find("arm") != std::string::npos) return "arm-gcc";
  if (id.find("sdcc") != std::string::npos) return "sdcc-mcs51";
  return id.find("toolchain.gnu") != std::string::npos ? "host-gcc" : "";
}

class CProject {
 public:
  CProject(const ImportRequest& request, const ImportContext& context)
      : request_(request), context_(context), root_(FolderOf(request.path)) {}

  Result<ImportedProject> Run(const CXmlNode& root);

 private:
  void TakeConfiguration(const CXmlNode& node);
  void TakeTools(const CXmlNode& owner, Settings& settings);
  void TakeOption(const CXmlNode& tool, const CXmlNode& option, Settings& settings);
  bool TakeWord(const std::string& id, const std::string& value, Settings& settings);
  std::vector<std::string> ListOf(const CXmlNode& option);
  std::optional<std::string> Resolve(const std::string& value);
  std::string FolderPath(const std::string& value);
  ImportedOptions OptionsOf(const Settings& settings, const std::string& toolchain);
  void TakeSources(const CXmlNode& node, const std::string& configuration);
  void TakeFile(const CXmlNode& info, const std::string& configuration);
  void Remark(const std::string& text) {
    if (said_.insert(text).second) project_.remarks.push_back(text);
  }

  const ImportRequest& request_;
  const ImportContext& context_;
  const std::string root_;
  std::string current_;  // the configuration that is being read
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

std::vector<std::string> CProject::ListOf(const CXmlNode& option) {
  std::vector<std::string> list;
  ForEach(option, "listOptionValue", [&](const CXmlNode& entry) {
    if (GetAttribute(&entry, "builtIn") == "true") return;
    if (auto value = Resolve(Attribute(entry, "value"))) list.push_back(std::move(*value));
  });
  return list;
}

// Takes an option with one value by the end of its identifier.
bool CProject::TakeWord(const std::string& id, const std::string& value, Settings& settings) {
  const auto has = [&id](const char* part) { return id.find(part) != std::string::npos; };
  const std::string last = value.substr(value.rfind('.') + 1);
  if (has("optimization.level") || has("option.optimization") || has("optimization_level")) {
    const std::pair<const char*, const char*> rows[] = {
        {"none", "0"}, {"optimize", "1"}, {"more", "2"}, {"most", "3"}, {"size", "s"},
        {"o0", "0"},   {"o1", "1"},       {"o2", "2"},   {"o3", "3"},   {"os", "s"}};
    for (const auto& [word, level] : rows) {
      if (EqualNoCase(last, word)) settings.optimize = level;
    }
    return true;
  }
  if (has("debugging.level") || has("debug.level")) {
    settings.debug = EqualNoCase(last, "none") ? "No" : "Yes";
    return true;
  }
  if (has("mcu") && !has("clock")) {
    settings.device = value;
    return true;
  }
  if (has("scriptfile") || has("linkerscript") || has(".script")) {
    if (const auto path = Resolve(value)) settings.script = FolderPath(*path);
    return true;
  }
  if (has("dialect.std") || has("language.standard")) {
    settings.standard = last;
    return true;
  }
  if (!has(".other") && !has("flags") && !has("misc")) return false;
  const bool isLink = has("link");
  const std::vector<std::string> words = SplitShellWords("gcc " + value);
  CompilerCommand command = ParseCompilerCommand(words, JoinPath(root_, current_));
  auto& further = isLink ? settings.linkFurther : settings.further;
  for (FurtherArgument& each : command.further) further.push_back(std::move(each));
  if (!command.standard.empty()) settings.standard = command.standard;
  return true;
}

void CProject::TakeOption(const CXmlNode& tool, const CXmlNode& option, Settings& settings) {
  const std::string type = GetAttribute(&option, "valueType");
  const std::string id = FoldCase(GetAttribute(&option, "superClass"));
  const bool isLink = FoldCase(GetAttribute(&tool, "superClass")).find("link") != std::string::npos;
  const auto append = [&](std::vector<std::string>& to, bool isPath) {
    for (std::string& each : ListOf(option)) {
      to.push_back(isPath ? FolderPath(each) : std::move(each));
    }
  };
  if (type == "definedSymbols") return append(settings.defines, false);
  if (type == "includePath") return append(settings.includes, true);
  if (type == "libs") return append(settings.libraries, false);
  if (type == "libPaths") return append(settings.libraryPaths, true);
  if (type == "stringList" && isLink) {
    for (const std::string& each : ListOf(option)) settings.linkFurther.push_back({each, ""});
    return;
  }
  const std::string value = Attribute(option, "value");
  const bool isSet = !value.empty() && value != "false";
  if (!isSet || TakeWord(id, value, settings)) return;
  if (const std::string name = Attribute(option, "name"); !name.empty()) {
    Remark("the option \"" + name + "\" = " + value.substr(value.rfind('.') + 1) +
           " was not imported");
  }
}

void CProject::TakeTools(const CXmlNode& owner, Settings& settings) {
  ForEach(owner, "option", [&](const CXmlNode& option) { TakeOption(owner, option, settings); });
  ForEach(owner, "tool", [&](const CXmlNode& tool) {
    ForEach(tool, "option", [&](const CXmlNode& option) { TakeOption(tool, option, settings); });
  });
}

ImportedOptions CProject::OptionsOf(const Settings& settings, const std::string& toolchain) {
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
  const ImportedOptions target = context_.target(settings.device);
  for (const auto& [key, value] : target) options[key] = value;
  if (target.empty() && !settings.device.empty()) {
    store("Application.Target.Device", settings.device);
    Remark("the device " + context_.describeUnknown(settings.device));
  }
  store("Application.Compiler.Optimize", settings.optimize);
  store("Application.Compiler.Debug", settings.debug);
  store("Application.Compiler.Defines", ListValue(settings.defines));
  store("Application.Directories.Include", paths(settings.includes));
  store("Application.Linker.Libraries", ListValue(settings.libraries));
  store("Application.Linker.LibraryPaths", paths(settings.libraryPaths));
  if (!settings.script.empty()) {
    store("Application.Linker.Script", PathInOption(project_.folder, settings.script));
  }
  store("Application.Linker.Extra", words(settings.linkFurther));
  for (const char* set : {"C", "Cpp"}) {
    const std::string key = std::string(set) + ".Compiler.";
    if (context_.accepts(key + "Standard", settings.standard)) {
      store(key + "Standard", settings.standard);
    }
    store(key + "Extra", words(settings.further));
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
  ForEach(node, "sourceEntries", [&](const CXmlNode& entries) {
    ForEach(entries, "entry", [&](const CXmlNode& entry) {
      take(Attribute(entry, "name"), Attribute(entry, "excluding"));
    });
  });
  if (!isAny) take("", "");
}

void CProject::TakeFile(const CXmlNode& info, const std::string& configuration) {
  const std::string path = CanonicalPath(JoinPath(root_, Attribute(info, "resourcePath")));
  if (Attribute(info, "exclude") == "true") {
    users_[path].erase(configuration);
    return;
  }
  Settings settings;
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
  current_ = Attribute(node, "name");
  const std::string name = UniqueName(SafeName(current_, "Configuration"), names_);
  Settings settings;
  std::string toolchain;
  ForEach(node, "folderInfo", [&](const CXmlNode& info) {
    if (const std::string path = Attribute(info, "resourcePath"); !path.empty()) {
      Remark("the options of the folder " + path + " in " + name + " were not imported");
      return;
    }
    ForEach(info, "toolChain", [&](const CXmlNode& chain) {
      toolchain = ToolchainFor(FoldCase(GetAttribute(&chain, "superClass")));
      TakeTools(chain, settings);
    });
  });
  if (toolchain.empty() || !context_.accepts("Application.Target.Toolchain", toolchain)) {
    Remark("the tool chain of " + name + " is not known; set Target.Toolchain");
  }
  for (const char* step : {"prebuildStep", "postbuildStep"}) {
    if (const std::string command = Attribute(node, step); !command.empty()) {
      Remark("the build step " + command + " was not imported");
    }
  }
  ImportedOptions options = OptionsOf(settings, toolchain);
  if (Attribute(node, "artifactExtension") == "a" ||
      GetAttribute(&node, "buildArtefactType").ends_with("staticLib")) {
    options["Application.Target.Product"] = "library";
  }
  application_.configurations.push_back({name, std::move(options)});
  TakeSources(node, name);
  ForEach(node, "fileInfo", [&](const CXmlNode& info) { TakeFile(info, name); });
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
  return CProject(request, context).Run(*root);
}

}  // namespace tarn::host
