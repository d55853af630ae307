#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/core/ProjectFile.h"
#include "xml/XmlEscape.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

struct ReportOptions {
  bool errors = false;
  bool warnings = false;
};

struct ReportRow {
  LogEntry entry;
  std::string help;
};

std::vector<ReportRow> RowsOf(const std::string& xml) {
  std::vector<ReportRow> rows;
  const auto report = ParseXml(xml);
  if (report == nullptr) return rows;
  std::vector<LogEntry> entries;
  for (const CXmlNode* row : report->GetChildren()) entries.push_back(ReportRowToLogEntry(*row));
  AttachLastLines(entries);
  auto entry = entries.begin();
  for (const CXmlNode* row : report->GetChildren()) {
    rows.push_back({std::move(*entry++), UnescapeXml(GetAttribute(row, "Help"))});
  }
  return rows;
}

const char* SeverityOf(const ReportRow& row) {
  switch (row.entry.kind) {
    case LogKind::Error:
      return "error";
    case LogKind::Warning:
      return "warning";
    case LogKind::Heading:
    case LogKind::Plain:
      break;
  }
  return "note";
}

bool IsWanted(const ReportRow& row, const ReportOptions& asked) {
  if (!asked.errors && !asked.warnings) return true;
  return (asked.errors && row.entry.kind == LogKind::Error) ||
         (asked.warnings && row.entry.kind == LogKind::Warning);
}

nlohmann::json ToJson(const ReportRow& row) {
  nlohmann::json object = {{"severity", SeverityOf(row)},
                           {"file", row.entry.file},
                           {"line", row.entry.line},
                           {"text", row.entry.text},
                           {"help", row.help}};
  if (!row.entry.lastLines.empty()) object["lastLines"] = row.entry.lastLines;
  return object;
}

// Without a filter the tool's last lines are printed as separate rows.
void PrintRow(CommandContext& context, const ReportRow& row, bool isFiltered) {
  if (isFiltered) {
    for (const std::string& line : row.entry.lastLines) context.Out().PrintLine(Printable(line));
  }
  context.Out().PrintLine(DisplayEntry(row.entry, context.StartFolder(), context.Out()));
}

// With --warnings a warning affects the exit code, as an error does with --errors.
int RunReport(CommandContext& context) {
  std::string project;
  if (const int code = context.LocateProject(project); code != kExitDone) return code;
  std::string log;
  if (const int code = context.ReadLog(project, log); code != kExitDone) return code;
  if (const int code = context.StartSession(); code != kExitDone) return code;
  context.ShowDamageOf(project);
  const ReportOptions& asked = context.Own<ReportOptions>();
  const bool isFiltered = asked.errors || asked.warnings;
  bool hasFound = false;
  nlohmann::json document = nlohmann::json::array();
  for (const ReportRow& row : RowsOf(context.Session().Inspector().GetReport(log))) {
    if (!IsWanted(row, asked)) continue;
    hasFound = hasFound || isFiltered || row.entry.kind == LogKind::Error;
    if (context.Asked().json) {
      document.push_back(ToJson(row));
    } else {
      PrintRow(context, row, isFiltered);
    }
  }
  if (context.Asked().json) PrintJson(context, document);
  return hasFound ? kExitBuildFailed : kExitDone;
}

}  // namespace

CommandSpec ReportCommand() {
  return {
      .name = "report",
      .group = CommandGroup::Building,
      .help = "Show the errors and warnings of the last build",
      .examples = {{"tarn report --errors", "what prevents it from being built"},
                   {"tarn report --warnings --json", "as JSON; exit code 1 if there are any"}},
      .declare =
          [](CommandArguments& arguments) {
            ReportOptions& own = arguments.Own<ReportOptions>();
            arguments.AddProject();
            arguments.Flag("--errors", own.errors, "Show only errors");
            arguments.Flag("--warnings", own.warnings, "Show only warnings; with --errors, both");
          },
      .run = RunReport,
  };
}

}  // namespace tarn::host
