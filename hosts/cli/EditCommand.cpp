#include <tarn/commands.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/core/LogEntry.h"
#include "hosts/core/ProjectFile.h"
#include "hosts/core/ProjectTemplate.h"
#include "hosts/core/ProjectTree.h"
#include "platform/files/SameName.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr std::string_view kProjectExtension = ".tprj";
constexpr std::string_view kApplicationExtension = ".tapp";

// The number of arguments of a command, without the project.
struct EditWords {
  const char* command;
  std::size_t least;
  bool more;  // may be followed by any number of others
  const char* usage;
};

constexpr EditWords kEditWords[] = {
    {"add", 1, true, "FILE..."},         {"remove", 1, true, "NODE..."},
    {"move", 2, true, "NODE... TARGET"}, {"rename", 2, false, "NODE NAME"},
    {"select", 1, false, "APP"},
};

void CollectParents(FileSystem& files, const CXmlNode& node, const std::string& path,
                    std::vector<std::string>& labels) {
  for (const CXmlNode* child : node.GetChildren()) {
    if (!ProjectTree::IsShown(*child)) continue;
    const bool isFile = IsSameName(files, AttributeOf(child, "Path"), path);
    if (isFile) labels.push_back(AttributeOf(&node, "Header"));
    CollectParents(files, *child, path, labels);
  }
}

// Returns the groups and applications that contain the file, for an application that lists it more
// than once.
std::vector<std::string> ParentsOfRepeated(FileSystem& files, const std::string& tree,
                                           const std::string& path) {
  const ProjectTree project(tree);
  if (project.GetRoot() == nullptr) return {};
  for (const CXmlNode* application : project.GetRoot()->GetChildren()) {
    std::vector<std::string> labels;
    CollectParents(files, *application, path, labels);
    if (labels.size() > 1) return labels;
  }
  return {};
}

// The empty files created by a command. The destructor removes them again unless Keep() is called,
// because nothing refers to them then.
class CreatedFiles {
 public:
  CreatedFiles() = default;
  CreatedFiles(const CreatedFiles&) = delete;
  CreatedFiles& operator=(const CreatedFiles&) = delete;
  ~CreatedFiles() {
    std::error_code ignored;
    for (const std::string& path : paths) {
      // Another program may have written to it in the meantime.
      if (std::filesystem::is_empty(path, ignored)) std::filesystem::remove(path, ignored);
    }
  }

  // Call this before the file is created.
  void Expect(const std::string& path) {
    std::error_code ignored;
    // A dangling link belongs to the user.
    const auto status = std::filesystem::symlink_status(path, ignored);
    if (!std::filesystem::exists(status)) paths.push_back(path);
  }
  void Keep() { paths.clear(); }

 private:
  std::vector<std::string> paths;
};

// One command that changes the tree. Nothing is written unless all of it succeeds.
class Edit {
 public:
  explicit Edit(CommandContext& commandContext)
      : context(commandContext), words(commandContext.Asked().words) {}

  int Run();

 private:
  int TakeWords();
  bool IsProject(const std::string& word) const;
  int Perform();
  int Add();
  int AddOne(const std::string& file);
  int SelectTarget();
  int MakeGroup(const std::string& label);
  int Remove();
  int Move();
  int Rename();
  int SelectApplication();

  int FindNode(const std::string& key) { return context.FindNode(key, context.Scope()); }
  std::string TreeText() { return context.Session().Inspector().GetTree(); }
  // Executes a command. Returns false if the tree has not changed.
  bool Change(std::uint32_t command) {
    const std::string before = TreeText();
    context.Session().Manager().Command(command);
    return TreeText() != before;
  }
  int Fail(const std::string& text, const std::vector<std::string>& more = {}) {
    context.Complain(text, more);
    return kExitUsage;
  }
  void Note(const std::string& text) { done.push_back(text); }
  int Report();

  CommandContext& context;
  std::vector<std::string> words;
  std::string project;
  CreatedFiles created;
  std::vector<std::string> done;  // lines that report the changes
};

int Edit::Run() {
  if (const int code = TakeWords(); code != kExitDone) return code;
  std::string path;
  if (const int code = context.LocateProject(project, path); code != kExitDone) return code;
  if (const int code = context.OpenProject(path); code != kExitDone) return code;
  std::vector<ApplicationEntry> chosen;
  if (const int code = context.ChooseApplications(chosen); code != kExitDone) return code;
  // Publishing makes paths absolute, so that each file has a single name.
  context.Session().Inspector().PublishAll();
  if (const int code = Perform(); code != kExitDone) return code;
  if (!done.empty()) {
    if (const int code = context.SaveProject(); code != kExitDone) return code;
  }
  created.Keep();
  return Report();
}

