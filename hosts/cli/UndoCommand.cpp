#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/cli/EditRecord.h"
#include "hosts/core/LogEntry.h"
#include "platform/files/KeptCopy.h"
#include "platform/files/ProjectFolder.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

nlohmann::json LabelOf(const ProjectStep* step) {
  return step == nullptr ? nlohmann::json() : nlohmann::json(step->label);
}

void Report(CommandContext& context, const std::string& line, const std::vector<std::string>& names,
            const EditRecord& record) {
  if (context.Asked().json) {
    PrintJson(context, {{"changes", {line}},
                        {"files", names},
                        {"undo", LabelOf(record.GetUndo())},
                        {"redo", LabelOf(record.GetRedo())}});
  } else if (!context.Asked().quiet) {
    context.Out().PrintLine(line);
  }
}

// Returns the files of the applications that a version of the project file refers to, by label.
std::map<std::string, std::string> ApplicationFiles(FileSystem& files, const std::string& project,
                                                    const std::string& text) {
  std::map<std::string, std::string> found;
  const auto root = ParseXml(text);
  if (root == nullptr) return found;
  for (const CXmlNode* child : root->GetChildren()) {
    const std::string path = ToNativeSeparators(GetAttribute(child, "Extern"));
    if (path.empty()) continue;
    found[GetAttribute(child, "Header")] =
        files.Canonical(IsRelativePath(path) ? JoinPath(FolderOf(project), path) : path);
  }
  return found;
}

// Returns the changes with the paths that the files of applications have now. The step that
// relocates one records a single path, but the user may have moved the file back in the meantime.
FileChanges FollowFiles(FileSystem& files, const std::string& project, FileChanges changes) {
  const auto own =
      std::ranges::find_if(changes, [&](const FileChange& each) { return each.path == project; });
  if (own == changes.end() || !own->before || !own->after) return changes;
  const auto present = ApplicationFiles(files, project, *own->before);
  const auto target = ApplicationFiles(files, project, *own->after);
  for (const auto& [label, from] : present) {
    const auto other = target.find(label);
    if (other == target.end() || other->second == from) continue;
    for (FileChange& each : changes) {
      if (files.Exists(each.path)) continue;
      const std::string place = each.path == from ? other->second : from;
      const bool isThis = each.path == from || each.path == other->second;
      if (isThis && files.Exists(place)) each.path = place;
    }
  }
  return changes;
}

// Returns true if the files have the recorded content from before the change. Then they can be
// restored byte for byte, even if the project can't be opened with the result.
bool IsAsRecorded(CommandContext& context, const std::string& project, const FileChanges& changes) {
  FileSystem& files = context.Files();
  const ProjectFolder folder(files, project);
  return std::ranges::all_of(changes, [&](const FileChange& each) {
    if (!folder.Holds(each.path) && !context.MayWriteOutside(project)) return false;
    const auto present = files.ReadWholeFile(each.path);
    if (!present) return !each.before && present.GetError().code == ErrorCode::NotFound;
    // A file that the change adds may already exist with the same content.
    return *present == (each.before ? each.before : each.after);
  });
}

// Backs up those files that are damaged and about to be written.
int KeepDamaged(CommandContext& context, const FileChanges& changes) {
  FileSystem& files = context.Files();
  for (const DamageEntry& entry : context.GetDamage()) {
    const bool isChanged = std::ranges::any_of(
        changes, [&](const FileChange& each) { return each.path == entry.file; });
    const auto text = files.ReadWholeFile(entry.file);
    if (!isChanged || !text) continue;
    std::string copy;
    const Status kept = KeepCopy(files, entry.file, *text, ".bak", copy);
    if (kept) continue;
    context.Complain(
        context.ShowFailure(copy, "written, and nothing was changed", kept.GetError().text));
    return kExitCannotOpen;
  }
  return kExitDone;
}

int WriteDirectly(CommandContext& context, const std::string& project, const FileChanges& changes) {
  context.ShowDamageOf(project);
  if (const int code = context.CheckDamage(); code != kExitDone) return code;
  if (const int code = KeepDamaged(context, changes); code != kExitDone) return code;
  // A file that the change brings back may be in a folder that was removed in the meantime.
  for (const FileChange& each : changes) {
    if (each.before || !each.after) continue;
    const std::string folder = FolderOf(each.path);
    if (const Status made = context.Files().CreateFolders(folder); !made) {
      context.Complain(context.ShowFailure(folder, "created", made.GetError().text) + ".");
      return kExitCannotOpen;
    }
  }
  const Status written = context.Files().WriteFiles(AsBytes(TextsAfter(changes)));
  if (written) return kExitDone;
  const Error& error = written.GetError();
  context.Complain(context.ShowFailure(error.place, "saved, and nothing was changed", error.text));
  return kExitCannotOpen;
}

