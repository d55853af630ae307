#include <iostream>
#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/frame/ProjectFile.h"

namespace tarn::host {

namespace {

const char* WordOf(LogKind kind) {
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

}  // namespace

nlohmann::json ToJson(const std::vector<LogEntry>& entries) {
  nlohmann::json list = nlohmann::json::array();
  for (const LogEntry& entry : entries) {
    list.push_back({{"kind", WordOf(entry.kind)},
                    {"file", entry.file},
                    {"line", entry.line},
                    {"message", entry.message},
                    {"text", entry.text}});
  }
  return list;
}

void PrintJson(CommandContext& context, const nlohmann::json& document) {
  context.Out().PrintLine(document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace));
}

int RunLog(CommandContext& context) {
  std::string project;
  if (const int code = context.LocateProject(project); code != kExitDone) return code;
  const auto log = context.Files().ReadWholeFile(LogPathOf(project));
  if (!log) {
    context.Complain("No build of " + context.Show(project) +
                     " has left a log yet. `tarn build` makes one.");
    return kExitCannotOpen;
  }
  if (context.Asked().xml) {
    std::cout << *log << std::endl;
    return kExitDone;
  }
  const std::vector<LogEntry> entries = ReadLogEntries(*log);
  if (context.Asked().json) {
    PrintJson(context, ToJson(entries));
    return kExitDone;
  }
  for (const LogEntry& entry : entries) {
    context.Out().PrintLine(DisplayEntry(entry, context.StartFolder(), context.Out()));
  }
  return kExitDone;
}

}  // namespace tarn::host
