#include "hosts/core/import/CProjectTools.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "hosts/core/LogEntry.h"
#include "hosts/core/import/ImportedProject.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlEntities.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

// What an option of a tool means. The plug-ins of the makers begin its identifier differently.
enum class Meaning {
  Nothing,  // is the same for all projects here
  Optimize,
  Debug,
  Warnings,
  Device,
  Cpu,
  Fpu,
  FloatAbi,
  IsaBase,
  IsaPart,
  IsaFloat,
  AbiBase,
  AbiFloat,
  Script,
  Standard,
  Library,
  SystemCalls,
  Flags
};

struct OptionRow {
  std::string_view end;  // last components of the identifier, in lower case
  Meaning meaning;
  const char* value = "";
};

constexpr OptionRow kOptionRows[] = {
    {"optimization.level", Meaning::Optimize},
    {"option.optimization", Meaning::Optimize},
    {"optimization_level", Meaning::Optimize},
    {"debugging.level", Meaning::Debug},
    {"debug.level", Meaning::Debug},
    {"debuglevel", Meaning::Debug},
    {"warnings.allwarn", Meaning::Warnings, "all"},
    {"warnings.extrawarn", Meaning::Warnings, "extra"},
    {"mcu", Meaning::Device},
    {"target_mcu", Meaning::Device},
    {"mcutype", Meaning::Device},
    {"target.family", Meaning::Cpu},
    {"mcpu", Meaning::Cpu},
    {"fpu.unit", Meaning::Fpu},
    {"fpu", Meaning::Fpu},
    {"fpu.abi", Meaning::FloatAbi},
    {"floatabi", Meaning::FloatAbi},
    {"float.abi", Meaning::FloatAbi},
    {"isa.base", Meaning::IsaBase},
    {"isa.multiply", Meaning::IsaPart, "m"},
    {"isa.atomic", Meaning::IsaPart, "a"},
    {"isa.compressed", Meaning::IsaPart, "c"},
    {"isa.fp", Meaning::IsaFloat},
    {"abi.integer", Meaning::AbiBase},
    {"abi.fp", Meaning::AbiFloat},
    {"script", Meaning::Script},
    {"scriptfile", Meaning::Script},
    {"linkerscript", Meaning::Script},
    {"dialect.std", Meaning::Standard},
    {"language.standard", Meaning::Standard},
    {"compiler.std", Meaning::Standard},
    {"languagestandard", Meaning::Standard},
    {"usenewlibnano", Meaning::Library, "newlib-nano"},
    {"usenewlibnosys", Meaning::SystemCalls, "-specs=nosys.specs"},
    {"other", Meaning::Flags},
    {"flags", Meaning::Flags},
    {"otherflags", Meaning::Flags},
    {"ldflags", Meaning::Flags},
    {"optimization.flags", Meaning::Flags},
    {"misc", Meaning::Flags},
    {"target.instructionset", Meaning::Nothing},
    {"toolchain.name", Meaning::Nothing},
    {"prefix", Meaning::Nothing},
    {"functionsections", Meaning::Nothing},
    {"datasections", Meaning::Nothing},
    {"gcsections", Meaning::Nothing},
    {"nostart", Meaning::Nothing},
    {"assembler.usepreprocessor", Meaning::Nothing},
};

// Names of languages in identifiers, where a plus can't be.
constexpr std::pair<std::string_view, std::string_view> kLanguages[] = {
    {"gnucpp", "gnu++"}, {"gnupp", "gnu++"}, {"isocpp", "c++"}, {"cpp", "c++"}, {"cxx", "c++"}};

bool EndsIn(std::string_view id, std::string_view end) {
  return id.ends_with(end) && (id.size() == end.size() || id[id.size() - end.size() - 1] == '.');
}

// Returns true if a component of the identifier starts with the word.
bool HasComponent(const std::string& id, std::string_view word) {
  return id.starts_with(word) || id.find("." + std::string(word)) != std::string::npos;
}

std::string LastOf(const std::string& value) {
  return value.substr(value.rfind('.') + 1);
}

