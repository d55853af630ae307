#include "hosts/core/check/ProjectCheck.h"

#include <algorithm>

#include "hosts/core/check/CheckScope.h"
#include "hosts/core/check/NodeCheck.h"
#include "hosts/core/check/OptionCheck.h"
#include "platform/paths/Paths.h"
#include "xml/XmlNode.h"

namespace tarn::host {

ProjectCheck::ProjectCheck(BuildSession& buildSession, FileSystem& fileSystem)
    : session_(buildSession), files_(fileSystem) {}

ProjectCheck::~ProjectCheck() = default;

bool ProjectCheck::Continue(std::chrono::milliseconds time) {
  const auto deadline = std::chrono::steady_clock::now() + time;
  if (isComplete_) return true;
  const std::int32_t changes = session_.Inspector().GetChangeCount();
  if (scope_ && changes != changeCount_) scope_.reset();
  if (!scope_) {
    if (!session_.PublishFor(time)) return false;
    changeCount_ = session_.Inspector().GetChangeCount();
    Begin();
  }
  for (; next_ < scope_->nodes.size(); ++next_) {
    if (std::chrono::steady_clock::now() >= deadline) return false;
    nodeCheck_->Check(next_);
    optionCheck_->Check(scope_->nodes[next_]);
  }
  Complete();
  return true;
}

void ProjectCheck::Begin() {
  scope_ = std::make_unique<CheckScope>(session_, files_);
  nodeCheck_ = std::make_unique<NodeCheck>(*scope_);
  optionCheck_ = std::make_unique<OptionCheck>(*scope_);
  next_ = 0;
}

void ProjectCheck::CheckDefinitions() {
  for (const std::string& line : session_.GetDefinitionErrors()) {
    Finding& finding = scope_->Add(FindingKind::DefinitionError);
    const std::size_t colon = line.find(": ");
    const bool namesFile = colon != line.npos && files_.Exists(line.substr(0, colon));
    if (namesFile) finding.file = line.substr(0, colon);
    finding.detail = namesFile ? line.substr(colon + 2) : line;
  }
}

void ProjectCheck::Complete() {
  nodeCheck_->Finish();
  CheckDefinitions();
  CheckDamage();
  CheckLeftovers();
  findings_ = std::move(scope_->findings);
  std::stable_sort(findings_.begin(), findings_.end(),
                   [](const Finding& a, const Finding& b) { return a.kind < b.kind; });
  optionCheck_.reset();
  nodeCheck_.reset();
  scope_.reset();
  isComplete_ = true;
}

}  // namespace tarn::host
