#include "builder/RunsAhead.h"

#include <algorithm>

#include "builder/Staleness.h"
#include "project/TreeSearch.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

// Started runs for each job: while a slow one is waited for, the jobs continue with later ones.
constexpr std::size_t kRunsPerJob = 32;
// Limit for all jobs, since runs that have ended keep their messages.
constexpr std::size_t kMostRuns = 256;

}  // namespace

void RunsAhead::SetJobs(int count) {
  const std::size_t jobs = count < 2 ? 0 : static_cast<std::size_t>(count);
  most_ = limit_ = std::min(jobs * kRunsPerJob, std::max(jobs, kMostRuns));
}

void RunsAhead::Begin(const NodeTypes& types, const CXmlNode& application,
                      const std::vector<CXmlNode*>& first,
                      const std::unordered_set<const CXmlNode*>& repeated) {
  nodes_.clear();
  for (CXmlNode* const each : first) {
    if (!repeated.contains(each)) nodes_.push_back(each);
  }
  std::unordered_set<const CXmlNode*> skipped = repeated;
  skipped.insert(first.begin(), first.end());
  reached_ = next_ = 0;
  blocked_ = kNone;
  for (int i = 0; i < application.GetChildCount(); ++i) {
    CXmlNode* const child = application.GetChild(i);
    if (IsContentNode(*child)) List(types, *child, skipped);
  }
}

void RunsAhead::List(const NodeTypes& types, CXmlNode& node,
                     const std::unordered_set<const CXmlNode*>& skipped) {
  if (skipped.contains(&node) || (types.FlagsOf(node) & kTypeBuild) == 0) return;
  if (IsExactlyYes(node, "Exclude")) return;
  for (int i = 0; i < node.GetChildCount(); ++i) {
    CXmlNode* const child = node.GetChild(i);
    if (IsContentNode(*child)) List(types, *child, skipped);
  }
  nodes_.push_back(&node);
}

bool RunsAhead::Reach(const CXmlNode& node) {
  const auto place =
      std::find(nodes_.begin() + static_cast<std::ptrdiff_t>(reached_), nodes_.end(), &node);
  if (place == nodes_.end()) return false;
  reached_ = static_cast<std::size_t>(place - nodes_.begin()) + 1;
  next_ = std::max(next_, reached_);
  if (blocked_ < reached_) blocked_ = kNone;
  return true;
}

CXmlNode* RunsAhead::GetNext() const {
  const bool isFull = runs_.size() >= limit_;
  return isFull || blocked_ != kNone || next_ >= nodes_.size() ? nullptr : nodes_[next_];
}

void RunsAhead::Add(std::shared_ptr<RunAhead> run) {
  runs_.push_back(std::move(run));
  ++next_;
}

void RunsAhead::RemoveUnstarted() {
  const auto first =
      std::find_if(runs_.begin(), runs_.end(), [](const auto& each) { return !each->isStarted; });
  limit_ = first == runs_.end() ? std::min(limit_ * 2, most_) : 1;
  if (first == runs_.end()) return;
  const auto place = std::find(nodes_.begin(), nodes_.end(), (*first)->node);
  next_ = blocked_ = static_cast<std::size_t>(place - nodes_.begin());
  runs_.erase(first, runs_.end());
}

std::shared_ptr<RunAhead> RunsAhead::Take(const CXmlNode& node) {
  const auto place = std::find_if(runs_.begin(), runs_.end(),
                                  [&](const auto& each) { return each->node == &node; });
  if (place == runs_.end()) return nullptr;
  std::shared_ptr<RunAhead> run = std::move(*place);
  runs_.erase(place);
  return run;
}

bool RunsAhead::Has(const CXmlNode& node) const {
  return std::any_of(runs_.begin(), runs_.end(),
                     [&](const auto& each) { return each->node == &node; });
}

void RunsAhead::Clear() {
  runs_.clear();
  blocked_ = next_;
}

}  // namespace tarn
