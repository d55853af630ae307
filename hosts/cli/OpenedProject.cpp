#include "hosts/cli/OpenedProject.h"

#include <tarn/commands.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <set>
#include <thread>

#include "components/values/OptionValues.h"
#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/cli/EditRecord.h"
#include "hosts/cli/ShellText.h"
#include "hosts/core/ChangeLabel.h"
#include "hosts/core/LogEntry.h"
#include "hosts/core/NewConfiguration.h"
#include "hosts/core/ProjectFile.h"
#include "platform/files/SameName.h"
#include "platform/paths/Paths.h"
#include "platform/text/Suggest.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

// Changes by other programs take far less time.
constexpr std::chrono::seconds kLongestWait(30);
constexpr std::chrono::seconds kSilentWait(1);
constexpr std::chrono::milliseconds kBetweenTries(10);

}  // namespace

CommandContext::CommandContext(Invocation invocation, Console& output, FileSystem& fileSystem)
    : asked_(std::move(invocation)),
      console_(output),
      files_(fileSystem),
      startFolder_(fileSystem.CurrentFolder()) {}

std::string CommandContext::Show(const std::string& path) const {
  return Printable(DisplayPath(path, startFolder_));
}

std::string CommandContext::ShowResolved(const std::string& path) const {
  const std::string full = IsRelativePath(path) ? JoinPath(startFolder_, path) : path;
  if (FileNameOf(full).empty()) return Printable(files_.ResolveLinks(full));
  return Printable(RealName(files_, full));
}

std::string CommandContext::ShowFailure(const std::string& path, const std::string& action,
                                        const std::string& reason) const {
  return ShowResolved(path) + " can't be " + action + ": " + Printable(reason);
}

std::string CommandContext::WhyUnusable(const std::string& path) const {
  if (files_.Exists(path)) return {};
  const auto text = files_.ReadWholeFile(path);
  const bool isName = text || text.GetError().code != ErrorCode::InvalidName;
  return isName ? std::string() : text.GetError().text;
}

void CommandContext::Complain(const std::string& text, const std::vector<std::string>& more) const {
  lastComplaint_ = text;
  for (const std::string& line : more) lastComplaint_ += "\n" + line;
  console_.Complain(text, more);
}

void CommandContext::Remark(const std::string& text) const {
  if (!asked_.quiet) Complain(text);
}

int CommandContext::LocateProject(std::string& path) {
  return LocateProject(asked_.project, path);
}

int CommandContext::LocateProject(const std::string& word, std::string& path) {
  const FoundProject found = FindProject(files_, word);
  path = found.path;
  if (!path.empty()) return kExitDone;
  if (found.choices.empty()) {
    Complain(
        found.problem +
        " Specify one, create one with `tarn new NAME`, or import an old one with `tarn import`.");
    return kExitCannotOpen;
  }
  std::vector<std::string> names;
  for (const std::string& each : found.choices) names.push_back("  " + each);
  Complain(found.problem + " Specify one of them:", names);
  return kExitUsage;
}

BuildSession& CommandContext::Session() {
  if (!session_) {
    session_ = std::make_unique<BuildSession>(frame_, files_, HostFolders::FromEnvironment(files_));
  }
  return *session_;
}

int CommandContext::OpenProject() {
  std::string path;
  if (const int code = LocateProject(path); code != kExitDone) return code;
  return OpenProject(path);
}

int CommandContext::RefuseLog(const std::string& project, const Error& error) {
  if (error.code == ErrorCode::NotFound) {
    Complain("No build of " + Show(project) + " has written a log yet. Run `tarn build` first.");
  } else {
    Complain("The log " + ShowFailure(LogPathOf(project), "read", error.text) + ".");
  }
  return kExitCannotOpen;
}

int CommandContext::ReadLog(const std::string& project, std::string& text) {
  const std::string path = LogPathOf(project);
  auto log = files_.ReadOwnFile(path);
  if (!log) return RefuseLog(project, log.GetError());
  text = std::move(*log);
  if (Trim(text).empty()) {
    Remark("The log " + ShowResolved(path) + " is empty.");
  } else if (const std::string fault = FindLogDamage(text); !fault.empty()) {
    Remark("The log is damaged and may lack messages: " + ShowResolved(path) + ":" +
           Printable(fault) + ".");
  }
  return kExitDone;
}

