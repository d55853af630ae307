// Divides the sources of a foreign build into applications.

#include <algorithm>
#include <map>
#include <set>

#include "hosts/core/import/Converters.h"
#include "hosts/core/import/SourceScan.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr std::size_t kLargestSource = std::size_t{8} << 20;

// Returns "libz" for "/b/libz.so.1.3" and "tool" for "/b/tool".
std::string StemOf(const std::string& path) {
  const std::string name = FileNameOf(path);
  return name.starts_with("lib") ? name.substr(0, name.find('.')) : WithoutExtension(name);
}

// Returns false for a function within #ifdef NAME if the command doesn't define that name. Names
// that start with an underscore may be the compiler's own.
bool IsCompiled(const FoundFunction& function, const CompilerCommand& command) {
  constexpr std::string_view kDirective = "#ifdef ";
  const std::vector<std::string>& conditions = function.conditions;
  for (std::size_t i = 0; i < conditions.size(); ++i) {
    if (!conditions[i].starts_with(kDirective)) continue;
    const bool isOther = i + 1 < conditions.size() && conditions[i + 1].starts_with("#el");
    const std::string name(Trim(std::string_view(conditions[i]).substr(kDirective.size())));
    const bool isDefined =
        name.starts_with('_') ||
        std::any_of(command.defines.begin(), command.defines.end(), [&](const std::string& each) {
          return each.substr(0, each.find('=')) == name;
        });
    if (isDefined == isOther) return false;
  }
  return true;
}

class Division {
 public:
  Division(const ForeignBuild& build, const ImportContext& context, ImportedProject& project)
      : build_(build), context_(context), project_(project) {}

  void Run();

 private:
  // A program or library and its files.
  struct Part {
    const ForeignLink* link = nullptr;
    std::string label;
    std::string file;  // of a library, below the folder of the configuration
    std::vector<CompiledSource> sources;
    bool isLibrary = false;
  };

  void CollectByLinks();
  void CollectByMain();
  void TakeInputs(const ForeignLink& link, Part& part);
  bool MergesInto(const Part& part);
  bool HasMain(const CompiledSource& source) const;
  std::string UniqueLabel(const std::string& wanted);
  const Part* LibraryOf(const std::string& stem) const;
  void AddPart(const Part& part);
  void AddLink(const Part& part, ImportedApplication& application);
  void ReportUnused();

  const ForeignBuild& build_;
  const ImportContext& context_;
  ImportedProject& project_;
  std::vector<Part> parts_;
  std::set<std::string> labels_;
  std::set<std::string> used_;                            // sources
  std::map<std::string, const CompiledSource*> sources_;  // by their own path and their object's
};

std::string Division::UniqueLabel(const std::string& wanted) {
  return UniqueName(SafeName(wanted, "application"), labels_);
}

void Division::TakeInputs(const ForeignLink& link, Part& part) {
  std::set<std::string> known;
  for (const std::string& input : link.command.inputs) {
    const auto found = sources_.find(input);
    if (found == sources_.end()) continue;
    const CompiledSource& source = *found->second;
    if (known.insert(source.path).second) part.sources.push_back(source);
    used_.insert(source.path);
  }
}

// A shared library of the same files as a static one is left out. So is a second link of a library.
bool Division::MergesInto(const Part& part) {
  for (Part& each : parts_) {
    const bool isSame = part.isLibrary && each.isLibrary &&
                        StemOf(each.link->command.output) == StemOf(part.link->command.output);
    if (!isSame) continue;
    if (part.link->isShared) {
      project_.remarks.push_back(FileNameOf(part.link->command.output) +
                                 " was not imported; the static library is used");
      return true;
    }
    if (each.link->isShared) {
      each.link = part.link;
      each.sources = part.sources;
      return true;
    }
    for (const CompiledSource& source : part.sources) {
      const bool isKnown =
          std::any_of(each.sources.begin(), each.sources.end(),
                      [&source](const CompiledSource& own) { return own.path == source.path; });
      if (!isKnown) each.sources.push_back(source);
    }
    return true;
  }
  return false;
}

void Division::CollectByLinks() {
  for (const CompiledSource& each : build_.sources) {
    sources_.insert({each.path, &each});
    if (!each.command.output.empty()) sources_.insert({each.command.output, &each});
  }
  for (const ForeignLink& link : build_.links) {
    Part part;
    part.link = &link;
    part.isLibrary = link.isArchive || link.isShared;
    TakeInputs(link, part);
    if (part.sources.empty()) continue;
    if (MergesInto(part)) continue;
    part.label = UniqueLabel(StemOf(link.command.output));
    part.file = StemOf(link.command.output) + ".a";
    if (link.isShared) {
      project_.remarks.push_back(FileNameOf(link.command.output) + " becomes a static library");
    }
    parts_.push_back(std::move(part));
  }
}

