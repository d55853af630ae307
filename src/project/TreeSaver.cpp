// Saving the tree: which files are written, with what content, and how files that can't be written
// are handled. WholeSave.cpp has the atomic save of all files.

#include "project/TreeSaver.h"

#include <algorithm>
#include <set>

#include "output/MessageTable.h"
#include "platform/files/ProjectFolder.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/FileAccess.h"
#include "widgets/Dialogs.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

// Makes the project name one of its applications as the active one, if it has any.
void NameActive(CXmlNode& root, const NodeTypes& types) {
  const char* const active = root.GetAttrValue("ActiveApp");
  if (active == nullptr || (types.FlagsOf(root) & kTypeProject) == 0) return;
  const CXmlNode* first = nullptr;
  for (const CXmlNode* child : root.GetChildren()) {
    if ((types.FlagsOf(*child) & kTypeApplication) == 0) continue;
    if (EqualNoCase(OrEmpty(child->GetAttrValue("Header")), active)) return;
    if (first == nullptr) first = child;
  }
  if (first != nullptr) {
    root.SetAttrValue("ActiveApp", OrEmpty(first->GetAttrValue("Header")));
  } else {
    root.RemoveAttr(root.GetAttr("ActiveApp"));
  }
}

}  // namespace

// Renders all files before writing the first: writing sends messages, and changes that handlers
// make to the tree must not get into the files.
std::int32_t TreeSaver::SaveTreeFile(CXmlNode& node, const std::string& fileName) {
  std::string absolute;
  if (!paths_.MakeAbsolutePath(fileName, absolute, nullptr)) return 0;
  std::vector<PendingFile> pending;
  CollectTreeFiles(node, absolute, pending);
  const bool isHeld = protection_.Lock().IsHeldFor(state_.projectPath);
  if (const std::string refusal = PlanFiles(pending); !refusal.empty()) {
    RefuseFiles(pending, refusal);
  } else {
    if (savesWhole_) {
      SaveAllPending(pending);
    } else {
      for (PendingFile& file : pending) SavePendingFile(file, pending);
    }
  }
  if (!isHeld) protection_.Lock().Release();
  const bool isSaved = std::all_of(pending.begin(), pending.end(),
                                   [](const PendingFile& file) { return file.isSaved; });
  const bool isLost =
      std::any_of(savedFiles_.begin(), savedFiles_.end(),
                  [](const SavedFile& each) { return !each.problem.empty() && each.copy.empty(); });
  if (!isSaved && (isSaving_ || isLost)) KeepUnsaved(pending);
  return isSaved ? 1 : 0;
}

// Prepares reloading the project with the content that could not be written as unsaved changes.
void TreeSaver::KeepUnsaved(const std::vector<PendingFile>& pending) {
  unsaved_ = std::make_unique<ReplacedFiles>(ReplacedFiles{{}, guard_});
  for (const PendingFile& file : pending) {
    // If two elements have the same file, the first was written and the second was saved as a copy.
    unsaved_->texts.emplace(file.plan.absolute, file.isSaved ? file.plan.text : file.plan.own);
    // The file that references this one may not have been written and then still has the earlier
    // path.
    unsaved_->texts.emplace(file.absolute, file.text);
  }
}

// Acquires the project lock and prepares the files. Returns why nothing may be written, or an empty
// string. Releases the lock while the user is asked about files outside the project's folder, so
// that no other program has to wait; references may lead anywhere.
std::string TreeSaver::PlanFiles(std::vector<PendingFile>& pending) {
  const bool isHeld = protection_.Lock().IsHeldFor(state_.projectPath);
  std::set<std::string> refused;
  while (true) {
    const bool isTaken = protection_.Lock().Take(state_.projectPath);
    PrepareFiles(pending);
    if (!isTaken && !protection_.Lock().GetHolder().empty()) {
      return "another program is changing the project (" + protection_.Lock().GetHolder() + ")";
    }
    if (!isTaken) return protection_.Lock().GetProblem();
    const auto asked = std::find_if(pending.begin(), pending.end(), [&](const PendingFile& file) {
      return !refused.contains(file.plan.absolute) && !DescribeOutside(file.plan).empty();
    });
    if (asked == pending.end()) break;
    if (!isHeld) protection_.Lock().Release();
    const std::string& target = asked->plan.absolute;
    const std::string question = target + ": " + DescribeOutside(asked->plan) + ".\n\nWrite it?";
    const bool isAllowed =
        AskOkCancel(services_.mainframeHandle, question, GetMessageText(kRowProjectWord));
    (isAllowed ? mayWriteOutside_ : refused).insert(target);
  }
  for (PendingFile& file : pending) {
    const std::string reason = DescribeOutside(file.plan);
    file.isOutside = !reason.empty();
    if (file.isOutside) file.plan.problem = reason;
  }
  return {};
}