int CommandContext::StartSession() {
  if (isStarted_) return kExitDone;
  const Status started = Session().Start();
  isStarted_ = static_cast<bool>(started);
  if (started) {
    BuildLimits limits = asked_.limits;
    limits.joinsJobserver = Access() == ProjectAccess::Build || Access() == ProjectAccess::Script;
    // Also with --quiet, since the build takes longer than it could.
    for (const std::string& each : Session().SetLimits(limits)) Complain(Printable(each));
    return kExitDone;
  }
  if (Session().IsOwnDefinition(started.GetError())) {
    Complain(Printable(started.GetError().place) +
             " has to be corrected: " + started.GetError().text + ".");
    return kExitCannotOpen;
  }
  Complain("This installation is incomplete: " + started.GetError().place + ": " +
           started.GetError().text + ". Reinstall it, or set TARN_ROOT to its share folder.");
  return kExitCannotOpen;
}

int CommandContext::OpenProject(const std::string& path) {
  if (const int code = StartSession(); code != kExitDone) return code;
  const ProjectAccess access = Access();
  const bool isEdit = access == ProjectAccess::Edit;
  Session().Inspector().AllowOutside(asked_.outsideOk);
  if (asked_.trust) Session().Trust().TrustAll();
  // All or nothing, so that a failed command can simply be repeated.
  Session().Inspector().SaveAllOrNone(true);
  // A script may change the project.
  Session().Inspector().OpenForReading(!isEdit && access != ProjectAccess::Script);
  if (isEdit) {
    if (const int code = LockEdits(path); code != kExitDone) return code;
  }
  if (const Status opened = Session().Open(path); !opened) {
    ShowDamage(Session().GetFailedDamage());
    const std::vector<std::string> reasons = SplitLines(opened.GetError().text);
    Complain(ShowResolved(path) + " can't be opened" + (reasons.empty() ? "." : ":"), reasons);
    return kExitCannotOpen;
  }
  hasOpened_ = true;
  for (const std::string& line : Session().TakeLogLines()) Remark(line);
  ShowDefinitionErrors();
  ShowDamage(Session().GetDamage());
  if (HasUnread(damage_)) {
    if (access != ProjectAccess::Complete) Complain(kUnreadRefusal);
    return kExitCannotOpen;
  }
  if (asked_.damagedOk) Session().AcceptAllDamage();
  if (isEdit) openedFiles_ = ReadProjectFiles(Session().Inspector());
  const bool isChange = isEdit || access == ProjectAccess::Build;
  return isChange ? CheckDamage() : int{kExitDone};
}

// The lock is held from before the project is read until the end of the command, so that no other
// program changes the project in between.
int CommandContext::LockEdits(const std::string& path) {
  const auto start = std::chrono::steady_clock::now();
  bool isReported = false;
  while (true) {
    Session().TakeLogLines();
    const std::string holder = Session().Inspector().TryLockProject(path);
    const std::vector<std::string> problems = Session().TakeLogLines();
    if (holder.empty()) {
      for (const std::string& line : problems) Remark(Printable(line));
      return kExitDone;
    }
    // Waiting would not help if no process holds the lock.
    if (!problems.empty()) {
      for (const std::string& line : problems) Complain(Printable(line) + ".");
      return kExitCannotOpen;
    }
    const auto waited = std::chrono::steady_clock::now() - start;
    if (asked_.noWait || waited > kLongestWait) {
      Complain("Another program is changing this project (" + holder + ").");
      return kExitCannotOpen;
    }
    if (!isReported && waited > kSilentWait) {
      Remark("Waiting for another program that is changing this project (" + holder + ") ...");
      isReported = true;
    }
    std::this_thread::sleep_for(kBetweenTries);
  }
}

void CommandContext::ShowDamageOf(const std::string& path) {
  if ((!isStarted_ && !Session().Start()) || !Session().Open(path)) return;
  hasOpened_ = true;
  if (asked_.damagedOk) Session().AcceptAllDamage();
  ShowDamage(Session().GetDamage());
}

// Printed even with --quiet, because the build may not do what the definitions intend.
void CommandContext::ShowDefinitionErrors() {
  if (Access() == ProjectAccess::Complete) return;
  for (const std::string& line : Session().GetDefinitionErrors()) Complain(Printable(line));
  if (Session().GetIgnoredDefinitions().empty()) return;
  Complain("If you trust its origin, `tarn trust " +
           ShellWord(FolderOf(Session().GetProjectPath())) +
           "` makes its definitions available permanently, and --trust for one run.");
}

void CommandContext::ShowDamage(std::vector<DamageEntry> found) {
  damage_ = std::move(found);
  if (damage_.empty() || Access() == ProjectAccess::Complete) return;
  for (const DamageEntry& each : damage_) {
    console_.PrintError(Printable(DescribeDamage(each, Show(each.file))));
  }
  Complain("Only part of the project was read: the locations above are damaged.");
}