bool Division::HasMain(const CompiledSource& source) const {
  const auto text = ReadForImport(context_.files, source.path, kLargestSource);
  if (!text || text->find("main") == std::string::npos) return false;
  const ScannedSource scanned = ScanSource(*text);
  return std::any_of(scanned.functions.begin(), scanned.functions.end(),
                     [&](const FoundFunction& each) {
                       return each.name == "main" && IsCompiled(each, source.command);
                     });
}

void Division::CollectByMain() {
  std::vector<CompiledSource> programs, others;
  std::set<std::string> seen;
  for (const CompiledSource& each : build_.sources) {
    used_.insert(each.path);
    if (!seen.insert(each.path).second) {
      project_.remarks.push_back(each.path + " is compiled twice; the first command is used");
    } else if (HasMain(each)) {
      programs.push_back(each);
    } else {
      others.push_back(each);
    }
  }
  if (programs.size() == 1) {
    others.insert(others.begin(), programs.front());
    parts_.push_back({nullptr, UniqueLabel(project_.name), "", others, false});
    return;
  }
  for (const CompiledSource& each : programs) {
    const std::string label = UniqueLabel(WithoutExtension(FileNameOf(each.path)));
    parts_.push_back({nullptr, label, "", {each}, false});
  }
  if (others.empty()) return;
  const std::string label = UniqueLabel("lib" + project_.name);
  parts_.push_back({nullptr, label, label + ".a", others, true});
  if (!programs.empty()) {
    project_.remarks.push_back(
        "what is linked is not recorded; each file with a main function became a program, and "
        "the others the library " +
        label);
  }
}

const Division::Part* Division::LibraryOf(const std::string& stem) const {
  for (const Part& each : parts_) {
    if (each.isLibrary && WithoutExtension(each.file) == stem) return &each;
  }
  return nullptr;
}

void Division::AddLink(const Part& part, ImportedApplication& application) {
  ImportedOptions& options = application.configurations.front().options;
  std::vector<std::string> linked;
  const auto use = [&linked](const Part& library) {
    const std::string path = "build/$(Config.Name)/" + library.file;
    if (std::find(linked.begin(), linked.end(), path) == linked.end()) linked.push_back(path);
  };
  CompilerCommand link;
  if (part.link != nullptr) {
    link = part.link->command;
    for (const std::string& input : link.inputs) {
      const std::string extension = ExtensionOf(input);
      if (extension == ".o" && !sources_.contains(input)) {
        project_.remarks.push_back(input + " was not imported: nothing that makes it is recorded");
      }
      const bool isLibrary = extension == ".a" || extension == ".la" ||
                             FileNameOf(input).find(".so") != std::string::npos;
      if (!isLibrary) continue;
      if (const Part* library = LibraryOf(StemOf(input))) {
        use(*library);
      } else if (context_.files.Exists(input)) {
        application.files.push_back({input, {}, "Library", {}});
      } else {
        project_.remarks.push_back(input + " was not imported: it does not exist");
      }
    }
    std::erase_if(link.libraries, [&](const std::string& name) {
      const Part* library = LibraryOf("lib" + name);
      if (library != nullptr) use(*library);
      return library != nullptr;
    });
  } else {
    for (const Part& each : parts_) {
      if (each.isLibrary) use(each);
    }
    for (const CompiledSource& each : part.sources) {
      if (!each.command.systemCalls.empty()) link.systemCalls = each.command.systemCalls;
    }
  }
  if (!linked.empty()) options["Application.Linker.Extra"] = WordsValue(linked);
  AddLinkOptions(link, context_, project_, application);
}

void Division::AddPart(const Part& part) {
  ImportedApplication application{part.label, {{"Standard", {}}}, {}};
  ImportedOptions& options = application.configurations.front().options;
  AddCompiledSources(part.sources, context_, project_, application);
  if (part.isLibrary) {
    options["Application.Target.Product"] = "library";
    options["Application.Build.OutputFile"] = "build/$(Config.Name)/" + part.file;
  } else {
    AddLink(part, application);
  }
  project_.applications.push_back(std::move(application));
}

void Division::ReportUnused() {
  for (const CompiledSource& each : build_.sources) {
    if (used_.insert(each.path).second) {
      project_.remarks.push_back(each.path +
                                 " was not imported: nothing that links it is recorded");
    }
  }
}

void Division::Run() {
  CollectByLinks();
  if (parts_.empty()) CollectByMain();
  for (const bool isLibrary : {false, true}) {
    for (const Part& each : parts_) {
      if (each.isLibrary == isLibrary) AddPart(each);
    }
  }
  ReportUnused();
}

}  // namespace

void DivideIntoApplications(const ForeignBuild& build, const ImportContext& context,
                            ImportedProject& project) {
  Division(build, context, project).Run();
}

}  // namespace tarn::host
