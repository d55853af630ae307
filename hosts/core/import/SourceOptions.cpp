#include "hosts/core/import/SourceOptions.h"

#include <algorithm>
#include <optional>
#include <set>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr const char* kTarget = "Application.Target.";

// Properties of a source by their keys without the set, such as "Compiler.Optimize".
using Properties = std::map<std::string, std::string>;

struct Source {
  const CompiledSource* compiled;
  std::string type;  // C, Cpp or Assembler
  Properties properties;
};

std::string Words(const std::vector<FurtherArgument>& arguments, const std::string& folder) {
  std::vector<std::string> words;
  for (const FurtherArgument& each : arguments) {
    words.push_back(each.text + (each.path.empty() ? "" : PathInOption(folder, each.path)));
  }
  return LiteralValue(WordsValue(words));
}

std::string Paths(const std::vector<std::string>& paths, const std::string& folder) {
  std::vector<std::string> entries;
  for (const std::string& each : paths) entries.push_back(PathInOption(folder, each));
  return LiteralValue(ListValue(entries));
}

// Returns the value that most sources have; empty if they have none in common.
std::string MostCommon(const std::vector<const Properties*>& all, const std::string& key) {
  std::map<std::string, std::size_t> counts;
  std::string best;
  std::size_t most = 0;
  for (const Properties* each : all) {
    const auto found = each->find(key);
    if (found == each->end()) continue;
    const std::size_t count = ++counts[found->second];
    if (count <= most) continue;
    most = count;
    best = found->second;
  }
  return best;
}

// Writes a list that starts with the inherited one as an addition to it.
std::string Addition(const std::string& inherited, const std::string& value) {
  const bool extends = !inherited.empty() && value.starts_with(inherited + ";");
  return extends ? "$(Inherited)" + value.substr(inherited.size()) : value;
}

// Returns the arguments that no option stands for, among them those about the processor that this
// installation has no option for.
std::vector<FurtherArgument> FurtherOf(const CompilerCommand& command,
                                       const ImportContext& context) {
  std::vector<FurtherArgument> further = command.further;
  for (const auto& [name, value] : command.target) {
    if (!context.accepts(kTarget + name, value)) {
      further.push_back({TargetArgument(name, value), ""});
    }
  }
  return further;
}

class Distributor {
 public:
  Distributor(const ImportContext& context, ImportedProject& project,
              ImportedApplication& application)
      : context_(context), project_(project), application_(application) {}

  void Run(const std::vector<CompiledSource>& compiled);

 private:
  Properties PropertiesOf(const CompiledSource& source, const std::string& type);
  void AddTarget(const std::vector<CompiledSource>& compiled);
  void AddCommon();
  ImportedOptions OwnOptions(const Source& source) const;
  bool IsShared(const std::string& key) const {
    return key != "Compiler.Extra" && key != "Compiler.Standard";
  }
  ImportedOptions& Options() { return application_.configurations.front().options; }

  const ImportContext& context_;
  ImportedProject& project_;
  ImportedApplication& application_;
  std::vector<Source> sources_;
  std::map<std::string, Properties> inherited_;  // by type
};

Properties Distributor::PropertiesOf(const CompiledSource& source, const std::string& type) {
  const CompilerCommand& command = source.command;
  std::vector<FurtherArgument> further = FurtherOf(command, context_);
  Properties properties = {
      {"Compiler.Debug", command.debug ? "Yes" : "No"},
      {"Compiler.Defines", LiteralValue(ListValue(command.defines))},
      {"Directories.Include", Paths(command.includes, project_.folder)},
  };
  if (type != "Assembler") {
    properties["Compiler.Optimize"] = command.optimize;
    properties["Compiler.Warnings"] = command.warnings;
    const bool isKnown =
        command.standard.empty() || context_.accepts(type + ".Compiler.Standard", command.standard);
    properties["Compiler.Standard"] = isKnown ? command.standard : "";
    if (!isKnown) further.push_back({"-std=" + command.standard, ""});
  }
  properties["Compiler.Extra"] = Words(further, project_.folder);
  return properties;
}

// Stores what the commands say about the processor. An option that no definition knows stays an
// argument.
void Distributor::AddTarget(const std::vector<CompiledSource>& compiled) {
  std::vector<Properties> targets;
  std::set<std::string> names;
  for (const CompiledSource& each : compiled) {
    targets.push_back(each.command.target);
    targets.back()["Toolchain"] = each.command.toolchain;
    for (const auto& [name, value] : targets.back()) names.insert(name);
  }
  std::vector<const Properties*> all;
  for (const Properties& each : targets) all.push_back(&each);
  for (const std::string& name : names) {
    const std::string value = MostCommon(all, name);
    if (name != "Toolchain" && !context_.accepts(kTarget + name, value)) continue;
    for (std::size_t i = 0; i < targets.size(); ++i) {
      const auto own = targets[i].find(name);
      if (own == targets[i].end() || own->second == value) continue;
      project_.remarks.push_back(compiled[i].path + ": " + name + " " + own->second +
                                 " was not imported; the application has " + value);
    }
    if (name == "Toolchain" && (value.empty() || !context_.accepts(kTarget + name, value))) {
      project_.remarks.push_back("the compiler " + compiled.front().command.program +
                                 " is not among the known toolchains; set Target.Toolchain");
    } else {
      Options()[kTarget + name] = LiteralValue(value);
    }
  }
  const std::string& toolchain = Options()["Application.Target.Toolchain"];
  if (toolchain.empty()) Options().erase("Application.Target.Toolchain");
  // The default would be passed to the compiler.
  if (toolchain == "avr-gcc" && !names.contains("Clock"))
    Options()["Application.Target.Clock"] = "";
}