bool CommandContext::MayWriteOutside(const std::string& project) {
  return asked_.outsideOk || asked_.trust || Session().Trust().IsTrusted(FolderOf(project));
}

std::vector<std::string> CommandContext::ShowRefused() {
  std::vector<std::string> wishes = Session().Trust().TakeRefused();
  if (wishes.empty()) return wishes;
  const std::string folder = FolderOf(Session().GetProjectPath());
  for (const std::string& each : wishes) {
    Complain("The project wants to " + Printable(each) + ".");
  }
  Complain("Its folder is not trusted, so this was refused. If you trust its origin, `tarn trust " +
           ShellWord(folder) + "` allows it permanently, and --trust for one run.");
  return wishes;
}

int CommandContext::RefuseDamaged() {
  if (HasUnread(damage_)) {
    Complain(kUnreadRefusal);
    return kExitCannotOpen;
  }
  Complain(std::string(kDamageRefusal) +
           " Repair the files, or use --damaged-ok to continue with what was read.");
  return kExitCannotOpen;
}

int CommandContext::CheckDamage() {
  return Session().IsDamageHeld() ? RefuseDamaged() : int{kExitDone};
}

int CommandContext::ChooseApplications(std::vector<ApplicationEntry>& chosen) {
  chosen = ListApplications(Session().Inspector());
  if (!asked_.application.empty()) {
    const FoundApplication found = FindApplication(chosen, asked_.application);
    if (!found.entry) {
      Complain(found.problem);
      return kExitUsage;
    }
    chosen = {*found.entry};
    scope_ = found.entry->path;
  }
  return asked_.configuration.empty() ? int{kExitDone} : SelectConfiguration(chosen);
}

int CommandContext::ChoosePreparedApplications(std::vector<ApplicationEntry>& chosen) {
  Session().Inspector().PublishAll();  // makes paths absolute
  if (const int code = ChooseApplications(chosen); code != kExitDone) return code;
  Session().Prepare();
  const std::vector<ApplicationEntry> current = ListApplications(Session().Inspector());
  for (ApplicationEntry& each : chosen) {
    const auto found = std::ranges::find(current, each.path, &ApplicationEntry::path);
    if (found != current.end()) each = *found;
  }
  return kExitDone;
}

FoundApplication CommandContext::FindApplication(const std::vector<ApplicationEntry>& applications,
                                                 const std::string& key) const {
  const auto shorten = [this](const std::string& path) { return Show(path); };
  FoundApplication found = host::FindApplication(applications, key, shorten);
  if (found.entry) return found;
  // Relative paths are resolved against the user's working folder.
  const std::string path = files_.Canonical(JoinPath(startFolder_, key));
  FoundApplication named = host::FindApplication(applications, path, shorten);
  return named.entry ? named : found;
}

int CommandContext::SelectConfiguration(const std::vector<ApplicationEntry>& applications) {
  const std::string selected = Session().Manager().GetSelectedApplication();
  std::vector<std::string> known;
  std::vector<const ApplicationEntry*> others;
  bool found = false;
  for (const ApplicationEntry& each : applications) {
    known.insert(known.end(), each.configurations.begin(), each.configurations.end());
    const std::string name = FindConfiguration(each, asked_.configuration);
    if (name.empty()) {
      others.push_back(&each);
      continue;
    }
    found = true;
    if (EqualNoCase(name, each.configuration)) continue;
    SwitchTo(each, name);
    switched_.push_back(each);
  }
  if (!selected.empty()) Session().Inspector().SelectNodeByKey(selected);
  for (const ApplicationEntry* each : others) {
    if (!found) break;
    Remark("The application \"" + each->label + "\" has no configuration \"" +
           asked_.configuration + "\"; it keeps \"" + each->configuration + "\".");
  }
  if (found) return kExitDone;
  Complain("Unknown configuration \"" + asked_.configuration + "\"." +
           SuggestionText(asked_.configuration, known) +
           " See `tarn config list`; `tarn config add` adds one.");
  return kExitUsage;
}

void CommandContext::SwitchTo(const ApplicationEntry& application,
                              const std::string& configuration) {
  Session().Inspector().SelectApplication(application.path);
  Session().Options().SetNewConfigName(configuration);
  Session().Manager().Command(TARN_CMD_SELECT_CONFIGURATION);
}

