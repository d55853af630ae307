#include <tarn/commands.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "hosts/cli/Commands.h"
#include "hosts/cli/CreatedFiles.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/cli/FolderSync.h"
#include "hosts/cli/ListedFiles.h"
#include "hosts/cli/NewApplication.h"
#include "hosts/core/GeneratedSource.h"
#include "hosts/core/LogEntry.h"
#include "hosts/core/ProjectFile.h"
#include "hosts/core/ProjectTemplate.h"
#include "hosts/core/ProjectTree.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

struct EditOptions {
  std::vector<std::string> words;  // files or nodes
  std::string node;                // NODE of rename
  std::string name;                // NAME of rename, APP of select
  std::string target;              // add --to
  bool create = false;             // add --create
  bool recursive = false;          // add --recursive
  std::vector<std::string> exclude, match;
  std::string application;  // add --application
  bool isLibrary = false;   // add --library
  bool isEmpty = false;     // add --empty
  std::string compiler;     // add --compiler
  std::string tool;         // add --tool
  bool remove = false;      // sync --remove
  bool dryRun = false;      // sync --dry-run
};

constexpr std::string_view kProjectExtension = ".tprj";
constexpr std::string_view kApplicationExtension = ".tapp";

// One command that changes the tree. Nothing is written unless all of it succeeds.
class Edit {
 public:
  // The number of arguments of a command, without the project, and what it does.
  struct Rule {
    std::size_t least;
    bool more;  // may be followed by any number of others
    const char* usage;
    int (Edit::*perform)();
  };

  Edit(CommandContext& commandContext, const Rule& commandRule)
      : context_(commandContext),
        rule_(commandRule),
        words_(commandContext.Own<EditOptions>().words),
        listed_(commandContext) {}

  int Run();

  // What the commands do with the open project.
  int Add();
  int Remove();
  int Move();
  int Rename();
  int SelectApplication();
  int Sync();

 private:
  int TakeWords();
  bool IsProject(const std::string& word) const;
  int AddOne(const std::string& file);
  int AddFolder(const std::string& folder);
  int ChooseApplication(ApplicationEntry& application);
  int SelectTarget();
  int MakeGroup(const std::string& label);

  int FindNode(const std::string& key) { return context_.FindNode(key, context_.Scope()); }
  std::string TreeText() { return context_.Session().Inspector().GetTree(); }
  // Executes a command. Returns false if the tree has not changed.
  bool Change(std::uint32_t command) {
    const std::string before = TreeText();
    context_.Session().Manager().Command(command);
    return TreeText() != before;
  }
  int Fail(const std::string& text, const std::vector<std::string>& more = {}) {
    context_.Complain(text, more);
    return kExitUsage;
  }
  void Note(const std::string& text) { done_.push_back(text); }
  int Report();

  CommandContext& context_;
  const Rule rule_;
  std::vector<std::string> words_;
  std::string project_;
  CreatedFiles created_;
  NewApplication newApplication_;
  NewApplication::Plan newPlan_;
  std::vector<std::string> done_;  // lines that report the changes
  ListedFiles listed_;
};

int Edit::Run() {
  if (const int code = TakeWords(); code != kExitDone) return code;
  std::string path;
  if (const int code = context_.LocateProject(project_, path); code != kExitDone) return code;
  if (const int code = context_.OpenProject(path); code != kExitDone) return code;
  std::vector<ApplicationEntry> chosen;
  if (const int code = context_.ChooseApplications(chosen); code != kExitDone) return code;
  // Publishing makes paths absolute, so that each file has a single name.
  context_.Session().Inspector().PublishAll();
  if (const int code = (this->*rule_.perform)(); code != kExitDone) return code;
  if (!done_.empty() && !context_.Own<EditOptions>().dryRun) {
    if (const int code = context_.SaveProject(); code != kExitDone) return code;
  }
  created_.Keep();
  newApplication_.Keep();
  return Report();
}

// The project may be omitted, so the first argument is interpreted according to its value.
int Edit::TakeWords() {
  const Invocation& asked = context_.Asked();
  const EditOptions& own = context_.Own<EditOptions>();
  if (!asked.project.empty()) words_.insert(words_.begin(), asked.project);
  for (const std::string& word : {own.node, own.name}) {
    if (!word.empty()) words_.push_back(word);
  }
  const bool hasProject = words_.size() > rule_.least && (!rule_.more || IsProject(words_.front()));
  if (hasProject) {
    project_ = words_.front();
    words_.erase(words_.begin());
  }
  const bool isRight = rule_.more ? words_.size() >= rule_.least : words_.size() == rule_.least;
  if (isRight) return kExitDone;
  const std::string command = asked.command->name;
  return Fail("Wrong number of arguments. Usage: tarn " + command + " [PROJECT] " + rule_.usage,
              {"See `tarn " + command + " --help`."});
}