// Applies the change to the open project if other programs have changed its files since, and saves
// the merged result. Sets `isDone` to false if the project already contains the change.
int Merge(CommandContext& context, const std::string& project, const FileChanges& changes,
          const std::string& label, bool& isDone) {
  if (const int code = context.OpenProject(project); code != kExitDone) return code;
  InspectorDriver& inspector = context.Session().Inspector();
  const std::vector<FileText> before = ReadProjectFiles(inspector);
  if (const Status applied = ApplyChanges(inspector, changes); !applied) {
    context.Complain(label + ", nothing was changed:", SplitLines(applied.GetError().text));
    return kExitCannotOpen;
  }
  isDone = !FindChanges(before, ReadProjectFiles(inspector)).empty();
  return isDone ? context.SaveFiles() : int{kExitDone};
}

int RefuseRecord(CommandContext& context, const Error& error, bool isUndo) {
  if (error.code == ErrorCode::NotFound) {
    context.Complain(isUndo ? "There is no change made by a command to undo."
                            : "There is no change to redo.");
    return kExitUsage;
  }
  context.Complain("The record of changes " + context.ShowFailure(error.place, "used", error.text) +
                   ".");
  return kExitCannotOpen;
}

int RunUndo(CommandContext& context, bool isUndo) {
  std::string project;
  if (const int code = context.LocateProject(project); code != kExitDone) return code;
  if (const int code = context.StartSession(); code != kExitDone) return code;
  if (const int code = context.LockEdits(project); code != kExitDone) return code;
  EditRecord record(context.Files(), project);
  const ProjectStep* const step = isUndo ? record.GetUndo() : record.GetRedo();
  if (step == nullptr) {
    context.ShowDamageOf(project);
    const Error none{ErrorCode::NotFound, {}, {}};
    return RefuseRecord(context, record.GetStatus() ? none : record.GetStatus().GetError(), isUndo);
  }
  // Checks that the record is writable before files are changed; otherwise the next undo would
  // offer the same step again.
  if (const Status written = record.Write(); !written) {
    context.Complain("The record of changes " +
                     context.ShowFailure(written.GetError().place,
                                         "written, and nothing was changed",
                                         written.GetError().text) +
                     ".");
    return kExitCannotOpen;
  }
  // A change may concern another file only, which could then no longer fit the project.
  if (const auto text = context.Files().ReadWholeFile(project); !text) {
    context.Complain(context.ShowFailure(project, "read", text.GetError().text) + ".");
    return kExitCannotOpen;
  }
  const FileChanges changes =
      FollowFiles(context.Files(), project, isUndo ? Reverse(step->changes) : step->changes);
  const std::string label = Printable(step->label);
  const std::string way = isUndo ? "undone" : "redone";
  bool isDone = true;
  const int code =
      IsAsRecorded(context, project, changes)
          ? WriteDirectly(context, project, changes)
          : Merge(context, project, changes, "\"" + label + "\" can't be " + way, isDone);
  if (code != kExitDone) return code;
  std::vector<std::string> names;
  for (const FileChange& each : changes) {
    if (isDone) names.push_back(context.Show(each.path));
  }
  if (isUndo) {
    record.MoveBack();
  } else {
    record.MoveOn();
  }
  context.WriteRecord(record);
  Report(context, isDone ? way + ": " + label : "\"" + label + "\" is already " + way, names,
         record);
  return kExitDone;
}

void DeclareUndo(CommandArguments& arguments) {
  arguments.AddProject();
  arguments.AddEditing();
}

}  // namespace

CommandSpec UndoCommand() {
  return {
      .name = "undo",
      .group = CommandGroup::Files,
      .help = "Undo the last change that a command made to a project",
      .examples = {{"tarn undo", "the last add, options set or similar"}},
      .access = ProjectAccess::Edit,
      .declare = DeclareUndo,
      .run = [](CommandContext& context) { return RunUndo(context, true); },
  };
}

CommandSpec RedoCommand() {
  return {
      .name = "redo",
      .group = CommandGroup::Files,
      .help = "Redo a change that was undone",
      .access = ProjectAccess::Edit,
      .declare = DeclareUndo,
      .run = [](CommandContext& context) { return RunUndo(context, false); },
  };
}

}  // namespace tarn::host
