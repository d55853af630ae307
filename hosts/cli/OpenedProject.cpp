#include "hosts/cli/OpenedProject.h"

#include <algorithm>
#include <functional>
#include <iostream>
#include <nlohmann/json.hpp>
#include <set>

#include "components/common/OptionValues.h"
#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/frame/LogEntry.h"
#include "hosts/frame/NewConfiguration.h"
#include "hosts/frame/ProjectFile.h"
#include "hosts/frame/Suggest.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

std::vector<std::string> LabelsOf(const std::vector<ApplicationEntry>& applications) {
  std::vector<std::string> labels;
  labels.reserve(applications.size());
  for (const ApplicationEntry& each : applications) labels.push_back(each.label);
  return labels;
}

constexpr const char* kChangingCommands[] = {
    "build",         "rebuild", "clean",  "options set", "options reset", "config add",
    "config select", "add",     "remove", "move",        "rename",        "select"};

bool ChangesProject(const std::string& command) {
  return std::find(std::begin(kChangingCommands), std::end(kChangingCommands), command) !=
         std::end(kChangingCommands);
}

}  // namespace

CommandContext::CommandContext(Invocation invocation, Console& output, FileSystem& fileSystem)
    : asked(std::move(invocation)),
      console(output),
      files(fileSystem),
      startFolder(fileSystem.CurrentFolder()) {}

std::string CommandContext::Show(const std::string& path) const {
  return Printable(DisplayPath(path, startFolder));
}

void CommandContext::Complain(const std::string& text) const {
  console.ClearProgress();
  std::cerr << "tarn: " << text << std::endl;
}

void CommandContext::Remark(const std::string& text) const {
  if (!asked.quiet) Complain(text);
}

int CommandContext::LocateProject(std::string& path) {
  return LocateProject(asked.project, path);
}

int CommandContext::LocateProject(const std::string& word, std::string& path) {
  const FoundProject found = FindProject(files, word);
  path = found.path;
  if (!path.empty()) return kExitDone;
  if (found.choices.empty()) {
    Complain(
        found.problem +
        " Name one, make one with `tarn new NAME`, or convert an older one with `tarn import`.");
    return kExitCannotOpen;
  }
  std::string names;
  for (const std::string& each : found.choices) names += "\n  " + each;
  Complain(found.problem + " Name one of them:" + names);
  return kExitUsage;
}

BuildSession& CommandContext::Session() {
  if (!session) {
    session = std::make_unique<BuildSession>(frame, files, HostFolders::FromEnvironment(files));
  }
  return *session;
}

int CommandContext::OpenProject() {
  std::string path;
  if (const int code = LocateProject(path); code != kExitDone) return code;
  return OpenProject(path);
}

int CommandContext::StartSession() {
  const Status started = Session().Start();
  isStarted = static_cast<bool>(started);
  if (started) return kExitDone;
  Complain("This installation isn't complete: " + started.GetError().place + ": " +
           started.GetError().text + ". Install it again, or set TARN_ROOT to its share folder.");
  return kExitCannotOpen;
}

int CommandContext::OpenProject(const std::string& path) {
  if (const int code = StartSession(); code != kExitDone) return code;
  if (const Status opened = Session().Open(path); !opened) {
    const std::string& reason = opened.GetError().text;
    Complain(Show(path) + " can't be opened" + (reason.empty() ? "." : ":\n" + reason));
    return kExitCannotOpen;
  }
  hasOpened = true;
  for (const std::string& line : Session().TakeLogLines()) Remark(line);
  ShowDefinitionErrors();
  ShowDamage();
  if (asked.damagedOk) Session().AcceptAllDamage();
  return ChangesProject(asked.command) && Session().IsDamageHeld() ? RefuseDamaged()
                                                                   : int{kExitDone};
}

void CommandContext::ShowDamageOf(const std::string& path) {
  if ((!isStarted && !Session().Start()) || !Session().Open(path)) return;
  hasOpened = true;
  ShowDamage();
}

// Also if the user wants quiet: other things may be built than the definitions mean.
void CommandContext::ShowDefinitionErrors() {
  if (asked.command == "complete") return;
  for (const std::string& line : Session().GetDefinitionErrors()) Complain(Printable(line));
}

// Also if the user wants quiet, but not in the middle of a line that a shell completes.
void CommandContext::ShowDamage() {
  damage = Session().GetDamage();
  if (damage.empty() || asked.command == "complete") return;
  console.ClearProgress();
  for (const DamageEntry& each : damage) {
    std::cerr << Printable(DescribeDamage(each, Show(each.file))) << "\n";
  }
  Complain("The project was read only in part: the places above are damaged.");
}

int CommandContext::RefuseDamaged() {
  const std::string text = std::string(kDamageRefusal) +
                           " Repair the files, or use --damaged-ok to go on with what was read.";
  Complain(text);
  if (asked.json) {
    PrintJson(*this, {{"result", "refused"}, {"exitCode", int{kExitCannotOpen}}, {"error", text}});
  }
  return kExitCannotOpen;
}

int CommandContext::ChooseApplications(std::vector<ApplicationEntry>& chosen) {
  const ProjectTree tree(Session().Inspector().GetTree());
  chosen.clear();
  for (const ApplicationEntry& each : tree.GetApplications()) {
    if (asked.application.empty() || EqualNoCase(each.label, asked.application)) {
      chosen.push_back(each);
    }
  }
  if (chosen.empty() && !asked.application.empty()) {
    Complain("There is no application \"" + asked.application + "\" in this project." +
             SuggestionText(asked.application, LabelsOf(tree.GetApplications())));
    return kExitUsage;
  }
  return asked.configuration.empty() ? int{kExitDone} : SelectConfiguration(chosen);
}

