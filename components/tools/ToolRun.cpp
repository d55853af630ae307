#include "components/tools/ToolRun.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <set>

#include "components/tools/CdbSymbols.h"
#include "components/tools/CommandHash.h"
#include "components/tools/FileList.h"
#include "components/tools/GlobalsFile.h"
#include "components/tools/ObjectSections.h"
#include "components/tools/RandomNames.h"
#include "components/tools/StreamedText.h"
#include "components/tools/ToolSet.h"
#include "components/tools/ToolText.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::tools {

namespace {

constexpr std::size_t kMaxCaptured = 1 << 20;

std::string CommandLine(const ToolCommand& command) {
  std::vector<std::string> words{command.program};
  words.insert(words.end(), command.arguments.begin(), command.arguments.end());
  return CleanLine(JoinWords(words));
}

std::string Shortened(std::string line) {
  if (line.size() > LineAssembler::kMaxLine) {
    line.resize(LineAssembler::kMaxLine);
    line += " ...";
  }
  return line;
}

// Adds the folder of a file and some above it, without duplicates.
void AddFoldersAbove(const std::string& path, std::vector<std::string>& folders) {
  constexpr int kMostLevels = 8;
  std::string folder = FolderOf(path);
  for (int level = 0; level < kMostLevels && !FileNameOf(folder).empty(); ++level) {
    if (std::ranges::find(folders, folder) == folders.end()) folders.push_back(folder);
    folder = FolderOf(folder);
  }
}

bool TakesFiles(const ToolCommand& command) {
  return std::ranges::any_of(command.rule->arguments, [](const ArgumentRule& each) {
    return each.source == ArgumentRule::Source::Files;
  });
}

// Explains why an application can't be built: nothing in it has an output that could be linked.
std::string DescribeNoFiles(const ToolInvocation& job) {
  std::string name = job.values->Get("Application", "General", "Header");
  if (name.empty()) name = job.values->Get("", "General", "ApplicationName");
  return "the application " + name +
         " has no files to build; add some, for example with `tarn add FILE`";
}

}  // namespace

ToolRun::ToolRun(const ToolEnvironment& machine, RunningToolSet& runningTools,
                 HelperFinder& helperFinder, const PlannedRun& planned, std::size_t mostMessages)
    : world_(machine),
      running_(runningTools),
      helpers_(helperFinder),
      tool_(*planned.definition),
      job_(planned.owned.job),
      plan_(planned.plan),
      log_(mostMessages) {}

bool ToolRun::Run() {
  for (const std::string& conflict : job_.conflicts) log_.AddError(conflict);
  if (!job_.conflicts.empty() || !Prepare()) return false;
  for (const std::string& name : job_.repeated) {
    const std::string text = "is listed more than once; it is linked once";
    log_.Add({Severity::Warning, name + ": warning: " + text, text, name, {}});
  }
  const bool isDone =
      std::ranges::all_of(plan_.commands,
                          [this](const ToolCommand& command) { return RunCommand(command); }) &&
      CollectRecord();
  if (!isDone) {
    CollectFailedInputs();
    RemoveLeft();
  }
  return isDone;
}

// Removes what a failed run has left next to its output: no record of a run will mention it.
void ToolRun::RemoveLeft() const {
  for (const std::string& path : FindByProducts()) {
    static_cast<void>(world_.files->RemoveScratchFile(path));
  }
}

// Creates the folders of the output files and removes the dependency files of earlier runs.
bool ToolRun::Prepare() {
  for (const std::string& problem : plan_.problems) log_.AddError(problem);
  if (!plan_.problems.empty()) return false;
  if (RefusesNames() || RefusesOwnOutput()) return false;
  startTime_ = world_.files->Clock();
  std::vector<std::string> written{plan_.outputOnDisk, plan_.listing, plan_.rules,
                                   plan_.furtherRules, plan_.globals};
  written.insert(written.end(), plan_.products.begin(), plan_.products.end());
  std::set<std::string> folders;
  for (const std::string& path : written) folders.insert(FolderOf(path));
  for (const std::string& folder : folders) {
    if (folder.empty()) continue;
    const Status made = world_.files->CreateNamedFolders(folder);
    if (!made) {
      log_.AddError("the folder " + folder + " can't be created: " + made.GetError().text);
      return false;
    }
  }
  for (const std::string& rules : {plan_.rules, plan_.furtherRules}) {
    if (!rules.empty()) static_cast<void>(world_.files->RemoveScratchFile(rules));
  }
  if (!plan_.commands.empty() && !RemoveEarlier()) return false;
  ExamineEarlier();
  return true;
}