// Returns the toolchain for the identifier of one, or of a tool, in lower case.
std::string ToolchainFor(const std::string& id) {
  if (HasComponent(id, "avr")) return "avr-gcc";
  if (id.find("riscv") != std::string::npos) return "riscv-gcc";
  for (const char* each : {"arm", "gnuarm", "stm32", "crt.advproject"}) {
    if (HasComponent(id, each)) return "arm-gcc";
  }
  if (HasComponent(id, "sdcc")) return "sdcc-mcs51";
  const bool isCross = id.find("gnu.cross") != std::string::npos;
  return id.find("toolchain.gnu") != std::string::npos && !isCross ? "host-gcc" : "";
}

class ToolReader {
 public:
  explicit ToolReader(const ToolContext& context) : context_(context) {}

  void TakeTools(const CXmlNode& owner, ToolSettings& settings);

 private:
  void TakeOption(const CXmlNode& tool, const CXmlNode& option, ToolSettings& settings);
  // Returns the values of a list whose variables are known.
  std::vector<std::string> Resolved(const std::vector<std::string>& list) const;
  bool TakeWord(const OptionRow& row, const std::string& value, const std::string& tool,
                ToolSettings& settings);
  bool TakeTargetWord(const OptionRow& row, const std::string& value, ToolSettings& settings);
  bool TakeList(const CXmlNode& option, const OptionRow* row, const std::string& tool,
                ToolSettings& settings);
  void TakeFlags(const std::vector<std::string>& words, const std::string& tool,
                 ToolSettings& settings);
  // Relative paths start in the folder that the configuration builds in.
  std::string PathOf(const std::string& value) const {
    return CanonicalPath(IsRelativePath(value) ? JoinPath(context_.folder, value) : value);
  }

  const ToolContext& context_;
};

std::vector<std::string> ToolReader::Resolved(const std::vector<std::string>& list) const {
  std::vector<std::string> resolved;
  for (const std::string& each : list) {
    if (auto value = context_.resolve(each)) resolved.push_back(std::move(*value));
  }
  return resolved;
}

// Takes options for a tool as its command line has them.
void ToolReader::TakeFlags(const std::vector<std::string>& words, const std::string& tool,
                           ToolSettings& settings) {
  std::vector<std::string> line = {context_.compiler};
  for (const std::string& each : words) {
    if (const auto word = context_.resolve(each)) {
      line.push_back(*word);
    } else if (TakesNextArgument(line.back())) {
      line.pop_back();  // its value is missing
    }
  }
  CompilerCommand command = ParseCompilerCommand(line, context_.folder);
  auto& further = HasComponent(tool, "link")       ? settings.linkFurther
                  : HasComponent(tool, "assemble") ? settings.asmFurther
                                                   : settings.further;
  const auto append = [](auto& to, auto& from) { to.insert(to.end(), from.begin(), from.end()); };
  append(further, command.further);
  append(settings.defines, command.defines);
  append(settings.includes, command.includes);
  append(settings.libraries, command.libraries);
  append(settings.libraryPaths, command.libraryPaths);
  if (!command.script.empty()) settings.scripts.push_back(command.script);
  if (!command.standard.empty()) settings.standards.push_back(command.standard);
  if (!command.systemCalls.empty()) settings.systemCalls = command.systemCalls;
  if (command.warnings != "default") settings.warnings = command.warnings;
  if (command.debug) settings.debug = "Yes";
  for (const std::string& each : line) {
    if (each.starts_with("-O")) settings.optimize = command.optimize;
  }
  for (const auto& [name, value] : command.target) settings.target[name] = value;
  for (const auto* lost : {&command.dropped, &command.inputs}) {
    for (const std::string& each : *lost) context_.remark(each + " was not imported");
  }
}

