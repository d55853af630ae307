#include "hosts/cli/ImportForeign.h"

#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/cli/ShellText.h"
#include "hosts/core/FileTypes.h"
#include "hosts/core/FirstSource.h"
#include "hosts/core/OptionTable.h"
#include "hosts/core/ProjectTemplate.h"
#include "hosts/core/Terminal.h"
#include "hosts/core/import/Catalogue.h"
#include "hosts/core/import/Converters.h"
#include "hosts/core/import/StartUpFiles.h"
#include "platform/files/WriteFiles.h"
#include "platform/paths/Paths.h"
#include "platform/process/Process.h"
#include "platform/text/Text.h"
#include "xml/XmlEntities.h"

namespace tarn::host {

namespace {

// Names that show the format, in the order in which a folder is searched.
const struct {
  const char* name;
  ForeignFormat format;
} kKnownNames[] = {
    {"platformio.ini", ForeignFormat::PlatformIo},
    {".cproject", ForeignFormat::CProject},
    {"compile_commands.json", ForeignFormat::CompileCommands},
    {"build/compile_commands.json", ForeignFormat::CompileCommands},
    {"GNUmakefile", ForeignFormat::Make},
    {"makefile", ForeignFormat::Make},
    {"Makefile", ForeignFormat::Make},
};

std::string FullPath(const CommandContext& context, FileSystem& files, const std::string& word) {
  std::string path = IsRelativePath(word) ? JoinPath(context.StartFolder(), word) : word;
  path = files.Canonical(path);
  while (path.size() > 1 && path.ends_with(kSeparator)) path.pop_back();
  return path;
}

bool HasSketch(FileSystem& files, const std::string& folder) {
  const auto entries = files.ListFolder(folder);
  return entries && std::any_of(entries->begin(), entries->end(), [](const FolderEntry& each) {
           return !each.isFolder && EqualNoCase(ExtensionOf(each.name), ".ino");
         });
}

// Returns the files that the definitions name for a program with these options. The values are
// those of no node: opening a project replaces them.
std::vector<std::string> FindStartUp(OptionsDriver& options, const std::string& configFile,
                                     const ImportedOptions& values) {
  std::vector<std::string> found;
  constexpr std::string_view kSection = "Application.Target.";
  if (!values.contains("Application.Target.Toolchain")) return found;
  std::string properties;
  for (const auto& [key, value] : values) {
    if (!key.starts_with(kSection)) continue;
    properties += "<Property Header=\"" + key.substr(kSection.size()) + "\" Value=\"" +
                  g_xmlEntities.Encode(value.c_str()) + "\"/>";
  }
  options.ReadDefsFromFile("Application", configFile);
  options.ReadValuesFromText(
      "<Options><Config Header=\"Standard\"><Set Header=\"Application\"><Section "
      "Header=\"Target\">" +
      properties + "</Section></Set></Config></Options>");
  for (const char* name : kTemplateOptions) {
    const std::string path = options.GetPropertyStringValue("Application", "Target", name);
    if (!path.empty()) found.push_back(path);
  }
  return found;
}

// One import.
class ForeignImport {
 public:
  ForeignImport(CommandContext& commandContext, ForeignFormat foreignFormat)
      : context_(commandContext),
        own_(commandContext.Own<ImportOptions>()),
        format_(foreignFormat),
        path_(FullPath(commandContext, commandContext.Files(), own_.older)) {}

  int Run();

 private:
  int FindFile();
  void MakeImportContext();
  Result<ImportedProject> Convert(const ImportContext& importContext, std::string& problem);
  std::string DryRun(std::string& problem) const;
  int CheckNames(const ImportedProject& project) const;
  int Place(const std::vector<NewFile>& files);
  bool MayReplace(const std::vector<std::string>& present) const;
  int Report(const ImportedProject& project, const std::string& file) const;