// Returns why the file needs the user's consent, or an empty string if it may be written.
std::string TreeSaver::DescribeOutside(const SavePlan& plan) const {
  const std::string& path = plan.absolute;
  if (!plan.isNeeded || protection_.MayWriteOutside() || mayWriteOutside_.contains(path)) return {};
  return protection_.GetTrust().IsGiven()
             ? std::string()
             : ProjectFolder(files_, state_.projectPath).WhyOutside(path);
}

void TreeSaver::PrepareFiles(std::vector<PendingFile>& pending) {
  FollowParts(pending);
  const FileSaver saver(files_, guard_, types_);
  // A file that was never saved must not re-create a moved folder either.
  const bool isGone =
      guard_.ContentOf(state_.projectPath) != nullptr && !files_.Exists(state_.projectFolder);
  for (PendingFile& file : pending) {
    if (!file.isPlanned) file.plan = saver.Prepare(file.absolute, file.text, file.changedParts);
    const std::string& target = file.plan.absolute;
    if (isGone && file.plan.problem.empty() &&
        target.starts_with(AddSeparator(state_.projectFolder))) {
      file.plan.problem = "the folder " + state_.projectFolder + " does not exist";
    }
    // An option of the application may name any file as its own.
    if (file.plan.problem.empty() && guard_.ContentOf(target) == nullptr) {
      const Result<bool> exists = files_.CheckExists(target);
      if (!exists) file.plan.problem = exists.GetError().text;
      if (exists && *exists) file.plan.problem = "it is not a file that the project was read from";
    }
  }
  // Parts come before their owner and must not use its file.
  for (const PendingFile& owner : pending) {
    for (const std::size_t part : owner.parts) {
      SavePlan& plan = pending[part].plan;
      if (plan.absolute == owner.plan.absolute) plan.problem = "it is the file of the project";
    }
  }
}

std::vector<FileText> TreeSaver::RenderFiles() {
  std::vector<FileText> texts;
  if (!state_.isOpen) return texts;
  CXmlNode copy;
  copy.CopyFrom(*state_.projectRoot);
  derived_.StripSubtree(copy, true);
  std::vector<PendingFile> pending;
  CollectTreeFiles(copy, state_.projectPath, pending);
  for (PendingFile& file : pending) texts.push_back({file.absolute, std::move(file.text)});
  return texts;
}

// Collects the files of the subtree, parts before their owners. Returns the index of the node's own
// file.
std::size_t TreeSaver::CollectTreeFiles(CXmlNode& node, const std::string& absolute,
                                        std::vector<PendingFile>& pending) {
  PendingFile own;
  own.absolute = absolute;
  NameActive(node, types_);
  struct Aside {
    CXmlNode* part;
    std::vector<std::unique_ptr<CXmlNode>> children;
    std::string value;
  };
  std::vector<Aside> aside;
  for (int i = node.GetChildCount() - 1; i >= 0; --i) {
    CXmlNode& part = *node.GetChild(i);
    if ((types_.FlagsOf(part) & kTypeExtern) == 0) continue;
    const std::string path = OrEmpty(part.GetAttrValue("Extern"));
    // The part has no file: its children stay in this one.
    if (path.empty()) continue;
    std::string relative;
    paths_.MakeRelativePath(path, relative, nullptr);
    part.SetAttrValue("Extern", relative);
    std::string partFile;
    paths_.MakeAbsolutePath(path, partFile, nullptr);
    own.parts.push_back(CollectTreeFiles(part, partFile, pending));
    // The owner's file contains only the part's attributes.
    aside.push_back({&part, {}, part.GetValue()});
    part.SetValue("");
    while (part.GetChildCount() > 0) {
      aside.back().children.push_back(part.DetachChild(part.GetChild(part.GetChildCount() - 1)));
    }
  }
  own.text = FileSaver(files_, guard_, types_).Settle(absolute, node);
  for (Aside& each : aside) {
    each.part->SetValue(each.value);
    for (auto child = each.children.rbegin(); child != each.children.rend(); ++child) {
      each.part->AppendChild(std::move(*child));
    }
  }
  pending.push_back(std::move(own));
  return pending.size() - 1;
}

