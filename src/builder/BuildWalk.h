#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "builder/ApplicationOrder.h"
#include "builder/FileTimes.h"
#include "builder/NodesAhead.h"
#include "builder/OutputGuard.h"
#include "builder/RunSnapshot.h"
#include "platform/automation/Variant.h"
#include "project/ProjectModel.h"

namespace tarn {

// What a walk needs before it can go on.
struct WalkRequest {
  enum class Kind {
    Done,
    Pause,    // the time is up; call Advance again when the host has had its turn
    RunTool,  // run the tool, then TakeToolResult
    Examine,  // have the inquiry examined, then TakeTimes
  };
  Kind kind = Kind::Done;

  DispatchPtr toolManager;
  std::string tool;
  std::string files;
  std::string options;
  std::string access;  // what the tool manager's GetAccess returns of the run
  NullableText messageFile;

  // To be taken around the run of the tool.
  RunSnapshot snapshot;

  FileTimes::Inquiry inquiry;
};

// Runs the tool of a request, with its snapshot, on the calling thread. Returns whether it
// succeeded.
bool RunRequestedTool(WalkRequest& request, FileSystem& files);

// A build as a walk that can be interrupted: depth first, children before their node, each stale
// node handed to its tool. Everything that touches the tree, the log, the views or the property
// manager happens inside Advance, on the host's thread; tools and, when asked for, the examination
// of files are left to the caller, who may be another thread. So neither needs a lock.
//
// The frames hold node pointers. No operation that frees nodes starts while a worker lives; where
// one comes in all the same, from a host's message handler, the walk notices and ends in failure.
class BuildWalk {
 public:
  using Clock = std::chrono::steady_clock;

  // Without `examinesElsewhere` files are examined inside Advance.
  BuildWalk(CProjectModel& projectModel, bool examinesElsewhere);

  // One of these, once. A null node is nothing to do.
  void BeginBuild(CXmlNode* node, std::int32_t mode);
  void BeginTranslate(CXmlNode* node);
  void BeginTool(CXmlNode* node, const std::string& tool);

  // Goes on until something is needed, or the walk is done, or `deadline` is over.
  WalkRequest Advance(std::optional<Clock::time_point> deadline);
  void TakeToolResult(bool succeeded, RunSnapshot snapshot);
  void TakeTimes(const FileTimes::Inquiry& inquiry);

  // After Done.
  bool Succeeded() const { return succeeded; }
  // The tree that the walk began on is gone, at least in part.
  bool LostTree() const;

 private:
  enum class Stage { Enter, Publish, Uses, Start, Children, Own, Translate, Tool };

  struct Frame {
    Frame(CXmlNode* n, std::int32_t m, Stage s = Stage::Enter) : node(n), mode(m), stage(s) {}

    CXmlNode* node;
    std::int32_t mode;
    Stage stage;
    bool isUsed = false;              // an application that is built for the one below this frame
    std::vector<CXmlNode*> children;  // a copy: a reordering host does no harm
    std::size_t next = 0;
    bool childrenGood = true;     // each child was found up to date
    std::uint64_t goodEpoch = 0;  // with file times of this epoch
    // When each child was good: the latest of the outputs below, nothing when one of a kind is
    // among them that only the tree itself tells about.
    std::optional<std::int64_t> newestOutput = INT64_MIN;
    std::uint64_t askedEpoch = 0;  // of the file times when the node last asked for some
  };

  // Each step gives whether the walk can go on at once; otherwise `request` says why not.
  bool Step(WalkRequest& request);
  bool Enter(Frame& frame);
  bool Publish(Frame& frame, WalkRequest& request);
  // Builds what an application uses before it.
  bool EnterUsed(Frame& frame);
  void FindOrder(const CXmlNode& node);
  // Applications among the children come in the order of a build, all others keep their places.
  void OrderChildren(Frame& frame) const;
  bool UsesWhatWasBuilt(const CXmlNode& node) const;
  CXmlNode* PublishRoot() const;
  bool StartNode(Frame& frame);
  bool EnterNextChild(Frame& frame);
  bool DoOwnWork(Frame& frame, WalkRequest& request);
  bool RequestTool(Frame& frame, WalkRequest& request);
  void FinishTool(Frame& frame);
  void LeaveTool();
  bool Clean(CXmlNode& node);
  bool IsUntrusted(const WalkRequest& request);
  bool IsKept(const CXmlNode& node, const WalkRequest& request);
  void WarnOfSameFiles(const CXmlNode& node);
  bool AreChildrenGood(const Frame& frame) const;
  bool MayAsk(const Frame& frame) const;
  bool AskForTimes(Frame& frame, WalkRequest& request);
  bool IsUpToDate(const Frame& frame, Staleness& staleness) const;
  RunSnapshot BeginRun(const CXmlNode& node, const WalkRequest& request);
  std::optional<std::int64_t> NewestOutputOf(const Frame& frame) const;
  // The frame's node is dealt with: its parent goes on.
  bool Return(bool success, bool isGood);
  bool IsOver(const std::optional<Clock::time_point>& deadline) const;

  CProjectModel& model;
  OutputGuard guard;
  const bool asksForTimes;
  std::int32_t mode = ModeBuild;
  std::string givenTool;  // of a walk that runs one named tool
  bool usesGivenTool = false;
  std::vector<Frame> frames;
  bool succeeded = true;
  bool toolSucceeded = false;
  bool isRecorded = false;  // the run of this tool
  RunSnapshot runSnapshot;
  std::string folderBefore;  // the current folder while a tool runs
  std::string messageFile;
  std::uint64_t treeEpoch = 0;
  // Of a project with several applications; null before the walk knows of any.
  std::unique_ptr<ApplicationOrder> order;
  std::vector<CXmlNode*> used;  // by the application that the walk began on
  std::size_t nextUsed = 0;
  std::vector<const CXmlNode*> built;  // applications whose tool has run
  std::uint64_t publishedEpoch = 0;    // the whole tree below the start is published
  unsigned stepCount = 0;
  std::unordered_set<const CXmlNode*> repeated;  // listed again further on, and built there
  NodesAhead ahead;
  std::size_t nodesAhead = 512;  // how far to look ahead for files to examine
  std::optional<Clock::time_point> currentDeadline;
};

}  // namespace tarn
