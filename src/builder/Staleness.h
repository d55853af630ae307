#pragma once

#include <string>

#include "builder/MtimeCache.h"
#include "builder/Prefetch.h"
#include "builder/RecordCheck.h"
#include "builder/StaleVerdict.h"
#include "project/NodeTypes.h"

namespace tarn {

class CXmlNode;

// Decides if the outputs of nodes are up to date, based on the nodes' attributes and types, file
// times in whole seconds, and build records. An input with the same time as the output is up to
// date and a newer one is not, while the output itself must have exactly the time that its tool
// reported. A node whose record is invalid loses its `LastBuilt`. Names in the project are looked
// up ignoring letter case; names reported by tools are exact.
class Staleness {
 public:
  enum class OnUnknown {
    Examine,         // query files whose time is not cached
    TreatAsMissing,  // treat them as missing; if HasMissed() is then true, the result is
                     // meaningless
  };

  Staleness(const NodeTypes& nodeTypes, MtimeCache& fileTimes, RecordCheck& recordCheck,
            OnUnknown unknown = OnUnknown::Examine)
      : types_(nodeTypes), times_(fileTimes), records_(recordCheck), onUnknown_(unknown) {}

  // Ignores nodes that no tool can bring up to date from now on: those below an element of unknown
  // type, and those published without a tool.
  void IgnoreUnbuildable() { ignoresUnbuildable_ = true; }

  // Returns true if neither the node nor its descendants are out of date. Stops at the first stale
  // descendant.
  bool IsUpToDate(CXmlNode* node);
  // Returns true if the node or a descendant is out of date because it was never built, so that
  // IsUpToDate() returns false. Queries no files.
  bool HasUnbuilt(const CXmlNode& node) const;
  // Same as IsUpToDate() for a node whose children are known to be up to date.
  bool IsOwnOutputUpToDate(CXmlNode& node);
  // Same for an application, without querying its files, if all of them are known to exist and to
  // be no newer than `newest`. Returns false also if the files have to be checked individually.
  bool IsUpToDateSince(CXmlNode& node, std::int64_t newest);
  // Returns the time that the tool reported for the node's output; 0 if none.
  static std::int64_t LastBuiltOf(const CXmlNode& node);
  // Returns why the node itself is out of date.
  StaleVerdict Examine(CXmlNode& node);

  // Returns true if a file time was needed that is not cached (see OnUnknown::TreatAsMissing).
  bool HasMissed() const { return hasMissed_; }

  // Adds the files that IsOwnOutputUpToDate may check to a batch; for an application, without
  // the possibly many files it consists of. A node that can be judged by these files alone is added
  // to `ahead`.
  void CollectInputs(const CXmlNode& node, MtimeCache::StatBatch& batch, Prefetch& ahead);
  void CollectParts(const CXmlNode& application, MtimeCache::StatBatch& batch);

 private:
  bool IsSkipped(const CXmlNode& node) const;
  bool IsJudged(const CXmlNode& node) const;
  const MtimeCache::Entry& Query(const char* path);
  MtimeCache::Time TimeOf(const char* path) { return Query(path).GetTime(); }
  StaleVerdict ExamineTimes(const CXmlNode& node);
  StaleVerdict ExamineRecord(CXmlNode& node);
  StaleVerdict ExamineParts(const CXmlNode& application, std::int64_t outputTime);
  StaleVerdict ExamineDependencies(const CXmlNode& node, std::int64_t outputTime);

  const NodeTypes& types_;
  MtimeCache& times_;
  RecordCheck& records_;
  OnUnknown onUnknown_;
  bool hasMissed_ = false;
  bool ignoresUnbuildable_ = false;
};

// Returns true if the attribute's value is exactly "Yes".
bool IsExactlyYes(const CXmlNode& node, std::string_view name);

}  // namespace tarn
