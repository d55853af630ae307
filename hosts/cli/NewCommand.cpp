#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/NewForTarget.h"
#include "hosts/cli/ShellText.h"
#include "hosts/frame/GitFiles.h"
#include "hosts/frame/HostFolders.h"
#include "hosts/frame/ProjectTemplate.h"
#include "platform/paths/Paths.h"

namespace tarn::host {

namespace {

// `NAME` makes a folder of that name; `FOLDER/NAME` makes it there. An empty folder, or one with
// sources only, that is there already is used.
NewProject PlanOf(CommandContext& context) {
  std::string path = context.Asked().name;
  if (IsRelativePath(path)) path = JoinPath(context.StartFolder(), path);
  NewProject project;
  project.folder = context.Files().Canonical(path);
  // As a shell completes the name of a folder.
  if (project.folder.ends_with(kSeparator)) project.folder.pop_back();
  project.name = FileNameOf(project.folder);
  const HostFolders folders = HostFolders::FromEnvironment(context.Files());
  project.sourceType =
      FindSourceType(context.Files(), folders.ConfigFile(context.Files()), "c", "C");
  return project;
}

// What a project starts with whose compiler needs to know a microcontroller.
constexpr const char* kFirstDevice = "atmega328p";

// 0, or an exit code with everything said.
int CheckCompiler(CommandContext& context) {
  if (const int code = context.StartSession(); code != kExitDone) return code;
  if (context.Asked().compiler.empty()) return kExitDone;
  const std::string problem = context.Session().Options().CheckValue(
      "Application", "Target", "Toolchain", context.Asked().compiler);
  if (problem.empty()) return kExitDone;
  context.Complain("There is no such compiler: " + problem);
  return kExitUsage;
}

// Stores the compiler in the project that was just written, and a device if it needs one: nothing
// that decides what is built is left to a default.
int ChooseCompiler(CommandContext& context, const std::string& projectFile) {
  if (const int code = context.OpenProject(projectFile); code != kExitDone) return code;
  ProjectManagerDriver& manager = context.Session().Manager();
  std::string compiler = context.Asked().compiler;
  if (compiler.empty()) compiler = manager.GetPropertyValue("Application", "Target", "Toolchain");
  manager.SavePropertyValue("Application", "Target", "Toolchain", compiler);
  if (!context.Session().Options().CheckValue("Application", "Target", "Device", "").empty()) {
    manager.SavePropertyValue("Application", "Target", "Device", kFirstDevice);
  }
  return context.SaveProject();
}

// From texts that lie ready.
int MakeProject(CommandContext& context, const NewProject& project,
                std::vector<std::string>& made) {
  if (const int code = CheckCompiler(context); code != kExitDone) return code;
  const auto written = WriteNewProject(context.Files(), project);
  if (!written) {
    const bool exists = written.GetError().code == ErrorCode::AlreadyExists;
    context.Complain(context.Show(written.GetError().place) + " " +
                     (exists ? "is there already. Choose another name."
                             : "can't be written: " + written.GetError().text));
    return exists ? kExitUsage : kExitCannotOpen;
  }
  made = *written;
  return ChooseCompiler(context, made.front());
}

}  // namespace

int RunNew(CommandContext& context) {
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
  std::vector<std::string> made;
  const int code = context.Asked().target.empty() ? MakeProject(context, project, made)
                                                  : MakeProjectForTarget(context, project, made);
  if (code != kExitDone) return code;
  if (context.Asked().git || IsInGitRepository(context.Files(), FolderOf(made.front()))) {
    const auto written = WriteGitFiles(context.Files(), FolderOf(made.front()));
    if (!written) {
      context.Complain(context.Show(written.GetError().place) +
                       " can't be written: " + written.GetError().text);
      return kExitCannotOpen;
    }
    made.insert(made.end(), written->begin(), written->end());
  }
  if (context.Asked().json) {
    PrintJson(context, {{"project", made.front()}, {"files", made}});
    return kExitDone;
  }
  if (context.Asked().quiet) return kExitDone;
  for (const std::string& path : made) context.Out().PrintLine("made " + context.Show(path));
  const std::string folder = ShellWord(context.Show(project.folder));
  context.Out().PrintLine("`tarn build " + folder + "` builds it.");
  return kExitDone;
}

}  // namespace tarn::host
