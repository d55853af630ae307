#include "project/FileSaver.h"

#include <algorithm>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/StableForm.h"
#include "project/TreeMerge.h"
#include "project/TreeText.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

CXmlNode* FindPart(const CXmlNode& root, const std::string& file) {
  const auto children = root.GetChildren();
  const auto found = std::find_if(children.begin(), children.end(), [&file](const CXmlNode* child) {
    return OrEmpty(child->GetAttrValue("Extern")) == file;
  });
  return found == children.end() ? nullptr : *found;
}

// Removes the reference from the base, so that the merge treats ours as an addition.
void KeepPart(CXmlNode& base, const std::string& file, std::vector<TreeConflict>& conflicts) {
  const CXmlNode* const part = FindPart(base, file);
  if (part == nullptr) return;
  conflicts.push_back({OrEmpty(part->GetAttrValue("Header")), "changed here, removed there"});
  base.RemoveChild(part);
}

// Renames the reference, so that the merge matches it with the one that another program renamed.
void RenamePart(CXmlNode& root, const PartChange& change) {
  CXmlNode* const part = FindPart(root, change.from);
  if (part == nullptr) return;
  if (OrEmpty(part->GetAttrValue("Path")) == change.from) part->SetAttrValue("Path", change.to);
  part->SetAttrValue("Extern", change.to);
}

}  // namespace

bool HoldSameTree(const std::string& one, const std::string& other) {
  if (one == other) return true;
  CXmlNode first;
  CXmlNode second;
  return ReadWholeTree(one, first) && ReadWholeTree(other, second) && IsSameTree(first, second);
}

std::string FileSaver::Settle(const std::string& absolute, const CXmlNode& tree) const {
  const std::string* const known = guard_.FormOf(absolute);
  const std::string former = known == nullptr ? std::string() : *known;
  CXmlNode base;
  ReadWholeTree(former, base);  // for a damaged file, the part that was parsed
  CXmlNode settled;
  settled.CopyFrom(tree);
  MakeStable(base, settled, types_);
  return WriteTree(settled, former);
}

SavePlan FileSaver::Prepare(const std::string& absolute, const std::string& text,
                            const std::vector<PartChange>& parts) const {
  SavePlan plan;
  plan.absolute = absolute;
  plan.own = plan.text = text;
  const Result<std::string> disk = files_.ReadWholeFile(absolute);
  const std::string* const known = guard_.ContentOf(absolute);
  if (!disk && disk.GetError().code == ErrorCode::NotFound) {
    plan.wasRemoved = known != nullptr;
    // Must not re-create a folder that was moved, with half a project in it.
    const std::string folder = FolderOf(absolute);
    if (plan.wasRemoved && !files_.Exists(folder))
      plan.problem = "the folder " + folder + " does not exist";
    return plan;
  }
  if (!disk) {
    // The existing file can't be read and may contain another program's changes.
    plan.problem = disk.GetError().text;
    return plan;
  }
  plan.isNeeded = !HoldSameTree(plan.text, *disk);
  if (!plan.isNeeded) plan.text = *disk;
  if (plan.isNeeded && known != nullptr && *disk != *known) Merge(plan, *disk, *known, parts);
  return plan;
}

void FileSaver::Merge(SavePlan& plan, const std::string& disk, const std::string& known,
                      const std::vector<PartChange>& parts) const {
  CXmlNode base;
  CXmlNode theirs;
  CXmlNode ours;
  if (!ReadWholeTree(disk, theirs)) {
    plan.conflicts.push_back({"", "damaged there"});
    return;
  }
  if (!ReadWholeTree(known, base) || !ReadWholeTree(plan.text, ours)) {
    plan.conflicts.push_back({"", "read in part here, changed there"});
    return;
  }
  for (const PartChange& each : parts) {
    if (each.to.empty()) {
      KeepPart(base, each.from, plan.conflicts);
    } else {
      RenamePart(base, each);
      RenamePart(ours, each);
    }
  }
  MergedTree merged =
      MergeTrees(base, theirs, ours, [&](const std::string& from, const std::string& to) {
        return WasMoved(plan.absolute, from, to);
      });
  plan.text = WriteTree(*merged.root, disk);
  plan.isMerged = true;
  plan.conflicts.insert(plan.conflicts.end(), merged.conflicts.begin(), merged.conflicts.end());
  plan.isNeeded = !IsSameTree(*merged.root, theirs);
  if (!plan.isNeeded) plan.text = disk;
}

bool FileSaver::WasMoved(const std::string& absolute, const std::string& from,
                         const std::string& to) const {
  const auto find = [&](const std::string& path) {
    return files_.CheckExists(IsRelativePath(path)
                                  ? files_.Canonical(JoinPath(FolderOf(absolute), path))
                                  : ToNativeSeparators(path));
  };
  const Result<bool> former = find(from);
  const Result<bool> present = find(to);
  return former && !*former && present && *present;
}

Status FileSaver::KeepOther(const SavePlan& plan, SavedFile& report) const {
  report.path = plan.absolute;
  report.isMerged = plan.isMerged;
  report.wasRemoved = plan.wasRemoved;
  report.conflicts = plan.conflicts;
  const bool losesNothing = plan.isMerged && plan.conflicts.empty();
  if (losesNothing) return {};
  return guard_.BackUp(plan.absolute, report.copy, report.copyReason);
}

Status FileSaver::Write(const SavePlan& plan, SavedFile& report) const {
  const Status backedUp = KeepOther(plan, report);
  const Status written = backedUp ? files_.WriteWholeFile(plan.absolute, plan.text) : backedUp;
  if (written) guard_.RecordWritten(plan.absolute, plan.text);
  return written;
}

}  // namespace tarn
