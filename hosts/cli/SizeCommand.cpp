#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/SizeTables.h"
#include "hosts/core/SizeHistory.h"
#include "hosts/core/SizeReading.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

struct SizeOptions {
  std::string by;
  std::string count;
  std::string html;
  std::string saveBaseline;
  std::string compare;
};

constexpr std::uint64_t kLargestFile = 256 << 20;
constexpr std::size_t kUsualRows = 10;

bool IsCount(const std::string& text) {
  return ParseInt64(text).value_or(-1) >= 0;
}

// Sets what the report is compared with. Returns 0, or an exit code after printing the error.
int Compare(CommandContext& context, const SizeHistory& history, SizeReport& report) {
  const std::string& name = context.Own<SizeOptions>().compare;
  if (name.empty()) {
    const auto status = context.Files().ExamineExactly(report.application.output);
    if (status) report.earlier = history.FindEarlier(report.application, *status);
    if (report.earlier) report.comparedWith = "last build";
    return kExitDone;
  }
  report.earlier = history.FindBaseline(report.application, name);
  report.comparedWith = name;
  if (report.earlier) return kExitDone;
  std::string known;
  for (const std::string& each : history.ListBaselines(report.application)) {
    known += (known.empty() ? " It has: " : ", ") + each;
  }
  context.Complain(report.application.label + " [" + report.application.configuration +
                   "] has no baseline \"" + name + "\"." + (known.empty() ? "" : known + "."));
  return kExitUsage;
}

// Returns 0, or an exit code after printing the error. A library, or what commands make of
// programs, has no sizes, and no error unless it was asked for.
int ReadReport(CommandContext& context, const SizeHistory& history, SizeReport& report) {
  const auto source = FindSizeSource(context.Session().Inspector(), report.application);
  if (!source) {
    context.Complain(report.application.label + " is not built by a tool, so it has no sizes.");
    return kExitUsage;
  }
  SizeReading reading = ReadSizes(context.Files(), *source, kLargestFile);
  if (reading.isNoProgram && context.Asked().application.empty()) return kExitDone;
  if (!reading.problem.empty()) {
    context.Complain("The sizes of " + report.application.label +
                     " can't be read: " + reading.problem +
                     (context.Files().ExamineExactly(source->output) ? "." : ". Build it first."));
    return kExitCannotOpen;
  }
  if (!reading.remark.empty()) {
    context.Remark("The sizes of files are missing: " + reading.remark + ".");
  }
  report.sizes = std::move(reading.sizes);
  AddPositions(context.Session().Tools(), *source, report.sizes);
  return Compare(context, history, report);
}

void PrintReport(CommandContext& context, const SizeReport& report) {
  const SizeOptions& asked = context.Own<SizeOptions>();
  Console& out = context.Out();
  ConsoleText title = out.Dye(Paint::Bold, report.application.label) + "  [" +
                      report.application.configuration + "]";
  if (report.earlier) title += "  compared with " + report.comparedWith;
  out.PrintLine(title);
  const auto most = static_cast<std::size_t>(ParseInt64(asked.count).value_or(0));
  if (asked.by == "stack" && report.sizes.stack.empty()) {
    context.Remark(
        "No stack usage is recorded. With the option Compiler.StackUsage, compilers that "
        "can write it in the next build.");
    return;
  }
  if (!asked.by.empty()) return PrintSizes(context, report, asked.by, most);
  PrintSizes(context, report, "region", 0);
  out.PrintLine("");
  PrintSizes(context, report, "section", 0);
  const std::size_t rows = asked.count.empty() ? kUsualRows : most;
  if (!report.sizes.symbols.empty()) {
    out.PrintLine("");
    PrintSizes(context, report, "symbol", rows);
  }
  if (report.sizes.stack.empty()) return;
  out.PrintLine("");
  PrintSizes(context, report, "stack", rows);
}

