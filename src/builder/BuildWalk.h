#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "builder/ApplicationOrder.h"
#include "builder/BuildCommands.h"
#include "builder/BuildFailures.h"
#include "builder/Builder.h"
#include "builder/MtimeCache.h"
#include "builder/OutputGuard.h"
#include "builder/PipeCheck.h"
#include "builder/Prefetch.h"
#include "builder/RunSnapshot.h"
#include "builder/RunsAhead.h"
#include "builder/Staleness.h"
#include "platform/automation/Variant.h"
#include "platform/files/TrustRequest.h"

namespace tarn {

// Request of a build walk to its caller.
struct BuildAction {
  enum class Kind {
    Done,
    Pause,       // time limit reached; call Advance again after serving the host
    FindAccess,  // call FindRequestedAccess, then TakeAccess
    RunTool,     // run the tool, then call TakeToolResult
    Examine,     // stat the files of the batch, then call SetMtimes
  };
  Kind kind = Kind::Done;

  DispatchPtr toolManager;
  std::string tool;
  std::string files;
  std::string options;
  std::vector<std::string> sources;  // files that the tool is given; with FindAccess as listed,
                                     // then as spelled on disk
  bool isWithheld = false;           // the project isn't trusted
  std::string access;                // reply of GetAccess, or GetRunFiles in a trusted project
  std::string unusable;              // why one of the files that it is known to read can't be read
  std::vector<NamedOutput> outputs;  // what the run writes
  bool writesOnlyOutputs = false;    // it can't have changed what another file stands for
  NullableText messageFile;

  // Must be taken around the run of the tool.
  RunSnapshot snapshot;
  // Runs to start before this one, in this order; the first may be this one.
  std::vector<std::shared_ptr<RunAhead>> early;
  // This run, if it was or is to be started early.
  std::shared_ptr<RunAhead> own;
  // With any kind: early runs of the tool manager are not going to be requested; drop them first.
  bool dropsEarly = false;

  MtimeCache::StatBatch batch;
};

// Drops the early runs of the tool manager if the request asks for it. Comes before the next
// function.
void DropEarlyRuns(BuildAction& request);
// Sets the access of the request and checks its sources, on the calling thread. A link takes time
// for each of its files.
void FindRequestedAccess(BuildAction& request, FileSystem& files);
// Starts the early runs of the request, and runs its tool with its snapshot on the calling thread.
// Returns true if the tool succeeded.
bool RunRequestedTool(BuildAction& request, FileSystem& files);

// A resumable build: a depth-first traversal, children before their node, that runs the tool of
// every stale node. Everything that accesses the tree, the log, the views or the property manager
// happens inside Advance, on the main thread; running tools and, optionally, checking files and
// what a tool accesses are left to the caller, which may be on another thread. Therefore no locks
// are needed.
//
// Calling sequence: one Begin function, then Advance until it returns Done, serving each request.
//
// The frames hold node pointers. Operations that free nodes don't start while a worker is running;
// if a host's message handler frees some anyway, the walk detects that and fails.
class BuildWalk {
 public:
  using Clock = std::chrono::steady_clock;

  // If `examinesElsewhere` is false, files and accesses are checked inside Advance.
  BuildWalk(Builder& projectBuilder, bool examinesElsewhere);

  // Call one of these once. A null node is a no-op.
  void BeginBuild(CXmlNode* node, std::int32_t mode);
  void BeginTranslate(CXmlNode* node);
  void BeginTool(CXmlNode* node, const std::string& tool);

  // Continues until a request is needed, the walk is done, or `deadline` has passed.
  BuildAction Advance(std::optional<Clock::time_point> deadline);
  // Completes a FindAccess request.
  void TakeAccess(BuildAction request);
  // Completes a RunTool request.
  void TakeToolResult(bool succeeded, RunSnapshot snapshot);
  // Completes an Examine request. An unfinished batch is requested again.
  void SetMtimes(const MtimeCache::StatBatch& batch);

  // Valid after Done.
  bool Succeeded() const { return succeeded_; }
  // Returns true if the tree that the walk started on, or a part of it, was freed.
  bool IsTreeStale() const;

 private:
  enum class Stage { Enter, Publish, Uses, Start, Children, Own, Translate, Tool };

  struct Frame {
    Frame(CXmlNode* n, std::int32_t m, Stage s = Stage::Enter) : node(n), mode(m), stage(s) {}

    CXmlNode* node;
    std::int32_t mode;
    Stage stage;
    bool isUsed = false;              // an application that the one below this frame uses
    std::vector<CXmlNode*> children;  // a copy, so that a host may reorder them
    std::size_t next = 0;
    std::vector<CXmlNode*> doubtful;  // children that are not known to be up to date
    bool isMissingInput = false;      // something below was not built
    std::uint64_t upToDateEpoch = 0;  // file-time epoch at which the other children were
    // Newest output in this subtree if every child is up to date; nullopt if some node's output
    // time is known only from the tree.
    std::optional<std::int64_t> newestOutput = INT64_MIN;
    std::uint64_t requestEpoch = 0;  // file-time epoch of the node's last batch
  };

