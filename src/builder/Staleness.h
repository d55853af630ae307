#pragma once

#include <string>

#include "builder/FileTimes.h"
#include "builder/NodesAhead.h"
#include "builder/RecordCheck.h"
#include "builder/StaleVerdict.h"
#include "project/NodeTypes.h"
#include "xml/XmlNode.h"

namespace tarn {

// Decides whether the outputs of nodes are up to date, from the nodes' attributes, their types, the
// times of files in whole seconds, and the nodes' build records. Equal times are up to date; only a
// later source is stale, while an output must have exactly the time that its tool reported. A node
// whose record holds no more loses its `LastBuilt`. Names in the project are looked up without
// regard to letter case; the names that tools report are exact.
class Staleness {
 public:
  enum class Unknown {
    Examine,  // a file whose time is not known yet is looked at
    Miss,     // it is taken for missing; HasMissed then says that the answer is worth nothing
  };

  Staleness(const NodeTypes& nodeTypes, FileTimes& fileTimes, RecordCheck& recordCheck,
            Unknown unknown = Unknown::Examine)
      : types(nodeTypes), times(fileTimes), records(recordCheck), onUnknown(unknown) {}

  // From now on nodes that no tool can bring up to date don't count: those below an element of
  // unknown type, and those that were published without a tool.
  void IgnoreUnbuildable() { ignoresUnbuildable = true; }

  // Nothing to do here or below; the first stale descendant ends the search.
  bool IsUpToDate(CXmlNode* node);
  // The same for a node whose children are known to be good.
  bool IsUpToDateAlone(CXmlNode& node);
  // The same for an application when every file that it is made of exists and is no later than
  // `newest`; false also when the files themselves have to be asked.
  bool IsUpToDateSince(CXmlNode& node, std::int64_t newest);
  // The time that the tool reported for the node's output; 0 when none did.
  static std::int64_t LastBuiltOf(const CXmlNode& node);
  // The rules of the node itself.
  StaleVerdict Examine(CXmlNode& node);

  bool HasMissed() const { return hasMissed; }

  // Puts the files that IsUpToDateAlone may look at into an inquiry; for an application without
  // those that it is made of, which may be many. A node that these files alone decide about is
  // added to `ahead`.
  void AskForFiles(const CXmlNode& node, FileTimes::Inquiry& inquiry, NodesAhead& ahead);
  void AskForParts(const CXmlNode& application, FileTimes::Inquiry& inquiry);

 private:
  const FileTimes::Look& Query(const char* path);
  FileTimes::Time TimeOf(const char* path) { return Query(path).GetTime(); }
  StaleVerdict ExamineTimes(const CXmlNode& node);
  StaleVerdict ExamineRecord(CXmlNode& node);
  StaleVerdict ExamineParts(const CXmlNode& application, std::int64_t outputTime);
  StaleVerdict ExamineDependencies(const CXmlNode& node, std::int64_t outputTime);

  const NodeTypes& types;
  FileTimes& times;
  RecordCheck& records;
  Unknown onUnknown;
  bool hasMissed = false;
  bool ignoresUnbuildable = false;
};

// Calls `onItem(text)` for each file that an application hands to its tool, in tree order: outputs
// of everything below `root` that is neither excluded from the build nor from the link.
template <class OnItem>
void ForEachLinkFile(const NodeTypes& types, const CXmlNode* node, bool useOutput,
                     const CXmlNode* root, OnItem&& onItem);

// An attribute equals "Yes" exactly.
inline bool IsExactlyYes(const CXmlNode& node, std::string_view name) {
  const char* value = node.GetAttrValue(name);
  return value != nullptr && std::string_view(value) == "Yes";
}

template <class OnItem>
void ForEachLinkFile(const NodeTypes& types, const CXmlNode* node, bool useOutput,
                     const CXmlNode* root, OnItem&& onItem) {
  if (node == nullptr) return;
  if (node != root && (types.FlagsOf(*node) & kTypeInBuild) == 0) return;
  if (IsExactlyYes(*node, "Exclude") || IsExactlyYes(*node, "LinkExclude")) return;
  const char* outputFile = node->GetAttrValue("OutputFile");
  const bool isGrouping = node == root || (outputFile != nullptr && *outputFile == '\0');
  if (isGrouping) {
    bool hadContent = false;
    for (int i = 0; i < node->GetChildCount(); ++i) {
      const CXmlNode* child = node->GetChild(i);
      if (!IsContentNode(*child)) continue;
      hadContent = true;
      ForEachLinkFile(types, child, useOutput, root, onItem);
    }
    if (hadContent) return;
  }
  const char* item = useOutput ? outputFile : node->GetAttrValue("Path");
  if (item != nullptr && *item != '\0') onItem(item);
}

}  // namespace tarn
