#include "builder/BuildWalk.h"

#include <algorithm>

#include "builder/GeneratorOrder.h"
#include "builder/LinkFiles.h"
#include "builder/SameFiles.h"
#include "builder/TrustCheck.h"
#include "output/MessageTable.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/TreeSearch.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

constexpr std::size_t kMaxPrefetch = 512;
constexpr std::uint64_t kNeverEpoch = UINT64_MAX;
constexpr unsigned kStepsPerLook = 16;

// Returns the later time; nullopt if either is nullopt.
std::optional<std::int64_t> Later(const std::optional<std::int64_t>& a,
                                  const std::optional<std::int64_t>& b) {
  return a && b ? std::optional(std::max(*a, *b)) : std::nullopt;
}

// Requests the files of up to `limit` nodes of the subtree. Returns the number of nodes.
std::size_t CollectSubtree(Staleness& staleness, const CXmlNode& node, MtimeCache::StatBatch& batch,
                           Prefetch& ahead, std::size_t limit) {
  if (limit == 0) return 0;
  std::size_t count = 1;
  staleness.CollectInputs(node, batch, ahead);
  for (int i = 0; i < node.GetChildCount() && count < limit; ++i) {
    const CXmlNode* child = node.GetChild(i);
    if (!IsContentNode(*child)) continue;
    count += CollectSubtree(staleness, *child, batch, ahead, limit - count);
  }
  return count;
}

std::size_t CountApplications(const NodeTypes& types, const CXmlNode& project) {
  std::size_t count = 0;
  for (int i = 0; i < project.GetChildCount(); ++i) {
    if ((types.FlagsOf(*project.GetChild(i)) & kTypeApplication) != 0) ++count;
  }
  return count;
}

}  // namespace

BuildWalk::BuildWalk(Builder& projectBuilder, bool examinesElsewhere)
    : builder_(projectBuilder),
      model_(projectBuilder.GetModel()),
      state_(model_.State()),
      information_(projectBuilder.Information()),
      guard_(model_, information_.GetBuildRecords()),
      requestsMtimes_(examinesElsewhere),
      failures_(projectBuilder.GetFailureLimit()),
      treeGeneration_(state_.treeGeneration),
      pipes_(model_.GetFiles()) {
  CToolManagerDriver* const tools = model_.Services().toolManager;
  if (tools != nullptr) runsAhead_.SetJobs(tools->GetJobs());
}

void BuildWalk::SetApplication(CXmlNode* node) {
  CXmlNode* application = information_.GetWalkApplication();
  model_.Paths().FindEnclosingApplication(node, application);
  information_.SetWalkApplication(application);
}

void BuildWalk::BeginBuild(CXmlNode* node, std::int32_t buildMode) {
  mode_ = buildMode;
  SetApplication(node);
  if (node != nullptr) frames_.emplace_back(node, mode_);
}

void BuildWalk::BeginTranslate(CXmlNode* node) {
  SetApplication(node);
  if (node != nullptr) frames_.emplace_back(node, mode_, Stage::Translate);
}

void BuildWalk::BeginTool(CXmlNode* node, const std::string& tool) {
  usesExplicitTool_ = true;
  explicitTool_ = tool;
  BeginTranslate(node);
}

bool BuildWalk::IsTreeStale() const {
  return state_.treeGeneration != treeGeneration_;
}

bool BuildWalk::IsOver(const std::optional<Clock::time_point>& deadline) const {
  return deadline && Clock::now() >= *deadline;
}

BuildAction BuildWalk::Advance(std::optional<Clock::time_point> deadline) {
  currentDeadline_ = deadline;
  BuildAction request;
  while (!frames_.empty()) {
    if (IsTreeStale()) {
      if (frames_.back().stage == Stage::Tool) LeaveTool();
      frames_.clear();
      succeeded_ = false;
      break;
    }
    if (!Step(request)) return request;
    // Most steps take less time than reading the clock.
    if (++stepCount_ % kStepsPerLook == 0 && IsOver(deadline) && !frames_.empty()) {
      request.kind = BuildAction::Kind::Pause;
      return request;
    }
  }
  if (runsAhead_.HasAny() || request.own != nullptr) DropAhead(request);
  return request;
}