void ToolRun::ExamineEarlier() {
  std::vector<std::string> kept = plan_.keptProducts;
  kept.insert(kept.end(), plan_.byProducts.begin(), plan_.byProducts.end());
  kept.push_back(plan_.globals);
  if (tool_.globals.format == GlobalsRule::Format::Cdb) kept.push_back(CdbPath());
  for (const std::string& path : kept) {
    const auto status = path.empty() ? std::nullopt : world_.files->ExamineExactly(path);
    if (status) earlier_.emplace(path, *status);
  }
  isPrepared_ = true;
}

// Returns true if the file exists and was written by this run. Its time alone doesn't tell: another
// program may have written it in the clock tick in which the run started, and the clock of a file
// server may differ.
bool ToolRun::HasWritten(const std::string& path) const {
  if (!isPrepared_ || path.empty()) return false;
  const auto status = world_.files->ExamineExactly(path);
  const auto earlier = earlier_.find(path);
  return status && (earlier == earlier_.end() || !IsSameVersion(*status, earlier->second));
}

// A tool could write a file with such a name, but it would not be found here.
bool ToolRun::RefusesNames() {
  std::vector<std::string> names = job_.files;
  names.push_back(plan_.output);
  for (const std::string& name : names) {
    const bool hasControl = std::any_of(name.begin(), name.end(), [](char c) {
      return static_cast<unsigned char>(c) < ' ' || c == '\x7f';
    });
    if (!hasControl) continue;
    log_.AddError(CleanLine(name) + " can't be built: its name holds a control character");
    return true;
  }
  return false;
}

// An application without files is passed with its own output.
bool ToolRun::RefusesOwnOutput() {
  const bool isOwn = job_.files.size() == 1 && job_.files.front() == plan_.outputOnDisk;
  if (!isOwn || !std::ranges::any_of(plan_.commands, TakesFiles)) return false;
  log_.AddError(DescribeNoFiles(job_));
  return true;
}

// Removes the outputs of an earlier run: a tool that ends without an error and without an output
// must not seem to have produced it, and some tools append to existing files.
bool ToolRun::RemoveEarlier() {
  std::vector<std::string> made{plan_.outputOnDisk, plan_.listing};
  made.insert(made.end(), plan_.products.begin(), plan_.products.end());
  for (const std::string& path : made) {
    const bool isInput = std::find(job_.files.begin(), job_.files.end(), path) != job_.files.end();
    const auto& kept = plan_.keptProducts;
    if (std::find(kept.begin(), kept.end(), path) != kept.end()) continue;
    if (path.empty() || isInput || !world_.files->ExamineExactly(path)) continue;
    const Status removed = world_.files->RemoveFile(path);
    if (removed) continue;
    log_.AddError(path + " can't be removed: " + removed.GetError().text);
    return false;
  }
  return true;
}

void ToolRun::RemoveResults() {
  std::vector<std::string> made = FindProducts();
  made.push_back(plan_.outputOnDisk);
  for (std::string& path : FindByProducts()) made.push_back(std::move(path));
  for (const std::string& path : made) {
    const bool isInput = std::find(job_.files.begin(), job_.files.end(), path) != job_.files.end();
    if (!isInput && HasWritten(path)) static_cast<void>(world_.files->RemoveOwnFile(path));
  }
}

bool ToolRun::RunCommand(const ToolCommand& command) {
  if (running_.IsStopping()) return log_.AddPlain("stopped"), false;
  log_.AddPlain(Shortened(CommandLine(command)));
  ProcessRequest request{command.program, command.arguments, command.environment, command.folder};
  request.keepsInputOpen = command.rule->keepsInputOpen;
  std::string response;
  if (!WriteResponseFile(command, request, response)) return false;
  // A link of this name would redirect the program's output.
  for (const auto& [scratch, path] : command.moves) {
    static_cast<void>(world_.files->RemoveScratchFile(scratch));
  }
  const bool isDone = RunProcess(command, request);
  if (!isDone) ExplainFailure(command);
  if (!response.empty()) static_cast<void>(world_.files->RemoveScratchFile(response));
  return MoveResults(command, isDone);
}