  CommandContext& context_;
  const ImportOptions& own_;
  ForeignFormat format_;
  std::string path_;
  std::vector<std::string> kept_;  // remarks about replaced files
};

// Replaces a folder by the file in it that describes the project.
int ForeignImport::FindFile() {
  FileSystem& files = context_.Files();
  if (files.IsFolder(path_) && format_ != ForeignFormat::Sketch) {
    for (const auto& each : kKnownNames) {
      const std::string inside = JoinPath(path_, each.name);
      if (each.format != format_ || !files.Exists(inside)) continue;
      path_ = files.NameOnDisk(inside);  // the disk may have "Makefile" for "makefile"
      return kExitDone;
    }
  }
  const Result<bool> exists = files.CheckExists(path_);
  if (exists && *exists) return kExitDone;
  context_.Complain(exists ? context_.Show(path_) + " does not exist."
                           : context_.ShowFailure(path_, "read", exists.GetError().text) + ".");
  return kExitCannotOpen;
}

// Returns what make would do. Nothing is built, but make executes the shell parts that determine
// variables, and lines that are marked as recursive.
std::string ForeignImport::DryRun(std::string& problem) const {
  ProcessRequest request{.program = "make",
                         .arguments = {"-n", "-B", "-w", "-f", FileNameOf(path_)},
                         .environment = {{"LC_ALL", "C"}},
                         .folder = FolderOf(path_)};
  auto started = ProcessLauncher::Native().Start(request);
  if (!started) {
    problem = "make can't be started: " + started.GetError().text;
    return {};
  }
  std::string output, errors;
  const ProcessExit exit =
      (*started)->WaitWithOutput([&](std::string_view text, bool fromErrorStream) {
        std::string& stream = fromErrorStream ? errors : output;
        if (stream.size() < kLargestImport) stream += text;
      });
  if (output.size() >= kLargestImport) {
    problem = "`make -n` prints too much to be imported";
  } else if (exit.code != 0) {
    const auto lines = SplitLines(errors);
    problem = "`make -n` failed" + (lines.empty() ? "" : ": " + Printable(lines.back()));
  }
  return output;
}

Result<ImportedProject> ForeignImport::Convert(const ImportContext& importContext,
                                               std::string& problem) {
  const std::string folder =
      own_.folder.empty() ? "" : FullPath(context_, context_.Files(), own_.folder);
  const ImportRequest request{path_, folder, own_.board.empty() ? "uno" : own_.board};
  switch (format_) {
    case ForeignFormat::CompileCommands:
      return ImportCompileCommands(request, importContext);
    case ForeignFormat::PlatformIo:
      return ImportPlatformIo(request, importContext);
    case ForeignFormat::Sketch:
      return ImportSketch(request, importContext);
    case ForeignFormat::CProject:
      return ImportCProject(request, importContext);
    case ForeignFormat::Make: {
      const std::string output = DryRun(problem);
      if (!problem.empty()) return Error{ErrorCode::Unsupported, problem, path_};
      return ImportMakeOutput(request, output, importContext);
    }
    case ForeignFormat::Old:
      break;
  }
  return Error{ErrorCode::Unsupported, "it has an unknown format", path_};
}

bool ForeignImport::MayReplace(const std::vector<std::string>& present) const {
  if (own_.yes) return true;
  if (!IsInputTerminal()) return false;
  context_.Out().ShowQuestion("Replace " + context_.Show(present.front()) +
                              (present.size() > 1 ? " and other files" : "") + "? [y/N]");
  std::string answer;
  std::getline(std::cin, answer);
  return EqualNoCase(Trim(answer), "y") || EqualNoCase(Trim(answer), "yes");
}

// Writes all files or none. What they held before is kept next to them.
int ForeignImport::Place(const std::vector<NewFile>& list) {
  FileSystem& files = context_.Files();
  std::vector<FileBytes> changed;
  std::vector<std::string> present;
  for (const NewFile& each : list) {
    const auto text = files.ReadWholeFile(each.path);
    if (text && *text == each.text) continue;
    if (!text && text.GetError().code != ErrorCode::NotFound) {
      context_.Complain(context_.ShowFailure(each.path, "written", text.GetError().text) + ".");
      return kExitCannotOpen;
    }
    if (text) present.push_back(each.path);
    changed.push_back({each.path, each.text});
  }
  if (!present.empty() && !MayReplace(present)) {
    context_.Complain(context_.Show(present.back()) +
                      " already exists and was not changed. Use --yes to replace it.");
    return kExitUsage;
  }
  Status done;
  for (const std::string& each : present) {
    std::string copy = each + ".orig";
    for (int count = 2; files.Exists(copy); ++count) copy = each + ".orig" + ToDecimal(count);
    if (done) done = files.CopyFileTo(each, copy);
    kept_.push_back("replaced " + context_.Show(each) + "; its former content is in " +
                    context_.Show(copy));
  }
  for (const FileBytes& each : changed) {
    if (done) done = files.CreateFolders(FolderOf(each.path));
  }
  if (done) done = files.WriteFiles(changed);
  if (done) return kExitDone;
  const Error& error = done.GetError();
  context_.Complain(context_.ShowFailure(error.place, "written", error.text) + ".");
  return kExitCannotOpen;
}

int ForeignImport::CheckNames(const ImportedProject& project) const {
  for (const ImportedApplication& each : project.applications) {
    for (const ImportedFile& file : each.files) {
      std::string why = context_.WhyUnusable(file.path);
      if (why.empty() && !IsStorable(file.path)) why = "a project can't store &quot; or &slash;";
      if (why.empty() && Printable(file.path) != file.path) why = "its name can't be printed";
      if (why.empty()) continue;
      context_.Complain(context_.ShowFailure(file.path, "imported", why) + ".");
      return kExitUsage;
    }
  }
  return kExitDone;
}

int ForeignImport::Report(const ImportedProject& project, const std::string& file) const {
  std::vector<std::string> remarks = project.remarks;
  remarks.insert(remarks.end(), kept_.begin(), kept_.end());
  const std::string folder = AddSeparator(project.folder);
  for (std::string& each : remarks) each = ReplaceAll(each, folder, "");
  if (context_.Asked().json) {
    PrintJson(context_, {{"project", file}, {"remarks", remarks}});
    return kExitDone;
  }
  if (context_.Asked().quiet) return kExitDone;
  for (const std::string& each : remarks) context_.Remark(Printable(each));
  context_.Out().PrintLine("created " + context_.Show(file));
  context_.Out().PrintLine("Run `tarn build " + ShellWord(context_.Show(file)) + "` to build it.");
  return kExitDone;
}

int ForeignImport::Run() {
  if (const int code = FindFile(); code != kExitDone) return code;
  if (const int code = context_.StartSession(); code != kExitDone) return code;
  FileSystem& files = context_.Files();
  OptionsDriver& options = context_.Session().Options();
  const OptionTable table(options.ListProperties(""));
  const std::string configFile = context_.Session().GetFolders().ConfigFile(files);
  const std::string targets = JoinPath(FolderOf(FolderOf(configFile)), "targets");
  FileTypes types(files, configFile);
  const ImportContext importContext{
      files,
      [&](const std::string& key, const std::string& value) {
        OptionKey parts;
        return ParseOptionKey(key, parts) && table.Names(parts.set, parts.section, parts.name) &&
               options.CheckValue(parts.set, parts.section, parts.name, LiteralValue(value))
                   .empty();
      },
      [&](const std::string& path) { return types.Of(path); },
      [&](const std::string& name) { return FindTargetOptions(files, targets, name); },
      [&](const std::string& name) { return DescribeUnknownTarget(files, targets, name); },
      [&](const ImportedOptions& values) { return FindStartUp(options, configFile, values); }};
  std::string problem;
  Result<ImportedProject> project = Convert(importContext, problem);
  if (project) {
    const Status added = AddStartUpFiles(*project, importContext);
    if (!added) project = added.GetError();
  }
  if (!project) {
    const Error& error = project.GetError();
    context_.Complain(context_.ShowFailure(error.place, "imported", Printable(error.text)) + ".");
    return kExitCannotOpen;
  }
  if (const int code = CheckNames(*project); code != kExitDone) return code;
  const std::vector<NewFile> written = WriteImportedProject(*project, importContext);
  if (const int code = Place(written); code != kExitDone) return code;
  const std::string& file = written.back().path;
  if (const int code = context_.OpenProject(file); code != kExitDone) return code;
  context_.Session().Manager().ProjectClose();
  return Report(*project, file);
}

}  // namespace

std::vector<std::string> FormatNames() {
  return {"old", "compile-commands", "platformio", "sketch", "cproject", "make"};
}

int ChooseFormat(CommandContext& context, ForeignFormat& format) {
  const ImportOptions& own = context.Own<ImportOptions>();
  FileSystem& files = context.Files();
  const std::string path = FullPath(context, files, own.older);
  const std::vector<std::string> names = FormatNames();
  format = ForeignFormat::Old;
  if (!own.format.empty()) {
    format = static_cast<ForeignFormat>(std::find(names.begin(), names.end(), own.format) -
                                        names.begin());
  } else if (files.IsFolder(path)) {
    bool isFound = HasSketch(files, path);
    if (isFound) format = ForeignFormat::Sketch;
    for (const auto& each : kKnownNames) {
      if (isFound || !files.Exists(JoinPath(path, each.name))) continue;
      format = each.format;
      isFound = true;
    }
    if (!isFound) {
      context.Complain(context.Show(path) +
                       " contains nothing that can be imported. See `tarn "
                       "import --help`.");
      return kExitCannotOpen;
    }
  } else {
    for (const auto& each : kKnownNames) {
      if (FileNameOf(path) == each.name) format = each.format;
    }
    if (EqualNoCase(ExtensionOf(path), ".ino")) format = ForeignFormat::Sketch;
  }
  if (format == ForeignFormat::Make && !own.runMake) {
    context.Complain(
        "A Makefile is imported by `make -n`, which executes shell parts of it. Use "
        "--run-make if you trust it.");
    return kExitUsage;
  }
  return kExitDone;
}

int ImportForeign(CommandContext& context, ForeignFormat format) {
  return ForeignImport(context, format).Run();
}

}  // namespace tarn::host
