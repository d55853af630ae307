#include "hosts/core/check/OptionCheck.h"

#include <algorithm>
#include <iterator>

#include "components/values/ValuesXml.h"
#include "hosts/core/LogEntry.h"
#include "platform/paths/Paths.h"
#include "platform/process/Process.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

constexpr std::string_view kMacro = "$(";
constexpr std::string_view kPathTypes[] = {"file", "folder", "paths"};
constexpr const char* kLibraries = "linker.libraries";
constexpr const char* kApplications = "linker.applications";
constexpr const char* kLauncher = "build.launcher";

bool HasMacro(std::string_view text) {
  return text.find(kMacro) != text.npos;
}

bool IsPathType(const std::string& type) {
  return std::find(std::begin(kPathTypes), std::end(kPathTypes), type) != std::end(kPathTypes);
}

// Splits a list into its entries; semicolons inside a macro don't separate entries.
std::vector<std::string_view> EntriesOf(std::string_view value, bool isList) {
  if (!isList) return {value};
  std::vector<std::string_view> entries;
  int depth = 0;
  std::size_t begin = 0;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value.substr(i).starts_with(kMacro)) ++depth;
    if (value[i] == ')' && depth > 0) --depth;
    if (value[i] != ';' || depth > 0) continue;
    entries.push_back(value.substr(begin, i - begin));
    begin = i + 1;
  }
  entries.push_back(value.substr(begin));
  return entries;
}

// Returns the file names that a linker tries for this library.
std::vector<std::string> FileNamesOf(const std::string& library) {
  if (library.starts_with(':')) return {library.substr(1)};
  return {"lib" + library + ".a", "lib" + library + ".so", library + ".lib", library};
}

// Calls `onOption` for each property below an element Options, with the names of its ancestors.
template <class OnOption>
void ForEachStored(const CheckedNode& node, OnOption&& onOption) {
  constexpr int kDepth = 5;  // Options, Config, Set, Section, Property
  const auto visit = [&](const auto& self, const CheckedNode& parent, int depth,
                         std::vector<std::string>& names) -> void {
    std::size_t after = 0;
    for (const CXmlNode* child : parent.node->GetChildren()) {
      if (child->GetType() != XmlElement) continue;
      if (depth == 1 && child->NameView() != "Options") continue;
      CheckedNode next = parent;
      next.node = child;
      next.element = 0;
      // If the parent isn't located, the position is unknown too.
      const bool isLocated = parent.elements != nullptr && (parent.element != 0);
      if (isLocated) {
        next.element = parent.elements->FindChild(parent.element, child->NameView(),
                                                  GetAttribute(child, "Header"), after);
      }
      names.push_back(GetAttribute(child, "Header"));
      if (depth == kDepth) {
        onOption(next, names);
      } else {
        self(self, next, depth + 1, names);
      }
      names.pop_back();
    }
  };
  std::vector<std::string> names;
  visit(visit, node, 1, names);
}

}  // namespace

OptionCheck::OptionCheck(CheckScope& checkScope) : scope_(checkScope) {}

void OptionCheck::Check(const CheckedNode& node) {
  ForEachStored(node, [&](const CheckedNode& property, const std::vector<std::string>& names) {
    Stored stored;
    stored.owner = node;
    stored.owner.listedIn = node.file;
    stored.owner.line = property.element == 0 ? 0 : (*node.elements)[property.element].line;
    stored.configuration = names[1];
    stored.set = names[2];
    stored.section = names[3];
    stored.name = names[4];
    stored.value = Unescape(GetAttribute(property.node, "Value"));
    stored.isActive = EqualNoCase(stored.configuration, ConfigurationOf(node));
    CheckConfiguration(stored);
    CheckStored(stored);
  });
}

// Reports one finding for all options of a node.
void OptionCheck::CheckConfiguration(const Stored& stored) {
  const CXmlNode* const application = stored.owner.application;
  const std::string& name = stored.configuration;
  if (application == nullptr || stored.isActive || EqualNoCase(name, kStandardConfiguration))
    return;
  const CXmlNode* const configurations = application->FindChild("Configs");
  const bool isKnown =
      configurations != nullptr &&
      std::ranges::any_of(configurations->GetChildren(), [&](const CXmlNode* each) {
        return EqualNoCase(GetAttribute(each, "Header"), name);
      });
  if (isKnown || !seenConfigurations_.insert(stored.owner.place + "\n" + FoldCase(name)).second) {
    return;
  }
  scope_.Add(FindingKind::UnknownConfiguration, stored.owner).subject = name;
}

