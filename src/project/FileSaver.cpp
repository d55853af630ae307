#include "project/FileSaver.h"

#include "project/StableForm.h"
#include "project/TreeText.h"

namespace tarn {

namespace {

// Takes label and place of the file itself from the base, as another project names it. They differ
// if projects in several folders share an application.
bool DiffersInReferenceAlone(const CXmlNode& base, const CXmlNode& tree) {
  CXmlNode copy;
  copy.CopyFrom(tree);
  for (const char* name : {"Extern", "Path"}) {
    const char* value = base.GetAttrValue(name);
    if (value != nullptr && copy.GetAttr(name) != nullptr) copy.SetAttrValue(name, value);
  }
  return IsSameTree(base, copy);
}

}  // namespace

std::string FileSaver::Settle(const std::string& absolute, const std::string& text) const {
  const std::string* const known = guard.FormOf(absolute);
  const std::string former = known == nullptr ? std::string() : *known;
  CXmlNode base;
  CXmlNode tree;
  ReadWholeTree(former, base);
  // A tree that does not survive being written and read is written as it is.
  if (!ReadWholeTree(text, tree)) return text;
  MakeStable(base, tree, types);
  return WriteTree(tree, former);
}

SavePlan FileSaver::Prepare(const std::string& absolute, const std::string& text) const {
  SavePlan plan;
  plan.absolute = absolute;
  plan.text = Settle(absolute, text);
  const Result<std::string> disk = files.ReadWholeFile(absolute);
  const std::string* const known = guard.TextOf(absolute);
  if (!disk) {
    // What is there and can't be read may be what another program wrote.
    if (disk.GetError().code != ErrorCode::NotFound) plan.problem = disk.GetError().text;
    plan.isNeeded = plan.problem.empty() || known == nullptr || plan.text != *known;
    return plan;
  }
  plan.isNeeded = plan.text != *disk;
  CXmlNode base;
  CXmlNode theirs;
  CXmlNode ours;
  const bool canCompare = plan.isNeeded && known != nullptr && ReadWholeTree(*known, base) &&
                          ReadWholeTree(*disk, theirs) && ReadWholeTree(plan.text, ours);
  if (!canCompare) return plan;
  if (*disk == *known) {
    plan.isNeeded = !DiffersInReferenceAlone(base, ours);
    if (!plan.isNeeded) plan.text = *disk;
    return plan;
  }
  MergedTree merged = MergeTrees(base, theirs, ours);
  plan.text = WriteTree(*merged.root, *disk);
  plan.isMerged = true;
  plan.conflicts = std::move(merged.conflicts);
  plan.isNeeded = plan.text != *disk;
  return plan;
}

Status FileSaver::KeepOther(const SavePlan& plan, SavedFile& report) const {
  report.path = plan.absolute;
  report.isMerged = plan.isMerged;
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
