#include "builder/BuildWalk.h"

#include <algorithm>

#include "builder/LinkFiles.h"
#include "builder/SameFiles.h"
#include "builder/TrustCheck.h"
#include "output/MessageTable.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/TreeSearch.h"

namespace tarn {

namespace {

constexpr std::size_t kMaxNodesAhead = 512;
constexpr std::uint64_t kNeverEpoch = UINT64_MAX;
constexpr unsigned kStepsPerLook = 16;

// Returns the later time; nullopt if either is nullopt.
std::optional<std::int64_t> Later(const std::optional<std::int64_t>& a,
                                  const std::optional<std::int64_t>& b) {
  return a && b ? std::optional(std::max(*a, *b)) : std::nullopt;
}

// Requests the files of up to `limit` nodes of the subtree. Returns the number of nodes.
std::size_t AskForSubtree(Staleness& staleness, const CXmlNode& node, FileTimes::Inquiry& inquiry,
                          NodesAhead& ahead, std::size_t limit) {
  if (limit == 0) return 0;
  std::size_t count = 1;
  staleness.AskForFiles(node, inquiry, ahead);
  for (int i = 0; i < node.GetChildCount() && count < limit; ++i) {
    const CXmlNode* child = node.GetChild(i);
    if (!IsContentNode(*child)) continue;
    count += AskForSubtree(staleness, *child, inquiry, ahead, limit - count);
  }
  return count;
}

// Returns the outputs named by the node's own options.
std::vector<NamedOutput> OutputsOf(const CXmlNode& node) {
  std::vector<NamedOutput> outputs;
  for (const auto& [attribute, option] : {std::pair("OutputFile", "Build.OutputFile"),
                                          std::pair("ListingFile", "Build.ListingFile")}) {
    const std::string path = TextOf(node.GetAttrValue(attribute));
    if (!path.empty()) outputs.push_back({path, option});
  }
  return outputs;
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
    : builder(projectBuilder),
      model(projectBuilder.GetModel()),
      state(model.State()),
      information(projectBuilder.Information()),
      guard(model, information.GetBuildRecords()),
      asksForTimes(examinesElsewhere),
      treeEpoch(state.treeEpoch) {}

void BuildWalk::SetApplication(CXmlNode* node) {
  CXmlNode* application = information.GetWalkApplication();
  model.Paths().FindEnclosingApplication(node, application);
  information.SetWalkApplication(application);
}

void BuildWalk::BeginBuild(CXmlNode* node, std::int32_t buildMode) {
  mode = buildMode;
  SetApplication(node);
  if (node != nullptr) frames.emplace_back(node, mode);
}

void BuildWalk::BeginTranslate(CXmlNode* node) {
  SetApplication(node);
  if (node != nullptr) frames.emplace_back(node, mode, Stage::Translate);
}

void BuildWalk::BeginTool(CXmlNode* node, const std::string& tool) {
  usesGivenTool = true;
  givenTool = tool;
  BeginTranslate(node);
}

bool BuildWalk::LostTree() const {
  return state.treeEpoch != treeEpoch;
}

bool BuildWalk::IsOver(const std::optional<Clock::time_point>& deadline) const {
  return deadline && Clock::now() >= *deadline;
}

WalkRequest BuildWalk::Advance(std::optional<Clock::time_point> deadline) {
  currentDeadline = deadline;
  WalkRequest request;
  while (!frames.empty()) {
    if (LostTree()) {
      if (frames.back().stage == Stage::Tool) LeaveTool();
      frames.clear();
      succeeded = false;
      break;
    }
    if (!Step(request)) return request;
    // Most steps take less time than reading the clock.
    if (++stepCount % kStepsPerLook == 0 && IsOver(deadline) && !frames.empty()) {
      request.kind = WalkRequest::Kind::Pause;
      return request;
    }
  }
  return request;
}

// Runs one stage of the top frame. The explicit stack of frames replaces recursion, so that the
// traversal can be suspended at any stage.
bool BuildWalk::Step(WalkRequest& request) {
  Frame& frame = frames.back();
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

bool BuildWalk::Return(bool success, bool isGood) {
  const std::optional<std::int64_t> newest =
      isGood && success ? NewestOutputOf(frames.back()) : std::nullopt;
  const bool isUsed = frames.back().isUsed;
  frames.pop_back();
  if (frames.empty()) {
    succeeded = success;
    return true;
  }
  Frame& parent = frames.back();
  if (!isGood && !isUsed) parent.childrenGood = false;
  if (!isUsed) parent.newestOutput = Later(parent.newestOutput, newest);
  if (!success) return Return(false, false);  // a failure stops the processing of all ancestors
  return true;
}

bool BuildWalk::Enter(Frame& frame) {
  if (builder.GetBuildState() == StateStopRequested) return Return(false, false);
  if ((model.Types().FlagsOf(*frame.node) & kTypeBuild) == 0) {
    // The node itself is not built but may have stale descendants.
    return Return(true, frame.node->GetChildCount() == 0);
  }
  frame.stage = Stage::Publish;
  return true;
}

bool BuildWalk::Publish(Frame& frame, WalkRequest& request) {
  while (publishedEpoch != state.publishEpoch) {
    if (!model.Publishing().PublishNextNode(PublishRoot())) {
      publishedEpoch = state.publishEpoch;
      break;
    }
    if (IsOver(currentDeadline)) {
      request.kind = WalkRequest::Kind::Pause;
      return false;
    }
  }
  if (&frame == &frames.front() && !order) FindOrder(*frame.node);
  frame.stage = Stage::Uses;
  return true;
}

// An application may use others anywhere in the project.
CXmlNode* BuildWalk::PublishRoot() const {
  CXmlNode* const first = frames.front().node;
  const bool isOne = (model.Types().FlagsOf(*first) & kTypeApplication) != 0 && mode != ModeClean;
  CXmlNode* const root = state.projectRoot.get();
  return isOne && CountApplications(model.Types(), *root) > 1 ? root : first;
}

void BuildWalk::FindOrder(const CXmlNode& node) {
  const bool isProject = &node == state.projectRoot.get();
  const bool isOne = (model.Types().FlagsOf(node) & kTypeApplication) != 0;
  if (mode == ModeClean || (!isProject && !isOne)) return;
  if (CountApplications(model.Types(), *state.projectRoot) < 2) return;
  order = std::make_unique<ApplicationOrder>(model.Types(), model.Services().toolManager,
                                             *state.projectRoot);
  if (isOne) used = order->GetUsed(node);
}

bool BuildWalk::EnterUsed(Frame& frame) {
  const bool isFirst = &frame == &frames.front();
  if (isFirst && order && !order->GetProblem().empty()) {
    model.Host().AddLogError(order->GetProblem());
    return Return(false, false);
  }
  if (isFirst && nextUsed < used.size()) {
    Frame& next = frames.emplace_back(used[nextUsed++], ModeBuild);  // invalidates `frame`
    next.isUsed = true;
    return true;
  }
  frame.stage = Stage::Start;
  return true;
}

void BuildWalk::OrderChildren(Frame& frame) const {
  auto next = order->GetAll().begin();
  for (CXmlNode*& child : frame.children) {
    if ((model.Types().FlagsOf(*child) & kTypeApplication) != 0) child = *next++;
  }
}

bool BuildWalk::UsesWhatWasBuilt(const CXmlNode& node) const {
  if (built.empty() || (model.Types().FlagsOf(node) & kTypeApplication) == 0) return false;
  const std::vector<CXmlNode*>& uses = order->GetDirectlyUsed(node);
  return std::any_of(uses.begin(), uses.end(), [this](const CXmlNode* each) {
    return std::find(built.begin(), built.end(), each) != built.end();
  });
}

bool BuildWalk::StartNode(Frame& frame) {
  CXmlNode& node = *frame.node;
  frame.stage = Stage::Children;
  if ((model.Types().FlagsOf(node) & kTypeApplication) != 0) {
    state.activeApplication = &node;
    information.SetWalkApplication(&node);
    const char* config = node.GetAttrValue("Config");
    model.Services().output->WriteMessage(
        kRowApplicationStarts, {GetOperationText(frame.mode), TextOf(node.GetAttrValue("Header")),
                                config == nullptr ? kStandardConfig : config});
    if (LostTree()) return true;
    // Programs that need the debug database re-create it.
    const std::string database =
        model.GetFiles().NameOnDisk(WithExtension(state.projectPath, ".tdb"));
    if (frame.mode == ModeClean && guard.WhyKept(node, {database, {}}).empty()) {
      (void)model.GetFiles().RemoveFile(database);
    }
    repeated = information.FindRepeatedNodes(node);
  }
  if (IsExactlyYes(node, "Exclude")) return Return(true, true);
  for (int i = 0; i < node.GetChildCount(); ++i) {
    CXmlNode* child = node.GetChild(i);
    if (IsContentNode(*child)) frame.children.push_back(child);
  }
  if (order && &node == state.projectRoot.get()) OrderChildren(frame);
  frame.goodEpoch = information.GetFileTimes().GetEpoch();
  return true;
}

bool BuildWalk::EnterNextChild(Frame& frame) {
  if (frame.next == frame.children.size()) {
    frame.stage = Stage::Own;
    return true;
  }
  CXmlNode* child = frame.children[frame.next++];
  if (repeated.contains(child)) return true;
  const auto output = ahead.TakeGood(*child, information.GetFileTimes().GetEpoch());
  if (output && builder.GetBuildState() != StateStopRequested) {
    frame.newestOutput = Later(frame.newestOutput, output);
    return true;
  }
  frames.emplace_back(child, frame.mode);  // invalidates `frame`
  return true;
}

bool BuildWalk::DoOwnWork(Frame& frame, WalkRequest& request) {
  CXmlNode& node = *frame.node;
  if (frame.mode == ModeClean) return Return(Clean(node), false);
  // A file that was just built may be newer than its time indicates, given its resolution.
  if (frame.mode == ModeBuild && !UsesWhatWasBuilt(node)) {
    Staleness staleness(model.Types(), information.GetFileTimes(), information.GetRecordCheck(),
                        MayAsk(frame) ? Staleness::Unknown::Miss : Staleness::Unknown::Examine);
    staleness.IgnoreUnbuildable();
    const bool isUpToDate = IsUpToDate(frame, staleness);
    if (staleness.HasMissed()) return !AskForTimes(frame, request);
    if (isUpToDate) return Return(true, true);
  }
  frame.stage = Stage::Translate;
  return true;
}

bool BuildWalk::IsUpToDate(const Frame& frame, Staleness& staleness) const {
  if (!AreChildrenGood(frame)) return staleness.IsUpToDate(frame.node);
  // If the newest of a superset of the application's files is not too new, all of them are up to
  // date and need not be checked by name. Otherwise checks each one.
  return (frame.newestOutput && staleness.IsUpToDateSince(*frame.node, *frame.newestOutput)) ||
         staleness.IsUpToDateAlone(*frame.node);
}

// Returns the newest output of an up-to-date node and its descendants.
std::optional<std::int64_t> BuildWalk::NewestOutputOf(const Frame& frame) const {
  const CXmlNode& node = *frame.node;
  if (IsExactlyYes(node, "Exclude")) return INT64_MIN;
  const std::uint32_t flags = model.Types().FlagsOf(node);
  const bool isJudged = (flags & kTypeBuild) != 0 && node.NameView() != "Group";
  if (isJudged) return Later(frame.newestOutput, Staleness::LastBuiltOf(node));
  const char* outputFile = node.GetAttrValue("OutputFile");
  const bool hasOutput = outputFile != nullptr && *outputFile != '\0';
  return hasOutput ? std::nullopt : frame.newestOutput;
}

bool BuildWalk::AreChildrenGood(const Frame& frame) const {
  return frame.childrenGood && frame.goodEpoch == information.GetFileTimes().GetEpoch();
}

// A host that keeps sending reports invalidates the times again and again. In that case missing
// times are queried synchronously.
bool BuildWalk::MayAsk(const Frame& frame) const {
  return asksForTimes &&
         (frame.askedEpoch == 0 || frame.askedEpoch == information.GetFileTimes().GetEpoch());
}

// Requests the files that decide about the frame's node and about the nodes that follow, so that a
// walk over an up-to-date tree switches threads only once per several hundred nodes.
bool BuildWalk::AskForTimes(Frame& frame, WalkRequest& request) {
  const bool hasAsked = frame.askedEpoch == information.GetFileTimes().GetEpoch();
  frame.askedEpoch = information.GetFileTimes().GetEpoch();
  Staleness staleness(model.Types(), information.GetFileTimes(), information.GetRecordCheck());
  ahead.Begin(frame.askedEpoch);
  if (AreChildrenGood(frame)) {
    staleness.AskForFiles(*frame.node, request.inquiry, ahead);
  } else {
    AskForSubtree(staleness, *frame.node, request.inquiry, ahead, SIZE_MAX);
  }
  ahead.Begin(frame.askedEpoch);  // the walk has reached all of these
  // Usually the application's files are known, and only its own output is missing.
  const bool needsParts = hasAsked || !AreChildrenGood(frame) || !frame.newestOutput;
  if (needsParts && (model.Types().FlagsOf(*frame.node) & kTypeApplication) != 0) {
    staleness.AskForParts(*frame.node, request.inquiry);
  }
  if (request.inquiry.IsEmpty()) {  // a path that can't be requested
    frame.askedEpoch = kNeverEpoch;
    return false;
  }

  std::size_t left = nodesAhead;
  for (auto outer = frames.rbegin() + 1; outer != frames.rend() && left > 0; ++outer) {
    for (std::size_t i = outer->next; i < outer->children.size() && left > 0; ++i) {
      left -= std::min(left,
                       AskForSubtree(staleness, *outer->children[i], request.inquiry, ahead, left));
    }
    if (left > 0) staleness.AskForFiles(*outer->node, request.inquiry, ahead);
  }
  nodesAhead = std::min(nodesAhead * 2, kMaxNodesAhead);
  request.kind = WalkRequest::Kind::Examine;
  return true;
}

void BuildWalk::TakeTimes(const FileTimes::Inquiry& inquiry) {
  information.GetFileTimes().Take(inquiry);
}

bool BuildWalk::Clean(CXmlNode& node) {
  if ((model.Types().FlagsOf(node) & kTypeApplication) != 0) {
    builder.NoteChosenByWalk(node);
    model.SetCurrentNode(&node);
    if (LostTree()) return false;
  }
  bool result = true;
  bool isLeft = false;  // the next clean may be able to delete it
  std::vector<NamedOutput> made = OutputsOf(node);
  for (NamedOutput& each : made) each.path = model.GetFiles().NameOnDisk(each.path);
  // Hosts without a journal only clean the files that nodes name.
  if (information.GetBuildRecords().HasJournal()) {
    for (std::string& path : guard.FindByProducts(node)) made.push_back({std::move(path), {}});
  }
  for (const NamedOutput& named : made) {
    const std::string& path = named.path;
    if (!model.GetFiles().Exists(path)) continue;
    // A file whose name differs in letter case is not the tool's output.
    const std::optional<FileStatus> status = model.GetFiles().Examine(path);
    if (status && status->otherSpelling) continue;
    if (const std::string why = guard.WhyKept(node, named); !why.empty()) {
      if (model.Protection().GetTrust().RefusesWrite(path)) {
        model.Protection().GetTrust().Refuse(model.Protection().GetTrust().WishFor("delete", path));
        isLeft = true;
      }
      model.Host().AddBuildNotice(LineKind::Warning, why + "; it is not deleted");
      if (LostTree()) return false;
      continue;
    }
    const Status removed = guard.Remove(node, path);
    information.GetFileTimes().Forget();
    if (removed || removed.GetError().code == ErrorCode::NotFound) continue;
    result = false;
    isLeft = true;
    model.Host().AddBuildNotice(LineKind::Error,
                                path + " can't be deleted: " + removed.GetError().text);
    if (LostTree()) return false;
  }
  if (information.GetWalkApplication() != nullptr && !isLeft) {
    information.GetBuildRecords().Drop(
        node, TextOf(information.GetWalkApplication()->GetAttrValue("Path")),
        TextOf(node.GetAttrValue("OutputFile")));
  }
  return result;
}

// Returns true, after logging the reason, if the tool would overwrite a file that is not a product
// of this project.
bool BuildWalk::IsKept(const CXmlNode& node, const WalkRequest& request) {
  // The tool manager spells its paths as on disk. Looking up another spelling of a file that does
  // not exist yet costs a scan of its folder.
  std::vector<NamedOutput> made = FindWritten(request.access);
  for (NamedOutput& named : OutputsOf(node)) {
    const bool isKnown = std::any_of(made.begin(), made.end(), [&](const NamedOutput& each) {
      return each.isCertain && each.path == named.path;
    });
    if (isKnown) continue;
    named.path = model.GetFiles().NameOnDisk(named.path);
    made.push_back(std::move(named));
  }
  std::string why;
  for (std::size_t i = 0; i < made.size() && why.empty(); ++i) {
    why = made[i].isCertain ? guard.WhyKept(node, made[i]) : guard.WhyOwn(made[i]);
  }
  if (!why.empty()) {
    model.Host().AddBuildNotice(LineKind::Error, why + "; the tool is not run");
    return true;
  }
  // The tool manager has no records of earlier runs and does not touch read-only files.
  for (const NamedOutput& each : made) {
    const bool isInTheWay = each.isCertain && model.GetFiles().ExamineExactly(each.path) &&
                            model.GetFiles().IsReadOnly(each.path);
    if (isInTheWay) (void)guard.Remove(node, each.path);
  }
  return false;
}

// Returns the files that the node's tool is given: the source, or the parts of an application.
std::vector<std::string> BuildWalk::SourcesOf(const CXmlNode& node) const {
  std::vector<std::string> sources;
  if ((model.Types().FlagsOf(node) & kTypeApplication) != 0) {
    ForEachLinkFile(model.Types(), &node, true, &node,
                    [&](const char* part) { sources.emplace_back(part); });
  } else {
    sources.push_back(TextOf(node.GetAttrValue("Path")));
  }
  for (std::string& each : sources) each = model.GetFiles().NameOnDisk(each);
  return sources;
}

// Returns the headers that the node's last run has read.
std::vector<std::string> HeadersOf(const CXmlNode& node) {
  std::vector<std::string> headers;
  for (const CXmlNode* child : node.GetChildren()) {
    if (child->NameView() != "Dependencies") continue;
    for (const CXmlNode* each : child->GetChildren()) {
      headers.push_back(TextOf(each->GetAttrValue("Header")));
    }
  }
  return headers;
}

// Returns true, after logging the reason, if a file is a pipe or a device: a tool would wait for
// a program that writes to it, possibly forever.
bool BuildWalk::HasUnusableInput(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) {
    // The arguments of tools also contain words that only look like the name of a file. Searching
    // for other spellings of them would list the folder for each run.
    if (!model.GetFiles().IsSpecial(path)) continue;
    const Result<std::string> text = model.GetFiles().ReadWholeFile(path);
    if (text) continue;
    model.Host().AddBuildNotice(LineKind::Error, path + " can't be read: " + text.GetError().text +
                                                     "; the tool is not run");
    return true;
  }
  return false;
}

// A linker that is given a file twice reports duplicate definitions without naming the cause.
void BuildWalk::WarnOfSameFiles(const CXmlNode& node) {
  if ((model.Types().FlagsOf(node) & kTypeApplication) == 0) return;
  for (const auto& [first, second] : FindSameFiles(model.GetFiles(), node)) {
    model.Host().AddBuildNotice(
        LineKind::Warning, first + " and " + second + " are the same file, which is built twice");
    if (LostTree()) return;
  }
}

// Returns true, after logging the reason, if the run needs the user's trust and the project is not
// trusted.
bool BuildWalk::IsUntrusted(const WalkRequest& request) {
  ProjectTrust& trust = model.Protection().GetTrust();
  if (!trust.IsWithheld()) return false;
  const std::string wish = FindUntrusted(trust, request.tool, request.access);
  if (wish.empty()) return false;
  trust.Refuse(wish);
  model.Host().AddBuildNotice(
      LineKind::Error,
      "the project wants to " + wish + ", and its folder is not trusted; the tool is not run");
  return true;
}

bool BuildWalk::RequestTool(Frame& frame, WalkRequest& request) {
  CXmlNode& node = *frame.node;
  if (model.Services().toolManager == nullptr) return Return(false, false);
  const CXmlNode* values = FindStoredValues(node);
  if (values == nullptr) values = model.Publishing().LoadNodeOptions(&node, true);
  if (LostTree()) return true;
  if (values == nullptr) return Return(false, false);
  request.options = values->ValueText();

  const bool hasTool = GetToolInput(model.Types(), node, request.tool, request.files);
  if (usesGivenTool) {
    request.tool = givenTool;
  } else if (!hasTool || IsExactlyYes(node, "Exclude")) {
    return Return(true, false);
  }
  if (HasUnusableInput(SourcesOf(node))) return LostTree() || Return(false, false);
  request.access =
      model.Services().toolManager->GetAccess(request.tool, request.files, request.options);
  if (HasUnusableInput(FindRead(request.access)) || HasUnusableInput(HeadersOf(node))) {
    return LostTree() || Return(false, false);
  }
  if (IsUntrusted(request)) return LostTree() || Return(false, false);
  if (!usesGivenTool) {
    if (IsKept(node, request)) return LostTree() || Return(false, false);
    WarnOfSameFiles(node);
    if (LostTree()) return true;
    model.Services().output->WriteMessage(kRowTranslateStarts, {TextOf(node.GetAttrValue("Path"))});
    if (LostTree()) return true;
    folderBefore = model.GetFiles().CurrentFolder();
    model.GetFiles().SetCurrentFolder(state.projectFolder);
  }
  const std::string& logFile = model.Services().output->GetLogFile();
  if (!logFile.empty()) {
    messageFile = logFile + "t.xml";
    request.messageFile = messageFile;
    (void)model.GetFiles().RemoveScratchFile(messageFile);
  }
  request.toolManager = DispatchPtr(model.Services().toolManager->GetDispatch());
  request.snapshot = BeginRun(node, request);
  request.kind = WalkRequest::Kind::RunTool;
  frame.stage = Stage::Tool;
  return false;
}

// Only runs of the node's own tool are recorded as producing its output.
RunSnapshot BuildWalk::BeginRun(const CXmlNode& node, const WalkRequest& request) {
  const std::string output = TextOf(node.GetAttrValue("OutputFile"));
  isRecorded = !output.empty() && request.tool == TextOf(node.GetAttrValue("TranslateTool")) &&
               information.GetWalkApplication() != nullptr;
  if (!isRecorded) return {};
  return information.GetBuildRecords().BeginRun(
      node, TextOf(information.GetWalkApplication()->GetAttrValue("Path")), output, SourcesOf(node),
      information.GetToolCommands().SignatureOf(request.tool, request.files, request.options));
}

bool RunRequestedTool(WalkRequest& request, FileSystem& files) {
  CToolManagerDriver tools;
  tools.AttachDispatch(request.toolManager.Get(), true);
  request.snapshot.TakeBefore(files);
  const bool isDone =
      tools.RunTool(request.tool, request.files, request.options,
                    request.messageFile ? request.messageFile->c_str() : nullptr) != 0;
  request.snapshot.TakeAfter(files);
  return isDone;
}

void BuildWalk::TakeToolResult(bool success, RunSnapshot snapshot) {
  toolSucceeded = success;
  runSnapshot = std::move(snapshot);
}

void BuildWalk::FinishTool(Frame& frame) {
  nodesAhead = 1;
  if (isRecorded)
    information.GetBuildRecords().EndRun(*frame.node, std::move(runSnapshot), toolSucceeded);
  if (toolSucceeded) {
    const bool isApplication = (model.Types().FlagsOf(*frame.node) & kTypeApplication) != 0;
    if (order && isApplication) built.push_back(frame.node);
    model.Host().SendHost(kMsgToolSucceeded, TextOf(frame.node->GetAttrValue("OutputFile")), 0);
  }
  LeaveTool();
  if (!LostTree()) Return(toolSucceeded, false);
}

// Cleanup after a tool run, even if the tree was freed.
void BuildWalk::LeaveTool() {
  information.GetFileTimes().Forget();  // the tool may have written any file
  if (!messageFile.empty()) {
    model.Services().output->MergeToolFile(messageFile);
    (void)model.GetFiles().RemoveScratchFile(messageFile);
  }
  messageFile.clear();
  if (!folderBefore.empty()) model.GetFiles().SetCurrentFolder(folderBefore);
  folderBefore.clear();
  model.Services().output->SaveLog();
  model.Services().output->UpdateReport();
}

}  // namespace tarn
