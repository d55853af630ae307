// Saving of the tree: which files it makes, what they are to hold, and what becomes of a file that
// can't be written. WholeSave.cpp has the save that writes all of them or none.

#include "output/MessageTable.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "platform/windowing/Dialogs.h"
#include "project/FileAccess.h"
#include "project/ProjectModel.h"

namespace tarn {

// All texts are made before the first is written: writing sends messages, and whatever their
// handlers do to the tree is not to get into the files.
std::int32_t CProjectModel::SaveTreeFile(CXmlNode& node, const std::string& fileName) {
  std::string absolute;
  if (!MakeAbsolutePath(fileName, absolute, nullptr)) return 0;
  std::vector<PendingFile> pending;
  CollectTreeFiles(node, nullptr, absolute, pending);
  const std::uint64_t epoch = treeEpoch;
  const bool isHeld = editLock.IsHeldFor(projectPath);
  if (const std::string refusal = PlanFiles(pending); !refusal.empty()) {
    RefuseFiles(pending, refusal);
  } else {
    RemoveAbandoned(pending);
    if (savesWhole) {
      SaveAllPending(pending);
    } else {
      for (PendingFile& file : pending) SavePendingFile(file, pending);
    }
  }
  if (!isHeld) editLock.Release();
  if (treeEpoch != epoch) return pending.back().saved ? 1 : 0;
  // What was written need not stay in memory; what was not may have no other place.
  for (const PendingFile& file : pending) {
    if (file.child == nullptr || !file.saved) continue;
    RemoveAllChildren(*file.child);
    emptied.insert(file.child);
  }
  return pending.back().saved ? 1 : 0;
}

// Takes the right to change the project's files, and prepares them. Returns why nothing may be
// written; empty if all may. No other program waits while the user is asked.
std::string CProjectModel::PlanFiles(std::vector<PendingFile>& pending) {
  const bool isHeld = editLock.IsHeldFor(projectPath);
  while (true) {
    const bool isTaken = editLock.Take(projectPath);
    const std::string outside = PrepareFiles(pending);
    if (!isTaken) return "another program is changing the project (" + editLock.GetHolder() + ")";
    if (outside.empty()) return {};
    if (!isHeld) editLock.Release();
    const std::string reason = outside + " is outside the folder of the project";
    if (!AskOkCancel(mainframeHandle, reason + ".\n\nWrite it?", GetMessageText(kRowProjectWord))) {
      return reason;
    }
    mayWriteOutside.insert(outside);
  }
}

// Returns the first file that is to be written outside the project's folder without the user's
// consent. It is read wherever a reference leads.
std::string CProjectModel::PrepareFiles(std::vector<PendingFile>& pending) {
  const FileSaver saver(files, guard, types);
  const std::string folder = AddSeparator(files.ResolveLinks(projectFolder));
  std::string outside;
  for (PendingFile& file : pending) {
    file.plan = saver.Prepare(file.absolute, file.text);
    const bool isAllowed = writesOutside || mayWriteOutside.contains(file.absolute) ||
                           files.ResolveLinks(file.absolute).starts_with(folder);
    if (file.plan.isNeeded && !isAllowed && outside.empty()) outside = file.absolute;
  }
  return outside;
}

std::vector<FileText> CProjectModel::MakeFileTexts() {
  std::vector<FileText> texts;
  if (!isOpen) return texts;
  CXmlNode copy;
  copy.CopyFrom(*projectRoot);
  StripSubtree(copy, true);
  std::vector<PendingFile> pending;
  CollectTreeFiles(copy, nullptr, projectPath, pending);
  const FileSaver saver(files, guard, types);
  for (PendingFile& file : pending) {
    texts.push_back({file.absolute, saver.Settle(file.absolute, file.text)});
  }
  return texts;
}

// The files of the subtree, parts before their owner. Gives the place of the node's own.
std::size_t CProjectModel::CollectTreeFiles(CXmlNode& node, CXmlNode* child,
                                            const std::string& absolute,
                                            std::vector<PendingFile>& pending) {
  PendingFile own;
  own.absolute = absolute;
  own.child = child;
  std::vector<std::pair<CXmlNode*, std::vector<std::unique_ptr<CXmlNode>>>> aside;
  for (int i = node.GetChildCount() - 1; i >= 0; --i) {
    CXmlNode& part = *node.GetChild(i);
    if ((types.FlagsOf(part) & kTypeExtern) == 0) continue;
    const std::string path = TextOf(part.GetAttrValue("Extern"));
    if (path.empty()) {
      // Nowhere to go: its children stay in this file.
      own.saved = false;
      continue;
    }
    std::string relative;
    MakeRelativePath(path, relative, nullptr);
    part.SetAttrValue("Extern", relative);
    std::string partFile;
    MakeAbsolutePath(path, partFile, nullptr);
    own.parts.push_back(CollectTreeFiles(part, &part, partFile, pending));
    // In its owner's file it stands with its attributes alone.
    aside.emplace_back(&part, std::vector<std::unique_ptr<CXmlNode>>());
    while (part.GetChildCount() > 0) {
      aside.back().second.push_back(part.DetachChild(part.GetChild(part.GetChildCount() - 1)));
    }
  }
  own.text = node.ToString(g_xmlDisplayOptions);
  for (auto& [part, children] : aside) {
    for (auto each = children.rbegin(); each != children.rend(); ++each) {
      part->AppendChild(std::move(*each));
    }
  }
  pending.push_back(std::move(own));
  return pending.size() - 1;
}

void CProjectModel::SavePendingFile(PendingFile& file, const std::vector<PendingFile>& pending) {
  for (const std::size_t part : file.parts) file.saved = file.saved && pending[part].saved;
  // Of two elements with one file only one can have it.
  for (const PendingFile* other = pending.data(); other != &file; ++other) {
    if (other->absolute != file.absolute) continue;
    if (other->text == file.text) {
      file.saved = file.saved && other->saved;
    } else {
      LoseNothing(file, "it is the file of two applications");
      output->WriteMessage(kRowCannotSave, {file.absolute});
    }
    return;
  }
  if (!file.plan.isNeeded) {
    guard.NoteWritten(file.absolute, file.plan.text);
    // What was changed here may have given way to what the file holds.
    if (!file.plan.conflicts.empty()) {
      SavedFile& report = savedFiles.emplace_back();
      report.path = file.absolute;
      report.isMerged = true;
      report.conflicts = file.plan.conflicts;
    }
  } else if (!file.plan.problem.empty()) {
    LoseNothing(file, file.plan.problem);
  } else if (const FileAccess access =
                 GetFileAccess(files, file.absolute, kMustBeWritable | kCreateFolder);
             !ReportFileAccess(access, *output, file.absolute)) {
    LoseNothing(file, access.reason.place + ": " + access.reason.text);
    return;  // the log has a row on that
  } else if (const Status written = WriteTreeFile(file.plan); !written) {
    if (written.GetError().code == ErrorCode::ReadOnly) {
      output->WriteMessage(kRowReadOnly, {file.absolute});
    }
    LoseNothing(file, written.GetError().text);
  }
  if (!file.saved) output->WriteMessage(kRowCannotSave, {file.absolute});
}

Status CProjectModel::WriteTreeFile(const SavePlan& plan) {
  SavedFile report;
  const Status written = FileSaver(files, guard, types).Write(plan, report);
  if (!written) return written;
  SetDamageOf(plan.absolute, {});
  if (!report.ToLines().empty()) savedFiles.push_back(std::move(report));
  return {};
}

// The file was not written: its text goes where it can be found again.
void CProjectModel::LoseNothing(PendingFile& file, const std::string& reason) {
  file.saved = false;
  SavedFile report;
  report.path = file.absolute;
  report.problem = reason;
  report.copy = guard.Rescue(file.absolute, file.text, dataPath);
  if (report.copy.empty()) textLost = true;
  savedFiles.push_back(std::move(report));
}

// Nothing is written. The tree that is kept has it all; else the texts go to the user's data.
void CProjectModel::RefuseFiles(std::vector<PendingFile>& pending, const std::string& reason,
                                const std::string& place) {
  for (PendingFile& file : pending) {
    file.saved = false;
    if (!file.plan.isNeeded) continue;
    SavedFile report;
    report.path = file.absolute;
    const bool isOther = !place.empty() && place != file.absolute;
    report.problem = isOther ? place + ": " + reason : reason;
    if (!keepTreeOnLoss) report.copy = guard.RescueTo(dataPath, file.absolute, file.text);
    savedFiles.push_back(std::move(report));
  }
  textLost = true;
}

}  // namespace tarn
