#include <tarn/commands.h>

#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/cli/NewForTarget.h"
#include "hosts/cli/ShellText.h"
#include "hosts/core/FirstSource.h"
#include "hosts/core/GitFiles.h"
#include "hosts/core/HostFolders.h"
#include "hosts/core/ProjectTemplate.h"
#include "hosts/core/StagingFolder.h"
#include "hosts/core/Toolchains.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

// `NAME` creates the project in a folder of that name; `FOLDER/NAME` creates it below FOLDER. An
// existing folder that is empty or contains only sources is used.
NewProject PlanOf(CommandContext& context) {
  std::string path = context.Own<NewOptions>().name;
  if (IsRelativePath(path)) path = JoinPath(context.StartFolder(), path);
  NewProject project;
  project.folder = context.Files().Canonical(path);
  // Shells complete a folder name with a trailing separator.
  if (project.folder.ends_with(kSeparator)) project.folder.pop_back();
  project.name = FileNameOf(project.folder);
  const HostFolders folders = HostFolders::FromEnvironment(context.Files());
  project.sourceType =
      FindSourceType(context.Files(), folders.ConfigFile(context.Files()), "c", "C");
  return project;
}

}  // namespace

std::string DescribeNameProblem(CommandContext& context, const std::string& toolchain,
                                const std::string& name) {
  const std::string program =
      FindProgramRefusing(context.Session().Tools().ListTools(), toolchain, name);
  if (program.empty()) return {};
  return program + " can't handle spaces or special characters in a name: " + name;
}

namespace {

// Returns 0, or an exit code after printing the error.
int CheckCompiler(CommandContext& context, const std::string& name) {
  const std::string& compiler = context.Own<NewOptions>().compiler;
  if (compiler.empty()) return kExitDone;
  const std::string problem =
      context.Session().Options().CheckValue("Application", "Target", "Toolchain", compiler);
  const std::string special = DescribeNameProblem(context, compiler, name);
  if (problem.empty() && special.empty()) return kExitDone;
  context.Complain(problem.empty() ? special : "Unknown compiler: " + problem);
  return kExitUsage;
}

}  // namespace

void StoreFirstOptions(ProjectManagerDriver& manager) {
  const std::string list = manager.GetPropertyValue("Application", "Target", "FirstOptions");
  for (const std::string_view part : Split(list, ' ')) {
    const std::string entry(Trim(part));
    const std::size_t dot = entry.find('.');
    const std::size_t equals = entry.find('=');
    if (equals == std::string::npos || dot > equals) continue;
    manager.SavePropertyValue("Application", entry.substr(0, dot),
                              entry.substr(dot + 1, equals - dot - 1), entry.substr(equals + 1));
  }
}

