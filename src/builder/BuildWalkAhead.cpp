// The part of a build walk that starts the tools of the nodes that follow.

#include <algorithm>
#include <utility>

#include "builder/BuildWalk.h"
#include "builder/LinkFiles.h"
#include "builder/Staleness.h"
#include "project/TreeSearch.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

// Number of nodes that are up to date and that one look ahead passes.
constexpr std::size_t kMaxSkipped = 64;

}  // namespace

// Plans runs of the nodes that follow, if the tool of this one can be started early, too.
void BuildWalk::PlanAhead(Frame& frame, BuildAction& request) {
  if (!runsAhead_.IsEnabled() || usesExplicitTool_) return;
  if (CXmlNode* const application = std::exchange(unlisted_, nullptr)) {
    runsAhead_.Begin(model_.Types(), *application, generators_, repeated_);
  }
  if (!runsAhead_.Reach(*frame.node)) return;
  const bool isLeaf = frame.children.empty();
  if (request.own == nullptr && (!isLeaf || !isRecorded_)) return;
  std::size_t skipped = 0;
  while (CXmlNode* const node = runsAhead_.GetNext()) {
    if (!IsStale(frame, *node)) {
      runsAhead_.Skip();
      if (++skipped == kMaxSkipped) break;
      continue;
    }
    std::shared_ptr<RunAhead> run = PlanEarly(*node);
    if (run == nullptr) {
      runsAhead_.Block();
      break;
    }
    request.early.push_back(run);
    runsAhead_.Add(std::move(run));
  }
  if (request.own != nullptr || request.early.empty()) return;
  request.own = std::make_shared<RunAhead>(RunAhead{frame.node, request.tool, request.files,
                                                    request.options, std::move(request.snapshot)});
  request.early.insert(request.early.begin(), request.own);
  BeginOwnRun(*frame.node, request);  // in case the early run is refused or dropped
}

// Returns true if the walk is going to run a tool when it reaches the node.
bool BuildWalk::IsStale(const Frame& frame, CXmlNode& node) {
  std::string tool, files;
  if (!GetToolInput(model_.Types(), node, tool, files)) return false;
  if (failures_.IsInputMissing(node)) return false;
  if (frame.mode != ModeBuild) return true;
  Staleness staleness(model_.Types(), information_.GetMtimes(), information_.GetRecordCheck());
  staleness.IgnoreUnbuildable();
  return !staleness.IsUpToDate(&node);
}

// Returns the run of a node's tool; null if it has to wait until the walk reaches the node.
std::shared_ptr<RunAhead> BuildWalk::PlanEarly(CXmlNode& node) {
  const CXmlNode* const values = FindStoredValues(node);
  const std::vector<CXmlNode*> children = node.GetChildren();
  const bool isLeaf = std::none_of(children.begin(), children.end(),
                                   [](const CXmlNode* each) { return IsContentNode(*each); });
  if (values == nullptr || !isLeaf) return nullptr;
  BuildAction request;
  request.options = values->GetValue();
  GetToolInput(model_.Types(), node, request.tool, request.files);
  if (!FindObstacle(node, request).text.empty()) return nullptr;
  std::optional<RunSnapshot> snapshot = BeginRun(node, request);
  if (!snapshot) return nullptr;
  RemoveReadOnly(node, request.outputs);
  return std::make_shared<RunAhead>(
      RunAhead{&node, std::move(request.tool), std::move(request.files), std::move(request.options),
               std::move(*snapshot), false, std::move(request.outputs), request.writesOnlyOutputs});
}

// Drops all early runs, for example after a failure: the walk does not reach their nodes, or needs
// different runs.
void BuildWalk::DropAhead(BuildAction& request) {
  request.own.reset();
  runsAhead_.Clear();
  information_.GetBuildRecords().AbandonRuns();
  information_.GetMtimes().Invalidate();  // their outputs are going to be removed
  if (model_.Services().toolManager == nullptr) return;
  request.toolManager = DispatchPtr(model_.Services().toolManager->GetDispatch());
  request.dropsEarly = true;
}

}  // namespace tarn
