#include "hosts/core/check/ProjectCheck.h"

#include <algorithm>

#include "hosts/core/check/CheckScope.h"
#include "hosts/core/check/NodeCheck.h"
#include "hosts/core/check/OptionCheck.h"
#include "platform/paths/Paths.h"
#include "xml/XmlNode.h"

namespace tarn::host {

ProjectCheck::ProjectCheck(BuildSession& buildSession, FileSystem& fileSystem)
    : session(buildSession), files(fileSystem) {}

ProjectCheck::~ProjectCheck() = default;

bool ProjectCheck::Continue(std::chrono::milliseconds time) {
  const auto deadline = std::chrono::steady_clock::now() + time;
  if (isComplete) return true;
  const std::int32_t changes = session.Inspector().GetChangeCount();
  if (scope && changes != changeCount) scope.reset();
  if (!scope) {
    if (!session.PublishFor(time)) return false;
    changeCount = session.Inspector().GetChangeCount();
    Begin();
  }
  for (; next < scope->nodes.size(); ++next) {
    if (std::chrono::steady_clock::now() >= deadline) return false;
    nodeCheck->Check(next);
    optionCheck->Check(scope->nodes[next]);
  }
  Complete();
  return true;
}

void ProjectCheck::Begin() {
  scope = std::make_unique<CheckScope>(session, files);
  nodeCheck = std::make_unique<NodeCheck>(*scope);
  optionCheck = std::make_unique<OptionCheck>(*scope);
  next = 0;
}

void ProjectCheck::CheckDefinitions() {
  for (const std::string& line : session.GetDefinitionErrors()) {
    Finding& finding = scope->Add(FindingKind::DefinitionError);
    const std::size_t colon = line.find(": ");
    const bool namesFile = colon != line.npos && files.Exists(line.substr(0, colon));
    if (namesFile) finding.file = line.substr(0, colon);
    finding.detail = namesFile ? line.substr(colon + 2) : line;
  }
}

void ProjectCheck::Complete() {
  nodeCheck->Finish();
  CheckDefinitions();
  CheckDamage();
  CheckLeftovers();
  findings = std::move(scope->findings);
  std::stable_sort(findings.begin(), findings.end(),
                   [](const Finding& a, const Finding& b) { return a.kind < b.kind; });
  optionCheck.reset();
  nodeCheck.reset();
  scope.reset();
  isComplete = true;
}

}  // namespace tarn::host