bool Edit::IsProject(const std::string& word) const {
  if (EqualNoCase(ExtensionOf(word), kProjectExtension)) return true;
  const std::string path = IsRelativePath(word) ? JoinPath(context_.StartFolder(), word) : word;
  if (!context_.Files().IsFolder(path)) return false;
  const FoundProject found = FindProject(context_.Files(), word);
  return !found.path.empty() || !found.choices.empty();
}

int Edit::Add() {
  const EditOptions& own = context_.Own<EditOptions>();
  if (words_.empty() && own.application.empty()) {
    return Fail("Missing FILE. Usage: tarn add [PROJECT] " + std::string(rule_.usage));
  }
  if (!own.application.empty()) {
    ApplicationEntry similar;
    if (const int code = ChooseApplication(similar); code != kExitDone) return code;
    newPlan_ = {own.application, similar.path, own.compiler, own.isLibrary};
    const int code = newApplication_.Make(context_, newPlan_);
    if (code != kExitDone) return code;
    Note("created " + context_.Show(newApplication_.GetPath()));
  }
  for (const std::string& file : words_) {
    if (const int code = AddOne(file); code != kExitDone) return code;
  }
  if (own.application.empty() || own.isEmpty) return kExitDone;
  std::vector<std::string> added;
  const int code = newApplication_.AddStartUp(context_, newPlan_, added);
  for (const std::string& each : added) Note("added " + context_.Show(each));
  return code;
}

// Adds the files of a folder, with groups like the folders in it.
int Edit::AddFolder(const std::string& folder) {
  const EditOptions& own = context_.Own<EditOptions>();
  ApplicationEntry application;
  if (const int code = ChooseApplication(application); code != kExitDone) return code;
  std::vector<std::string> group;
  for (const std::string_view each : Split(own.target, '/')) {
    if (!each.empty()) group.emplace_back(each);
  }
  const std::string project = FolderOf(context_.Session().GetProjectPath());
  if (own.target.empty() && folder != project) group.push_back(FileNameOf(folder));
  FolderSync sync(context_);
  listed_.Forget();
  const int code = sync.Add(application.path, group, {folder, own.exclude, own.match});
  if (code != kExitDone) return code;
  Note((group.empty() ? application.label : "the group " + Printable(group.back())) + " follows " +
       context_.Show(folder));
  for (const std::string& each : sync.GetChanges()) Note(each);
  return kExitDone;
}

int Edit::Sync() {
  const EditOptions& own = context_.Own<EditOptions>();
  FolderSync sync(context_);
  const int code = sync.Refresh(context_.Scope(), own.remove, own.dryRun);
  if (code != kExitDone) return code;
  if (!sync.HasFollowed()) {
    return Fail("No group follows a folder. Use `tarn add -r FOLDER` first.");
  }
  for (const std::string& each : sync.GetGone()) context_.Remark(each);
  for (const std::string& each : sync.GetChanges()) Note(each);
  return kExitDone;
}