int CommandContext::ChooseNode() {
  std::vector<ApplicationEntry> chosen;
  if (const int code = ChooseApplications(chosen); code != kExitDone) return code;
  const ApplicationEntry* wanted = nullptr;
  for (const ApplicationEntry& each : chosen) {
    if (wanted == nullptr || each.active) wanted = &each;
  }
  if (wanted != nullptr) Session().Inspector().SelectApplication(wanted->path);
  if (asked_.node.empty()) return kExitDone;
  return FindNode(asked_.node, scope_);
}

int CommandContext::SelectNodeIn(const std::string& key, const std::string& application) {
  // Relative paths are resolved against the user's working folder.
  const std::string path =
      IsRelativePath(key) ? files_.Canonical(JoinPath(startFolder_, key)) : key;
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
  const std::string place =
      application.empty() ? "this project" : "the application " + asked_.application;
  if (count == 0) {
    Complain("No file, group or application is called \"" + key + "\" in " + place + "." +
             SuggestionText(key, NodeNames(application)) + " See `tarn tree`.");
  } else {
    // Refused, because a guess could easily pick the wrong one.
    const bool isAnywhere = application.empty() && SelectNodeIn(key, "") != 0;
    const bool isPath = files_.Exists(files_.Canonical(JoinPath(startFolder_, key)));
    std::string advice;
    if (!isPath) advice = " Specify its path.";
    if (isAnywhere) advice += " APP/" + key + " is the one in an application.";
    Complain("\"" + key + "\" is in " + place + " several times." + advice + " GROUP/" + key +
             " is the one in a group, \"" + key + "#1\" the first of them.");
  }
  return kExitUsage;
}

// Returns the names accepted for a node: labels, and paths relative to the user's working folder.
std::vector<std::string> CommandContext::NodeNames(const std::string& application) {
  Session().Inspector().PublishAll();  // makes paths absolute
  std::set<std::string> names;
  const ProjectTree tree(Session().Inspector().GetTree());
  const std::function<void(const CXmlNode&)> collect = [&](const CXmlNode& node) {
    const std::string path = GetAttribute(&node, "Path");
    names.insert(GetAttribute(&node, "Header"));
    names.insert(DisplayPath(path, startFolder_));
    for (const CXmlNode* child : node.GetChildren()) {
      if (ProjectTree::IsShown(*child)) collect(*child);
    }
  };
  if (tree.GetRoot() == nullptr) return {};
  for (const CXmlNode* node : tree.GetRoot()->GetChildren()) {
    const bool isMeant = application.empty() || GetAttribute(node, "Path") == application;
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
  RestoreConfigurations();
  if (openedFiles_.empty()) return SaveFiles();
  // Read before the save, which merges in changes by other programs.
  const FileChanges changes = FindChanges(openedFiles_, ReadProjectFiles(Session().Inspector()));
  const int code = SaveFiles();
  if (code == kExitDone) RecordEdit(Session().GetProjectPath(), DescribeChanges(changes), changes);
  return code;
}

void CommandContext::RecordEdit(const std::string& project, const std::string& label,
                                const FileChanges& changes) {
  if (changes.empty()) return;
  EditRecord record(files_, project);
  const Status& read = record.GetStatus();
  if (!read && read.GetError().code != ErrorCode::NotFound) {
    Remark("The changes before this one can't be undone: " + ShowResolved(read.GetError().place) +
           ": " + Printable(read.GetError().text));
  }
  record.Add({label, changes});
  WriteRecord(record);
}

void CommandContext::WriteRecord(EditRecord& record) {
  if (const Status written = record.Write(); !written) {
    Remark("The data for `tarn undo` can't be written: " + ShowResolved(written.GetError().place) +
           ": " + Printable(written.GetError().text));
    record.Remove();  // would otherwise end with a step other than this one
  }
}

void CommandContext::RestoreConfigurations() {
  for (const ApplicationEntry& each : switched_) SwitchTo(each, each.configuration);
  switched_.clear();
}

int CommandContext::SaveFiles() {
  // Damage that the command itself has added.
  if (Session().IsDamageHeld()) {
    ShowDamage(Session().GetDamage());
    return RefuseDamaged();
  }
  // Earlier log lines are not about the save.
  for (const std::string& line : Session().TakeLogLines()) Remark(line);
  Session().Manager().ProjectSave();
  const SaveReport report = Session().TakeSaveReport();
  for (const std::string& line : report.notes) Remark(Printable(line));
  if (report.problems.empty()) return kExitDone;
  std::vector<std::string> lines = report.problems;
  if (report.isOutside) lines.emplace_back("Use --outside-ok to write it anyway.");
  Complain("The project couldn't be saved:", lines);
  return kExitCannotOpen;
}

}  // namespace tarn::host
