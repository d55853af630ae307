// The part of a build walk that deletes outputs and runs tools, with the checks before each run.

#include <algorithm>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "builder/BuildWalk.h"
#include "builder/LinkFiles.h"
#include "builder/SameFiles.h"
#include "builder/TrustCheck.h"
#include "output/MessageTable.h"
#include "platform/files/ExactNames.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/TreeSearch.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

// Returns the outputs named by the node's own options.
std::vector<NamedOutput> OutputsOf(const CXmlNode& node) {
  std::vector<NamedOutput> outputs;
  for (const auto& [attribute, option] : {std::pair("OutputFile", "Build.OutputFile"),
                                          std::pair("ListingFile", "Build.ListingFile")}) {
    const std::string path = OrEmpty(node.GetAttrValue(attribute));
    if (!path.empty()) outputs.push_back({path, option});
  }
  return outputs;
}

template <class Run>
bool IsSameRun(const Run& run, const BuildAction& request) {
  return run.tool == request.tool && run.files == request.files && run.options == request.options;
}

// Returns why a file can't be read, such as a pipe or a device: a tool would wait for a program
// that writes to it, possibly forever.
std::string FindUnusable(FileSystem& files, const std::vector<std::string>& paths) {
  const std::vector<bool> isFile = AreExactFiles(files, paths);
  for (std::size_t i = 0; i < paths.size(); ++i) {
    // The arguments of tools also contain words that only look like the name of a file. Searching
    // for other spellings of them would list the folder for each run.
    if (isFile[i] || !files.IsSpecial(paths[i])) continue;
    const Result<std::string> text = files.ReadWholeFile(paths[i]);
    if (!text) return paths[i] + " can't be read: " + text.GetError().text;
  }
  return {};
}

// Returns true if the tool writes nothing but its outputs, and none of them where it searches for
// headers, so that no other file can have changed, nor what a name stands for.
bool WritesOnlyOutputs(const BuildAction& request) {
  if (FindAccessed(request.access, "nothing-else").empty()) return false;
  const std::vector<std::string> searched = FindAccessed(request.access, "search");
  return std::none_of(
      request.outputs.begin(), request.outputs.end(), [&](const NamedOutput& output) {
        return std::find(searched.begin(), searched.end(), FolderOf(output.path)) != searched.end();
      });
}

// Completes the sources of the request, and sets its access unless one of them can't be read. A
// link reads many sources, so each is examined only once.
void FindAccess(BuildAction& request, CToolManagerDriver& tools, FileSystem& files) {
  const std::vector<bool> isFile = AreExactFiles(files, request.sources);
  std::vector<std::string> others;
  std::unordered_set<std::string_view> usable;
  usable.reserve(isFile.size());
  for (std::size_t i = 0; i < isFile.size(); ++i) {
    std::string& source = request.sources[i];
    if (isFile[i]) {
      usable.insert(source);
    } else {
      source = files.NameOnDisk(source);
      others.push_back(source);
    }
  }
  request.unusable = FindUnusable(files, others);
  if (!request.unusable.empty()) return;
  request.access = request.isWithheld
                       ? tools.GetAccess(request.tool, request.files, request.options)
                       : tools.GetRunFiles(request.tool, request.files, request.options);
  std::vector<std::string> read = FindAccessed(request.access, "read");
  std::erase_if(read, [&](const std::string& path) { return usable.contains(path); });
  request.unusable = FindUnusable(files, read);
}

}  // namespace