int Edit::AddOne(const std::string& file) {
  const std::string path = context_.Files().Canonical(
      IsRelativePath(file) ? JoinPath(context_.StartFolder(), file) : file);
  const bool isApplication = EqualNoCase(ExtensionOf(path), kApplicationExtension);
  if (context_.Files().IsFolder(path)) {
    if (context_.Own<EditOptions>().recursive) return AddFolder(path);
    return Fail(context_.Show(path) + " is a folder. Specify the files in it, or use -r.");
  }
  const std::string folder = FolderOf(context_.Session().GetProjectPath());
  if (!IsStorable(path.starts_with(folder) ? path.substr(folder.size()) : path)) {
    return Fail(context_.Show(path) + " can't be added: a project can't store &quot; or &slash;.");
  }
  const Result<bool> exists = context_.Files().CheckExists(path);
  if (!exists) return Fail(context_.ShowFailure(path, "added", exists.GetError().text) + ".");
  const bool isMade = !*exists && ProjectTree(TreeText()).Makes(context_.Files(), path);
  const bool isMissing = !*exists && !isMade;
  if (const std::string why = context_.WhyUnusable(path); !why.empty()) {
    return Fail(context_.ShowFailure(path, "added", why) + ".");
  }
  if (isMissing && (isApplication || !context_.Own<EditOptions>().create)) {
    return Fail(context_.Show(path) + " does not exist." +
                (isApplication ? "" : " Use --create to create an empty one."));
  }
  if (*exists && !context_.Files().Examine(path)) {
    const auto text = context_.Files().ReadWholeFile(path);
    if (!text) return Fail(context_.ShowFailure(path, "added", text.GetError().text) + ".");
  }
  // Applications are top-level nodes; everything else goes where the user specifies.
  const int code = isApplication ? FindNode(context_.Session().GetProjectPath()) : SelectTarget();
  if (code != kExitDone) return code;
  const bool isListed = listed_.Add(path);
  const std::string before = isListed ? TreeText() : std::string();
  if (isMissing) created_.Expect(context_.Files(), path);
  const std::string& tool = context_.Own<EditOptions>().tool;
  const NullableText type = tool.empty() ? NullableText() : NullableText(kGeneratorType);
  if (context_.Session().Manager().AddExistingItem(path, type) == 0) {
    return Fail(context_.Show(path) + " can't be added.");
  }
  if (isMissing && !context_.Files().Exists(path)) {
    context_.Complain(context_.ShowResolved(path) + " can't be created:",
                      context_.Session().TakeLogLines());
    return kExitCannotOpen;
  }
  if (isListed) {
    if (TreeText() == before) {
      context_.Remark(context_.Show(path) + " is already in the project.");
      return kExitDone;
    }
    if (const auto parents = listed_.FindRepeated(path); !parents.empty()) {
      return Fail(context_.Show(path) + " is in \"" + Printable(parents.front()) +
                  "\" already. Use `tarn move` to move it.");
    }
  }
  Note("added " + context_.Show(path));
  const std::string why = tool.empty() ? std::string() : SetGeneratorTool(context_.Session(), tool);
  return why.empty() ? kExitDone : Fail(why);
}

// Finds the application that new nodes go to: the new one, the one of --app, or the active one. Its
// path is empty if there is none.
int Edit::ChooseApplication(ApplicationEntry& application) {
  if (!newApplication_.GetPath().empty()) {
    application.path = newApplication_.GetPath();
    application.label = context_.Own<EditOptions>().application;
    return kExitDone;
  }
  std::vector<ApplicationEntry> chosen;
  if (const int code = context_.ChooseApplications(chosen); code != kExitDone) return code;
  for (const ApplicationEntry& each : chosen) {
    if (application.path.empty() || each.active) application = each;
  }
  return kExitDone;
}

// Makes the parent of new nodes current: the node of --to, which may be a new group, else the
// application.
int Edit::SelectTarget() {
  ApplicationEntry wanted;
  const std::string& target = context_.Own<EditOptions>().target;
  if (const int code = ChooseApplication(wanted); code != kExitDone) return code;
  if (!wanted.path.empty() && !context_.Session().Inspector().SelectApplication(wanted.path)) {
    return Fail(wanted.label + " can't be found.");
  }
  if (target.empty() && wanted.path.empty()) return Fail("This project has no application.");
  if (target.empty()) return kExitDone;
  if (context_.Own<EditOptions>().create && !HasNativeSeparator(target) &&
      context_.SelectNode(target, context_.Scope()) == 0) {
    return MakeGroup(target);
  }
  return FindNode(target);
}

// Creates a group in the current node and makes it current.
int Edit::MakeGroup(const std::string& label) {
  if (!IsStorable(label) || !Change(TARN_CMD_NEW_GROUP) || !context_.RenameCurrentNode(label)) {
    return Fail("The group \"" + label + "\" can't be created.");
  }
  Note("created the group " + Printable(label));
  return kExitDone;
}

int Edit::Remove() {
  for (const std::string& key : words_) {
    if (const int code = FindNode(key); code != kExitDone) return code;
    if (!Change(TARN_CMD_REMOVE_NODE)) return Fail("\"" + key + "\" can't be removed.");
    Note("removed " + Printable(key));
  }
  return kExitDone;
}

// Cut and paste. If the paste fails, the node is missing from the tree, but not from the project's
// files, because nothing is saved in this case.
int Edit::Move() {
  const std::string target = words_.back();
  words_.pop_back();
  for (const std::string& key : words_) {
    if (const int code = FindNode(key); code != kExitDone) return code;
    context_.Session().Manager().Command(TARN_CMD_COPY);
    if (!Change(TARN_CMD_REMOVE_NODE)) return Fail("\"" + key + "\" can't be moved.");
    // The target may be in a different application than the moved node.
    const std::string& application = context_.Scope();
    const bool isInside = context_.SelectNode(target, application) != 0;
    if (!isInside && context_.SelectNode(target, "") == 0) {
      return Fail("\"" + target + "\" was not found outside of \"" + key + "\".");
    }
    const int code = context_.FindNode(target, isInside ? application : "");
    if (code != kExitDone) return code;
    if (!Change(TARN_CMD_PASTE)) {
      return Fail("\"" + target + "\" can't contain \"" + key + "\".");
    }
    Note("moved " + Printable(key) + " to " + Printable(target));
  }
  return kExitDone;
}