// Runs one stage of the top frame. The explicit stack of frames replaces recursion, so that the
// traversal can be suspended at any stage.
bool BuildWalk::Step(BuildAction& request) {
  Frame& frame = frames_.back();
  switch (frame.stage) {
    case Stage::Enter:
      return Enter(frame);
    case Stage::Publish:
      return Publish(frame, request);
    case Stage::Uses:
      return EnterUsed(frame);
    case Stage::Start:
      return StartNode(frame);
    case Stage::Children:
      return EnterNextChild(frame);
    case Stage::Own:
      return DoOwnWork(frame, request);
    case Stage::Translate:
      return RequestTool(frame, request);
    case Stage::Tool:
      FinishTool(frame);
      return true;
  }
  return true;
}

bool BuildWalk::Return(bool success, bool isUpToDate) {
  const std::optional<std::int64_t> newest =
      isUpToDate && success ? NewestOutputOf(frames_.back()) : std::nullopt;
  const bool isUsed = frames_.back().isUsed;
  CXmlNode* const node = frames_.back().node;
  frames_.pop_back();
  if (frames_.empty()) {
    succeeded_ = success;
    return true;
  }
  Frame& parent = frames_.back();
  if (!isUpToDate && !isUsed) parent.doubtful.push_back(node);
  if (!isUsed) parent.newestOutput = Later(parent.newestOutput, newest);
  if (!success) {
    parent.isMissingInput = true;
    if (!KeepsGoing()) return Return(false, false);  // stops the processing of all ancestors
  }
  return true;
}

bool BuildWalk::Enter(Frame& frame) {
  if (builder_.GetBuildState() == StateStopRequested) return Return(false, false);
  if ((model_.Types().FlagsOf(*frame.node) & kTypeBuild) == 0) {
    // The node itself is not built but may have stale descendants.
    return Return(true, frame.node->GetChildCount() == 0);
  }
  frame.stage = Stage::Publish;
  return true;
}

bool BuildWalk::Publish(Frame& frame, BuildAction& request) {
  while (publishedGeneration_ != state_.publishGeneration) {
    if (!model_.Publishing().PublishNextNode(PublishRoot())) {
      publishedGeneration_ = state_.publishGeneration;
      break;
    }
    if (IsOver(currentDeadline_)) {
      request.kind = BuildAction::Kind::Pause;
      return false;
    }
  }
  if (&frame == &frames_.front() && !order_) FindOrder(*frame.node);
  frame.stage = Stage::Uses;
  return true;
}

// An application may use others anywhere in the project.
CXmlNode* BuildWalk::PublishRoot() const {
  CXmlNode* const first = frames_.front().node;
  const bool isOne = (model_.Types().FlagsOf(*first) & kTypeApplication) != 0 && mode_ != ModeClean;
  CXmlNode* const root = state_.projectRoot.get();
  return isOne && CountApplications(model_.Types(), *root) > 1 ? root : first;
}

void BuildWalk::FindOrder(const CXmlNode& node) {
  const bool isProject = &node == state_.projectRoot.get();
  const bool isOne = (model_.Types().FlagsOf(node) & kTypeApplication) != 0;
  if (mode_ == ModeClean || (!isProject && !isOne)) return;
  if (CountApplications(model_.Types(), *state_.projectRoot) < 2) return;
  order_ = std::make_unique<ApplicationOrder>(model_.Types(), model_.Services().toolManager,
                                              *state_.projectRoot);
  if (isOne) used_ = order_->GetUsed(node);
}

bool BuildWalk::EnterUsed(Frame& frame) {
  const bool isFirst = &frame == &frames_.front();
  if (isFirst && order_ && !order_->GetProblem().empty()) {
    model_.Host().AddLogError(order_->GetProblem());
    return Return(false, false);
  }
  if (isFirst && nextUsed_ < used_.size()) {
    Frame& next = frames_.emplace_back(used_[nextUsed_++], ModeBuild);  // invalidates `frame`
    next.isUsed = true;
    return true;
  }
  frame.stage = Stage::Start;
  return true;
}

void BuildWalk::OrderChildren(Frame& frame) const {
  auto next = order_->GetAll().begin();
  for (CXmlNode*& child : frame.children) {
    if ((model_.Types().FlagsOf(*child) & kTypeApplication) != 0) child = *next++;
  }
}