void Distributor::AddCommon() {
  std::vector<const Properties*> all;
  std::map<std::string, std::vector<const Properties*>> byType;
  for (const Source& each : sources_) {
    if (each.type != "Assembler") all.push_back(&each.properties);
    byType[each.type].push_back(&each.properties);
  }
  if (all.empty()) {
    for (const Source& each : sources_) all.push_back(&each.properties);
  }
  std::set<std::string> keys;
  for (const Source& each : sources_) {
    for (const auto& [key, value] : each.properties) keys.insert(key);
  }
  for (const std::string& key : keys) {
    std::string common;
    if (IsShared(key)) {
      common = MostCommon(all, key);
      if (!common.empty()) Options()["Application." + key] = common;
    }
    for (const auto& [type, members] : byType) {
      if (!members.front()->contains(key)) continue;
      const std::string own = MostCommon(members, key);
      inherited_[type][key] = own;
      if (own != common) Options()[type + "." + key] = own;
    }
  }
}

ImportedOptions Distributor::OwnOptions(const Source& source) const {
  ImportedOptions own;
  const Properties& inherited = inherited_.at(source.type);
  for (const auto& [key, value] : source.properties) {
    const std::string& outer = inherited.at(key);
    if (value == outer) continue;
    const bool isList = key == "Compiler.Defines" || key == "Directories.Include";
    own[source.type + "." + key] = isList ? Addition(outer, value) : value;
  }
  return own;
}

void Distributor::Run(const std::vector<CompiledSource>& compiled) {
  if (compiled.empty()) return;
  for (const CompiledSource& each : compiled) {
    std::string type = context_.typeOf(each.path);
    if (!each.command.language.empty()) {
      type = each.command.language;
    } else if (each.command.isCpp && type == "C") {
      type = "Cpp";  // a driver for C++ compiles C files as C++
    }
    sources_.push_back({&each, type, PropertiesOf(each, type)});
  }
  AddTarget(compiled);
  AddCommon();
  std::set<std::string> reported;
  for (const Source& each : sources_) {
    const std::string& path = each.compiled->path;
    const ImportedOptions own = OwnOptions(each);
    ImportedFile file{path, GroupsBelow(project_.folder, path), each.type, {}};
    if (!own.empty()) file.options[""] = own;
    application_.files.push_back(std::move(file));
    for (const std::string& dropped : each.compiled->command.dropped) {
      if (reported.insert(dropped).second) {
        project_.remarks.push_back(path + ": the argument " + dropped + " was not imported");
      }
    }
  }
}

}  // namespace

void AddCompiledSources(const std::vector<CompiledSource>& sources, const ImportContext& context,
                        ImportedProject& project, ImportedApplication& application) {
  Distributor(context, project, application).Run(sources);
}

void AddLinkOptions(const CompilerCommand& link, const ImportContext& context,
                    ImportedProject& project, ImportedApplication& application) {
  ImportedOptions& options = application.configurations.front().options;
  const auto store = [&options](const char* key, const std::string& value) {
    if (!value.empty()) options[key] = value;
  };
  std::vector<FurtherArgument> further;
  for (const FurtherArgument& each : FurtherOf(link, context)) {
    // A link gets the flags of the compiler as well, which mean nothing to it.
    const bool isForCompiler = each.text.starts_with("-W") && !each.text.starts_with("-Wl,");
    if (!isForCompiler) further.push_back(each);
  }
  if (!link.systemCalls.empty()) further.push_back({link.systemCalls, ""});
  // What only the link says about the processor and the C library.
  for (const auto& [name, value] : link.target) {
    const std::string key = kTarget + name;
    if (!options.contains(key) && context.accepts(key, value)) options[key] = LiteralValue(value);
  }
  store("Application.Linker.Libraries", LiteralValue(ListValue(link.libraries)));
  store("Application.Linker.LibraryPaths", Paths(link.libraryPaths, project.folder));
  if (!link.script.empty()) {
    store("Application.Linker.Script", LiteralValue(PathInOption(project.folder, link.script)));
  }
  std::string extra = Words(further, project.folder);
  const auto present = options.find("Application.Linker.Extra");
  if (present != options.end() && !present->second.empty()) {
    extra = extra.empty() ? present->second : present->second + " " + extra;
  }
  store("Application.Linker.Extra", extra);
  for (const std::string& each : link.dropped) {
    project.remarks.push_back("the argument " + each + " of the link was not imported");
  }
}

}  // namespace tarn::host