int Edit::Rename() {
  const std::string& key = words_[0];
  const std::string& label = words_[1];
  if (Trim(label).empty() || Printable(label) != label || !IsStorable(label)) {
    return Fail("\"" + Printable(label) + "\" is not a valid name for a node.");
  }
  for (const ApplicationEntry& each : ListApplications(context_.Session().Inspector())) {
    if (EqualNoCase(each.label, label)) {
      return Fail("The application \"" + each.label + "\" already exists.");
    }
  }
  if (const int code = FindNode(key); code != kExitDone) return code;
  if (!context_.RenameCurrentNode(label)) return Fail("\"" + key + "\" can't be renamed.");
  Note("renamed " + Printable(key) + " to " + Printable(label));
  return kExitDone;
}

int Edit::SelectApplication() {
  const auto applications = ListApplications(context_.Session().Inspector());
  const FoundApplication found = context_.FindApplication(applications, words_.front());
  const std::string label = found.entry ? found.entry->label : words_.front();
  const auto isNamesake = [&label](const ApplicationEntry& each) {
    return EqualNoCase(each.label, label);
  };
  if (std::count_if(applications.begin(), applications.end(), isNamesake) > 1) {
    // The project identifies its active application by the label.
    const auto first = std::find_if(applications.begin(), applications.end(), isNamesake);
    return Fail("There are several applications \"" + label + "\". Rename one of them first: " +
                "`tarn rename " + context_.Show(first->path) + " NAME`");
  }
  if (!found.entry) return Fail(found.problem);
  const ApplicationEntry& wanted = *found.entry;
  if (wanted.active) {
    context_.Remark(wanted.label + " is already the active application.");
    return kExitDone;
  }
  context_.Session().Inspector().SelectApplication(wanted.path);
  if (!Change(TARN_CMD_SET_ACTIVE_APPLICATION)) return Fail(label + " can't be made active.");
  Note("selected " + Printable(wanted.label));
  return kExitDone;
}

int Edit::Report() {
  if (context_.Asked().json) {
    PrintJson(context_, {{"changes", done_}});
  } else if (!context_.Asked().quiet) {
    for (const std::string& line : done_) context_.Out().PrintLine(line);
  }
  return kExitDone;
}

constexpr const char* kNodeHelp = "Path or label, prefixed with APP/ where needed";

// The command itself interprets its arguments, because the leading project may be omitted.
void DeclareEdit(CommandArguments& arguments) {
  arguments.AddProjectAndApp("Search for NODE in this application");
  arguments.AddEditing();
}

void DeclareNodes(CommandArguments& arguments) {
  DeclareEdit(arguments);
  arguments.Positional("NODE", arguments.Own<EditOptions>().words, kNodeHelp).RequiredByCommand();
}

}  // namespace

CommandSpec AddCommand() {
  return {
      .name = "add",
      .group = CommandGroup::Files,
      .help = "Add files or applications",
      .examples = {{"tarn add blinky.tprj src/uart.c src/uart.h", "to the active application"},
                   {"tarn add . src/*.c --to Sources", "to a group"},
                   {"tarn add -r src --exclude test", "a folder with its subfolders"},
                   {"tarn add --application boot src/boot.c", "to a second application"},
                   {"tarn add --tool embed logo.bin", "to make a source from it"}},
      .access = ProjectAccess::Edit,
      .declare =
          [](CommandArguments& arguments) {
            EditOptions& own = arguments.Own<EditOptions>();
            arguments.AddProjectAndApp("Add to this application");
            arguments
                .Positional("FILE", own.words, "File to add; the extension determines its type")
                .RequiredByCommand();
            arguments.Option("--to", own.target, "NODE", "Group or application to add the files to")
                .NotEmpty();
            arguments.Flag("--create", own.create, "Create missing files and a missing group");
            const Argument recursive = arguments.Flag(
                "-r,--recursive", own.recursive,
                "Add the sources in folders, with groups like these; see `tarn sync`");
            arguments
                .Option("--exclude", own.exclude, "PATTERN",
                        "Leave out these files or folders; may be repeated")
                .Needs(recursive);
            arguments
                .Option("--match", own.match, "PATTERN",
                        "Add only these files, of any type; may be repeated")
                .Needs(recursive);
            const Argument application =
                arguments
                    .Option("--application", own.application, "NAME",
                            "Create an application for the same target, and add the files to it")
                    .NotEmpty();
            arguments
                .Flag("--library", own.isLibrary, "Make it a library that other applications link")
                .Needs(application);
            arguments
                .Option("--compiler", own.compiler, "COMPILER",
                        "Compiler of the new application, e.g. host-gcc for tests on this machine")
                .NotEmpty()
                .Needs(application);
            arguments.Flag("--empty", own.isEmpty, "Add no start-up code to it").Needs(application);
            arguments
                .Option("--tool", own.tool, "NAME",
                        "Make other files from these with this tool; see build-steps.md")
                .NotEmpty();
            arguments.AddEditing();
          },
      .run =
          [](CommandContext& context) {
            const bool isNew = !context.Own<EditOptions>().application.empty();
            return Edit(context, {isNew ? 0U : 1U, true, "FILE...", &Edit::Add}).Run();
          },
  };
}