bool BuildWalk::UsesWhatWasBuilt(const CXmlNode& node) const {
  if (built_.empty() || (model_.Types().FlagsOf(node) & kTypeApplication) == 0) return false;
  const std::vector<CXmlNode*>& uses = order_->GetDirectlyUsed(node);
  return std::any_of(uses.begin(), uses.end(), [this](const CXmlNode* each) {
    return std::find(built_.begin(), built_.end(), each) != built_.end();
  });
}

bool BuildWalk::StartNode(Frame& frame) {
  CXmlNode& node = *frame.node;
  frame.stage = Stage::Children;
  if ((model_.Types().FlagsOf(node) & kTypeApplication) != 0) {
    state_.activeApplication = &node;
    information_.SetWalkApplication(&node);
    const char* config = node.GetAttrValue("Config");
    model_.Services().output->WriteMessage(
        kRowApplicationStarts, {GetOperationText(frame.mode), OrEmpty(node.GetAttrValue("Header")),
                                config == nullptr ? kStandardConfig : config});
    if (IsTreeStale()) return true;
    // Programs that need the debug database re-create it.
    const std::string database =
        model_.GetFiles().NameOnDisk(WithExtension(state_.projectPath, ".tdb"));
    if (frame.mode == ModeClean && guard_.WhyKept(node, {database, {}}).empty()) {
      (void)model_.GetFiles().RemoveFile(database);
    }
    repeated_ = information_.FindRepeatedNodes(node);
    frame.children = FindGenerators(model_.Types(), node);
    first_ = {frame.children.begin(), frame.children.end()};
    generators_ = frame.children;
    unlisted_ = &node;
  }
  if (IsExactlyYes(node, "Exclude")) return Return(true, true);
  for (int i = 0; i < node.GetChildCount(); ++i) {
    CXmlNode* child = node.GetChild(i);
    if (IsContentNode(*child) && !first_.contains(child)) frame.children.push_back(child);
  }
  if (order_ && &node == state_.projectRoot.get()) OrderChildren(frame);
  frame.upToDateEpoch = information_.GetMtimes().GetEpoch();
  return true;
}

bool BuildWalk::EnterNextChild(Frame& frame) {
  if (frame.next == frame.children.size()) {
    frame.stage = Stage::Own;
    return true;
  }
  CXmlNode* child = frame.children[frame.next++];
  if (repeated_.contains(child)) return true;
  const MtimeCache& times = information_.GetMtimes();
  const auto output = ahead_.PopIfUpToDate(*child, times.GetEpoch(), times.GetChangeCount());
  const bool isAhead = runsAhead_.HasAny() && runsAhead_.Has(*child);
  if (output && !isAhead && builder_.GetBuildState() != StateStopRequested) {
    frame.newestOutput = Later(frame.newestOutput, output);
    return true;
  }
  frames_.emplace_back(child, frame.mode);  // invalidates `frame`
  return true;
}

bool BuildWalk::DoOwnWork(Frame& frame, BuildAction& request) {
  CXmlNode& node = *frame.node;
  if (frame.mode == ModeClean) return Return(Clean(node), false);
  if (LacksInput(frame)) return LeaveUnbuilt(frame, request);
  // A file that was just built may be newer than its time indicates, given its resolution.
  if (frame.mode == ModeBuild && !UsesWhatWasBuilt(node) && !runsAhead_.Has(node)) {
    Staleness staleness(model_.Types(), information_.GetMtimes(), information_.GetRecordCheck(),
                        MayRequestStat(frame) ? Staleness::OnUnknown::TreatAsMissing
                                              : Staleness::OnUnknown::Examine);
    staleness.IgnoreUnbuildable();
    const bool isUpToDate = IsUpToDate(frame, staleness);
    if (staleness.HasMissed()) return !RequestMtimes(frame, request);
    if (isUpToDate) return Return(true, true);
  }
  frame.stage = Stage::Translate;
  return true;
}

