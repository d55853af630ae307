#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/NewForTarget.h"
#include "hosts/cli/ShellText.h"
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
  project.folder = CanonicalPath(path);
  project.name = FileNameOf(project.folder);
  const HostFolders folders = HostFolders::FromEnvironment(context.Files());
  project.sourceType = FindSourceType(
      context.Files(), folders.application + "config/projectmanager.config", "c", "C");
  return project;
}

// Stores the compiler in the project that was just written.
int ChooseCompiler(CommandContext& context, const std::string& projectFile) {
  const std::string& compiler = context.Asked().compiler;
  if (const int code = context.OpenProject(projectFile); code != kExitDone) return code;
  BuildSession& session = context.Session();
  const std::string problem =
      session.Options().CheckValue("Application", "Target", "Toolchain", compiler);
  if (!problem.empty()) {
    context.Complain("The project is made, but " + compiler +
                     " is no compiler to choose: " + problem);
    return kExitUsage;
  }
  session.Manager().SavePropertyValue("Application", "Target", "Toolchain", compiler);
  return context.SaveProject();
}

// From texts that lie ready.
int MakeProject(CommandContext& context, const NewProject& project,
                std::vector<std::string>& made) {
  const auto written = WriteNewProject(context.Files(), project);
  if (!written) {
    const bool exists = written.GetError().code == ErrorCode::AlreadyExists;
    context.Complain(context.Show(written.GetError().place) + " " +
                     (exists ? "is there already. Choose another name."
                             : "can't be written: " + written.GetError().text));
    return exists ? kExitUsage : kExitCannotOpen;
  }
  made = *written;
  return context.Asked().compiler.empty() ? int{kExitDone} : ChooseCompiler(context, made.front());
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