CommandSpec SyncCommand() {
  return {
      .name = "sync",
      .group = CommandGroup::Files,
      .help = "Add new files of the folders that groups follow",
      .examples = {{"tarn sync --dry-run", "show what would change"},
                   {"tarn sync --remove", "also remove files that are gone"}},
      .access = ProjectAccess::Edit,
      .declare =
          [](CommandArguments& arguments) {
            EditOptions& own = arguments.Own<EditOptions>();
            arguments.AddProjectAndApp("Only groups of this application");
            arguments.Flag("--remove", own.remove, "Remove files that do not exist any more");
            arguments.Flag("-n,--dry-run", own.dryRun, "Change nothing, only show what would be");
            arguments.AddEditing();
          },
      .run =
          [](CommandContext& context) {
            return Edit(context, {0, false, "", &Edit::Sync}).Run();
          },
  };
}

CommandSpec RemoveCommand() {
  return {
      .name = "remove",
      .group = CommandGroup::Files,
      .help = "Remove files, groups or applications from a project",
      .examples = {{"tarn remove . src/uart.c", "the file itself is kept"}},
      .access = ProjectAccess::Edit,
      .declare = DeclareNodes,
      .run =
          [](CommandContext& context) {
            return Edit(context, {1, true, "NODE...", &Edit::Remove}).Run();
          },
  };
}

CommandSpec MoveCommand() {
  return {
      .name = "move",
      .group = CommandGroup::Files,
      .help = "Move files or groups within a project",
      .examples = {{"tarn move . src/uart.c Drivers", "to another group"}},
      .access = ProjectAccess::Edit,
      .declare =
          [](CommandArguments& arguments) {
            DeclareNodes(arguments);
            // Only for the help: the arguments before it consume all values.
            arguments
                .Positional("TARGET", arguments.Own<EditOptions>().target,
                            "Destination: a group, an application, or a file to insert before")
                .RequiredByCommand();
          },
      .run =
          [](CommandContext& context) {
            return Edit(context, {2, true, "NODE... TARGET", &Edit::Move}).Run();
          },
  };
}

CommandSpec RenameCommand() {
  return {
      .name = "rename",
      .group = CommandGroup::Files,
      .help = "Change the label of a file, group or application",
      .examples = {{"tarn rename . blinky flasher", "change the label of a node"}},
      .access = ProjectAccess::Edit,
      .declare =
          [](CommandArguments& arguments) {
            EditOptions& own = arguments.Own<EditOptions>();
            DeclareEdit(arguments);
            arguments.Positional("NODE", own.node, kNodeHelp).RequiredByCommand();
            arguments.Positional("NAME", own.name, "New label").RequiredByCommand();
          },
      .run =
          [](CommandContext& context) {
            return Edit(context, {2, false, "NODE NAME", &Edit::Rename}).Run();
          },
  };
}

CommandSpec SelectCommand() {
  return {
      .name = "select",
      .group = CommandGroup::Files,
      .help = "Set the active application",
      .examples = {{"tarn select . boot", "set the active application"}},
      .access = ProjectAccess::Edit,
      .declare =
          [](CommandArguments& arguments) {
            EditOptions& own = arguments.Own<EditOptions>();
            arguments.AddProject();
            arguments.Positional("APP", own.name, "Label of the application").RequiredByCommand();
            arguments.AddEditing();
          },
      .run =
          [](CommandContext& context) {
            return Edit(context, {1, false, "APP", &Edit::SelectApplication}).Run();
          },
  };
}

}  // namespace tarn::host