// Takes an option about the processor. Returns false if its value isn't known.
bool ToolReader::TakeTargetWord(const OptionRow& row, const std::string& value,
                                ToolSettings& settings) {
  std::string last = LastOf(value);
  const bool isDefault = EqualNoCase(last, "default") || EqualNoCase(last, "none");
  if (value == "true") {
    if (row.meaning == Meaning::IsaPart) settings.isaParts.insert(row.value[0]);
    return row.meaning == Meaning::IsaPart;
  }
  switch (row.meaning) {
    case Meaning::Device:
      settings.device = last;
      return true;
    case Meaning::Cpu: {
      // The name may have a dot, such as "cortex-m0.small-multiply".
      const std::size_t start = value.rfind("mcpu.");
      settings.target["Cpu"] = start == std::string::npos ? last : value.substr(start + 5);
      return true;
    }
    case Meaning::Fpu:
      for (const char* each : {"fpv4-sp-d16", "fpv5-sp-d16", "fpv5-d16"}) {
        if (last == ReplaceAll(each, "-", "")) last = each;
      }
      if (!isDefault) settings.target["Fpu"] = last;
      return true;
    case Meaning::FloatAbi:
      if (!isDefault) settings.target["FloatAbi"] = last;
      return true;
    case Meaning::IsaBase:
      settings.isaBase = last;
      return true;
    case Meaning::IsaFloat:
      settings.isaFloat = last == "single" ? "f" : last == "double" ? "fd" : "";
      return isDefault || !settings.isaFloat.empty();
    case Meaning::AbiBase:
      settings.abiBase = last;
      return true;
    case Meaning::AbiFloat:
      settings.abiFloat = last == "single" ? "f" : last == "double" ? "d" : "";
      return isDefault || !settings.abiFloat.empty();
    default:
      return false;
  }
}

// Takes an option with one value. Returns false if the value isn't known.
bool ToolReader::TakeWord(const OptionRow& row, const std::string& value, const std::string& tool,
                          ToolSettings& settings) {
  std::string last = LastOf(value);
  switch (row.meaning) {
    case Meaning::Nothing:
      return true;
    case Meaning::Optimize: {
      const std::pair<const char*, const char*> levels[] = {
          {"none", "0"}, {"optimize", "1"}, {"more", "2"}, {"most", "3"},
          {"size", "s"}, {"o0", "0"},       {"o1", "1"},   {"o2", "2"},
          {"o3", "3"},   {"os", "s"},       {"debug", ""}, {"og", ""}};
      for (const auto& [word, level] : levels) {
        if (!EqualNoCase(last, word)) continue;
        settings.optimize = *level == 0 ? "0" : level;
        const bool isKnown = std::any_of(settings.further.begin(), settings.further.end(),
                                         [](const auto& each) { return each.text == "-Og"; });
        if (*level == 0 && !isKnown) settings.further.push_back({"-Og", ""});
        return true;
      }
      return false;
    }
    case Meaning::Debug:
      settings.debug = EqualNoCase(last, "none") || EqualNoCase(last, "g0") ? "No" : "Yes";
      return true;
    case Meaning::Warnings:
      if (settings.warnings != "extra") settings.warnings = row.value;
      return value == "true";
    case Meaning::Script:
      if (value == "true") return false;
      if (const auto path = context_.resolve(value)) settings.scripts.push_back(*path);
      return true;
    case Meaning::Standard:
      if (EqualNoCase(last, "default")) return true;
      for (const auto& [word, written] : kLanguages) {
        if (last.starts_with(word)) {
          last = std::string(written) + last.substr(word.size());
          break;
        }
      }
      settings.standards.push_back(last);
      return true;
    case Meaning::Library:
      settings.target["CLibrary"] = row.value;
      return value == "true";
    case Meaning::SystemCalls:
      settings.systemCalls = row.value;
      return value == "true";
    case Meaning::Flags:
      if (value == "true") return false;
      TakeFlags(SplitShellWords(value), tool, settings);
      return true;
    default:
      return value.find('$') == std::string::npos && TakeTargetWord(row, value, settings);
  }
}