bool BuildWalk::Clean(CXmlNode& node) {
  if ((model_.Types().FlagsOf(node) & kTypeApplication) != 0) {
    builder_.RecordChosenByWalk(node);
    model_.SetCurrentNode(&node);
    if (IsTreeStale()) return false;
  }
  bool result = true;
  bool isLeft = false;  // the next clean may be able to delete it
  std::vector<NamedOutput> made = OutputsOf(node);
  for (NamedOutput& each : made) each.path = model_.GetFiles().NameOnDisk(each.path);
  // Hosts without a journal only clean the files that nodes name.
  if (information_.GetBuildRecords().HasJournal()) {
    for (std::string& path : guard_.FindByProducts(node)) made.push_back({std::move(path), {}});
  }
  for (const NamedOutput& named : made) {
    const std::string& path = named.path;
    if (!model_.GetFiles().Exists(path)) continue;
    // A file whose name differs in letter case is not the tool's output.
    const std::optional<FileStatus> status = model_.GetFiles().Examine(path);
    if (status && status->otherSpelling) continue;
    if (const std::string why = guard_.WhyKept(node, named); !why.empty()) {
      if (model_.Protection().GetTrust().RefusesWrite(path)) {
        ProjectTrust& trust = model_.Protection().GetTrust();
        trust.Refuse(trust.RequestFor(TrustRequestKind::Delete, path));
        isLeft = true;
      }
      model_.Host().AddBuildNotice(LineKind::Warning, why + "; it is not deleted");
      if (IsTreeStale()) return false;
      continue;
    }
    const Status removed = guard_.Remove(node, path);
    information_.GetMtimes().Invalidate();
    if (removed || removed.GetError().code == ErrorCode::NotFound) continue;
    result = false;
    isLeft = true;
    model_.Host().AddBuildNotice(LineKind::Error,
                                 path + " can't be deleted: " + removed.GetError().text);
    if (IsTreeStale()) return false;
  }
  if (information_.GetWalkApplication() != nullptr && !isLeft) {
    information_.GetBuildRecords().Drop(
        node, OrEmpty(information_.GetWalkApplication()->GetAttrValue("Path")),
        OrEmpty(node.GetAttrValue("OutputFile")));
  }
  const bool isApplication = (model_.Types().FlagsOf(node) & kTypeApplication) != 0;
  if (isApplication && information_.GetBuildRecords().HasJournal()) {
    result = CleanRemoved(node) && result;
  }
  return result;
}

// Returns the files that the run writes, with those that the node names.
std::vector<NamedOutput> BuildWalk::FindOutputs(const CXmlNode& node,
                                                const std::string& access) const {
  // The tool manager spells its paths as on disk. Looking up another spelling of a file that does
  // not exist yet costs a scan of its folder.
  std::vector<NamedOutput> made = FindWritten(access);
  for (NamedOutput& named : OutputsOf(node)) {
    const bool isKnown = std::any_of(made.begin(), made.end(), [&](const NamedOutput& each) {
      return each.isCertain && each.path == named.path;
    });
    if (isKnown) continue;
    named.path = model_.GetFiles().NameOnDisk(named.path);
    made.push_back(std::move(named));
  }
  return made;
}

// Returns why the tool would overwrite a file that is not a product of this project; an empty
// string if it doesn't.
std::string BuildWalk::FindKept(const CXmlNode& node, const std::vector<NamedOutput>& outputs) {
  for (const NamedOutput& each : outputs) {
    std::string why = each.isCertain ? guard_.WhyKept(node, each) : guard_.WhyOwn(each);
    if (!why.empty()) return why;
  }
  return {};
}

// Removes read-only outputs of earlier runs. The tool manager has no records of these and does not
// touch read-only files.
void BuildWalk::RemoveReadOnly(const CXmlNode& node, const std::vector<NamedOutput>& outputs) {
  for (const NamedOutput& each : outputs) {
    const bool isInTheWay = each.isCertain && model_.GetFiles().ExamineExactly(each.path) &&
                            model_.GetFiles().IsReadOnly(each.path);
    if (isInTheWay) (void)guard_.Remove(node, each.path);
  }
}

// Returns the files that the node's tool is given: the source, or the parts of an application.
std::vector<std::string> BuildWalk::SourcesOf(const CXmlNode& node) const {
  std::vector<std::string> sources;
  if ((model_.Types().FlagsOf(node) & kTypeApplication) != 0) {
    ForEachLinkFile(model_.Types(), &node, true, &node,
                    [&](const char* part) { sources.emplace_back(part); });
  } else {
    sources.push_back(OrEmpty(node.GetAttrValue("Path")));
  }
  return sources;
}

