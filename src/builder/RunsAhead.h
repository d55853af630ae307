#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "builder/OutputGuard.h"
#include "builder/RunSnapshot.h"
#include "project/NodeTypes.h"

namespace tarn {

class CXmlNode;

// A tool run that a walk starts before it reaches the node.
struct RunAhead {
  CXmlNode* node = nullptr;
  std::string tool;
  std::string files;
  std::string options;
  RunSnapshot snapshot;    // must be taken around the run
  bool isStarted = false;  // set by the caller of the walk
  std::vector<NamedOutput> outputs = {};
  bool writesOnlyOutputs = false;
};

// The window of a build walk's lookahead: which nodes come next, and which of their tools have been
// started early. The tools are started in the order in which the walk reaches their nodes, and past
// no node that needs its tool and can't be started: whatever that tool makes, such as a generated
// header, exists when later tools start. So the result is that of a serial build as long as the
// started tools don't depend on each other, which the tool manager checks when a run is delivered.
//
// Holds pointers to nodes of an unchanged tree. Main thread only.
class RunsAhead {
 public:
  // Sets the number of tools that may run at the same time; there is no lookahead below 2.
  void SetJobs(int count);
  bool IsEnabled() const { return most_ > 0; }

  // Lists the nodes below an application in the order of the walk, which starts with `first` and
  // leaves out `repeated`.
  void Begin(const NodeTypes& types, const CXmlNode& application,
             const std::vector<CXmlNode*>& first,
             const std::unordered_set<const CXmlNode*>& repeated);
  // Moves the window to the node that the walk has reached. Returns false if it isn't listed.
  bool Reach(const CXmlNode& node);

  // Returns the next node to be considered; nullptr if there is none, if enough runs have been
  // started, or after Block. Followed by one of the three functions below.
  CXmlNode* GetNext() const;
  // The node needs no tool.
  void Skip() { ++next_; }
  // The node's tool is started early.
  void Add(std::shared_ptr<RunAhead> run);
  // The node's tool can't be started early: nothing after it is considered until it is reached.
  void Block() { blocked_ = next_; }

  // Removes runs that the caller of the walk couldn't start, and blocks at the first of them.
  void RemoveUnstarted();
  // Returns the run that was started for the node and removes it; null if there is none.
  std::shared_ptr<RunAhead> Take(const CXmlNode& node);
  bool Has(const CXmlNode& node) const;
  // Returns true if there are runs that were not taken.
  bool HasAny() const { return !runs_.empty(); }
  // Removes all runs, and considers their nodes no more.
  void Clear();

 private:
  void List(const NodeTypes& types, CXmlNode& node,
            const std::unordered_set<const CXmlNode*>& skipped);

  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  std::size_t most_ = 0;  // most runs that may be started and not taken
  // Current limit. Planning runs that are refused costs time, so it is 1 after a refusal, and is
  // doubled for each run that is started.
  std::size_t limit_ = 0;
  std::vector<CXmlNode*> nodes_;
  std::size_t reached_ = 0;  // index after the node that the walk has reached
  std::size_t next_ = 0;
  std::size_t blocked_ = kNone;
  std::deque<std::shared_ptr<RunAhead>> runs_;  // in order
};

}  // namespace tarn
