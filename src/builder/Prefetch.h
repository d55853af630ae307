#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "builder/BuildRecordStore.h"
#include "builder/MtimeCache.h"

namespace tarn {

class CXmlNode;

// Prefetch buffer: nodes that were visited when their file times were requested, in the order in
// which the walk reaches them. Most turn out to be up to date, and the data stored here is enough
// to decide that. A large tree does not fit into the processor's cache, so visiting a node again
// would cost as much as querying its file.
//
// Valid for one epoch of the file times. A change of a node starts a new epoch, except by the
// report of the tool that has just run, which the walk has reached.
class Prefetch {
 public:
  // Clears the buffer for a new epoch.
  void Begin(std::uint64_t timesEpoch) {
    epoch_ = timesEpoch;
    nodes_.clear();
    files_.clear();
    next_ = 0;
  }
  // Adds a node without child nodes that is to be judged by its files. If folders decide about it,
  // too, it is judged only as long as the change count of the file times is `changes`; 0 for none.
  void Add(const CXmlNode& node, std::int64_t lastBuilt, std::uint64_t changes) {
    nodes_.push_back({&node, lastBuilt, files_.size(), changes});
  }
  // Adds a file of the node added last: first its output, then its inputs. If `version` is not
  // null, the file has to have that version.
  void AddFile(const MtimeCache::Entry& entry, const FileVersion* version) {
    files_.push_back({&entry, version, true});
  }
  // Adds a program used to make the node: its version matters but not its time.
  void AddProgram(const MtimeCache::Entry& entry, const FileVersion& version) {
    files_.push_back({&entry, &version, false});
  }
  // Removes the node added last, which can't be judged by this data alone.
  void DropLast() {
    files_.resize(nodes_.back().firstFile);
    nodes_.pop_back();
  }

  // If the node is the next one and certainly up to date, returns the time of its output. Also
  // advances past a next node that is not up to date.
  std::optional<std::int64_t> PopIfUpToDate(const CXmlNode& node, std::uint64_t timesEpoch,
                                            std::uint64_t changes) {
    if (timesEpoch != epoch_ || next_ == nodes_.size() || nodes_[next_].node != &node) return {};
    const std::uint64_t expected = nodes_[next_].changes;
    const std::size_t first = nodes_[next_].firstFile;
    const std::int64_t lastBuilt = nodes_[next_].lastBuilt;
    const std::size_t end = ++next_ == nodes_.size() ? files_.size() : nodes_[next_].firstFile;
    if (expected != 0 && expected != changes) return {};
    // The rules of Staleness: the output has exactly the time that its tool reported, and no input
    // is missing or newer.
    for (std::size_t i = first; i < end; ++i) {
      const MtimeCache::Entry& entry = *files_[i].entry;
      if (!entry.IsKnown() || !entry.exists) return {};
      if (i != first && entry.status.otherSpelling) return {};  // its name needs another check
      const std::int64_t time = entry.status.modifiedSeconds;
      if (files_[i].isTimed && (i == first ? time != lastBuilt : time > lastBuilt)) return {};
      if (files_[i].version != nullptr && !files_[i].version->IsCertainly(entry.status)) return {};
    }
    return lastBuilt;
  }

 private:
  struct Node {
    const CXmlNode* node;
    std::int64_t lastBuilt;
    std::size_t firstFile;
    std::uint64_t changes;
  };

  struct File {
    const MtimeCache::Entry* entry;
    const FileVersion* version;  // may be null
    bool isTimed;
  };

  std::uint64_t epoch_ = 0;
  std::vector<Node> nodes_;
  std::vector<File> files_;
  std::size_t next_ = 0;
};

}  // namespace tarn