namespace {

// Stores the compiler in the new project, and a device if it requires one: nothing that affects the
// build is left to a default.
int ChooseCompiler(CommandContext& context, const std::string& projectFile) {
  if (const int code = context.OpenProject(projectFile); code != kExitDone) return code;
  ProjectManagerDriver& manager = context.Session().Manager();
  std::string compiler = context.Own<NewOptions>().compiler;
  if (compiler.empty()) compiler = manager.GetPropertyValue("Application", "Target", "Toolchain");
  manager.SavePropertyValue("Application", "Target", "Toolchain", compiler);
  StoreFirstOptions(manager);
  manager.Command(TARN_CMD_APPLY_OPTION_AND_REBUILD);
  context.SelectNode("Sources", "");
  std::vector<std::string> copies;
  const Status added =
      AddTemplateSources(context.Session(), context.Files(), FolderOf(projectFile), copies);
  if (!added) {
    context.Complain(context.ShowFailure(added.GetError().place, "copied", added.GetError().text));
    return kExitCannotOpen;
  }
  return context.SaveProject();
}

// Creates the project from built-in templates.
int MakeProject(CommandContext& context, const NewProject& staged) {
  if (const int code = CheckCompiler(context, staged.name); code != kExitDone) return code;
  const auto written = WriteNewProject(context.Files(), staged);
  if (!written) {
    const Error& error = written.GetError();
    context.Complain(context.ShowFailure(error.place, "written", error.text));
    return kExitCannotOpen;
  }
  return ChooseCompiler(context, written->front());
}

// Moves the files from the staging folder to their destination, the project file last: if the
// process is killed, the result is either a complete project or none.
int PlaceProject(CommandContext& context, StagingFolder& staging, const NewProject& staged,
                 const NewProject& project, std::vector<std::string>& made) {
  auto files = staging.CollectFor(staged.folder, project.folder);
  const Result<bool> git = IsInGitRepository(context.Files(), project.folder);
  if (!git && !context.Own<NewOptions>().git) {
    const Error& error = git.GetError();
    context.Complain(context.ShowFailure(error.place, "examined", error.text));
    return kExitCannotOpen;
  }
  if (files && (context.Own<NewOptions>().git || *git)) {
    const std::vector<NewFile> added = MakeGitFiles(project.folder);
    files->insert(files->begin(), added.rbegin(), added.rend());
  }
  const auto written = files ? WriteNewFiles(context.Files(), *files)
                             : Result<std::vector<std::string>>(files.GetError());
  if (!written) {
    const Error& error = written.GetError();
    const bool exists = error.code == ErrorCode::AlreadyExists;
    context.Complain(exists ? context.Show(error.place) + " already exists. Choose another name."
                            : context.ShowFailure(error.place, "written", error.text));
    return exists ? kExitUsage : kExitCannotOpen;
  }
  made.assign(written->rbegin(), written->rend());
  return kExitDone;
}

int StageAndPlace(CommandContext& context, const NewProject& project,
                  std::vector<std::string>& made) {
  const std::string file = JoinPath(project.folder, project.name + ".tprj");
  const Result<bool> exists = context.Files().CheckExists(file);
  if (!exists) {
    context.Complain(context.ShowFailure(file, "written", exists.GetError().text));
    return kExitCannotOpen;
  }
  if (*exists) {
    context.Complain(context.Show(file) + " already exists. Choose another name.");
    return kExitUsage;
  }
  // This also creates the user's data folder.
  if (const int code = context.StartSession(); code != kExitDone) return code;
  StagingFolder staging(context.Files(), context.Session().GetFolders().data);
  if (!staging.GetStatus()) {
    const Error& error = staging.GetStatus().GetError();
    context.Complain(context.ShowFailure(error.place, "written", error.text));
    return kExitCannotOpen;
  }
  NewProject staged = project;
  staged.folder = JoinPath(staging.GetPath(), project.name);
  int code = context.Own<NewOptions>().target.empty()
                 ? MakeProject(context, staged)
                 : MakeProjectForTarget(context, staged, project);
  if (code == kExitDone) code = PlaceProject(context, staging, staged, project, made);
  context.Session().Manager().ProjectClose();
  context.Files().SetCurrentFolder(context.StartFolder());
  return code;
}

// Trusts a project that the user has just created. A failure is only reported, because most
// projects build without being trusted.
void TrustNewProject(CommandContext& context, const std::string& folder) {
  const Status added = context.Session().Trust().Trust(folder);
  if (added) return;
  const Error& error = added.GetError();
  context.Remark("The project is not trusted yet: " + context.ShowResolved(error.place) + ": " +
                 Printable(error.text) + ".");
}

int RunNew(CommandContext& context) {
  if (context.Own<NewOptions>().name.empty()) {
    context.Complain("A project needs a name.");
    return kExitUsage;
  }
  const NewProject project = PlanOf(context);
  const std::string& configuration = context.Asked().configuration;
  std::string problem = CheckFileTitle(project.name, "project");
  if (problem.empty() && !configuration.empty()) {
    problem = CheckFileTitle(configuration, "configuration");
  }
  if (!problem.empty()) {
    context.Complain(problem);
    return kExitUsage;
  }
  // Existing content of the folder may have been written by other people.
  const auto present = context.Files().ListFolder(project.folder);
  const bool isOwn = present ? present->empty() : present.GetError().code == ErrorCode::NotFound;
  std::vector<std::string> made;
  if (const int code = StageAndPlace(context, project, made); code != kExitDone) return code;
  if (isOwn) TrustNewProject(context, project.folder);
  if (context.Asked().json) {
    PrintJson(context,
              {{"project", JoinPath(project.folder, project.name + ".tprj")}, {"files", made}});
    return kExitDone;
  }
  if (context.Asked().quiet) return kExitDone;
  for (const std::string& path : made) context.Out().PrintLine("created " + context.Show(path));
  const std::string folder = ShellWord(context.Show(project.folder));
  context.Out().PrintLine("Run `tarn build " + folder + "` to build it.");
  return kExitDone;
}

void DeclareNew(CommandArguments& arguments) {
  NewOptions& own = arguments.Own<NewOptions>();
  arguments
      .Positional("NAME", own.name, "Folder and name of the project, e.g. blinky or work/blinky")
      .Required();
  const Argument compiler = arguments
                                .Option("--compiler", own.compiler, "COMPILER",
                                        "Compiler to use; see `tarn options list`")
                                .NotEmpty();
  const Argument target =
      arguments
          .Option("--target", own.target, "MCU",
                  "Microcontroller to use; also sets the compiler; see `tarn targets`")
          .NotEmpty()
          .Excludes(compiler);
  arguments.Option("--type", own.type, "NAME", "Type of the application").NotEmpty().Needs(target);
  arguments
      .Option("-c,--config", arguments.Common().configuration, "NAME",
              "Configuration to use; may be a new one")
      .NotEmpty()
      .Needs(target);
  arguments.Flag("--git", own.git,
                 "Add .gitignore and .gitattributes even outside a git repository");
}

}  // namespace

CommandSpec NewCommand() {
  return {
      .name = "new",
      .group = CommandGroup::Files,
      .help = "Create a project",
      .examples = {{"tarn new blinky", "a project in the folder blinky"},
                   {"tarn new work/blinky --compiler sdcc-mcs51", "with a different compiler"},
                   {"tarn new blinky --target ATmega328P", "for a microcontroller"}},
      .declare = DeclareNew,
      .run = RunNew,
  };
}

}  // namespace tarn::host