void OptionCheck::CheckStored(const Stored& stored) {
  const OptionDefinition* const definition = FindDefinition(stored);
  if (definition == nullptr) {
    scope_.Add(FindingKind::UnknownOption, stored.owner).subject =
        stored.set + "." + stored.section + "." + stored.name;
    return;
  }
  if (IsPathType(definition->type)) CheckPaths(stored, *definition);
  if (HasMacro(stored.value) && !IsResolvable(stored)) return;
  Stored resolved = stored;
  if (HasMacro(stored.value)) {
    resolved.value = scope_.ValuesOf(stored.owner).Resolve(stored.value);
  }
  CheckValue(resolved, *definition);
  const std::string key = FoldCase(definition->GetKey());
  if (key == kLibraries && stored.isActive) CheckLibraries(resolved);
  if (key == kApplications && stored.isActive) CheckApplications(resolved);
  if (key == kLauncher && stored.isActive) CheckLauncher(resolved);
}

// Values of macros are known for the active configuration only.
bool OptionCheck::IsResolvable(const Stored& stored) {
  return stored.isActive && stored.owner.application != nullptr;
}

// The program is the first token of the value.
void OptionCheck::CheckLauncher(const Stored& stored) {
  const std::string_view value = Trim(stored.value);
  const bool isQuoted = value.starts_with('"') || value.starts_with('\'');
  const std::string program(isQuoted ? value.substr(1, value.find(value.front(), 1) - 1)
                                     : value.substr(0, value.find_first_of(" \t")));
  if (program.empty() || !FindProgram(program).empty()) return;
  Finding& finding = scope_.Add(FindingKind::MissingProgram, stored.owner);
  finding.subject = program;
  finding.detail = "Build.Launcher";
}

const OptionDefinition* OptionCheck::FindDefinition(const Stored& stored) {
  auto [set, isNew] = bySet_.try_emplace(FoldCase(stored.set));
  if (isNew) {
    for (OptionDefinition& each : scope_.options.GetOf(stored.set)) {
      const std::string key = FoldCase(each.GetKey());
      set->second.emplace(key, std::move(each));
    }
  }
  const auto found = set->second.find(FoldCase(stored.section + "." + stored.name));
  return found == set->second.end() ? nullptr : &found->second;
}

void OptionCheck::CheckValue(const Stored& stored, const OptionDefinition& definition) {
  const std::string problem =
      scope_.session.Options().CheckValue(stored.set, stored.section, stored.name, stored.value);
  if (problem.empty()) return;
  Finding& finding = scope_.Add(FindingKind::InvalidValue, stored.owner);
  finding.subject = stored.set + "." + definition.GetKey();
  finding.detail = problem;
}

void OptionCheck::CheckPaths(const Stored& stored, const OptionDefinition& definition) {
  const bool isMade = scope_.madeByTools.contains(FoldCase(definition.GetKey()));
  NamedPath named;
  named.option = definition.GetKey();
  named.wanted = NamedPath::Wanted::File;
  if (definition.type != "file") {
    named.ifMissing = FindingKind::MissingFolder;
    named.wanted = NamedPath::Wanted::Folder;
  }
  const bool isList = definition.type == "paths";
  const auto check = [&](std::string_view text) {
    named.text = isList ? Trim(text) : text;
    if (named.text.empty()) return;
    if (!isMade) {
      scope_.CheckPath(stored.owner, named);
    } else if (!named.isResolved && !IsRelativePath(named.text)) {
      Finding& finding = scope_.Add(FindingKind::AbsolutePath, stored.owner);
      finding.subject = named.text;
      finding.option = named.option;
    }
  };
  for (const std::string_view entry : EntriesOf(stored.value, isList)) {
    named.isResolved = HasMacro(entry);
    if (!named.isResolved) {
      check(entry);
    } else if (IsResolvable(stored)) {
      const std::string resolved = scope_.ValuesOf(stored.owner).Resolve(std::string(entry));
      for (const std::string_view each : EntriesOf(resolved, isList)) check(each);
    }
  }
}

void OptionCheck::CheckLibraries(const Stored& stored) {
  for (const std::string_view each : Split(stored.value, ';')) {
    const std::string name(Trim(each));
    if (name.empty() || HasLibrary(stored.owner, name)) continue;
    Finding& finding = scope_.Add(FindingKind::MissingLibrary, stored.owner);
    finding.subject = name;
    finding.option = "Linker.Libraries";
  }
}