// Returns the headers that the node's tool is known to read. Before its first run these are not
// reported, so that only one that it couldn't read is searched for.
std::vector<std::string> BuildWalk::HeadersToCome(const CXmlNode& node,
                                                  const std::vector<std::string>& folders) {
  std::vector<std::string> headers = HeadersOf(node);
  const bool isApplication = (model_.Types().FlagsOf(node) & kTypeApplication) != 0;
  if (!headers.empty() || isApplication) return headers;
  std::string pipe = pipes_.Find(OrEmpty(node.GetAttrValue("Path")), folders);
  if (!pipe.empty()) headers.push_back(std::move(pipe));
  return headers;
}

// A linker that is given a file twice reports duplicate definitions without naming the cause.
void BuildWalk::WarnOfSameFiles(const CXmlNode& node) {
  if ((model_.Types().FlagsOf(node) & kTypeApplication) == 0) return;
  for (const auto& [first, second] : FindSameFiles(model_.GetFiles(), node)) {
    model_.Host().AddBuildNotice(
        LineKind::Warning, first + " and " + second + " are the same file, which is built twice");
    if (IsTreeStale()) return;
  }
}

// Only an application has so many input files that checking them would delay the host. Returns true
// if `request` was filled in.
bool BuildWalk::RequestAccess(const CXmlNode& node, BuildAction& request) const {
  const bool isApplication = (model_.Types().FlagsOf(node) & kTypeApplication) != 0;
  const bool isKnown = accessed_.kind == BuildAction::Kind::FindAccess;
  if (!requestsMtimes_ || !isApplication || isKnown) return false;
  request.sources = SourcesOf(node);
  request.isWithheld = model_.Protection().GetTrust().IsWithheld();
  request.toolManager = DispatchPtr(model_.Services().toolManager->GetDispatch());
  request.kind = BuildAction::Kind::FindAccess;
  return true;
}

void BuildWalk::TakeAccess(BuildAction request) {
  accessed_ = std::move(request);
}

// Takes over a completed FindAccess request for this run. Otherwise the caller has to find the
// access.
bool BuildWalk::TakeKnownAccess(BuildAction& request) {
  BuildAction known = std::exchange(accessed_, {});
  const bool isWithheld = model_.Protection().GetTrust().IsWithheld();
  if (!IsSameRun(known, request) || known.isWithheld != isWithheld) return false;
  request.sources = std::move(known.sources);
  request.access = std::move(known.access);
  request.unusable = std::move(known.unusable);
  return true;
}

BuildWalk::Obstacle BuildWalk::FindObstacle(const CXmlNode& node, BuildAction& request) {
  if (!TakeKnownAccess(request)) {
    request.sources = SourcesOf(node);
    request.isWithheld = model_.Protection().GetTrust().IsWithheld();
    FindAccess(request, *model_.Services().toolManager, model_.GetFiles());
  }
  if (!request.unusable.empty()) return {request.unusable, std::nullopt};
  const std::vector<std::string> headers =
      HeadersToCome(node, FindAccessed(request.access, "search"));
  if (std::string why = FindUnusable(model_.GetFiles(), headers); !why.empty()) {
    return {std::move(why), std::nullopt};
  }
  const ProjectTrust& trust = model_.Protection().GetTrust();
  if (trust.IsWithheld()) {
    const auto wish = FindUntrusted(trust, request.tool, request.access);
    if (wish) {
      return {"the project wants to " + Describe(*wish) + ", and its folder is not trusted", wish};
    }
  }
  if (usesExplicitTool_) return {};
  request.outputs = FindOutputs(node, request.access);
  request.writesOnlyOutputs = WritesOnlyOutputs(request);
  return {FindKept(node, request.outputs), std::nullopt};
}

