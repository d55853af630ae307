// Applications whose files another program has moved or removed, and corrected in the project file:
// a save goes where that names them by then.

#include <algorithm>
#include <set>

#include "platform/files/RelativeName.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/ChildPairs.h"
#include "project/ProjectModel.h"
#include "project/TreeText.h"

namespace tarn {

namespace {

std::string ReferenceOf(const CXmlNode& node) {
  return TextOf(node.GetAttrValue("Extern"));
}

// References of one version of a file that are another one, or none, in a later version.
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

// References of the later version that the earlier one has neither by file nor by label.
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

// Paths of files that are there lead to the same files from the other folder.
void MovePaths(FileSystem& files, CXmlNode& node, const std::string& from, const std::string& to) {
  for (CXmlNode* child : node.GetChildren()) {
    if (!IsContentNode(*child)) continue;
    const std::string path = TextOf(child->GetAttrValue("Path"));
    const std::string absolute = files.Canonical(JoinPath(from, path));
    if (!path.empty() && IsRelativePath(path) && files.Exists(absolute)) {
      const std::string relative = RelativeNameOnDisk(files, to, absolute);
      child->SetAttrValue("Path", relative.empty() ? absolute : relative);
    }
    MovePaths(files, *child, from, to);
  }
}

// The text of an application file as it reads in another folder. Sources that were moved along with
// it keep their paths.
std::string MoveText(FileSystem& files, const std::string& text, const std::string& from,
                     const std::string& to) {
  CXmlNode root;
  if (from == to || !ReadWholeTree(text, root)) return text;
  const std::string path = TextOf(root.GetAttrValue("Path"));
  // Its paths are not relative to where it is.
  if (!path.empty() && path != ReferenceOf(root)) return text;
  MovePaths(files, root, from, to);
  return WriteTree(root, text);
}

void CollectPaths(const CXmlNode& node, std::set<std::string>& paths) {
  for (const CXmlNode* child : node.GetChildren()) {
    if (!IsContentNode(*child)) continue;
    const std::string path = TextOf(child->GetAttrValue("Path"));
    if (!path.empty()) paths.insert(FoldCase(path));
    CollectPaths(*child, paths);
  }
}

// Returns the share of files that two application files have in common, 0 to 1. Without any file
// in either they count as alike.
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

// Finds where a part is now that the file of its owner, in the version `after`, names neither by
// its path nor by its label: it was moved and renamed. That is the new part which lists most of the
// files that it has listed. Removes what it returns from `added`; empty if there is none, or if the
// file is still where it was.
std::string CProjectModel::FindRenamedPart(const std::string& absolute,
                                           std::vector<std::string>& added) {
  const std::string* const known = guard.TextOf(absolute);
  if (known == nullptr || files.Exists(absolute)) return {};
  auto best = added.end();
  double most = 0.5;
  for (auto each = added.begin(); each != added.end(); ++each) {
    std::string target;
    MakeAbsolutePath(*each, target, nullptr);
    const Result<std::string> disk = files.ReadWholeFile(target);
    if (!disk) continue;
    const std::string moved = MoveText(files, *known, FolderOf(absolute), FolderOf(target));
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

// Plans the files of parts that the files of their owners, of which there is another version on the
// disk, name elsewhere or no longer. An owner comes after its parts.
void CProjectModel::FollowParts(std::vector<PendingFile>& pending) {
  for (std::size_t i = pending.size(); i-- > 0;) {
    PendingFile& owner = pending[i];
    const std::string& path = owner.isPlanned ? owner.plan.absolute : owner.absolute;
    const std::string* const known = guard.TextOf(path);
    if (owner.parts.empty() || known == nullptr) continue;
    const Result<std::string> disk = files.ReadWholeFile(path);
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
      MakeAbsolutePath(each.from, from, nullptr);
      if (each.to.empty()) each.to = FindRenamedPart(from, added);
      MakeAbsolutePath(each.to, to, nullptr);
      for (const std::size_t part : owner.parts) {
        const bool isNamed = pending[part].absolute == from && !pending[part].isPlanned;
        if (isNamed && from != to) FollowPart(owner, pending[part], each, to);
      }
    }
  }
}

// `target` is empty if the owner's file names the part no longer. What is unchanged goes then; what
// was changed stays a part, which is a conflict.
void CProjectModel::FollowPart(PendingFile& owner, PendingFile& part, const PartChange& change,
                               const std::string& target) {
  const std::string* const known = guard.TextOf(part.absolute);
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
  guard.NoteMoved(part.absolute, target, MoveText(files, *known, from, to));
  part.plan = FileSaver(files, guard, types).Prepare(target, MoveText(files, part.text, from, to));
}

}  // namespace tarn
