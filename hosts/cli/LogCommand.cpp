#include <chrono>
#include <condition_variable>
#include <ctime>
#include <mutex>
#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/core/LogTail.h"
#include "hosts/core/MessageTexts.h"
#include "hosts/core/ProjectFile.h"
#include "hosts/core/SignalHandler.h"

namespace tarn::host {

namespace {

struct LogOptions {
  bool xml = false;
  bool follow = false;
  bool untilEnd = false;
};

const char* ToString(LogKind kind) {
  switch (kind) {
    case LogKind::Error:
      return "error";
    case LogKind::Warning:
      return "warning";
    case LogKind::Heading:
      return "heading";
    case LogKind::Plain:
      break;
  }
  return "plain";
}

nlohmann::json ToJson(const LogEntry& entry) {
  nlohmann::json object = {{"kind", ToString(entry.kind)},
                           {"file", entry.file},
                           {"line", entry.line},
                           {"message", entry.message},
                           {"text", entry.text}};
  if (entry.count > 1) object["count"] = entry.count;
  if (!entry.lastLines.empty()) object["lastLines"] = entry.lastLines;
  return object;
}

void PrintEntry(CommandContext& context, const LogEntry& entry) {
  if (!context.Asked().json) {
    context.Out().PrintLine(DisplayEntry(entry, context.StartFolder(), context.Out()));
    return;
  }
  // Each entry is a separate document, because the output has no end.
  context.Out().PrintDocument(
      ToJson(entry).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace),
      DocumentFormat::Json);
}

// A wait that an interrupt can end.
class Pause {
 public:
  void End() {
    const std::lock_guard guard(lock_);
    isEnded_ = true;
    changed_.notify_all();
  }
  // Returns false if the wait was ended by End().
  bool Wait(std::chrono::milliseconds time) {
    std::unique_lock guard(lock_);
    return !changed_.wait_for(guard, time, [this] { return isEnded_; });
  }

 private:
  std::mutex lock_;
  std::condition_variable changed_;
  bool isEnded_ = false;
};

constexpr std::chrono::milliseconds kFollowPause(100);

int FollowLog(CommandContext& context, const std::string& project) {
  const std::string logPath = LogPathOf(project);
  if (const auto log = context.Files().ReadOwnFile(logPath); !log) {
    const Error& error = log.GetError();
    if (error.code != ErrorCode::NotFound) return context.RefuseLog(project, error);
    context.Remark("No build of " + context.Show(project) +
                   " has written a log yet; waiting for one.");
  }
  Pause pause;
  const SignalHandler interrupts([&pause] { pause.End(); }, WatchedOutput::Standard);
  const std::string closings[] = {MessageTextOf(context.Files(), kBuildSucceededRow),
                                  MessageTextOf(context.Files(), kBuildFailedRow)};
  const auto ends = [&closings](const LogEntry& entry) {
    return !entry.text.empty() && (entry.text == closings[0] || entry.text == closings[1]);
  };
  LogTail tail(context.Files(), logPath);
  // Only entries written from now on can end the command, not those already in the log.
  bool isUpdate = false;
  do {
    const auto update = tail.Take(std::time(nullptr));
    bool isEnd = false;
    for (const LogEntry& entry : update.entries) {
      PrintEntry(context, entry);
      isEnd = isEnd || ends(entry);
    }
    if (isUpdate && isEnd && context.Own<LogOptions>().untilEnd) return kExitDone;
    isUpdate = true;
  } while (pause.Wait(kFollowPause));
  return kExitInterrupted;
}

}  // namespace

nlohmann::json ToJson(const std::vector<LogEntry>& entries) {
  nlohmann::json list = nlohmann::json::array();
  for (const LogEntry& entry : entries) list.push_back(ToJson(entry));
  return list;
}

namespace {

// Adds a field to a document. In an array it is added to the first element, and only if it isn't
// empty.
void AddField(nlohmann::json& document, const char* name, const nlohmann::json& list) {
  if (document.is_object()) {
    document[name] = list;
  } else if (!list.empty()) {
    if (document.empty()) document.push_back(nlohmann::json::object());
    document[0][name] = list;
  }
}

}  // namespace

// Every document about a project includes its damage and the errors in definitions.
void PrintJson(CommandContext& context, nlohmann::json document, int indent) {
  if (context.HasOpened() || !context.GetDamage().empty()) {
    nlohmann::json damage = nlohmann::json::array();
    for (const DamageEntry& each : context.GetDamage()) {
      damage.push_back({{"file", each.file}, {"line", each.line}, {"text", each.text}});
    }
    AddField(document, "damage", damage);
    AddField(document, "definitionErrors", context.Session().GetDefinitionErrors());
  }
  context.Out().PrintDocument(
      document.dump(indent, ' ', false, nlohmann::json::error_handler_t::replace),
      DocumentFormat::Json);
}

namespace {

int RunLog(CommandContext& context) {
  std::string project;
  if (const int code = context.LocateProject(project); code != kExitDone) return code;
  context.ShowDamageOf(project);
  if (context.Own<LogOptions>().follow || context.Own<LogOptions>().untilEnd) {
    return FollowLog(context, project);
  }
  std::string log;
  if (const int code = context.ReadLog(project, log); code != kExitDone) return code;
  if (context.Own<LogOptions>().xml) {
    context.Out().PrintDocument(log, DocumentFormat::Xml);
    return kExitDone;
  }
  const std::vector<LogEntry> entries = ReadLogEntries(log);
  if (context.Asked().json) {
    PrintJson(context, ToJson(entries));
    return kExitDone;
  }
  for (const LogEntry& entry : entries) PrintEntry(context, entry);
  return kExitDone;
}

}  // namespace

CommandSpec LogCommand() {
  return {
      .name = "log",
      .group = CommandGroup::Building,
      .help = "Show the log of the last build",
      .examples = {{"tarn log", "messages with file and line"},
                   {"tarn log --follow", "also those of builds elsewhere, as they arrive"},
                   {"tarn log --xml", "the log file itself, for message.xslt for example"}},
      .declare =
          [](CommandArguments& arguments) {
            LogOptions& own = arguments.Own<LogOptions>();
            arguments.AddProject();
            const Argument xml = arguments.Flag("--xml", own.xml, "Print the log file unchanged");
            xml.Excludes(arguments.Find("--json"));
            arguments.Flag("-f,--follow", own.follow, "Keep printing the output of further builds")
                .Excludes(xml);
            arguments.Flag("--until-end", own.untilEnd, "Follow until the next build ends")
                .Excludes(xml);
          },
      .run = RunLog,
  };
}

}  // namespace tarn::host