bool BuildWalk::IsUpToDate(const Frame& frame, Staleness& staleness) const {
  // Nothing would be done for the project itself if something in it were out of date.
  const bool isProject = frame.node == state_.projectRoot.get();
  if (isProject && OrEmpty(frame.node->GetAttrValue("TranslateTool")).empty()) {
    return staleness.IsOwnOutputUpToDate(*frame.node);
  }
  if (!AreOthersUpToDate(frame)) return staleness.IsUpToDate(frame.node);
  const bool areAll = std::all_of(frame.doubtful.begin(), frame.doubtful.end(),
                                  [&](CXmlNode* child) { return staleness.IsUpToDate(child); });
  if (!areAll) return false;
  // If the newest of a superset of the application's files is not too new, all of them are up to
  // date and need not be checked by name. Otherwise checks each one.
  return (frame.newestOutput && staleness.IsUpToDateSince(*frame.node, *frame.newestOutput)) ||
         staleness.IsOwnOutputUpToDate(*frame.node);
}

// Returns the newest output of an up-to-date node and its descendants.
std::optional<std::int64_t> BuildWalk::NewestOutputOf(const Frame& frame) const {
  const CXmlNode& node = *frame.node;
  if (IsExactlyYes(node, "Exclude")) return INT64_MIN;
  const std::uint32_t flags = model_.Types().FlagsOf(node);
  const bool isJudged = (flags & kTypeBuild) != 0 && node.NameView() != "Group";
  if (isJudged) return Later(frame.newestOutput, Staleness::LastBuiltOf(node));
  const char* outputFile = node.GetAttrValue("OutputFile");
  const bool hasOutput = outputFile != nullptr && *outputFile != '\0';
  return hasOutput ? std::nullopt : frame.newestOutput;
}

// Returns true if all children except the doubtful ones are up to date.
bool BuildWalk::AreOthersUpToDate(const Frame& frame) const {
  return frame.upToDateEpoch == information_.GetMtimes().GetEpoch();
}

// A host that keeps sending reports invalidates the times again and again. In that case missing
// times are queried synchronously.
bool BuildWalk::MayRequestStat(const Frame& frame) const {
  return requestsMtimes_ &&
         (frame.requestEpoch == 0 || frame.requestEpoch == information_.GetMtimes().GetEpoch());
}

// Requests the files that decide about the frame's node and about the nodes that follow, so that a
// walk over an up-to-date tree switches threads only once per several hundred nodes.
bool BuildWalk::RequestMtimes(Frame& frame, BuildAction& request) {
  const bool hasRequested = frame.requestEpoch == information_.GetMtimes().GetEpoch();
  frame.requestEpoch = information_.GetMtimes().GetEpoch();
  Staleness staleness(model_.Types(), information_.GetMtimes(), information_.GetRecordCheck());
  ahead_.Begin(frame.requestEpoch);
  if (AreOthersUpToDate(frame)) {
    for (const CXmlNode* child : frame.doubtful) {
      CollectSubtree(staleness, *child, request.batch, ahead_, SIZE_MAX);
    }
    staleness.CollectInputs(*frame.node, request.batch, ahead_);
  } else {
    CollectSubtree(staleness, *frame.node, request.batch, ahead_, SIZE_MAX);
  }
  ahead_.Begin(frame.requestEpoch);  // the walk has reached all of these
  // Usually the application's files are known, and only its own output is missing.
  const bool needsParts = hasRequested || !AreOthersUpToDate(frame) || !frame.newestOutput;
  if (needsParts && (model_.Types().FlagsOf(*frame.node) & kTypeApplication) != 0) {
    staleness.CollectParts(*frame.node, request.batch);
  }
  if (request.batch.IsEmpty()) {  // a path that can't be requested
    frame.requestEpoch = kNeverEpoch;
    return false;
  }

  std::size_t left = prefetchCount_;
  for (auto outer = frames_.rbegin() + 1; outer != frames_.rend() && left > 0; ++outer) {
    for (std::size_t i = outer->next; i < outer->children.size() && left > 0; ++i) {
      left -= std::min(left,
                       CollectSubtree(staleness, *outer->children[i], request.batch, ahead_, left));
    }
    if (left > 0) staleness.CollectInputs(*outer->node, request.batch, ahead_);
  }
  prefetchCount_ = std::min(prefetchCount_ * 2, kMaxPrefetch);
  request.kind = BuildAction::Kind::Examine;
  return true;
}

void BuildWalk::SetMtimes(const MtimeCache::StatBatch& batch) {
  information_.GetMtimes().SetResults(batch);
}

}  // namespace tarn
