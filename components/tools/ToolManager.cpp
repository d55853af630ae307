#include "components/tools/ToolManager.h"

#include <tarn/methods.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "components/tools/CommandHash.h"
#include "components/tools/FileList.h"
#include "components/tools/GlobalsFile.h"
#include "components/tools/MessageFile.h"
#include "components/tools/RunAccess.h"
#include "components/tools/ToolDefinitionReader.h"
#include "components/tools/ToolPaths.h"
#include "components/tools/ToolRun.h"
#include "components/tools/UsedFiles.h"
#include "components/tools/XmlAttributes.h"
#include "platform/paths/Paths.h"
#include "platform/settings/InstalledData.h"
#include "platform/settings/Settings.h"

namespace tarn::tools {

namespace {

// `isPart`: the only file of the run is not a source, so the run is identified by its output.
std::string StartText(const std::string& tool, const char* files, const ToolPlan& plan,
                      bool isPart) {
  std::vector<std::string> words;
  if (!plan.commands.empty()) {
    const ToolCommand& first = plan.commands.front();
    words = first.arguments;
    words.insert(words.begin(), first.program);
  }
  return "<Tool" + XmlAttribute("Name", tool) + XmlAttribute("Files", OrEmpty(files)) +
         XmlPathAttribute("Output", plan.output) + XmlAttribute("Command", JoinWords(words)) +
         (isPart ? XmlPathAttribute("Subject", plan.output) : "") + "/>";
}

std::string CommandElement(const ToolCommand& command) {
  std::string text = "<Command" + XmlPathAttribute("Program", command.program) +
                     XmlPathAttribute("Folder", command.folder);
  if (command.launched > 0) text += XmlAttribute("Launched", std::to_string(command.launched));
  text += ">";
  for (const std::string& argument : command.arguments) {
    text += "<A" + XmlPathAttribute("V", argument) + "/>";
  }
  return text + "</Command>";
}

}  // namespace

ToolEnvironment ToolEnvironment::Native() {
  return {&ProcessLauncher::Native(), &FileSystem::Native(), FindProgram,
          [](const char* name) {
            const char* value = std::getenv(name);
            return OrEmpty(value);
          },
          [](const std::string& toolchain) {
            const Settings settings(FileSystem::Native(), SettingsFolders::FromEnvironment());
            return settings.ReadProfile("Toolchains", toolchain, {});
          }};
}

const DispatchTable<ToolManager>& ToolManager::Table() {
  static const DispatchTable<ToolManager> table({
      Method<&ToolManager::RunTool>("RunTool", TARN_TOOL_RUN_TOOL,
                                    {"tool", "files", "options", "messageFile"}),
      Method<&ToolManager::InitTools>("InitTools", TARN_TOOL_INIT_TOOLS,
                                      {"applicationPath", "dataPath", "frame"}),
      Method<&ToolManager::GetToolsForExtension>("GetToolsForExtension",
                                                 TARN_TOOL_GET_TOOLS_FOR_EXTENSION, {"extension"}),
      Method<&ToolManager::GetCommandLines>("GetCommandLines", TARN_TOOL_GET_COMMAND_LINES,
                                            {"tool", "files", "options"}),
      Method<&ToolManager::TakeBuildInformation>("TakeBuildInformation",
                                                 TARN_TOOL_TAKE_BUILD_INFORMATION, {}),
      Method<&ToolManager::StopTools>("StopTools", TARN_TOOL_STOP_TOOLS, {}),
      Method<&ToolManager::ResumeTools>("ResumeTools", TARN_TOOL_RESUME_TOOLS, {}),
      Method<&ToolManager::MissingProgram>("MissingProgram", TARN_TOOL_MISSING_PROGRAM, {"tool"}),
      Method<&ToolManager::ListTools>("ListTools", TARN_TOOL_LIST_TOOLS, {}),
      Method<&ToolManager::GetDefinitionErrors>("GetDefinitionErrors",
                                                TARN_TOOL_GET_DEFINITION_ERRORS, {}),
      Method<&ToolManager::GetCommandHash>("GetCommandHash", TARN_TOOL_GET_COMMAND_HASH,
                                           {"tool", "files", "options"}),
      Method<&ToolManager::GetToolFingerprint>("GetToolFingerprint", TARN_TOOL_GET_TOOL_FINGERPRINT,
                                               {"tool"}),
      Method<&ToolManager::GetCommandProblems>("GetCommandProblems", TARN_TOOL_GET_COMMAND_PROBLEMS,
                                               {"tool", "files", "options"}),
      Method<&ToolManager::GetDefinitionProblem>("GetDefinitionProblem",
                                                 TARN_TOOL_GET_DEFINITION_PROBLEM, {}),
      Method<&ToolManager::HasTool>("HasTool", TARN_TOOL_HAS_TOOL, {"tool"}),
      Method<&ToolManager::GetUsedFiles>("GetUsedFiles", TARN_TOOL_GET_USED_FILES,
                                         {"tool", "files", "options", "candidates"}),
      Method<&ToolManager::RefreshTools>("RefreshTools", TARN_TOOL_REFRESH_TOOLS, {}),
      Method<&ToolManager::SetDefinitionFolders>("SetDefinitionFolders",
                                                 TARN_TOOL_SET_DEFINITION_FOLDERS, {"folders"}),
      Method<&ToolManager::GetAccess>("GetAccess", TARN_TOOL_GET_ACCESS,
                                      {"tool", "files", "options"}),
      Method<&ToolManager::GetRunFiles>("GetRunFiles", TARN_TOOL_GET_RUN_FILES,
                                        {"tool", "files", "options"}),
      Method<&ToolManager::SetJobs>("SetJobs", TARN_TOOL_SET_JOBS, {"count"}),
      Method<&ToolManager::GetJobs>("GetJobs", TARN_TOOL_GET_JOBS, {}),
      Method<&ToolManager::JoinJobserver>("JoinJobserver", TARN_TOOL_JOIN_JOBSERVER, {"count"}),
      Method<&ToolManager::SetStartLimits>("SetStartLimits", TARN_TOOL_SET_START_LIMITS,
                                           {"load", "megabytes", "percent"}),
      Method<&ToolManager::PrepareTool>("PrepareTool", TARN_TOOL_PREPARE_TOOL,
                                        {"tool", "files", "options"}),
      Method<&ToolManager::AwaitTool>("AwaitTool", TARN_TOOL_AWAIT_TOOL,
                                      {"tool", "files", "options"}),
      Method<&ToolManager::DropTools>("DropTools", TARN_TOOL_DROP_TOOLS, {}),
      Method<&ToolManager::WatchRuns>("WatchRuns", TARN_TOOL_WATCH_RUNS, {"isWatched"}),
      Method<&ToolManager::TakeRunEvents>("TakeRunEvents", TARN_TOOL_TAKE_RUN_EVENTS, {}),
      Method<&ToolManager::GetActions>("GetActions", TARN_TOOL_GET_ACTIONS,
                                       {"extension", "files", "options"}),
      Method<&ToolManager::ListSymbolPositions>(
          "ListSymbolPositions", TARN_TOOL_LIST_SYMBOL_POSITIONS, {"program", "folder"}),
  });
  return table;
}

ToolManager::ToolManager(ToolEnvironment machine)
    : permits_(machine.environment ? machine.environment("MAKEFLAGS") : std::string()),
      launcher_(machine.launcher, permits_),
      world_{&launcher_, machine.files, std::move(machine.findProgram),
             std::move(machine.environment), std::move(machine.toolchainSetting)},
      early_(permits_) {}

std::int32_t ToolManager::InitTools(const char* applicationPath, const char*,
                                    std::int32_t frameWindow) {
  const std::string given = ToNativeSeparators(OrEmpty(applicationPath));
  const std::string root = given.empty() ? InstalledDataFolder(*world_.files) : given;
  const std::string place = JoinPath(root, "config/tools");
  std::vector<std::string> further;
  {
    const std::lock_guard guard(lock_);
    further = furtherFolders_;
  }
  std::shared_ptr<const ToolSet> read =
      ToolSet::FromFolder(*world_.files, place, further, Locator());
  const std::lock_guard guard(lock_);
  tools_ = std::move(read);
  folder_ = place;
  frame_ = frameWindow;
  return 1;
}

std::int32_t ToolManager::SetDefinitionFolders(const char* folders) {
  std::vector<std::string> list = SplitLines(OrEmpty(folders));
  {
    const std::lock_guard guard(lock_);
    if (list == furtherFolders_) return 0;
    furtherFolders_ = std::move(list);
  }
  return Reload();
}

std::int32_t ToolManager::RefreshTools() {
  helpers_.Clear();
  {
    const std::lock_guard guard(lock_);
    planned_.Clear();
    messagesOfBuild_ = 0;
  }
  return Reload();
}

ToolchainLocator ToolManager::Locator() const {
  const auto findFolder = [this](const std::string& toolchain) {
    std::string folder;
    if (world_.environment) folder = world_.environment(VariableOfToolchain(toolchain).c_str());
    if (folder.empty() && world_.toolchainSetting) folder = world_.toolchainSetting(toolchain);
    if (folder.empty()) return folder;
    folder = AbsolutePath(world_.files, world_.files->CurrentFolder(), folder);
    // A program, such as the compiler, stands for its folder.
    if (!world_.files->IsFolder(folder) && world_.files->Exists(folder)) return FolderOf(folder);
    const std::string programs = JoinPath(folder, "bin");
    return world_.files->IsFolder(programs) ? programs : folder;
  };
  return {findFolder,
          [this](const std::string& path) { return !world_.findProgram(path).empty(); }};
}

std::int32_t ToolManager::Reload() {
  std::string place;
  std::vector<std::string> further;
  {
    const std::lock_guard guard(lock_);
    place = folder_;
    further = furtherFolders_;
  }
  const bool isCurrent =
      place.empty() || (ToolSet::DigestOf(*world_.files, place, further) == Tools()->GetDigest() &&
                        Tools()->HasLocations(Locator()));
  if (isCurrent) return 0;
  std::shared_ptr<const ToolSet> read =
      ToolSet::FromFolder(*world_.files, place, further, Locator());
  const std::lock_guard guard(lock_);
  tools_ = std::move(read);
  return 1;
}

std::int32_t ToolManager::RunTool(const char* tool, const char* files, const char* options,
                                  const char* messageFile) {
  ToolMessages messages;
  Events events;
  bool isDone = Execute(OrEmpty(tool), files, options, messages, events);
  if (events) events->BeginRetiring();
  std::string text = MessageFileText(messages);
  const bool isWanted = messageFile != nullptr && *messageFile != '\0';
  const Status written = isWanted ? world_.files->WriteScratchFile(messageFile, text) : Status();
  if (!written) {
    // Fails the run, because otherwise its warnings would be lost: the next build finds nothing to
    // do.
    isDone = false;
    MessageLog log;
    log.AddError(std::string("the messages can't be written to ") + messageFile + ": " +
                 written.GetError().text);
    for (ToolMessage& each : log.Take()) messages.push_back(std::move(each));
    text = MessageFileText(messages);
  }
  NotifyHost(kMsgToolEnded, text, isDone ? 1 : 0);
  if (events) events->Retire();
  return isDone ? 1 : 0;
}

std::int32_t ToolManager::SetJobs(std::int32_t count) {
  early_.SetJobs(count);
  return 1;
}

std::string ToolManager::JoinJobserver(std::int32_t count) {
  const Result<int> joined = permits_.Join();
  // Without tokens, only one tool is certain not to exceed the number of jobs.
  int jobs = joined ? *joined : 1;
  if (count > 0) jobs = joined && jobs > 0 ? std::min(count, jobs) : count;
  if (jobs > 0) early_.SetJobs(jobs);
  return joined ? std::string() : joined.GetError().text;
}

std::int32_t ToolManager::SetStartLimits(std::int32_t load, std::int32_t megabytes,
                                         std::int32_t percent) {
  constexpr std::int64_t kMegabyte = 1 << 20;
  permits_.SetLimits({load / 100.0, megabytes < 0 ? -1 : megabytes * kMegabyte, percent});
  return 1;
}

std::int32_t ToolManager::PrepareTool(const char* tool, const char* files, const char* options) {
  const auto definition = FindTool(OrEmpty(tool));
  if (!definition || !definition->isEarly) return 0;
  std::unique_ptr<PlannedRun> planned =
      TakePlanned(PlannedRun::KeyOf(tool, files, options), tool, files, options);
  if (!planned->definition) return 0;
  auto run = std::make_unique<EarlyRun>(world_, helpers_, std::move(planned),
                                        std::min(MostMessages(), MessageLog::kMaxOfEarlyRun));
  if (events_.IsWatched()) {
    const std::string start = DescribeStart(OrEmpty(tool), files, run->Job(), run->Plan());
    run->Report(std::make_unique<RunEvents::Run>(events_, start));
  }
  return run->MayRunEarly() && early_.Start(std::move(run)) ? 1 : 0;
}

std::int32_t ToolManager::AwaitTool(const char* tool, const char* files, const char* options) {
  const std::string key = PlannedRun::KeyOf(tool, files, options);
  const EarlyRun* const run = early_.Get(key);
  if (run == nullptr) return 0;
  NotifyStart(OrEmpty(tool), files, key, run->Job(), run->Plan());
  {
    const std::lock_guard guard(lock_);
    notifiedKey_ = key;
  }
  return early_.IsValid(key, MostMessages()) ? 1 : 0;
}

std::int32_t ToolManager::DropTools() {
  early_.Drop();
  return 1;
}

std::int32_t ToolManager::WatchRuns(std::int32_t isWatched) {
  events_.Watch(isWatched != 0);
  return 1;
}

bool ToolManager::Execute(const std::string& toolName, const char* files, const char* options,
                          ToolMessages& messages, Events& events) {
  const std::string key = PlannedRun::KeyOf(toolName.c_str(), files, options);
  if (const auto ended = early_.Take(key)) {
    events = ended->TakeEvents();
    return Deliver(*ended, toolName, files, messages);
  }
  const std::unique_ptr<PlannedRun> planned = TakePlanned(key, toolName.c_str(), files, options);
  ToolInvocation& job = planned->owned.job;
  if (!planned->definition) {
    NotifyHost(kMsgToolStarted, StartText(toolName, files, {}, false), 0);
    MessageLog log;
    log.AddError(DescribeMissing(toolName, job));
    messages = log.Take();
    return false;
  }
  if (!job.repeated.empty() || job.files.size() != 1) job.conflicts = TakeConflicts(job.repeated);
  ToolRun run(world_, running_, helpers_, *planned, MostMessages());
  NotifyStart(toolName, files, key, job, run.Plan());
  if (events_.IsWatched()) {
    events =
        std::make_unique<RunEvents::Run>(events_, DescribeStart(toolName, files, job, run.Plan()));
    if (!planned->definition->action.empty()) {
      run.SetOutputHandler([&events](std::string_view text) { events->AddOutput(text); });
    }
  }
  bool isDone = false;
  {
    const EarlyRuns::Turn turn(early_);
    if (events) events->Start();
    isDone = run.Run();
    if (events) events->End(isDone, run.GetExitCode());
  }
  if (events) events->BeginRetiring();
  CountMessages(run.GetLog().GetRetained());
  messages = run.TakeMessages();
  if (isDone) Keep(run, job);
  return isDone;
}

bool ToolManager::Deliver(EarlyRun& ended, const std::string& toolName, const char* files,
                          ToolMessages& messages) {
  NotifyStart(toolName, files, ended.Key(), ended.Job(), ended.Plan());
  CountMessages(ended.Run().GetLog().GetRetained());
  messages = ended.Run().TakeMessages();
  if (ended.HasSucceeded()) Keep(ended.Run(), ended.Job());
  return ended.HasSucceeded();
}

void ToolManager::NotifyStart(const std::string& toolName, const char* files,
                              const std::string& key, const ToolInvocation& job,
                              const ToolPlan& plan) {
  {
    const std::lock_guard guard(lock_);
    if (std::exchange(notifiedKey_, {}) == key) return;
  }
  NotifyHost(kMsgToolStarted, DescribeStart(toolName, files, job, plan), 0);
}

std::string ToolManager::DescribeStart(const std::string& toolName, const char* files,
                                       const ToolInvocation& job, const ToolPlan& plan) {
  // Tools for objects, such as a disassembler, don't make the object of a link its source.
  const auto tool = FindTool(toolName);
  const bool isLink = tool != nullptr && !tool->libraries.empty();
  const bool isPart = job.files.size() == 1 && !plan.output.empty() &&
                      (isLink || !Tools()->HasExtension(ExtensionOf(job.files.front())));
  return StartText(toolName, files, plan, isPart);
}

// Stores the record of a successful run.
void ToolManager::Keep(const ToolRun& run, const ToolInvocation& job) {
  if (!run.Record()) return;
  const std::lock_guard guard(lock_);
  records_ += BuildRecordText(*run.Record());
  if (job.files.size() == 1) sources_[run.Plan().outputOnDisk].insert(job.files.front());
}

std::size_t ToolManager::MostMessages() {
  const std::lock_guard guard(lock_);
  const std::size_t left =
      MessageLog::kMaxOfBuild - std::min(messagesOfBuild_, MessageLog::kMaxOfBuild);
  return std::max(left, MessageLog::kLeast);
}

void ToolManager::CountMessages(std::size_t retained) {
  const std::lock_guard guard(lock_);
  messagesOfBuild_ += retained;
}

// The outputs to be linked were produced by the runs since the last link.
std::vector<std::string> ToolManager::TakeConflicts(std::vector<std::string>& repeated) {
  const std::lock_guard guard(lock_);
  std::vector<std::string> conflicts;
  for (std::string& output : repeated) {
    const auto found = sources_.find(output);
    if (found == sources_.end()) continue;
    if (found->second.size() < 2) {
      output = *found->second.begin();
      continue;
    }
    std::string text;
    for (const std::string& source : found->second) text += (text.empty() ? "" : " and ") + source;
    conflicts.push_back(text + " have the same output file " + output);
  }
  sources_.clear();
  return conflicts;
}

void ToolManager::NotifyHost(std::uint32_t message, const std::string& text, std::intptr_t lParam) {
  WindowHandle window = 0;
  {
    const std::lock_guard guard(lock_);
    window = frame_;
  }
  if (window == 0) return;
  SendWindowMessage(window, message, reinterpret_cast<std::intptr_t>(text.c_str()), lParam);
}

std::shared_ptr<const ToolSet> ToolManager::Tools() {
  const std::lock_guard guard(lock_);
  return tools_;
}

std::unique_ptr<PlannedRun> ToolManager::Plan(const char* tool, const char* files,
                                              const char* options) {
  auto run = std::make_unique<PlannedRun>(world_, Tools(), tool, files, options);
  run->definition = FindTool(OrEmpty(tool), run->owned.job);
  if (run->definition) run->plan = MakePlan(*run->definition, run->owned.job);
  return run;
}

std::unique_ptr<PlannedRun> ToolManager::TakePlanned(const std::string& key, const char* tool,
                                                     const char* files, const char* options) {
  {
    const std::lock_guard guard(lock_);
    auto run = planned_.Take(key, *tools_);
    if (run) return run;
  }
  return Plan(tool, files, options);
}

std::shared_ptr<const ToolDefinition> ToolManager::FindTool(const std::string& name) {
  const auto set = Tools();
  if (const ToolDefinition* found = set->Find(name)) return {set, found};
  const std::string path = ToNativeSeparators(name);
  if (!HasNativeSeparator(path) || world_.findProgram(path).empty()) return nullptr;
  return std::make_shared<ToolDefinition>(DefinitionOfProgram(path, set->CommonMessages()));
}

std::string ToolManager::GetToolsForExtension(const char* extension) {
  return Tools()->ToolsForExtension(OrEmpty(extension));
}

std::string ToolManager::GetCommandLines(const char* tool, const char* files, const char* options) {
  const std::unique_ptr<PlannedRun> run = Plan(tool, files, options);
  if (!run->definition) return "<Commands/>";
  std::string macros;
  for (const std::string& each : run->definition->predefined) {
    macros.append(macros.empty() ? "" : ";") += each;
  }
  std::string text = "<Commands";
  if (!macros.empty()) text += XmlAttribute("Predefined", macros);
  text += ">";
  for (const ToolCommand& command : run->plan.commands) {
    text += CommandElement(command);
  }
  return text + "</Commands>";
}

std::string ToolManager::GetCommandProblems(const char* tool, const char* files,
                                            const char* options) {
  const std::unique_ptr<PlannedRun> run = Plan(tool, files, options);
  if (!run->definition) {
    const bool isAction = Tools()->FindAction(OrEmpty(tool)) != nullptr;
    return isAction ? DescribeMissing(tool, run->owned.job) + "\n" : std::string();
  }
  std::string lines;
  for (const std::string& each : run->plan.problems) lines += each + "\n";
  return lines;
}

std::string ToolManager::GetCommandHash(const char* tool, const char* files, const char* options) {
  const std::unique_ptr<PlannedRun> run = Plan(tool, files, options);
  return run->definition ? HexText(HashCommands(world_, run->plan)) : std::string();
}

std::string ToolManager::GetToolFingerprint(const char* tool) {
  const auto definition = FindTool(OrEmpty(tool));
  if (!definition) return {};
  std::string text = HexText(definition->fingerprint);
  for (const ToolProgram& program : ProgramsOf(*definition)) {
    text += ' ' + world_.findProgram(program.name);
  }
  for (const std::string& name : definition->helpers.programs) {
    text += ' ' + world_.findProgram(name);
  }
  for (const std::string& name : definition->variables) {
    const std::string value = world_.environment(name.c_str());
    if (!value.empty()) text += ' ' + name + '=' + value;
  }
  return text;
}

std::string ToolManager::GetUsedFiles(const char* tool, const char* files, const char* options,
                                      const char* candidates) {
  const std::unique_ptr<PlannedRun> run = Plan(tool, files, options);
  if (!run->definition) return {};
  std::string list;
  for (const std::string& file : FindUsedFiles(*run->definition, run->plan, run->owned.job.files,
                                               SplitFileList(OrEmpty(candidates)), *world_.files)) {
    list += (list.empty() ? "\"" : ",\"") + file + '"';
  }
  return list;
}

std::string ToolManager::TakeBuildInformation() {
  std::string taken;
  {
    const std::lock_guard guard(lock_);
    taken.swap(records_);
  }
  return taken.empty() ? taken : "<I>" + taken + "</I>";
}

void ToolManager::StopTools() {
  running_.Stop();
  early_.Stop();
}

void ToolManager::ResumeTools() {
  running_.Resume();
  early_.Resume();
}

std::string ToolManager::MissingProgram(const char* tool) {
  const auto definition = FindTool(OrEmpty(tool));
  if (!definition) return {};
  for (const ToolProgram& program : ProgramsOf(*definition)) {
    if (!program.isOptional && world_.findProgram(program.name).empty()) return program.name;
  }
  return {};
}

std::string ToolManager::GetAccess(const char* tool, const char* files, const char* options) {
  return FindAccess(tool, files, options, &PlannedRun::FindAccess);
}

std::string ToolManager::GetRunFiles(const char* tool, const char* files, const char* options) {
  return FindAccess(tool, files, options, &PlannedRun::FindFiles);
}

std::string ToolManager::FindAccess(const char* tool, const char* files, const char* options,
                                    const RunAccess& (PlannedRun::*find)()) {
  std::unique_ptr<PlannedRun> run = Plan(tool, files, options);
  if (!run->definition) return RunAccessText({});
  std::string text = RunAccessText((*run.*find)());
  const std::lock_guard guard(lock_);
  planned_.Add(std::move(run));
  return text;
}

std::string ToolManager::ListSymbolPositions(const char* program, const char* folder) {
  return SymbolPositionsText(*world_.files, OrEmpty(program), OrEmpty(folder));
}

std::string ToolManager::ListTools() {
  return Tools()->ListText();
}

std::string ToolManager::GetDefinitionProblem() {
  return Tools()->Problem();
}

std::int32_t ToolManager::HasTool(const char* tool) {
  return FindTool(OrEmpty(tool)) == nullptr ? 0 : 1;
}

std::string ToolManager::GetDefinitionErrors() {
  std::string lines;
  for (const std::string& error : Tools()->Errors()) lines += error + '\n';
  return lines;
}

}  // namespace tarn::tools