// Moves files that the program wrote under a temporary name to their final paths.
bool ToolRun::MoveResults(const ToolCommand& command, bool isDone) {
  for (const auto& [scratch, path] : command.moves) {
    const auto bytes = world_.files->ReadWholeFile(scratch);
    if (!bytes) continue;
    static_cast<void>(world_.files->RemoveScratchFile(scratch));
    if (!isDone) continue;
    const Status written = world_.files->WriteScratchFile(path, *bytes);
    if (!written) isDone = Fail(command, path + ": " + written.GetError().text);
  }
  return isDone;
}

// Stores the name of the file in `response` if one was needed.
bool ToolRun::WriteResponseFile(const ToolCommand& command, ProcessRequest& request,
                                std::string& response) {
  const StepRule& rule = *command.rule;
  const bool isNeeded = rule.response != ResponseStyle::None && command.arguments.size() > 1 &&
                        CommandLength(command.arguments) > rule.responseAbove;
  if (!isNeeded || plan_.output.empty()) return true;
  const std::string file = plan_.outputOnDisk + ".rsp";
  // A launcher and the program after it remain on the command line.
  const auto first = command.arguments.begin() + static_cast<std::ptrdiff_t>(command.launched);
  const std::string text = ResponseText(rule.response, {first, command.arguments.end()});
  const Status written = world_.files->WriteScratchFile(file, text);
  if (!written) return Fail(command, file + ": " + written.GetError().text);
  request.arguments.assign(command.arguments.begin(), first);
  request.arguments.push_back("@" + file);
  response = file;
  return true;
}

bool ToolRun::RunProcess(const ToolCommand& command, const ProcessRequest& request) {
  errorsBefore_ = log_.ErrorCount();
  hasStatedError_ = hasPlacedError_ = false;
  stepStart_ = log_.GetPosition();
  capturedBefore_ = captured_.size();
  auto started = world_.launcher->Start(request);
  if (!started) {
    LogStartFailure(command, started.GetError());
    return command.rule->isOptional;
  }
  ProcessExit exit;
  {
    const RunningTool entry(running_, **started);
    ReadOutput(command, **started, exit);
  }
  exitCode_ = exit.code;
  return Judge(command, exit);
}

void ToolRun::ReadOutput(const ToolCommand& command, Process& process, ProcessExit& exit) {
  LineAssembler lines[2];
  MessageReader reader(tool_.messages, command.folder, world_.files);
  const auto onLine = [&](bool isErrorStream) {
    return [&, isErrorStream](std::string_view line) {
      AddLine(command, reader, line, isErrorStream);
    };
  };
  StreamedText streams[2] = {StreamedText(command.rule->trimmed),
                             StreamedText(command.rule->trimmed)};
  exit = process.WaitWithOutput([&](std::string_view text, bool fromErrorStream) {
    if (onOutput_) onOutput_(streams[fromErrorStream ? 1 : 0].Add(text));
    if (command.rule->capturesSizes && !fromErrorStream) {
      captured_.append(text.substr(0, kMaxCaptured - std::min(kMaxCaptured, captured_.size())));
    } else {
      lines[fromErrorStream ? 1 : 0].Add(text, onLine(fromErrorStream));
    }
  });
  if (onOutput_) onOutput_(streams[0].Finish() + streams[1].Finish());
  lines[0].Finish(onLine(false));
  lines[1].Finish(onLine(true));
}

void ToolRun::AddLine(const ToolCommand& command, MessageReader& reader, std::string_view line,
                      bool isErrorStream) {
  std::string clean = CleanLine(line);
  const std::string& trimmed = command.rule->trimmed;
  if (clean.ends_with(trimmed)) clean.resize(clean.size() - trimmed.size());
  if (clean.empty()) return;
  ToolMessage message = reader.Read(clean, isErrorStream);
  // Complaints of an optional step must not look like a failure of the tool.
  if (command.rule->isOptional) message.severity = Severity::Plain;
  hasStatedError_ = hasStatedError_ || (message.failsStep && !command.rule->isOptional);
  hasPlacedError_ =
      hasPlacedError_ || (message.severity == Severity::Error && !message.file.empty());
  log_.Add(std::move(message));
  constexpr std::size_t kMostOverflows = 8;
  sizes::RegionOverflow overflow = sizes::ReadOverflow(clean);
  const bool isNew = !overflow.region.empty() && overflows_.size() < kMostOverflows &&
                     std::ranges::none_of(overflows_, [&](const sizes::RegionOverflow& each) {
                       return each.region == overflow.region;
                     });
  if (isNew) overflows_.push_back(std::move(overflow));
}