int Edit::Perform() {
  const std::string& command = context.Asked().command;
  if (command == "add") return Add();
  if (command == "remove") return Remove();
  if (command == "move") return Move();
  if (command == "rename") return Rename();
  return SelectApplication();
}

// The project may be omitted, so the first argument is interpreted according to its value.
int Edit::TakeWords() {
  const std::string& command = context.Asked().command;
  const auto* row =
      std::find_if(std::begin(kEditWords), std::end(kEditWords),
                   [&command](const EditWords& each) { return command == each.command; });
  const Invocation& asked = context.Asked();
  if (!asked.project.empty()) words.insert(words.begin(), asked.project);
  for (const std::string& word : {asked.node, asked.name}) {
    if (!word.empty()) words.push_back(word);
  }
  const bool hasProject = words.size() > row->least && (!row->more || IsProject(words.front()));
  if (hasProject) {
    project = words.front();
    words.erase(words.begin());
  }
  const bool isRight = row->more ? words.size() >= row->least : words.size() == row->least;
  if (isRight) return kExitDone;
  return Fail("Wrong number of arguments. Usage: tarn " + command + " [PROJECT] " + row->usage,
              {"See `tarn " + command + " --help`."});
}

bool Edit::IsProject(const std::string& word) const {
  if (EqualNoCase(ExtensionOf(word), kProjectExtension)) return true;
  const std::string path = IsRelativePath(word) ? JoinPath(context.StartFolder(), word) : word;
  if (!context.Files().IsFolder(path)) return false;
  const FoundProject found = FindProject(context.Files(), word);
  return !found.path.empty() || !found.choices.empty();
}

int Edit::Add() {
  for (const std::string& file : words) {
    if (const int code = AddOne(file); code != kExitDone) return code;
  }
  return kExitDone;
}

int Edit::AddOne(const std::string& file) {
  const std::string path = context.Files().Canonical(
      IsRelativePath(file) ? JoinPath(context.StartFolder(), file) : file);
  const bool isApplication = EqualNoCase(ExtensionOf(path), kApplicationExtension);
  if (context.Files().IsFolder(path)) {
    return Fail(context.Show(path) + " is a folder. Specify the files in it.");
  }
  const std::string folder = FolderOf(context.Session().GetProjectPath());
  if (!IsStorable(path.starts_with(folder) ? path.substr(folder.size()) : path)) {
    return Fail(context.Show(path) + " can't be added: a project can't store &quot; or &slash;.");
  }
  const Result<bool> exists = context.Files().CheckExists(path);
  if (!exists) return Fail(context.ShowFailure(path, "added", exists.GetError().text) + ".");
  const bool isMissing = !*exists;
  if (const std::string why = context.WhyUnusable(path); !why.empty()) {
    return Fail(context.ShowFailure(path, "added", why) + ".");
  }
  if (isMissing && (isApplication || !context.Asked().create)) {
    return Fail(context.Show(path) + " does not exist." +
                (isApplication ? "" : " Use --create to create an empty one."));
  }
  if (!isMissing && !context.Files().Examine(path)) {
    const auto text = context.Files().ReadWholeFile(path);
    if (!text) return Fail(context.ShowFailure(path, "added", text.GetError().text) + ".");
  }
  // Applications are top-level nodes; everything else goes where the user specifies.
  const int code = isApplication ? FindNode(context.Session().GetProjectPath()) : SelectTarget();
  if (code != kExitDone) return code;
  const std::string before = TreeText();
  if (isMissing) created.Expect(path);
  if (context.Session().Manager().AddExistingItem(path) == 0) {
    return Fail(context.Show(path) + " can't be added.");
  }
  if (isMissing && !context.Files().Exists(path)) {
    return Fail(context.ShowResolved(path) + " can't be created:",
                context.Session().TakeLogLines());
  }
  if (TreeText() == before) {
    context.Remark(context.Show(path) + " is already in the project.");
    return kExitDone;
  }
  if (const auto parents = ParentsOfRepeated(context.Files(), TreeText(), path); !parents.empty()) {
    return Fail(context.Show(path) + " is in \"" + Printable(parents.front()) +
                "\" already. Use `tarn move` to move it.");
  }
  Note("added " + context.Show(path));
  return kExitDone;
}