// Takes an option with several values. Returns false if it isn't known.
bool ToolReader::TakeList(const CXmlNode& option, const OptionRow* row, const std::string& tool,
                          ToolSettings& settings) {
  const std::string type = GetAttribute(&option, "valueType");
  std::vector<std::string> list;
  ForEachChild(option, "listOptionValue", [&](const CXmlNode& entry) {
    if (GetAttribute(&entry, "builtIn") != "true") list.push_back(PlainAttribute(entry, "value"));
  });
  const auto append = [&](std::vector<std::string>& to, bool isPath) {
    for (const std::string& each : Resolved(list)) to.push_back(isPath ? PathOf(each) : each);
    return true;
  };
  if (type == "definedSymbols") return append(settings.defines, false);
  if (type == "includePath") return append(settings.includes, true);
  if (type == "libs") return append(settings.libraries, false);
  if (type == "libPaths") return append(settings.libraryPaths, true);
  if (type == "includeFiles") {
    for (const std::string& each : Resolved(list)) {
      settings.further.push_back({"-include", ""});
      settings.further.push_back({"", PathOf(each)});
    }
    return true;
  }
  if (list.empty()) return true;
  if (row != nullptr && row->meaning == Meaning::Script) return append(settings.scripts, false);
  const bool areFlags = std::all_of(list.begin(), list.end(),
                                    [](const std::string& each) { return each.starts_with("-"); });
  if (!areFlags && (row == nullptr || row->meaning != Meaning::Flags)) return false;
  std::vector<std::string> words;
  for (const std::string& each : list) {
    for (std::string& word : SplitShellWords(each)) {
      // The linker's own flags; those of the compiler have one dash.
      const bool isOfLinker = HasComponent(tool, "link") && !word.starts_with("--specs") &&
                              (word.starts_with("--") || word.starts_with("-Map"));
      words.push_back((isOfLinker ? "-Wl," : "") + word);
    }
  }
  TakeFlags(words, tool, settings);
  return true;
}

void ToolReader::TakeOption(const CXmlNode& tool, const CXmlNode& option, ToolSettings& settings) {
  const std::string id = FoldCase(GetAttribute(&option, "superClass"));
  const std::string toolId = FoldCase(GetAttribute(&tool, "superClass"));
  const OptionRow* row = nullptr;
  for (const OptionRow& each : kOptionRows) {
    if (row == nullptr && EndsIn(id, each.end)) row = &each;
  }
  const std::string value = PlainAttribute(option, "value");
  std::string shown = value;
  if (option.FindChild("listOptionValue") != nullptr) {
    if (TakeList(option, row, toolId, settings)) return;
    shown = PlainAttribute(*option.FindChild("listOptionValue"), "value");
  } else {
    const bool isSet = !value.empty() && value != "false";
    if (!isSet || (row != nullptr && TakeWord(*row, value, toolId, settings))) return;
  }
  std::string name = PlainAttribute(option, "name");
  if (name.empty()) name = id.substr(id.rfind('.', id.rfind('.') - 1) + 1);
  if (shown.find('$') == std::string::npos) shown = LastOf(shown);
  context_.remark("the option \"" + name + "\" = " + shown + " was not imported");
}

void ToolReader::TakeTools(const CXmlNode& owner, ToolSettings& settings) {
  ForEachChild(owner, "option",
               [&](const CXmlNode& option) { TakeOption(owner, option, settings); });
  ForEachChild(owner, "tool", [&](const CXmlNode& tool) {
    ForEachChild(tool, "option",
                 [&](const CXmlNode& option) { TakeOption(tool, option, settings); });
  });
}

}  // namespace

void ReadTools(const CXmlNode& owner, const ToolContext& context, ToolSettings& settings) {
  ToolReader(context).TakeTools(owner, settings);
}

std::string ToolchainOfNode(const CXmlNode& chain) {
  std::string toolchain;
  ForEachChild(chain, "option", [&](const CXmlNode& option) {
    if (!EndsIn(FoldCase(GetAttribute(&option, "superClass")), "prefix")) return;
    toolchain = ToolchainOf(PlainAttribute(option, "value") + "gcc", {});
  });
  const std::string byPrefix = toolchain;
  if (toolchain.empty() || toolchain == "host-gcc") {
    toolchain = ToolchainFor(FoldCase(GetAttribute(&chain, "superClass")));
  }
  ForEachChild(chain, "tool", [&](const CXmlNode& tool) {
    if (toolchain.empty()) toolchain = ToolchainFor(FoldCase(GetAttribute(&tool, "superClass")));
  });
  return toolchain.empty() ? byPrefix : toolchain;
}

std::string PlainAttribute(const CXmlNode& node, const char* name) {
  const std::string text = g_xmlEntitiesFull.Decode(GetAttribute(&node, name).c_str());
  return std::string(Trim(text));
}

void ForEachChild(const CXmlNode& node, std::string_view name,
                  const std::function<void(const CXmlNode&)>& onNode) {
  for (const CXmlNode* child : node.GetChildren()) {
    if (child->NameView() == name) onNode(*child);
  }
}

}  // namespace tarn::host
