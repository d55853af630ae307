// Applications whose files another program has moved or removed, and corrected in the project file:
// a save goes where that names them by then.

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

// A reference of one version of a file that is another one, or none, in a later version.
struct ReferenceChange {
  std::string from;
  std::string to;  // empty if it is gone
};

std::vector<ReferenceChange> FindReferenceChanges(const CXmlNode& before, const CXmlNode& after) {
  std::vector<ReferenceChange> changes;
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

}  // namespace

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
    for (const ReferenceChange& each : FindReferenceChanges(before, after)) {
      std::string from;
      std::string to;
      MakeAbsolutePath(each.from, from, nullptr);
      MakeAbsolutePath(each.to, to, nullptr);
      for (const std::size_t part : owner.parts) {
        const bool isNamed = pending[part].absolute == from && !pending[part].isPlanned;
        if (isNamed && from != to) FollowPart(owner, pending[part], each.from, to);
      }
    }
  }
}

// `target` is empty if the owner's file names the part no longer. What is unchanged goes then; what
// was changed stays a part, which is a conflict.
void CProjectModel::FollowPart(PendingFile& owner, PendingFile& part, const std::string& reference,
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
      owner.keptParts.push_back(reference);
    }
    return;
  }
  part.isPlanned = true;
  const std::string from = FolderOf(part.absolute);
  const std::string to = FolderOf(target);
  guard.NoteMoved(part.absolute, target, MoveText(files, *known, from, to));
  part.plan = FileSaver(files, guard, types).Prepare(target, MoveText(files, part.text, from, to));
}

}  // namespace tarn