// Makes the parent of new nodes current: the node of --to, which may be a new group, else the
// application.
int Edit::SelectTarget() {
  std::vector<ApplicationEntry> chosen;
  if (const int code = context.ChooseApplications(chosen); code != kExitDone) return code;
  const ApplicationEntry* wanted = nullptr;
  for (const ApplicationEntry& each : chosen) {
    if (wanted == nullptr || each.active) wanted = &each;
  }
  const std::string& target = context.Asked().target;
  if (wanted != nullptr && !context.Session().Inspector().SelectApplication(wanted->path)) {
    return Fail(wanted->label + " can't be found.");
  }
  if (target.empty() && wanted == nullptr) return Fail("This project has no application.");
  if (target.empty()) return kExitDone;
  const bool isGroupName = target.find(kSeparator) == std::string::npos;
  if (context.Asked().create && isGroupName && context.SelectNode(target, context.Scope()) == 0) {
    return MakeGroup(target);
  }
  return FindNode(target);
}

// Creates a group in the current node and makes it current.
int Edit::MakeGroup(const std::string& label) {
  if (!IsStorable(label) || !Change(TARN_CMD_NEW_GROUP) || !context.RenameCurrentNode(label)) {
    return Fail("The group \"" + label + "\" can't be created.");
  }
  Note("created the group " + Printable(label));
  return kExitDone;
}

int Edit::Remove() {
  for (const std::string& key : words) {
    if (const int code = FindNode(key); code != kExitDone) return code;
    if (!Change(TARN_CMD_REMOVE_NODE)) return Fail("\"" + key + "\" can't be removed.");
    Note("removed " + Printable(key));
  }
  return kExitDone;
}

// Cut and paste. If the paste fails, the node is missing from the tree, but not from the project's
// files, because nothing is saved in this case.
int Edit::Move() {
  const std::string target = words.back();
  words.pop_back();
  for (const std::string& key : words) {
    if (const int code = FindNode(key); code != kExitDone) return code;
    context.Session().Manager().Command(TARN_CMD_COPY);
    if (!Change(TARN_CMD_REMOVE_NODE)) return Fail("\"" + key + "\" can't be moved.");
    // The target may be in a different application than the moved node.
    const std::string& application = context.Scope();
    const bool isInside = context.SelectNode(target, application) != 0;
    if (!isInside && context.SelectNode(target, "") == 0) {
      return Fail("\"" + target + "\" was not found outside of \"" + key + "\".");
    }
    const int code = context.FindNode(target, isInside ? application : "");
    if (code != kExitDone) return code;
    if (!Change(TARN_CMD_PASTE)) {
      return Fail("\"" + target + "\" can't contain \"" + key + "\".");
    }
    Note("moved " + Printable(key) + " to " + Printable(target));
  }
  return kExitDone;
}

int Edit::Rename() {
  const std::string& key = words[0];
  const std::string& label = words[1];
  if (Trim(label).empty() || Printable(label) != label || !IsStorable(label)) {
    return Fail("\"" + Printable(label) + "\" is not a valid name for a node.");
  }
  for (const ApplicationEntry& each : ListApplications(context.Session().Inspector())) {
    if (EqualNoCase(each.label, label)) {
      return Fail("The application \"" + each.label + "\" already exists.");
    }
  }
  if (const int code = FindNode(key); code != kExitDone) return code;
  if (!context.RenameCurrentNode(label)) return Fail("\"" + key + "\" can't be renamed.");
  Note("renamed " + Printable(key) + " to " + Printable(label));
  return kExitDone;
}

int Edit::SelectApplication() {
  const auto applications = ListApplications(context.Session().Inspector());
  const FoundApplication found = context.FindApplication(applications, words.front());
  const std::string label = found.entry ? found.entry->label : words.front();
  const auto isNamesake = [&label](const ApplicationEntry& each) {
    return EqualNoCase(each.label, label);
  };
  if (std::count_if(applications.begin(), applications.end(), isNamesake) > 1) {
    // The project identifies its active application by the label.
    const auto first = std::find_if(applications.begin(), applications.end(), isNamesake);
    return Fail("There are several applications \"" + label + "\". Rename one of them first: " +
                "`tarn rename " + context.Show(first->path) + " NAME`");
  }
  if (!found.entry) return Fail(found.problem);
  const ApplicationEntry& wanted = *found.entry;
  if (wanted.active) {
    context.Remark(wanted.label + " is already the active application.");
    return kExitDone;
  }
  context.Session().Inspector().SelectApplication(wanted.path);
  if (!Change(TARN_CMD_SET_ACTIVE_APPLICATION)) return Fail(label + " can't be made active.");
  Note("selected " + Printable(wanted.label));
  return kExitDone;
}

int Edit::Report() {
  if (context.Asked().json) {
    PrintJson(context, {{"changes", done}});
  } else if (!context.Asked().quiet) {
    for (const std::string& line : done) context.Out().PrintLine(line);
  }
  return kExitDone;
}

}  // namespace

int RunEdit(CommandContext& context) {
  return Edit(context).Run();
}

}  // namespace tarn::host
