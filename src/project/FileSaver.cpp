#include "project/FileSaver.h"

#include <algorithm>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/StableForm.h"
#include "project/TreeText.h"

namespace tarn {

namespace {

// Takes the references out of the base, so that a merge takes them for additions of this side.
std::vector<TreeConflict> KeepParts(CXmlNode& base, const std::vector<std::string>& parts) {
  std::vector<TreeConflict> conflicts;
  for (CXmlNode* child : base.GetChildren()) {
    const std::string file = TextOf(child->GetAttrValue("Extern"));
    if (std::find(parts.begin(), parts.end(), file) == parts.end()) continue;
    conflicts.push_back({TextOf(child->GetAttrValue("Header")), "changed here, removed there"});
    base.RemoveChild(child);
  }
  return conflicts;
}

}  // namespace

bool HoldSameTree(const std::string& one, const std::string& other) {
  if (one == other) return true;
  CXmlNode first;
  CXmlNode second;
  return ReadWholeTree(one, first) && ReadWholeTree(other, second) && IsSameTree(first, second);
}

std::string FileSaver::Settle(const std::string& absolute, const CXmlNode& tree) const {
  const std::string* const known = guard.FormOf(absolute);
  const std::string former = known == nullptr ? std::string() : *known;
  CXmlNode base;
  ReadWholeTree(former, base);  // of a damaged file as much as the tree has of it
  CXmlNode settled;
  settled.CopyFrom(tree);
  MakeStable(base, settled, types);
  return WriteTree(settled, former);
}

SavePlan FileSaver::Prepare(const std::string& absolute, const std::string& text,
                            const std::vector<std::string>& keptParts) const {
  SavePlan plan;
  plan.absolute = absolute;
  plan.own = plan.text = text;
  const Result<std::string> disk = files.ReadWholeFile(absolute);
  const std::string* const known = guard.TextOf(absolute);
  if (!disk && disk.GetError().code == ErrorCode::NotFound) {
    plan.wasRemoved = known != nullptr;
    // A folder that was moved must not come back with half a project in it.
    const std::string folder = FolderOf(absolute);
    if (plan.wasRemoved && !files.Exists(folder))
      plan.problem = "the folder " + folder + " does not exist";
    return plan;
  }
  if (!disk) {
    // What is there and can't be read may be what another program wrote.
    plan.problem = disk.GetError().text;
    plan.isNeeded = known == nullptr || plan.text != *known;
    return plan;
  }
  plan.isNeeded = !HoldSameTree(plan.text, *disk);
  if (!plan.isNeeded) plan.text = *disk;
  CXmlNode base;
  CXmlNode theirs;
  CXmlNode ours;
  const bool canMerge = plan.isNeeded && known != nullptr && *disk != *known &&
                        ReadWholeTree(*known, base) && ReadWholeTree(*disk, theirs) &&
                        ReadWholeTree(plan.text, ours);
  if (!canMerge) return plan;
  plan.conflicts = KeepParts(base, keptParts);
  MergedTree merged = MergeTrees(base, theirs, ours);
  plan.text = WriteTree(*merged.root, *disk);
  plan.isMerged = true;
  plan.conflicts.insert(plan.conflicts.end(), merged.conflicts.begin(), merged.conflicts.end());
  plan.isNeeded = !IsSameTree(*merged.root, theirs);
  if (!plan.isNeeded) plan.text = *disk;
  return plan;
}

Status FileSaver::KeepOther(const SavePlan& plan, SavedFile& report) const {
  report.path = plan.absolute;
  report.isMerged = plan.isMerged;
  report.wasRemoved = plan.wasRemoved;
  report.conflicts = plan.conflicts;
  const bool losesNothing = plan.isMerged && plan.conflicts.empty();
  if (losesNothing) return {};
  return guard.PutAside(plan.absolute, report.copy, report.copyReason);
}

Status FileSaver::Write(const SavePlan& plan, SavedFile& report) const {
  const Status putAside = KeepOther(plan, report);
  const Status written = putAside ? files.WriteWholeFile(plan.absolute, plan.text) : putAside;
  if (written) guard.NoteWritten(plan.absolute, plan.text);
  return written;
}

}  // namespace tarn
