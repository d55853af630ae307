#include <algorithm>
#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/core/Relocation.h"
#include "platform/files/ProjectFolder.h"
#include "platform/paths/Paths.h"

namespace tarn::host {

namespace {

struct RelocateOptions {
  std::string older;  // OLD
  std::string newer;  // NEW
  std::string below;
  bool dryRun = false;
};

// Returns the label of the step in the undo record.
std::string LabelOf(const Relocation& relocation) {
  std::vector<std::string> moved;
  for (const MovedPath& each : relocation.GetFound()) {
    if (!each.newPath.empty()) moved.push_back(FileNameOf(each.oldPath));
  }
  return "Relocate " +
         (moved.size() == 1 ? moved.front() : std::to_string(moved.size()) + " paths");
}

// One search and its results. The project isn't opened, which would fail if an application is
// missing.
class Relocating {
 public:
  explicit Relocating(CommandContext& commandContext) : context_(commandContext) {}

  int Run();

 private:
  void TakeWords();
  std::string FullPath(const std::string& word) const;
  int Search(Relocation& relocation);
  int Write(Relocation& relocation);
  int Report(const Relocation& relocation) const;
  void PrintMoves(const Relocation& relocation) const;
  nlohmann::json ToJson(const MovedPath& moved) const;
  int Fail(const Error& error) const;