bool ToolRun::Judge(const ToolCommand& command, const ProcessExit& exit) {
  hasPlacedError_ = hasPlacedError_ && !exit.signalled && !running_.IsStopping();
  if (running_.IsStopping()) return log_.AddPlain("stopped"), false;
  if (exit.code == 0 && !exit.signalled) return !hasStatedError_;
  const std::string reason = exit.signalled
                                 ? "was ended by signal " + std::to_string(exit.code - 128)
                                 : "ended with exit code " + std::to_string(exit.code);
  // The tool's own messages are sufficient, unless none of them appears in the report.
  if (log_.ErrorCount() > errorsBefore_ && !exit.signalled) return false;
  if (!command.rule->isOptional) ReportLastLines();
  if (const std::string& text = command.rule->failure; !text.empty()) {
    return log_.AddError(text), false;
  }
  return Fail(command, reason);
}

// Explains a step that failed without an error message by its last output lines.
void ToolRun::ReportLastLines() {
  if (log_.ErrorCount() > errorsBefore_) return;
  LineAssembler lines;
  std::deque<std::string> last;
  const auto onLine = [&](std::string_view line) {
    if (std::string clean = CleanLine(line); !clean.empty()) last.push_back(std::move(clean));
    if (last.size() > MessageLog::kReportedLines) last.pop_front();
  };
  lines.Add(std::string_view(captured_).substr(std::min(capturedBefore_, captured_.size())),
            onLine);
  lines.Finish(onLine);
  for (const std::string& line : last) log_.AddPlain(line);
  log_.ReportLastLines(stepStart_);
}

bool ToolRun::Fail(const ToolCommand& command, const std::string& reason) {
  const std::string text = command.program + " " + reason;
  if (command.rule->isOptional) return log_.AddPlain(text), true;
  return log_.AddError(text), false;
}

void ToolRun::LogStartFailure(const ToolCommand& command, const Error& error) {
  std::string text = command.program;
  if (error.code == ErrorCode::NotFound) {
    text += " was not found";
    if (command.launched > 0) {
      text += ". It is meant to launch " + command.arguments[command.launched - 1] +
              "; the option Build.Launcher or the variable TARN_LAUNCHER specifies it";
    } else {
      if (!tool_.hint.empty()) text += ". " + tool_.hint;
      if (!tool_.toolchain.empty()) {
        text += ". If it is in a folder that is not in PATH, set " +
                VariableOfToolchain(tool_.toolchain) + ", or " + tool_.toolchain +
                " in the section Toolchains of the settings, to this folder";
      }
    }
  } else {
    text += " can't be started: " + error.text;
  }
  if (command.rule->isOptional) {
    log_.AddPlain(text);
  } else {
    log_.AddError(text);
  }
}

// `fault` is the rest of a sentence.
bool ToolRun::FailAfterEnd(const std::string& fault) {
  if (!log_.HasErrors()) log_.ReportLastLines(0);
  log_.AddError(tool_.name + " ended without an error, but " + fault);
  return false;
}

bool ToolRun::CollectRecord() {
  if (plan_.output.empty()) return true;
  // A file with a similar name is not the expected output.
  auto status = world_.files->ExamineExactly(plan_.outputOnDisk);
  if (!status) {
    const auto text = world_.files->ReadWholeFile(plan_.outputOnDisk);
    // The file exists if it can be read, even if a stat has failed.
    if (text) status = world_.files->ExamineExactly(plan_.outputOnDisk);
    const bool isUnreadable = !text && text.GetError().code != ErrorCode::NotFound;
    if (!status) {
      return FailAfterEnd(isUnreadable ? plan_.output + " can't be read: " + text.GetError().text
                                       : "left no file " + plan_.output);
    }
  }
  for (const std::string& path : plan_.requiredProducts) {
    if (!world_.files->ExamineExactly(path)) return FailAfterEnd("left no file " + path);
  }
  BuildRecord found;
  found.output = plan_.output;
  const std::map<std::string, std::uint64_t> sizes = ReadProgramSizes();
  if (sizes.empty() && IsOutputCut()) {
    return FailAfterEnd("wrote only a part of " + plan_.output + "; is the disk full?");
  }
  found.infos = DescribeSizes(sizes, tool_.size.sums, plan_.sizeBounds);
  found.programs = ProgramsOf(world_, plan_);
  if (const std::string problem = ReadDependencies(found); !problem.empty()) {
    return FailRules(problem);
  }
  found.date = BringForward(found, *status);
  found.command = HashCommands(world_, plan_);
  found.hasInexactNames = plan_.hasInexactNames;
  if (!SettleRandomNames() || !CheckLimits(sizes)) return false;
  WriteGlobals(found.dependencies);
  found.products = FindProducts();
  found.byProducts = FindByProducts();
  found.milliseconds = MillisecondsSince(startTime_);
  record_ = std::move(found);
  return true;
}