void OptionCheck::CheckApplications(const Stored& stored) {
  const auto applications = ListApplications(scope_.session.Inspector());
  for (const std::string& name : FindUnknownLibraries(stored.value, applications)) {
    Finding& finding = scope_.Add(FindingKind::InvalidValue, stored.owner);
    finding.subject = stored.set + ".Linker.Applications";
    finding.detail = "no application of the project is called " + name;
  }
}

bool OptionCheck::HasLibrary(const CheckedNode& node, const std::string& name) {
  const std::vector<std::string> wanted = FileNamesOf(name);
  const auto isWanted = [&](const std::string& path) {
    return std::find(wanted.begin(), wanted.end(), FileNameOf(path)) != wanted.end();
  };
  // The linker searches only these folders for the library of another application.
  const std::vector<std::string> own = OwnLibraryFoldersOf(node);
  for (const auto& output : scope_.outputs) {
    const auto isItsFolder = [&](const std::string& folder) {
      return AddSeparator(folder) == AddSeparator(FolderOf(output.first));
    };
    if (isWanted(output.first) && std::ranges::any_of(own, isItsFolder)) return true;
  }
  std::vector<std::string> folders = CompilerFoldersOf(node);
  if (folders.empty()) return true;  // the compiler is not installed, so its libraries are unknown
  folders.insert(folders.end(), own.begin(), own.end());
  for (const std::string& folder : folders) {
    for (const std::string& file : wanted) {
      if (scope_.files.Exists(JoinPath(folder, file))) return true;
    }
  }
  return false;
}

std::vector<std::string> OptionCheck::CompilerFoldersOf(const CheckedNode& node) {
  const auto tool = scope_.tools.find(FoldCase(GetAttribute(node.application, "TranslateTool")));
  if (tool == scope_.tools.end() || tool->second.programs.empty()) return {};
  return FoldersBeside(tool->second.programs.front());
}

std::vector<std::string> OptionCheck::OwnLibraryFoldersOf(const CheckedNode& node) {
  std::vector<std::string> folders;
  const std::string own = scope_.ValuesOf(node).Get("", "Linker", "LibraryPaths");
  for (const std::string_view each : Split(own, ';')) {
    if (!Trim(each).empty()) folders.push_back(scope_.OptionPath(node, std::string(Trim(each))));
  }
  return folders;
}

// Returns the targets that a compiler installation has folders for; only that of the program if it
// is named after one, as in "avr-gcc" or in the file that "gcc" is a link to.
std::vector<std::string> OptionCheck::TargetsOf(const std::string& program,
                                                const std::string& library) {
  std::vector<std::string> targets;
  const auto entries = scope_.files.ListFolder(JoinPath(library, "gcc"));
  if (!entries) return targets;
  const std::string file = FileNameOf(scope_.files.ResolveLinks(program));
  for (const FolderEntry& each : *entries) {
    if (file.starts_with(each.name + "-")) return {each.name};
    targets.push_back(each.name);
  }
  return targets;
}

// Returns the library folders of a compiler installation: the folders up to a few levels below the
// prefix of the program, named after the target, the version and the core.
std::vector<std::string> OptionCheck::FoldersBeside(const std::string& program) {
  auto [known, isNew] = foldersByProgram_.try_emplace(program);
  const std::string path = FindProgram(program);
  if (!isNew || path.empty()) return known->second;
  const std::string prefix = FolderOf(FolderOf(path));
  const auto below = [this](const std::vector<std::string>& folders) {
    std::vector<std::string> found;
    for (const std::string& folder : folders) {
      const auto entries = scope_.files.ListFolder(folder);
      if (!entries) continue;
      for (const FolderEntry& each : *entries) found.push_back(JoinPath(folder, each.name));
    }
    return found;
  };
  const auto named = [](std::vector<std::string> folders, const char* name) {
    for (std::string& folder : folders) folder = JoinPath(folder, name);
    return folders;
  };
  const std::string library = JoinPath(prefix, "lib");
  std::vector<std::string> targets;
  std::vector<std::string> runtimes;
  for (const std::string& name : TargetsOf(path, library)) {
    targets.push_back(JoinPath(library, name));
    runtimes.push_back(JoinPath(JoinPath(library, "gcc"), name));
  }
  const std::vector<std::string> nested = named(targets, "lib");
  std::vector<std::vector<std::string>> all = {
      {library},
      targets,
      nested,
      below(runtimes),
      below(named({JoinPath(prefix, "share/sdcc")}, "lib"))};
  for (const std::string& folder : nested) {
    if (scope_.files.IsFolder(folder)) all.push_back(below({folder}));
  }
  for (const auto& list : all) known->second.insert(known->second.end(), list.begin(), list.end());
  return known->second;
}

}  // namespace tarn::host