  CommandContext& context_;
  std::string project_;
  std::string from_, to_;  // empty: search for everything that is missing
  bool isChanged_ = false;
};

// Accepts PROJECT, OLD NEW, or PROJECT OLD NEW.
void Relocating::TakeWords() {
  const std::string& first = context_.Asked().project;
  const RelocateOptions& own = context_.Own<RelocateOptions>();
  if (own.older.empty()) {
    project_ = first;
  } else if (own.newer.empty()) {
    from_ = first;
    to_ = own.older;
  } else {
    project_ = first;
    from_ = own.older;
    to_ = own.newer;
  }
}

std::string Relocating::FullPath(const std::string& word) const {
  std::string path = context_.Files().Canonical(
      IsRelativePath(word) ? JoinPath(context_.StartFolder(), word) : word);
  if (path.size() > 1 && path.ends_with(kSeparator)) path.pop_back();
  return path;
}

int Relocating::Fail(const Error& error) const {
  context_.Complain(context_.ShowResolved(error.place) + ": " + Printable(error.text));
  return kExitCannotOpen;
}

int Relocating::Search(Relocation& relocation) {
  if (from_.empty()) {
    const std::string& below = context_.Own<RelocateOptions>().below;
    const Status searched = relocation.Search(below.empty() ? FolderOf(project_) : FullPath(below));
    return searched ? int{kExitDone} : Fail(searched.GetError());
  }
  to_ = FullPath(to_);
  const Result<bool> exists = context_.Files().CheckExists(to_);
  if (!exists) return Fail(exists.GetError());
  if (!*exists) {
    context_.Complain(context_.Show(to_) + " does not exist.");
    return kExitUsage;
  }
  from_ = FullPath(from_);
  const Status moved = relocation.Move(from_, to_);
  const std::string types = context_.Session().GetFolders().ConfigFile(context_.Files());
  if (const Status fits = relocation.CheckMove(types); !fits) {
    context_.Complain(context_.Show(fits.GetError().place) + " " + fits.GetError().text +
                      "; nothing was changed.");
    return kExitUsage;
  }
  return moved ? int{kExitDone} : Fail(moved.GetError());
}

int Relocating::Write(Relocation& relocation) {
  const auto texts = relocation.MakeTexts();
  if (!texts) return Fail(texts.GetError());
  for (const FileText& each : *texts) {
    if (context_.MayWriteOutside(project_)) break;
    const std::string why = ProjectFolder(context_.Files(), project_).WhyOutside(each.path);
    if (why.empty()) continue;
    context_.Complain(context_.Show(each.path) + " is not changed because " + why +
                      ". Use --outside-ok to change it anyway.");
    return kExitCannotOpen;
  }
  if (context_.Own<RelocateOptions>().dryRun) return kExitDone;
  std::vector<FileText> before;
  for (const FileText& each : *texts) {
    if (const auto text = context_.Files().ReadWholeFile(each.path)) {
      before.push_back({each.path, *text});
    }
  }
  if (const Status written = context_.Files().WriteFiles(AsBytes(*texts)); !written) {
    const Error& error = written.GetError();
    context_.Complain(
        context_.ShowFailure(error.place, "saved, and nothing was changed", error.text));
    return kExitCannotOpen;
  }
  isChanged_ = !texts->empty();
  context_.RecordEdit(project_, LabelOf(relocation), FindChanges(before, *texts));
  return kExitDone;
}

nlohmann::json Relocating::ToJson(const MovedPath& moved) const {
  nlohmann::json entry = {{"kind", NameOf(moved.kind)},
                          {"file", moved.file},
                          {"old", moved.oldPath},
                          {"new", moved.newPath}};
  if (moved.newPath.empty()) {
    entry["new"] = nullptr;
    entry["candidates"] = moved.candidates;
  }
  return entry;
}

void Relocating::PrintMoves(const Relocation& relocation) const {
  for (const Error& each : relocation.GetUnread()) {
    if (relocation.IsComplete()) break;
    context_.Complain("The folder " +
                      context_.ShowFailure(each.place, "read, and was not searched", each.text) +
                      ".");
  }
  for (const MovedPath& each : relocation.GetFound()) {
    // With OLD NEW, the file is missing at the path that the user specified.
    const bool isMoved = !each.newPath.empty() || from_.empty();
    const std::string former =
        context_.Show(isMoved ? each.oldPath : MapPath(each.oldPath, from_, to_));
    if (!each.newPath.empty()) {
      if (context_.Asked().quiet) continue;
      const bool isOption = each.kind == MovedPath::Kind::Option;
      context_.Out().PrintLine((isOption ? "option " : "") + former + " -> " +
                               context_.Show(each.newPath));
    } else if (each.candidates.size() < 2) {
      const bool isTaken = !each.candidates.empty() && from_.empty();
      context_.Complain(
          former + " was not found" +
          (isTaken ? "; " + context_.Show(each.candidates.front()) + " could be a different file"
                   : std::string()));
    } else {
      std::vector<std::string> list;
      for (const std::string& path : each.candidates) list.push_back("  " + context_.Show(path));
      context_.Complain(former + " could be one of several files:", list);
    }
  }
}

int Relocating::Report(const Relocation& relocation) const {
  const bool isComplete = relocation.IsComplete();
  if (context_.Asked().json) {
    nlohmann::json list = nlohmann::json::array();
    for (const MovedPath& each : relocation.GetFound()) list.push_back(ToJson(each));
    nlohmann::json unread = nlohmann::json::array();
    for (const Error& each : relocation.GetUnread()) unread.push_back(each.place);
    PrintJson(
        context_,
        {{"moves", list}, {"changed", isChanged_}, {"complete", isComplete}, {"unread", unread}});
  } else {
    PrintMoves(relocation);
    const bool isNothing = relocation.GetFound().empty();
    if (isNothing && !context_.Asked().quiet) {
      context_.Out().PrintLine(from_.empty() ? "Nothing is missing"
                                             : "None of it is in the project");
    }
    if (!isComplete)
      context_.Complain("Use `tarn relocate OLD NEW` to specify where a file or folder is.");
  }
  return isComplete ? kExitDone : kExitBuildFailed;
}

int Relocating::Run() {
  TakeWords();
  if (const int code = context_.LocateProject(project_, project_); code != kExitDone) return code;
  if (!from_.empty() && !context_.Own<RelocateOptions>().below.empty()) {
    context_.Complain("--below is for a search; OLD NEW specifies the new location without one.");
    return kExitUsage;
  }
  if (const int code = context_.StartSession(); code != kExitDone) return code;
  if (const int code = context_.LockEdits(project_); code != kExitDone) return code;
  Relocation relocation(context_.Files(), project_);
  if (const int code = Search(relocation); code != kExitDone) return code;
  if (const int code = Write(relocation); code != kExitDone) return code;
  context_.Session().Inspector().UnlockProject();
  return Report(relocation);
}

int RunRelocate(CommandContext& context) {
  return Relocating(context).Run();
}

}  // namespace

CommandSpec RelocateCommand() {
  return {
      .name = "relocate",
      .group = CommandGroup::Files,
      .help = "Find application files and sources that have moved",
      .examples = {{"tarn relocate --dry-run", "show where the missing files seem to be"},
                   {"tarn relocate --below ..", "search for them below another folder"},
                   {"tarn relocate src firmware/src", "a folder that was moved"}},
      .declare =
          [](CommandArguments& arguments) {
            RelocateOptions& own = arguments.Own<RelocateOptions>();
            arguments.AddProject();
            arguments.Positional("OLD", own.older, "File or folder that has moved").NotEmpty();
            arguments.Positional("NEW", own.newer, "Its new location").NotEmpty();
            arguments
                .Option("--below", own.below, "DIR", "Search this folder instead of the project's")
                .NotEmpty();
            arguments.Flag("--dry-run", own.dryRun, "Show the moves without changing anything");
            arguments.AddWriting();
          },
      .run = RunRelocate,
  };
}

}  // namespace tarn::host