// Returns the time since the start of the run, at least 1; 0 if there is no clock.
std::int64_t ToolRun::MillisecondsSince(std::int64_t start) const {
  constexpr std::int64_t kNanosPerMilli = 1'000'000;
  if (start == 0) return 0;
  return std::max<std::int64_t>((world_.files->Clock() - start) / kNanosPerMilli, 1);
}

// Programs whose temporary files can't be named by an option use different names in each run.
bool ToolRun::SettleRandomNames() {
  for (const auto& [path, patterns] : plan_.randomNames) {
    auto text = world_.files->ReadWholeFile(path);
    if (!text || !ReplaceRandomNames(*text, patterns)) continue;
    const Status written = world_.files->WriteScratchFile(path, *text);
    if (written) continue;
    log_.AddError(path + " can't be written: " + written.GetError().text);
    return false;
  }
  return true;
}

// Returns everything that the run produced in addition to its output.
std::vector<std::string> ToolRun::FindProducts() const {
  std::vector<std::string> made = plan_.products;
  made.push_back(plan_.listing);
  made.push_back(plan_.globals);
  std::erase_if(made, [this](const std::string& path) {
    return path.empty() || !world_.files->ExamineExactly(path);
  });
  return made;
}

// Excludes files that the tool has left as they were.
std::vector<std::string> ToolRun::FindByProducts() const {
  std::vector<std::string> made = plan_.byProducts;
  for (const std::string& start : plan_.byProductStarts) {
    for (std::string& path : FindFilesThatStart(*world_.files, start)) {
      const bool isKnown = std::find(made.begin(), made.end(), path) != made.end();
      if (!isKnown) made.push_back(std::move(path));
    }
  }
  made.push_back(plan_.rules);
  made.push_back(plan_.furtherRules);
  std::erase_if(made, [this](const std::string& path) { return !HasWritten(path); });
  return made;
}

// If inputs have timestamps in the future, sets the output's time to the newest of them, so that it
// is not older than its inputs. Returns the output's time in seconds since 1970.
std::int64_t ToolRun::BringForward(const BuildRecord& made, const FileStatus& output) {
  std::pair<std::int64_t, std::int64_t> newest{output.modifiedSeconds, output.modifiedNanoseconds};
  for (const std::vector<std::string>* paths : {&job_.files, &made.dependencies}) {
    std::vector<const char*> names;
    for (const std::string& path : *paths) names.push_back(path.c_str());
    constexpr auto kAll = std::chrono::steady_clock::time_point::max();
    for (const auto& status : world_.files->ExamineMany(names, kAll)) {
      if (!status) continue;
      newest = std::max(newest, {status->modifiedSeconds, status->modifiedNanoseconds});
    }
  }
  if (newest.first <= output.modifiedSeconds) return output.modifiedSeconds;
  const Status set = world_.files->SetModifiedTime(plan_.outputOnDisk, newest.first, newest.second);
  if (!set) log_.AddPlain(made.output + ": " + set.GetError().text);
  return set ? newest.first : output.modifiedSeconds;
}

// Problems with the list of globals don't fail the run.
void ToolRun::WriteGlobals(const std::vector<std::string>& libraries) {
  if (tool_.globals.format == GlobalsRule::Format::None || plan_.globals.empty()) return;
  GlobalSymbols found =
      tool_.globals.format == GlobalsRule::Format::Cdb ? ReadCdb() : ReadDwarf(libraries);
  ToolMessage said = UpdateGlobalsFile(*world_.files, plan_.globals, std::move(found));
  if (!said.text.empty()) log_.Add(std::move(said));
}

