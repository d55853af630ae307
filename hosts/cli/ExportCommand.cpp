#include <algorithm>
#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/cli/SarifReport.h"
#include "hosts/core/CompileCommands.h"
#include "hosts/core/MessageTexts.h"
#include "hosts/core/ProjectFile.h"
#include "platform/paths/Paths.h"
#include "platform/text/Suggest.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

struct ExportOptions {
  std::string output;                       // "-" for the standard output
  std::vector<std::string> configurations;  // --config, may be repeated
};

constexpr const char* kCompileCommandsName = "compile_commands.json";

// Writes a document to the file of --output, by default to `usualPath`, and reports that it
// contains `count` items named `noun`.
template <typename Json>
int WriteDocument(CommandContext& context, const Json& document, const std::string& usualPath,
                  std::size_t count, const char* noun) {
  const std::string& output = context.Own<ExportOptions>().output;
  // A partially read project must not replace an export of the whole project.
  if (output != "-") {
    if (const int code = context.CheckDamage(); code != kExitDone) return code;
  }
  const std::string text = document.dump(2, ' ', false, Json::error_handler_t::replace);
  if (output == "-") {
    context.Out().PrintDocument(text, DocumentFormat::Json);
    return kExitDone;
  }
  std::string path = output.empty() ? usualPath : output;
  if (IsRelativePath(path)) path = JoinPath(context.StartFolder(), path);
  // Editors reload the file each time it changes, so it is not written if its content is up to
  // date.
  const auto before = context.Files().ReadWholeFile(path);
  const bool isCurrent = before && *before == text + "\n";
  if (!isCurrent) {
    if (const Status written = context.Files().WriteOwnFile(path, text + "\n"); !written) {
      context.Complain(context.ShowFailure(path, "written", written.GetError().text));
      return kExitCannotOpen;
    }
  }
  if (context.Asked().json) {
    PrintJson(context, {{"file", path}, {"count", count}, {"changed", !isCurrent}});
  } else if (!context.Asked().quiet) {
    context.Out().PrintLine((isCurrent ? "unchanged " : "wrote ") + context.Show(path) + "  (" +
                            CountText(static_cast<int>(count), noun) + ")");
  }
  return kExitDone;
}

// Checks that every requested configuration exists in some application. Returns 0, or an exit code
// after printing the error.
int CheckConfigurations(CommandContext& context, const std::vector<ApplicationEntry>& chosen) {
  std::vector<std::string> known;
  for (const ApplicationEntry& each : chosen) {
    known.insert(known.end(), each.configurations.begin(), each.configurations.end());
  }
  for (const std::string& name : context.Own<ExportOptions>().configurations) {
    const bool isKnown = std::any_of(known.begin(), known.end(),
                                     [&name](const auto& each) { return EqualNoCase(each, name); });
    if (isKnown) continue;
    context.Complain("Unknown configuration \"" + name + "\"." + SuggestionText(name, known) +
                     " See `tarn config list`.");
    return kExitUsage;
  }
  return kExitDone;
}

int ExportCompileCommands(CommandContext& context) {
  if (const int code = context.OpenProject(); code != kExitDone) return code;
  std::vector<ApplicationEntry> chosen;
  if (const int code = context.ChooseApplications(chosen); code != kExitDone) return code;
  if (const int code = CheckConfigurations(context, chosen); code != kExitDone) return code;
  const CompileCommandList list = CollectCompileCommands(
      context.Session(), context.Files(), chosen, context.Own<ExportOptions>().configurations);
  nlohmann::ordered_json document = nlohmann::ordered_json::array();
  for (const CompileCommand& each : list.commands) {
    document.push_back({{"directory", each.directory},
                        {"file", each.file},
                        {"output", each.output},
                        {"arguments", each.arguments}});
  }
  for (const std::string& program : list.missingPrograms) {
    context.Remark("The program " + program +
                   " was not found, so its full path is missing from the commands.");
  }
  const std::string folder = FolderOf(context.Session().GetProjectPath());
  return WriteDocument(context, document, JoinPath(folder, kCompileCommandsName),
                       list.commands.size(), "command");
}

bool HasSucceeded(FileSystem& files, const std::vector<LogEntry>& entries) {
  const bool hasErrors = std::any_of(entries.begin(), entries.end(), [](const LogEntry& each) {
    return each.kind == LogKind::Error;
  });
  const auto last = std::find_if(entries.rbegin(), entries.rend(), [](const LogEntry& each) {
    return each.kind == LogKind::Heading;
  });
  return !hasErrors && last != entries.rend() &&
         last->text == MessageTextOf(files, kBuildSucceededRow);
}

int ExportSarif(CommandContext& context) {
  std::string project;
  if (const int code = context.LocateProject(project); code != kExitDone) return code;
  const std::string logPath = LogPathOf(project);
  std::string log;
  if (const int code = context.ReadLog(project, log); code != kExitDone) return code;
  context.ShowDamageOf(project);
  LoggedBuild build;
  build.projectFolder = FolderOf(project);
  build.entries = ReadLogEntries(log);
  build.succeeded = HasSucceeded(context.Files(), build.entries);
  if (const auto status = context.Files().Examine(logPath)) {
    build.endSeconds = status->modifiedSeconds;
  }
  const nlohmann::json document = MakeSarifReport(build, TARN_VERSION);
  return WriteDocument(context, document, WithExtension(project, ".sarif"),
                       document["runs"][0]["results"].size(), "finding");
}

void DeclareOutput(CommandArguments& arguments, const std::string& usual) {
  arguments
      .Option("-o,--output", arguments.Own<ExportOptions>().output, "FILE",
              "File to write, - for standard output; default: " + usual)
      .NotEmpty();
}

}  // namespace

CommandSpec ExportCommand() {
  return {
      .name = "export",
      .group = CommandGroup::Integration,
      .help = "Write files for editors and other tools",
  };
}

CommandSpec ExportCompileCommandsCommand() {
  return {
      .name = "export compile-commands",
      .help = "How each source is compiled, for clangd and similar tools",
      .examples = {{"tarn export compile-commands", "in all configurations"},
                   {"tarn export compile-commands -c Debug -o -", "only one, to standard output"}},
      .declare =
          [](CommandArguments& arguments) {
            arguments.AddProjectAndApp();
            arguments
                .Option("-c,--config", arguments.Own<ExportOptions>().configurations, "CONFIG",
                        "Only this configuration; may be repeated")
                .NotEmpty();
            DeclareOutput(arguments, "compile_commands.json next to the project");
            arguments.AddDamagedOk();
          },
      .run = ExportCompileCommands,
  };
}

CommandSpec ExportSarifCommand() {
  return {
      .name = "export sarif",
      .help = "Findings of the last build, as SARIF 2.1.0",
      .examples = {{"tarn export sarif -o findings.sarif", "to this file"}},
      .declare =
          [](CommandArguments& arguments) {
            arguments.AddProject();
            DeclareOutput(arguments, "the project's name with .sarif, next to it");
            arguments.AddDamagedOk();
          },
      .run = ExportSarif,
  };
}

}  // namespace tarn::host
