#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "builder/BuildRecordStore.h"
#include "builder/FileTimes.h"
#include "xml/XmlNode.h"

namespace tarn {

// Nodes that were looked at when their files were asked for, in the order in which the walk comes
// to them. Most turn out to be good, and that shows from what was kept here: a large tree does not
// lie in the processor's cache, so a second look at a node costs as much as one at its file.
//
// Holds while the epoch of the file times stands still, which whoever changes a node ends.
class NodesAhead {
 public:
  // Starts anew.
  void Begin(std::uint64_t timesEpoch) {
    epoch = timesEpoch;
    nodes.clear();
    files.clear();
    next = 0;
  }
  // A node without nodes of its own that has to be judged by its files.
  void Add(const CXmlNode& node, std::int64_t lastBuilt) {
    nodes.push_back({&node, lastBuilt, files.size()});
  }
  // A file of the node that was added last: first its output, then what that was made from. With a
  // `version` it has to be that one.
  void AddFile(const FileTimes::Look& look, const FileVersion* version) {
    files.push_back({&look, version, true});
  }
  // A program that the node was made with: its time doesn't matter, its version does.
  void AddProgram(const FileTimes::Look& look, const FileVersion& version) {
    files.push_back({&look, &version, false});
  }
  // The node added last needs more than this to be judged.
  void DropLast() {
    files.resize(nodes.back().firstFile);
    nodes.pop_back();
  }

  // When the node is the next one and certainly up to date: the time of its output. The next one is
  // taken off then, as well as when it is not good.
  std::optional<std::int64_t> TakeGood(const CXmlNode& node, std::uint64_t timesEpoch) {
    if (timesEpoch != epoch || next == nodes.size() || nodes[next].node != &node) return {};
    const std::size_t first = nodes[next].firstFile;
    const std::int64_t lastBuilt = nodes[next].lastBuilt;
    const std::size_t end = ++next == nodes.size() ? files.size() : nodes[next].firstFile;
    // In the rules' own words (Staleness): the output has exactly the time that its tool reported,
    // and nothing that it was made from is missing or later.
    for (std::size_t i = first; i < end; ++i) {
      const FileTimes::Look& look = *files[i].look;
      if (!look.IsKnown() || !look.exists) return {};
      if (i != first && look.status.otherSpelling) return {};  // its name needs another check
      const std::int64_t time = look.status.modifiedSeconds;
      if (files[i].isTimed && (i == first ? time != lastBuilt : time > lastBuilt)) return {};
      if (files[i].version != nullptr && !files[i].version->IsCertainly(look.status)) return {};
    }
    return lastBuilt;
  }

 private:
  struct Node {
    const CXmlNode* node;
    std::int64_t lastBuilt;
    std::size_t firstFile;
  };

  struct File {
    const FileTimes::Look* look;
    const FileVersion* version;  // may be null
    bool isTimed;
  };

  std::uint64_t epoch = 0;
  std::vector<Node> nodes;
  std::vector<File> files;
  std::size_t next = 0;
};

}  // namespace tarn
