#include "automation/ProjectCommands.h"

#include <tarn/commands.h>

#include "automation/CommandTable.h"
#include "automation/Installation.h"

namespace tarn {

namespace {

CommandKind KindOf(std::uint32_t id) {
  const CommandRow* row = CommandRow::Find(id);
  return row == nullptr ? CommandKind::Plain : row->kind;
}

}  // namespace

std::int32_t ProjectCommands::Run(std::uint32_t id) {
  const CommandRow* row = CommandRow::Find(id);
  if (row == nullptr) return 1;
  return row->kind != CommandKind::Plain && RefusesBuild() ? 0 : row->action(actions_, id);
}

std::int32_t ProjectCommands::Enable(std::uint32_t id) const {
  const CommandRow* row = CommandRow::Find(id);
  if (row == nullptr) return 1;
  switch (row->rule) {
    case EnableRule::Always:
      return 1;
    case EnableRule::UserProject:
      return model_.IsDefaultProject() ? 0 : 1;
    case EnableRule::WhileBuilding:
      return builder_.GetBuildState() == StateBuilding ? 1 : 0;
  }
  return 1;
}

// Used by hosts that protect damaged projects. The definitions may have changed since the host
// queried the installation's problems.
bool ProjectCommands::RefusesBuild() {
  if (!model_.Protection().IsDamageProtected()) return false;
  std::string problem = "the project was read only in part.";
  if (!model_.Protection().IsDamageHeld()) {
    problem = FindDefinitionProblem(model_.Services());
    // Reloading them may resolve the problem.
    if (!problem.empty() && model_.Options().RefreshDefinitions() != 0)
      problem = FindDefinitionProblem(model_.Services());
  }
  if (!problem.empty()) model_.Host().AddLogLine("Nothing was built: " + problem);
  return !problem.empty();
}

std::int32_t ProjectCommands::Prolog(std::uint32_t id) {
  const CommandKind kind = KindOf(id);
  if (kind == CommandKind::Plain) return 1;
  if (kind == CommandKind::Build) actions_.DropRebuildRequest();
  if (!builder_.CanStartOperation()) return 0;
  if (RefusesBuild()) return 0;
  model_.Services().views.StopStepTimer();
  model_.Services().propertyManager->EndUpdate();
  model_.GetFiles().SetCurrentFolder(model_.GetProjectFolder());
  const std::intptr_t answer = model_.Host().SendHost(kMsgBuildStarting, 0, 0);
  if (answer == 0) {
    // Publishing was suspended for a build that now isn't started.
    const bool hasTimer = model_.IsOpen() && !model_.IsDefaultProject();
    if (hasTimer && !model_.Publishing().IsPublishingStopped() &&
        model_.Publishing().HasUnpublished())
      model_.Services().views.StartStepTimer();
    return 0;
  }
  model_.Services().output->ResetLog();
  model_.Services().output->UpdateReport();
  model_.Services().propertyManager->BeginUpdate();
  // The reply is wider than the result; only a reply of 0 may become a refusal.
  const auto result = static_cast<std::int32_t>(answer);
  return result == 0 ? 1 : result;
}

std::int32_t ProjectCommands::Epilog(std::uint32_t id) {
  const CommandKind kind = KindOf(id);
  if (kind == CommandKind::Plain) return 1;
  model_.Services().propertyManager->EndUpdate();
  if (kind == CommandKind::Tool) return 1;
  if (const CXmlNode* application = model_.GetActiveApplication()) {
    model_.Services().views.LoadGlobals(model_.Paths().GlobalsFileOf(*application));
  }
  if (!actions_.IsRebuildRequested()) return 1;
  model_.Host().PostHostCommand(TARN_CMD_APPLY_OPTION_AND_REBUILD);
  model_.Host().PostHostCommand(TARN_CMD_REBUILD_ALL);
  return 0;
}

}  // namespace tarn