bool BuildWalk::RequestTool(Frame& frame, BuildAction& request) {
  CXmlNode& node = *frame.node;
  if (model_.Services().toolManager == nullptr) return FailNode(node, {});
  const CXmlNode* values = FindStoredValues(node);
  if (values == nullptr) values = model_.Publishing().LoadNodeOptions(&node, true);
  if (IsTreeStale()) return true;
  if (values == nullptr) return FailNode(node, {});
  request.options = values->GetValue();

  const bool hasTool = GetToolInput(model_.Types(), node, request.tool, request.files);
  if (usesExplicitTool_) {
    request.tool = explicitTool_;
  } else if (!hasTool || IsExactlyYes(node, "Exclude")) {
    return Return(true, false);
  }
  if (RequestAccess(node, request)) return false;
  request.own = runsAhead_.Take(node);
  const bool isAhead = request.own != nullptr && IsSameRun(*request.own, request);
  if (isAhead) {
    request.sources = NamesOnDisk(model_.GetFiles(), SourcesOf(node));
    request.outputs = request.own->outputs;
    request.writesOnlyOutputs = request.own->writesOnlyOutputs;
  }
  if (request.own != nullptr && !isAhead) DropAhead(request);
  if (!isAhead) {
    const Obstacle obstacle = FindObstacle(node, request);
    if (!obstacle.text.empty()) {
      if (obstacle.wish) model_.Protection().GetTrust().Refuse(*obstacle.wish);
      model_.Host().AddBuildNotice(LineKind::Error, obstacle.text + "; the tool is not run");
      return IsTreeStale() || FailNode(node, std::exchange(request.outputs, {}));
    }
  }
  runOutputs_ = request.outputs;
  writesOnlyOutputs_ = request.writesOnlyOutputs;
  if (!usesExplicitTool_) {
    RemoveReadOnly(node, request.outputs);
    WarnOfSameFiles(node);
    if (IsTreeStale()) return true;
    model_.Services().output->WriteMessage(kRowTranslateStarts,
                                           {OrEmpty(node.GetAttrValue("Path"))});
    if (IsTreeStale()) return true;
    folderBefore_ = model_.GetFiles().CurrentFolder();
    model_.GetFiles().SetCurrentFolder(state_.projectFolder);
  }
  const std::string& logFile = model_.Services().output->GetLogFile();
  if (!logFile.empty()) {
    messageFile_ = logFile + "t.xml";
    request.messageFile = messageFile_;
    (void)model_.GetFiles().RemoveScratchFile(messageFile_);
  }
  request.toolManager = DispatchPtr(model_.Services().toolManager->GetDispatch());
  BeginOwnRun(node, request);
  PlanAhead(frame, request);
  request.kind = BuildAction::Kind::RunTool;
  frame.stage = Stage::Tool;
  return false;
}

// Only runs of the node's own tool are recorded as producing its output.
std::optional<RunSnapshot> BuildWalk::BeginRun(const CXmlNode& node, const BuildAction& request) {
  const std::string output = OrEmpty(node.GetAttrValue("OutputFile"));
  if (output.empty() || request.tool != OrEmpty(node.GetAttrValue("TranslateTool")) ||
      information_.GetWalkApplication() == nullptr) {
    return std::nullopt;
  }
  const std::uint64_t signature =
      information_.GetToolCommands().SignatureOf(request.tool, request.files, request.options);
  return information_.GetBuildRecords().BeginRun(
      node, OrEmpty(information_.GetWalkApplication()->GetAttrValue("Path")), output,
      request.sources, signature);
}

void BuildWalk::BeginOwnRun(const CXmlNode& node, BuildAction& request) {
  std::optional<RunSnapshot> snapshot = BeginRun(node, request);
  isRecorded_ = snapshot.has_value();
  request.snapshot = snapshot ? std::move(*snapshot) : RunSnapshot();
}

void DropEarlyRuns(BuildAction& request) {
  if (!request.dropsEarly) return;
  CToolManagerDriver tools;
  tools.AttachDispatch(request.toolManager.Get(), true);
  tools.DropTools();
}

void FindRequestedAccess(BuildAction& request, FileSystem& files) {
  CToolManagerDriver tools;
  tools.AttachDispatch(request.toolManager.Get(), true);
  FindAccess(request, tools, files);
}

