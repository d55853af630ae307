#include "hosts/core/SessionScripts.h"

#include "hosts/core/BuildSession.h"
#include "hosts/core/NewConfiguration.h"
#include "hosts/core/ProjectTree.h"

namespace tarn::host {

namespace {

BuildWork WorkOf(const std::string& work) {
  if (work == "rebuild") return BuildWork::Rebuild;
  return work == "clean" ? BuildWork::Clean : BuildWork::Build;
}

}  // namespace

SessionScripts::SessionScripts(BuildSession& buildSession) : session(buildSession) {}

ScriptOutcome SessionScripts::Run(const std::string& text, const std::string& name) {
  if (session.Manager().GetDispatch() == nullptr) return {ScriptEnd::Failed, "no server"};
  return runner.Run(*session.Manager().GetDispatch(), text, name);
}

void SessionScripts::ShowLine(const std::string& line) {
  if (onLine) onLine(line);
}

FoundApplication SessionScripts::Find(const std::string& application) {
  return FindApplication(ListApplications(session.Inspector()), application,
                         [](const std::string& path) { return path; });
}

std::string SessionScripts::CheckCall(const std::string& method,
                                      const std::vector<Variant>& arguments) {
  return session.Damage().CheckCall(method, arguments);
}

ScriptBuild SessionScripts::Build(const std::string& work,
                                  const std::optional<std::string>& application) {
  ScriptBuild refused;
  refused.problem = session.Damage().CheckCall("ProjectBuild", {});
  if (!refused.problem.empty()) return refused;
  BuildRequest request{WorkOf(work), {}};
  if (application) {
    const FoundApplication found = Find(*application);
    refused.problem = found.problem;
    if (!found.entry) return refused;
    request.application = found.entry->path;
  }
  const BuildOutcome outcome = runBuild ? runBuild(request) : session.Run(request, nullptr);
  return {WordOf(outcome.end), outcome.toolsRun, outcome.toolsFailed, {}};
}

std::string SessionScripts::WaitForBuild() {
  return WordOf(awaitBuild ? awaitBuild() : session.AwaitBuild());
}

ScriptSize SessionScripts::GetSize(const std::string& application) {
  const FoundApplication found = Find(application);
  if (!found.entry) return {{}, found.problem};
  return {session.Inspector().GetBuildInfos(found.entry->path, found.entry->output), {}};
}

std::string SessionScripts::AddConfiguration(const std::string& name,
                                             const std::optional<std::string>& from) {
  const Status added = tarn::host::AddConfiguration(session, {name, from});
  return added ? std::string() : added.GetError().text;
}

}  // namespace tarn::host
