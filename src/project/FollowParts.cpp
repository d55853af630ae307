// Handles application files that another program moved or removed, and whose references it updated
// in the project file: a save writes them to the path that the project file names now.
//
// Finds moved parts with ChildPairs; a part that was also renamed is recognized by its contents.

#include "project/TreeSaver.h"

#include <algorithm>
#include <set>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/ChildPairs.h"
#include "project/MovedText.h"
#include "project/TreeText.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

std::string ReferenceOf(const CXmlNode& node) {
  return OrEmpty(node.GetAttrValue("Extern"));
}

// Returns the references of one version of a file that are different or missing in a later version.
std::vector<PartChange> FindPartChanges(const CXmlNode& before, const CXmlNode& after) {
  std::vector<PartChange> changes;
  const auto former = before.GetChildren();
  const auto present = after.GetChildren();
  const ChildPairs pairs(former, present);
  for (std::size_t i = 0; i < former.size(); ++i) {
    const std::size_t partner = pairs.PartnerOf(i);
    const std::string from = ReferenceOf(*former[i]);
    const std::string to = partner == ChildPairs::kNone ? "" : ReferenceOf(*present[partner]);
    if (!from.empty() && to != from) changes.push_back({from, to});
  }
  return changes;
}

// Returns the references of the later version that match none of the earlier version by file or
// label.
std::vector<std::string> FindNewReferences(const CXmlNode& before, const CXmlNode& after) {
  std::vector<std::string> added;
  const auto present = after.GetChildren();
  const ChildPairs pairs(before.GetChildren(), present);
  for (std::size_t i = 0; i < present.size(); ++i) {
    const std::string reference = ReferenceOf(*present[i]);
    if (pairs.SourceOf(i) == ChildPairs::kNone && !reference.empty()) added.push_back(reference);
  }
  return added;
}

void CollectPaths(const CXmlNode& node, std::set<std::string>& paths) {
  for (const CXmlNode* child : node.GetChildren()) {
    if (!IsContentNode(*child)) continue;
    const std::string path = OrEmpty(child->GetAttrValue("Path"));
    if (!path.empty()) paths.insert(FoldCase(path));
    CollectPaths(*child, paths);
  }
}

// Returns the fraction, 0 to 1, of the files that two application files have in common; 1 if
// neither has any.
double CompareContents(const std::string& one, const std::string& other) {
  CXmlNode trees[2];
  if (!ReadWholeTree(one, trees[0]) || !ReadWholeTree(other, trees[1])) return 0;
  std::set<std::string> paths[2];
  for (int i = 0; i < 2; ++i) CollectPaths(trees[i], paths[i]);
  const std::size_t larger = std::max(paths[0].size(), paths[1].size());
  if (larger == 0) return 1;
  const auto isShared = [&](const std::string& path) { return paths[1].contains(path); };
  const auto shared = std::count_if(paths[0].begin(), paths[0].end(), isShared);
  return static_cast<double>(shared) / static_cast<double>(larger);
}

}  // namespace

// Returns the new path of a part that was both moved and renamed, so that its owner's file in the
// version `after` has neither its path nor its label. It is the new part with the largest share of
// the same files, more than half. Removes the result from `added`. Returns an empty string if there
// is none or if the old file still exists.
std::string TreeSaver::FindRenamedPart(const std::string& absolute,
                                       std::vector<std::string>& added) {
  const std::string* const known = guard_.ContentOf(absolute);
  if (known == nullptr || files_.Exists(absolute)) return {};
  auto best = added.end();
  double most = 0.5;
  for (auto each = added.begin(); each != added.end(); ++each) {
    std::string target;
    paths_.MakeAbsolutePath(*each, target, nullptr);
    const Result<std::string> disk = files_.ReadWholeFile(target);
    if (!disk) continue;
    const std::string moved = MoveText(files_, *known, FolderOf(absolute), FolderOf(target));
    const double alike = CompareContents(moved, *disk);
    if (alike <= most) continue;
    best = each;
    most = alike;
  }
  if (best == added.end()) return {};
  const std::string found = *best;
  added.erase(best);
  return found;
}

// Plans the files of parts whose owner's file was changed on disk and now names the part elsewhere
// or no longer. Owners come after their parts.
void TreeSaver::FollowParts(std::vector<PendingFile>& pending) {
  for (std::size_t i = pending.size(); i-- > 0;) {
    PendingFile& owner = pending[i];
    const std::string& path = owner.isPlanned ? owner.plan.absolute : owner.absolute;
    const std::string* const known = guard_.ContentOf(path);
    if (owner.parts.empty() || known == nullptr) continue;
    const Result<std::string> disk = files_.ReadWholeFile(path);
    CXmlNode before;
    CXmlNode after;
    if (!disk || *disk == *known || !ReadWholeTree(*known, before) ||
        !ReadWholeTree(*disk, after)) {
      continue;
    }
    std::vector<std::string> added = FindNewReferences(before, after);
    for (PartChange& each : FindPartChanges(before, after)) {
      std::string from;
      std::string to;
      paths_.MakeAbsolutePath(each.from, from, nullptr);
      if (each.to.empty()) each.to = FindRenamedPart(from, added);
      paths_.MakeAbsolutePath(each.to, to, nullptr);
      for (const std::size_t part : owner.parts) {
        const bool isNamed = pending[part].absolute == from && !pending[part].isPlanned;
        if (isNamed && from != to) FollowPart(owner, pending[part], each, to);
      }
    }
  }
}

// `target` is empty if the owner's file no longer names the part. An unchanged part is then
// dropped; a changed one is kept, which is a conflict.
void TreeSaver::FollowPart(PendingFile& owner, PendingFile& part, const PartChange& change,
                           const std::string& target) {
  const std::string* const known = guard_.ContentOf(part.absolute);
  if (known == nullptr) return;
  if (target.empty()) {
    part.isPlanned = HoldSameTree(part.text, *known);
    if (part.isPlanned) {
      part.plan.absolute = part.absolute;
      part.plan.own = part.plan.text = part.text;
      part.plan.isNeeded = false;
    } else {
      owner.changedParts.push_back(change);
    }
    return;
  }
  owner.changedParts.push_back(change);
  part.isPlanned = true;
  const std::string from = FolderOf(part.absolute);
  const std::string to = FolderOf(target);
  guard_.RecordMoved(part.absolute, target, MoveText(files_, *known, from, to));
  part.plan =
      FileSaver(files_, guard_, types_).Prepare(target, MoveText(files_, part.text, from, to));
}

}  // namespace tarn
