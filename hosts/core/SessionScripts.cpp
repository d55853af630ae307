#include "hosts/core/SessionScripts.h"

#include <cstdint>
#include <utility>

#include "hosts/core/BuildSession.h"
#include "hosts/core/NewConfiguration.h"
#include "hosts/core/ProjectTree.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

// Item type of a list of sources, which are not resolved.
constexpr const char* kSourceList = "DebugSrcFiles";

BuildWork WorkOf(const std::string& work) {
  if (work == "rebuild") return BuildWork::Rebuild;
  return work == "clean" ? BuildWork::Clean : BuildWork::Build;
}

}  // namespace

SessionScripts::SessionScripts(BuildSession& buildSession) : session_(buildSession) {}

ScriptOutcome SessionScripts::Run(const std::string& text, const std::string& name) {
  if (session_.Manager().GetDispatch() == nullptr) return {ScriptEnd::Failed, "no server"};
  return runner_.Run(*session_.Manager().GetDispatch(), text, name);
}

void SessionScripts::ShowLine(const std::string& line) {
  if (onLine) onLine(line);
}

FoundApplication SessionScripts::Find(const std::string& application) {
  return FindApplication(ListApplications(session_.Inspector()), application,
                         [](const std::string& path) { return path; });
}

// The server would resolve these paths in the folder of the selected application, or not at all.
void SessionScripts::ResolvePath(Variant& argument) {
  const NullableText path = argument.AsText();
  const std::string& project = session_.GetOpenPath();
  if (!path || path->empty() || project.empty() || !IsRelativePath(*path)) return;
  argument = Variant(JoinPath(FolderOf(project), ToNativeSeparators(*path)));
}

std::string SessionScripts::PrepareCall(const std::string& method,
                                        std::vector<Variant>& arguments) {
  std::string refusal = session_.Damage().CheckCall(method, arguments);
  if (!refusal.empty()) return refusal;
  const bool isList = arguments.size() > 1 &&
                      EqualNoCase(arguments[1].AsText().value_or(std::string()), kSourceList);
  if (method == "AddExistingItem" && !arguments.empty() && !isList) ResolvePath(arguments[0]);
  if (method == "SelectNode" && !arguments.empty()) {
    Variant resolved = arguments[0];
    ResolvePath(resolved);
    if (session_.HoldsFile(resolved.AsText().value_or(std::string()))) arguments[0] = resolved;
  }
  const bool isCommand = method == "Command" && !arguments.empty();
  const bool startsTools = isCommand
                               ? StartsTools(static_cast<std::uint32_t>(arguments[0].AsLong()))
                               : method == "ProjectBuild";
  if (!startsTools || session_.IsBuildLocked()) return {};
  refusal = session_.LockForCommand();
  hasLocked_ = refusal.empty();
  return refusal;
}

void SessionScripts::OnCalled(const std::string& method) {
  if (std::exchange(hasLocked_, false)) session_.UnlockUnlessBuilding();
  if (!method.starts_with("Project")) return;
  if (!ParseSaveReport(session_.Inspector().GetSaveReport()).problems.empty()) {
    hasFailedSave_ = true;
  } else if (method == "ProjectSave") {
    hasFailedSave_ = false;
  }
}

ScriptBuild SessionScripts::Build(const std::string& work,
                                  const std::optional<std::string>& application) {
  ScriptBuild refused;
  refused.problem = session_.Damage().CheckCall("ProjectBuild", {});
  if (!refused.problem.empty()) return refused;
  BuildRequest request{WorkOf(work), {}};
  if (application) {
    const FoundApplication found = Find(*application);
    refused.problem = found.problem;
    if (!found.entry) return refused;
    request.application = found.entry->path;
  }
  const BuildOutcome outcome = runBuild ? runBuild(request) : session_.Run(request, nullptr);
  return {ToString(outcome.end), outcome.toolsRun, outcome.toolsFailed, {}};
}

std::string SessionScripts::WaitForBuild() {
  return ToString(awaitBuild ? awaitBuild() : session_.AwaitBuild());
}

ScriptSize SessionScripts::GetSize(const std::string& application) {
  const FoundApplication found = Find(application);
  if (!found.entry) return {{}, found.problem};
  return {session_.Inspector().GetBuildInfos(found.entry->path, found.entry->output), {}};
}

std::string SessionScripts::AddConfiguration(const std::string& name,
                                             const std::optional<std::string>& from) {
  const Status added = tarn::host::AddConfiguration(session_, {name, from});
  return added ? std::string() : added.GetError().text;
}

}  // namespace tarn::host