std::string ToolRun::CdbPath() const {
  return WithExtension(plan_.outputOnDisk, ".cdb");
}

// A file that this run has not written belongs to an earlier program with debug information.
GlobalSymbols ToolRun::ReadCdb() const {
  if (!HasWritten(CdbPath())) return {};
  return ReadCdbSymbols(*world_.files, CdbPath(), job_.files, job_.baseFolder);
}

GlobalSymbols ToolRun::ReadDwarf(const std::vector<std::string>& libraries) const {
  // The sources of a library are relative to the folder of its application, in or above its own.
  std::vector<std::string> folders;
  for (const std::vector<std::string>* list : {&job_.files, &libraries}) {
    for (const std::string& path : *list) {
      if (path.ends_with(".a")) AddFoldersAbove(path, folders);
    }
  }
  return ReadProgramSymbols(*world_.files, plan_.outputOnDisk, job_.baseFolder, folders);
}

std::map<std::string, std::uint64_t> ToolRun::ReadProgramSizes() const {
  const SizeRule& rule = tool_.size;
  if (rule.format == SizeFormat::None) return {};
  if (plan_.sizeFile.empty()) return ReadSizes(rule.format, captured_);
  const auto text = world_.files->ReadWholeFile(plan_.sizeFile);
  return text ? ReadSizes(rule.format, *text) : std::map<std::string, std::uint64_t>();
}

// Returns true if the linker has not noticed that the end of the program could not be written.
// Called only if the program's sizes could not be determined, because it reads the whole file.
bool ToolRun::IsOutputCut() const {
  if (tool_.size.format != SizeFormat::Sections) return false;
  const auto bytes = world_.files->ReadWholeFile(plan_.outputOnDisk);
  return bytes && IsCutElf(*bytes);
}

LinkFiles ToolRun::FilesOfLink() const {
  const std::string folder = plan_.commands.empty() ? job_.baseFolder : plan_.commands[0].folder;
  return {plan_.mapFile, plan_.outputOnDisk, job_.files, folder};
}

constexpr std::size_t kMostLargest = 10;

// A program that exceeds a limit fails the run. It stays on disk, without a record, for a look at
// its sizes.
bool ToolRun::CheckLimits(const std::map<std::string, std::uint64_t>& sizes) {
  const std::vector<ExceededSize> exceeded = FindExceeded(sizes, tool_.size.sums, plan_.sizeBounds);
  for (const ExceededSize& each : exceeded) {
    const SizeSum& sum = tool_.size.sums[each.sum];
    const LinkFiles files = FilesOfLink();
    if (tool_.size.format == SizeFormat::Sections && !sizes.empty()) {
      const auto isWanted = [&sum](std::string_view name) {
        return IsInSections(std::string(name), sum.sections);
      };
      ReportLargest("largest in " + sum.label,
                    LargestSymbols(*world_.files, files).InSections(isWanted, kMostLargest));
    }
    log_.AddError(each.text);
  }
  return exceeded.empty();
}

void ToolRun::ExplainFailure(const ToolCommand& command) {
  // Some tools do without files, such as a librarian.
  if (job_.files.empty() && TakesFiles(command)) log_.AddError(DescribeNoFiles(job_));
  if (overflows_.empty()) return;
  const LinkFiles files = FilesOfLink();
  LargestSymbols largest(*world_.files, files);
  for (const sizes::RegionOverflow& each : overflows_) {
    ReportLargest("largest in " + each.region, largest.InRegion(each, kMostLargest));
    log_.AddError(each.region + " is " + std::to_string(each.bytes) + " B too small");
  }
  overflows_.clear();
}

// Adds the symbols as lines that the report shows with the error that follows.
void ToolRun::ReportLargest(const std::string& heading, const std::vector<LargeSymbol>& symbols) {
  if (symbols.empty()) return;
  const std::size_t start = log_.GetPosition();
  log_.AddPlain(heading + ":");
  for (const LargeSymbol& each : symbols) {
    const std::string size = std::to_string(each.size);
    const std::string space(size.size() < 8 ? 8 - size.size() : 0, ' ');
    log_.AddPlain(Shortened(CleanLine(space + size + " B  " + each.name +
                                      (each.file.empty() ? "" : "  (" + each.file + ")"))));
  }
  log_.ReportLastLines(start);
}

}  // namespace tarn::tools