// Replaces only a file that looks like a page. Returns 0, or an exit code after printing the error.
int WritePage(CommandContext& context, const std::vector<SizeReport>& reports) {
  std::string path = context.Own<SizeOptions>().html;
  if (path.empty() || reports.empty()) return kExitDone;
  if (IsRelativePath(path)) path = JoinPath(context.StartFolder(), path);
  const auto present = context.Files().ReadWholeFile(path);
  if (present && !present->empty() && !present->starts_with("<!DOCTYPE html>")) {
    context.Complain("--html would replace " + context.Show(path) + ", which is not a page.");
    return kExitUsage;
  }
  sizes::TreemapPage page{"Sizes", {}};
  for (const SizeReport& each : reports) {
    page.title += (page.parts.empty() ? " of " : ", ") + each.application.label;
    AddTreemaps(context, each, page);
  }
  const Status written = context.Files().WriteWholeFile(path, sizes::RenderTreemap(page));
  if (written) return kExitDone;
  context.Complain(context.ShowFailure(path, "written", written.GetError().text));
  return kExitCannotOpen;
}

int SaveBaselines(CommandContext& context, SizeHistory& history,
                  const std::vector<SizeReport>& reports) {
  const std::string& name = context.Own<SizeOptions>().saveBaseline;
  if (name.empty()) return kExitDone;
  if (!context.Session().LockBuild()) {
    context.Complain(context.Session().GetLockProblem());
    return kExitCannotOpen;
  }
  history.Load();  // another process may have changed it
  for (const SizeReport& each : reports) {
    history.SaveBaseline(each.application, name, TakeSnapshot(each.sizes));
  }
  const Status saved = history.Save();
  context.Session().UnlockBuild();
  if (saved) return kExitDone;
  context.Complain(context.ShowFailure(history.GetPath(), "written", saved.GetError().text));
  return kExitCannotOpen;
}

int RunSize(CommandContext& context) {
  if (const int code = context.OpenProject(); code != kExitDone) return code;
  std::vector<ApplicationEntry> chosen;
  if (const int code = context.ChoosePreparedApplications(chosen); code != kExitDone) return code;
  if (chosen.empty()) {
    context.Complain("This project has no application.");
    return kExitUsage;
  }
  SizeHistory history(context.Files(), context.Session().GetProjectPath());
  history.Load();
  std::vector<SizeReport> reports;
  int worst = kExitDone;
  for (const ApplicationEntry& each : chosen) {
    SizeReport report{each, {}, {}, {}};
    const int code = ReadReport(context, history, report);
    const bool isMeasured = code == kExitDone && !report.sizes.sections.empty();
    if (isMeasured) reports.push_back(std::move(report));
    if (worst == kExitDone) worst = code;
  }
  if (reports.empty() && worst == kExitDone) context.Remark("The project has no linked program.");
  if (const int code = WritePage(context, reports); code != kExitDone) return code;
  nlohmann::json document = nlohmann::json::array();
  for (const SizeReport& each : reports) {
    if (context.Asked().json) {
      document.push_back(ToJson(context, each));
    } else {
      PrintReport(context, each);
    }
  }
  if (context.Asked().json) PrintJson(context, {{"applications", document}});
  const int saved = SaveBaselines(context, history, reports);
  return worst != kExitDone ? worst : saved;
}

}  // namespace

CommandSpec SizeCommand() {
  return {
      .name = "size",
      .group = CommandGroup::Building,
      .help = "Show the sizes of the built programs",
      .examples = {{"tarn size --by symbol --top 20", "the largest functions and variables"},
                   {"tarn size --save-baseline v1.0", "remember the sizes of a release"},
                   {"tarn size --compare v1.0 --by file", "what has grown since then"},
                   {"tarn size --html sizes.html", "a treemap for a browser"}},
      .declare =
          [](CommandArguments& arguments) {
            SizeOptions& own = arguments.Own<SizeOptions>();
            arguments.AddProjectAndApp();
            arguments.AddConfiguration();
            arguments
                .Option("--by", own.by, "KIND",
                        "List all by region, section, file, symbol or stack")
                .OneOf({"region", "section", "file", "symbol", "stack"});
            arguments.Option("--top", own.count, "COUNT", "List only the largest COUNT")
                .Valid(IsCount, "a number");
            arguments.Option("--html", own.html, "FILE", "Write a treemap as an HTML page");
            arguments
                .Option("--save-baseline", own.saveBaseline, "NAME",
                        "Store the sizes under this name")
                .NotEmpty();
            arguments
                .Option("--compare", own.compare, "NAME",
                        "Compare with the sizes stored under this name")
                .NotEmpty();
          },
      .run = RunSize,
  };
}

}  // namespace tarn::host