bool RunRequestedTool(BuildAction& request, FileSystem& files) {
  CToolManagerDriver tools;
  tools.AttachDispatch(request.toolManager.Get(), true);
  for (const std::shared_ptr<RunAhead>& run : request.early) {
    run->snapshot.TakeBefore(files);
    run->isStarted = tools.PrepareTool(run->tool, run->files, run->options) != 0;
    if (!run->isStarted) break;
  }
  const bool isAhead = request.own != nullptr && request.own->isStarted &&
                       tools.AwaitTool(request.tool, request.files, request.options) != 0;
  if (isAhead) {
    request.snapshot = std::move(request.own->snapshot);
  } else {
    request.snapshot.TakeBefore(files);
  }
  const bool isDone =
      tools.RunTool(request.tool, request.files, request.options,
                    request.messageFile ? request.messageFile->c_str() : nullptr) != 0;
  request.snapshot.TakeAfter(files);
  return isDone;
}

void BuildWalk::TakeToolResult(bool success, RunSnapshot snapshot) {
  runsAhead_.RemoveUnstarted();
  toolSucceeded_ = success;
  runSnapshot_ = std::move(snapshot);
}

void BuildWalk::FinishTool(Frame& frame) {
  prefetchCount_ = 1;
  if (isRecorded_) {
    // The record of the former run is lost, and with it what else that run has made.
    if (!toolSucceeded_ && !IsTreeStale()) RemoveByProducts(*frame.node);
    information_.GetBuildRecords().EndRun(*frame.node, std::move(runSnapshot_), toolSucceeded_);
  }
  if (toolSucceeded_) {
    const bool isApplication = (model_.Types().FlagsOf(*frame.node) & kTypeApplication) != 0;
    if (order_ && isApplication) built_.push_back(frame.node);
    information_.SetReportingNode(frame.node);
    model_.Host().SendHost(kMsgToolSucceeded, OrEmpty(frame.node->GetAttrValue("OutputFile")), 0);
    information_.SetReportingNode(nullptr);
  }
  LeaveTool();
  if (IsTreeStale()) return;
  if (toolSucceeded_) {
    Return(true, false);
  } else {
    FailNode(*frame.node, runOutputs_);
  }
}

void BuildWalk::RemoveByProducts(const CXmlNode& node) {
  if (!information_.GetBuildRecords().HasJournal()) return;
  for (const std::string& path : guard_.FindByProducts(node)) {
    if (guard_.WhyKept(node, {path, {}}).empty()) (void)guard_.Remove(node, path);
  }
}

// Deletes the files of sources that were removed from the application. Returns false, after logging
// the reason, if that fails.
bool BuildWalk::CleanRemoved(const CXmlNode& application) {
  bool result = true;
  for (const OutputGuard::Removed& each : guard_.FindRemoved(application)) {
    bool isLeft = false;
    for (const std::string& path : each.files) {
      const Status removed = model_.GetFiles().RemoveFile(path);
      if (removed || removed.GetError().code == ErrorCode::NotFound) continue;
      isLeft = true;
      model_.Host().AddBuildNotice(LineKind::Error,
                                   path + " can't be deleted: " + removed.GetError().text);
      if (IsTreeStale()) return false;
    }
    if (!isLeft) information_.GetBuildRecords().DropRecord(each.record);
    result = result && !isLeft;
  }
  information_.GetMtimes().Invalidate();
  return result;
}

// A tool may have written any file, unless its definition says otherwise.
void BuildWalk::ForgetWritten() {
  if (!toolSucceeded_ || !writesOnlyOutputs_) return information_.GetMtimes().Invalidate();
  for (const NamedOutput& each : runOutputs_) information_.GetMtimes().Forget(each.path);
}

// Cleanup after a tool run, even if the tree was freed.
void BuildWalk::LeaveTool() {
  ForgetWritten();
  if (!messageFile_.empty()) {
    model_.Services().output->MergeToolFile(messageFile_);
    (void)model_.GetFiles().RemoveScratchFile(messageFile_);
  }
  messageFile_.clear();
  if (!folderBefore_.empty()) model_.GetFiles().SetCurrentFolder(folderBefore_);
  folderBefore_.clear();
  model_.Services().output->SaveLog();
  model_.Services().output->UpdateReport();
}

}  // namespace tarn