void TreeSaver::SavePendingFile(PendingFile& file, const std::vector<PendingFile>& pending) {
  const std::string& target = file.plan.absolute;
  // If two elements have the same file, only one can be written.
  for (const PendingFile* other = pending.data(); other != &file; ++other) {
    if (other->plan.absolute != target || !other->plan.problem.empty()) continue;
    if (other->plan.own == file.plan.own) {
      file.isSaved = other->isSaved;
    } else {
      SaveElsewhereAndLog(file, kSharedFile);
    }
    return;
  }
  if (!file.plan.isNeeded) {
    ReportUnneeded(file.plan, savedFiles_);
    MarkSaved(file.plan);
  } else if (!file.plan.problem.empty()) {
    SaveElsewhereAndLog(file, file.plan.problem);
  } else if (const FileAccess access =
                 GetFileAccess(files_, target, kMustBeWritable | kCreateFolder);
             !ReportFileAccess(access, *services_.output, target)) {
    // ReportFileAccess has already logged the error.
    SaveElsewhere(file, access.reason.place + ": " + access.reason.text);
  } else if (const Status written = WriteTreeFile(file.plan); !written) {
    if (written.GetError().code == ErrorCode::ReadOnly) {
      services_.output->WriteMessage(kRowReadOnly, {target});
    }
    SaveElsewhereAndLog(file, written.GetError().text);
  }
}

// The file has the content in memory, unless a part of it was dropped because of a conflict.
void TreeSaver::MarkSaved(const SavePlan& plan) {
  guard_.RecordWritten(plan.absolute, plan.text);
  if (plan.conflicts.empty()) guard_.RemoveRescued(plan.absolute);
}

// If there is a conflict, changes made here were dropped in favor of the file's content. The backup
// keeps that content, which the next save may overwrite.
void TreeSaver::ReportUnneeded(const SavePlan& plan, std::vector<SavedFile>& reports) {
  if (plan.conflicts.empty()) return;
  static_cast<void>(FileSaver(files_, guard_, types_).KeepOther(plan, reports.emplace_back()));
}

Status TreeSaver::WriteTreeFile(const SavePlan& plan) {
  SavedFile report;
  const Status written = FileSaver(files_, guard_, types_).Write(plan, report);
  if (!written) return written;
  MarkSaved(plan);
  protection_.SetDamageOf(plan.absolute, {});
  if (!report.ToLines().empty()) savedFiles_.push_back(std::move(report));
  return {};
}

// Saves the content of a file that could not be written to a different path, and reports that.
void TreeSaver::SaveElsewhere(PendingFile& file, const std::string& reason) {
  file.isSaved = false;
  SavedFile report;
  report.path = file.plan.absolute;
  report.problem = reason;
  report.isOutside = file.isOutside;
  const std::string beside =
      file.isOutside ? JoinPath(state_.projectFolder, FileNameOf(report.path)) : report.path;
  report.copy = guard_.Rescue(beside, file.plan.own, services_.dataPath);
  if (isSaving_) guard_.RecordRescued(report.path, report.copy, file.plan.own);
  if (report.copy.empty()) report.problem += "; no copy could be written either";
  savedFiles_.push_back(std::move(report));
}

// Same as `SaveElsewhere()`, but also logs the error.
void TreeSaver::SaveElsewhereAndLog(PendingFile& file, const std::string& reason) {
  SaveElsewhere(file, reason);
  services_.output->WriteMessage(kRowCannotSave, {file.plan.absolute}, reason);
}

// Writes none of the files. Saves their contents next to them or, after an attempt at all or none,
// in the user's data folder if the project doesn't stay open.
void TreeSaver::RefuseFiles(std::vector<PendingFile>& pending, const std::string& reason,
                            const std::string& place) {
  const bool isOutside = std::any_of(pending.begin(), pending.end(), [&](const PendingFile& file) {
    return file.isOutside && file.plan.absolute == place;
  });
  for (PendingFile& file : pending) {
    file.isSaved = false;
    if (!file.plan.isNeeded) continue;
    SavedFile report;
    report.path = file.plan.absolute;
    report.isOutside = file.isOutside;
    const bool isOther = !place.empty() && place != report.path;
    // The file itself is fine, and it is not the one the user could consent to.
    if (isOther && isSaving_ && isOutside) continue;
    report.problem = isOther ? place + ": " + reason : reason;
    if (!isSaving_ || !savesWhole_) {
      report.copy = savesWhole_ ? guard_.RescueTo(services_.dataPath, report.path, file.plan.own)
                                : guard_.Rescue(report.path, file.plan.own, services_.dataPath);
      if (isSaving_) guard_.RecordRescued(report.path, report.copy, file.plan.own);
      if (report.copy.empty()) report.problem += "; no copy could be written either";
    }
    savedFiles_.push_back(std::move(report));
  }
}

}  // namespace tarn