  // Makes the application of the node the one that reports are attributed to.
  void SetApplication(CXmlNode* node);
  // Each step returns true if the walk can continue immediately; otherwise `request` is filled in.
  bool Step(BuildAction& request);
  // One function per Stage.
  bool Enter(Frame& frame);
  bool Publish(Frame& frame, BuildAction& request);
  // Starts building the applications that this one uses.
  bool EnterUsed(Frame& frame);
  void FindOrder(const CXmlNode& node);
  // Sorts the applications among the children in build order; other children keep their positions.
  void OrderChildren(Frame& frame) const;
  bool UsesWhatWasBuilt(const CXmlNode& node) const;
  CXmlNode* PublishRoot() const;
  bool StartNode(Frame& frame);
  bool EnterNextChild(Frame& frame);
  bool DoOwnWork(Frame& frame, BuildAction& request);
  bool RequestTool(Frame& frame, BuildAction& request);
  bool RequestAccess(const CXmlNode& node, BuildAction& request) const;
  bool TakeKnownAccess(BuildAction& request);
  void PlanAhead(Frame& frame, BuildAction& request);
  bool IsStale(const Frame& frame, CXmlNode& node);
  std::shared_ptr<RunAhead> PlanEarly(CXmlNode& node);
  void BeginOwnRun(const CXmlNode& node, BuildAction& request);
  void DropAhead(BuildAction& request);
  bool KeepsGoing() const;
  bool LacksInput(const Frame& frame) const;
  bool LeaveUnbuilt(Frame& frame, BuildAction& request);
  bool FailNode(const CXmlNode& node, const std::vector<NamedOutput>& outputs);
  void FinishTool(Frame& frame);
  void ForgetWritten();
  void LeaveTool();
  bool Clean(CXmlNode& node);
  bool CleanRemoved(const CXmlNode& application);
  void RemoveByProducts(const CXmlNode& node);
  // Why a tool must not be run.
  struct Obstacle {
    std::string text;                  // for the log; empty if there is none
    std::optional<TrustRequest> wish;  // what an untrusted project wants to do
  };
  // Completes the request with the accesses and outputs of the run, and returns what prevents it.
  Obstacle FindObstacle(const CXmlNode& node, BuildAction& request);
  std::string FindKept(const CXmlNode& node, const std::vector<NamedOutput>& outputs);
  std::vector<NamedOutput> FindOutputs(const CXmlNode& node, const std::string& access) const;
  void RemoveReadOnly(const CXmlNode& node, const std::vector<NamedOutput>& outputs);
  std::vector<std::string> SourcesOf(const CXmlNode& node) const;
  std::vector<std::string> HeadersToCome(const CXmlNode& node,
                                         const std::vector<std::string>& folders);
  void WarnOfSameFiles(const CXmlNode& node);
  bool AreOthersUpToDate(const Frame& frame) const;
  bool MayRequestStat(const Frame& frame) const;
  bool RequestMtimes(Frame& frame, BuildAction& request);
  bool IsUpToDate(const Frame& frame, Staleness& staleness) const;
  // Returns nullopt if the run isn't recorded.
  std::optional<RunSnapshot> BeginRun(const CXmlNode& node, const BuildAction& request);
  std::optional<std::int64_t> NewestOutputOf(const Frame& frame) const;
  // Finishes the top frame and returns to its parent.
  bool Return(bool success, bool isUpToDate);
  bool IsOver(const std::optional<Clock::time_point>& deadline) const;

  Builder& builder_;
  CProjectModel& model_;
  ProjectState& state_;
  BuildInformation& information_;
  OutputGuard guard_;
  const bool requestsMtimes_;
  std::int32_t mode_ = ModeBuild;
  std::string explicitTool_;  // for a walk that runs one specified tool
  bool usesExplicitTool_ = false;
  std::vector<Frame> frames_;
  BuildFailures failures_;
  std::vector<NamedOutput> runOutputs_;  // of the current run
  bool writesOnlyOutputs_ = false;       // the current run
  bool succeeded_ = true;
  bool toolSucceeded_ = false;
  bool isRecorded_ = false;  // the current run is recorded
  RunSnapshot runSnapshot_;
  std::string folderBefore_;  // current folder to restore after the tool
  std::string messageFile_;
  BuildAction accessed_;  // the last FindAccess request
  std::uint64_t treeGeneration_ = 0;
  // Set for projects with several applications, once known.
  std::unique_ptr<ApplicationOrder> order_;
  std::vector<CXmlNode*> used_;  // applications used by the one the walk started on
  std::size_t nextUsed_ = 0;
  std::vector<const CXmlNode*> built_;     // applications whose tool has run
  std::uint64_t publishedGeneration_ = 0;  // epoch in which everything below the start is published
  unsigned stepCount_ = 0;
  std::unordered_set<const CXmlNode*> repeated_;  // nodes whose source is listed again later
  // Nodes of the application that are built before all others, wherever they are in it.
  std::unordered_set<const CXmlNode*> first_;
  std::vector<CXmlNode*> generators_;  // the same in their order
  CXmlNode* unlisted_ = nullptr;       // the application, until the lookahead has listed its nodes
  PipeCheck pipes_;
  Prefetch ahead_;
  RunsAhead runsAhead_;
  std::size_t prefetchCount_ = 512;  // number of nodes to prefetch file times for
  std::optional<Clock::time_point> currentDeadline_;
};

}  // namespace tarn
