#include "hosts/frame/SessionScripts.h"

#include "hosts/frame/BuildSession.h"
#include "hosts/frame/NewConfiguration.h"
#include "hosts/frame/ProjectTree.h"
#include "hosts/frame/Suggest.h"
#include "platform/text/Text.h"

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

SessionScripts::FoundLabel SessionScripts::FindApplicationLabel(const std::string& application) {
  if (application.empty()) return {};
  std::vector<std::string> labels;
  for (const ApplicationEntry& each :
       ProjectTree(session.Inspector().GetTree()).GetApplications()) {
    if (EqualNoCase(each.label, application)) return {each.label, {}};
    labels.push_back(each.label);
  }
  return {{},
          "There is no application \"" + application + "\" in this project." +
              SuggestionText(application, labels)};
}

std::string SessionScripts::CheckCall(const std::string& method,
                                      const std::vector<Variant>& arguments) {
  return session.CheckCall(method, arguments);
}

ScriptBuild SessionScripts::Build(const std::string& work, const std::string& application) {
  ScriptBuild refused;
  refused.problem = session.CheckCall("ProjectBuild", {});
  if (!refused.problem.empty()) return refused;
  const FoundLabel found = FindApplicationLabel(application);
  refused.problem = found.problem;
  if (!refused.problem.empty()) return refused;
  const BuildRequest request{WorkOf(work), found.label};
  const BuildOutcome outcome = runBuild ? runBuild(request) : session.Run(request, nullptr);
  return {WordOf(outcome.end), outcome.toolsRun, outcome.toolsFailed, {}};
}

std::string SessionScripts::WaitForBuild() {
  return WordOf(awaitBuild ? awaitBuild() : session.AwaitBuild());
}

std::string SessionScripts::GetSize(const std::string& application) {
  for (const ApplicationSummary& each : session.GetSummaries()) {
    if (EqualNoCase(each.label, application)) return each.infos;
  }
  return {};
}

std::string SessionScripts::AddConfiguration(const std::string& name,
                                             const std::optional<std::string>& from) {
  const Status added = tarn::host::AddConfiguration(session, {name, from});
  return added ? std::string() : added.GetError().text;
}

}  // namespace tarn::host