int CommandContext::SelectConfiguration(const std::vector<ApplicationEntry>& applications) {
  const std::string selected = Session().Manager().GetSelectedApplication();
  std::vector<std::string> known;
  std::vector<const ApplicationEntry*> others;
  bool found = false;
  for (const ApplicationEntry& each : applications) {
    known.insert(known.end(), each.configurations.begin(), each.configurations.end());
    const std::string name = FindConfiguration(each, asked.configuration);
    if (name.empty()) {
      others.push_back(&each);
      continue;
    }
    found = true;
    if (EqualNoCase(name, each.configuration)) continue;
    SwitchTo(each, name);
    switched.push_back(each);
  }
  if (!selected.empty()) Session().Inspector().SelectNodeByKey(selected);
  for (const ApplicationEntry* each : others) {
    if (!found) break;
    Remark("The application \"" + each->label + "\" has no configuration \"" + asked.configuration +
           "\"; it stays with \"" + each->configuration + "\".");
  }
  if (found) return kExitDone;
  Complain("There is no configuration \"" + asked.configuration + "\"." +
           SuggestionText(asked.configuration, known) +
           " `tarn config list` shows them, `tarn config add` makes one.");
  return kExitUsage;
}

void CommandContext::SwitchTo(const ApplicationEntry& application,
                              const std::string& configuration) {
  Session().Manager().SelectApplication(application.label);
  Session().Options().SetNewConfigName(configuration);
  Session().Manager().Command(kCmdSelectConfiguration);
}

int CommandContext::ChooseNode() {
  std::vector<ApplicationEntry> chosen;
  if (const int code = ChooseApplications(chosen); code != kExitDone) return code;
  const ApplicationEntry* wanted = nullptr;
  for (const ApplicationEntry& each : chosen) {
    if (wanted == nullptr || each.active) wanted = &each;
  }
  if (wanted != nullptr) Session().Inspector().SelectNodeByKey(wanted->path);
  if (asked.node.empty()) return kExitDone;
  return FindNode(asked.node, asked.application);
}

int CommandContext::SelectNodeIn(const std::string& key, const std::string& application) {
  // A path is the user's, so it starts in the user's folder.
  const std::string path = IsRelativePath(key) ? files.Canonical(JoinPath(startFolder, key)) : key;
  const int count = Session().Inspector().SelectNodeByKey(path, application);
  return count != 0 ? count : Session().Inspector().SelectNodeByKey(key, application);
}

int CommandContext::SelectNode(const std::string& key, const std::string& application) {
  int count = SelectNodeIn(key, application);
  for (std::size_t slash = key.find('/'); count == 0 && slash != key.npos;
       slash = key.find('/', slash + 1)) {
    const std::string label = key.substr(0, slash);
    if (!label.empty()) count = SelectNodeIn(key.substr(slash + 1), label);
  }
  return count;
}

int CommandContext::FindNode(const std::string& key, const std::string& application) {
  const int count = SelectNode(key, application);
  if (count == 1) return kExitDone;
  const std::string place = application.empty() ? "this project" : "the application " + application;
  if (count == 0) {
    Complain("There is no file, group or application \"" + key + "\" in " + place + "." +
             SuggestionText(key, NodeNames(application)) + " `tarn tree` shows what there is.");
  } else {
    // The wrong one would be taken in half of the cases.
    const bool isAnywhere = application.empty() && SelectNodeIn(key, "") != 0;
    Complain("\"" + key + "\" is in " + place + " several times. Write its path" +
             (isAnywhere ? ", or APP/" + key + " for that of an application." : ".") + " GROUP/" +
             key + " means that of a group, \"" + key + "#1\" the first of them.");
  }
  return kExitUsage;
}

// What a node can be called: labels, and paths as seen from the user's folder.
std::vector<std::string> CommandContext::NodeNames(const std::string& application) {
  Session().Inspector().PublishAll();  // so that paths are absolute
  std::set<std::string> names;
  const ProjectTree tree(Session().Inspector().GetTree());
  const std::function<void(const CXmlNode&)> collect = [&](const CXmlNode& node) {
    const std::string path = AttributeOf(&node, "Path");
    names.insert(AttributeOf(&node, "Header"));
    names.insert(DisplayPath(path, startFolder));
    for (const CXmlNode* child : node.GetChildren()) {
      if (ProjectTree::IsShown(*child)) collect(*child);
    }
  };
  if (tree.GetRoot() == nullptr) return {};
  for (const CXmlNode* node : tree.GetRoot()->GetChildren()) {
    const bool isMeant =
        application.empty() || EqualNoCase(AttributeOf(node, "Header"), application);
    if (ProjectTree::IsShown(*node) && isMeant) collect(*node);
  }
  names.erase("");
  return {names.begin(), names.end()};
}

bool CommandContext::RenameCurrentNode(const std::string& label) {
  const std::string values = Session().Options().GetValuesAsText();
  const std::string set = OptionValues::FromText(values).GetOwnSet();
  return Session().Manager().SavePropertyValue(set, "General", "Header", label) != 0;
}

int CommandContext::SaveProject() {
  for (const ApplicationEntry& each : switched) SwitchTo(each, each.configuration);
  switched.clear();
  // Of what the command has added itself.
  if (Session().IsDamageHeld()) {
    ShowDamage();
    return RefuseDamaged();
  }
  Session().Manager().ProjectSave();
  std::vector<std::string> copies;
  const std::vector<std::string> lines = Session().TakeSaveProblems(copies);
  for (const std::string& line : copies) Remark(line);
  if (lines.empty()) return kExitDone;
  std::string text = "The project couldn't be saved:";
  for (const std::string& line : lines) text += "\n" + line;
  Complain(text);
  return kExitCannotOpen;
}

}  // namespace tarn::host
