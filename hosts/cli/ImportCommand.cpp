#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/cli/ShellText.h"
#include "hosts/core/Terminal.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "widgets/Dialogs.h"

namespace tarn::host {

namespace {

struct ImportOptions {
  std::string older;  // file in the old format
  bool yes = false;
};

constexpr std::string_view kProjectExtension = ".tprj";

// One import. Also acts as the user to whom the server's questions and messages are directed.
class Import final : private DialogResponder {
 public:
  explicit Import(CommandContext& commandContext)
      : context(commandContext),
        older(FullPath(commandContext)),
        project(WithExtension(older, std::string(kProjectExtension))) {
    SetDialogResponder(context.Frame().GetHandle(), this);
  }
  Import(const Import&) = delete;
  Import& operator=(const Import&) = delete;
  ~Import() { SetDialogResponder(context.Frame().GetHandle(), nullptr); }

  int Run();

 private:
  static std::string FullPath(CommandContext& context) {
    const std::string& path = context.Own<ImportOptions>().older;
    return context.Files().Canonical(IsRelativePath(path) ? JoinPath(context.StartFolder(), path)
                                                          : path);
  }

  // The server's only question is whether an existing project of an earlier import may be replaced.
  bool AskOkCancel(const std::string& text, const std::string& caption) override;
  void ShowMessage(const std::string& text, const std::string& caption) override;
  std::vector<std::string> ChooseFiles(const FileQuestion&) override { return {}; }

  int CheckFile() const;
  void TakeLines();
  bool IsOpen() const;
  int Report() const;
  int Fail(const std::string& text) const;

  CommandContext& context;
  std::string older;
  std::string project;  // path of the new project
  bool isDeclined = false;
  std::optional<std::string> failure;  // the server's message about it; may be empty
  std::vector<std::string> lines;      // output of the script and the server
};

bool Import::AskOkCancel(const std::string& text, const std::string&) {
  if (context.Own<ImportOptions>().yes) return true;
  isDeclined = true;
  // Without a terminal there is no user to reply.
  if (!IsInputTerminal()) return false;
  context.Out().ShowQuestion(Printable(text) + " [y/N]");
  std::string answer;
  std::getline(std::cin, answer);
  isDeclined = !EqualNoCase(Trim(answer), "y") && !EqualNoCase(Trim(answer), "yes");
  return !isDeclined;
}

// Later log lines refer to the placeholder project that the server opens instead.
void Import::ShowMessage(const std::string& text, const std::string&) {
  failure = text;
  TakeLines();
}

void Import::TakeLines() {
  for (std::string& line : context.Session().TakeLogLines()) lines.push_back(std::move(line));
}

int Import::CheckFile() const {
  if (EqualNoCase(ExtensionOf(older), kProjectExtension)) {
    context.Complain(context.Show(older) + " needs no conversion.");
    return kExitUsage;
  }
  const auto text = context.Files().ReadWholeFile(older);
  if (text) return kExitDone;
  const Error& error = text.GetError();
  context.Complain(error.code == ErrorCode::NotFound
                       ? context.Show(older) + " does not exist."
                       : context.ShowFailure(older, "read", error.text) + ".");
  return kExitCannotOpen;
}

bool Import::IsOpen() const {
  const ProjectTree tree(context.Session().Inspector().GetTree());
  return EqualNoCase(AttributeOf(tree.GetRoot(), "Path"), project);
}

int Import::Fail(const std::string& text) const {
  context.Complain(text);
  for (const std::string& line : lines) context.Complain(Printable(line));
  return kExitCannotOpen;
}

int Import::Report() const {
  if (context.Asked().json) {
    PrintJson(context, {{"project", project}, {"remarks", lines}});
    return kExitDone;
  }
  if (context.Asked().quiet) return kExitDone;
  for (const std::string& line : lines) context.Remark(Printable(line));
  context.Out().PrintLine("created " + context.Show(project));
  context.Out().PrintLine("Run `tarn build " + ShellWord(context.Show(project)) + "` to build it.");
  return kExitDone;
}

int Import::Run() {
  if (const int code = CheckFile(); code != kExitDone) return code;
  if (const int code = context.StartSession(); code != kExitDone) return code;
  BuildSession& session = context.Session();
  if (const std::string missing = session.Inspector().MissingImportProgram(); !missing.empty()) {
    context.Complain("Old projects are converted by a script that needs the program " + missing +
                     ", which was not found.");
    return kExitToolMissing;
  }
  session.TakeLogLines();
  // Drops messages from the start-up, which are not about the conversion.
  failure.reset();
  session.Manager().ProjectOpen(older);
  if (failure) {
    const bool isNamed = failure->find(older) != std::string::npos;
    const std::string text = context.Show(older) + " can't be converted";
    return Fail(isNamed ? Printable(*failure)
                        : text + (failure->empty() ? "." : ": " + Printable(*failure)));
  }
  if (isDeclined) {
    context.Complain(context.Show(project) +
                     " already exists and was not changed. Use --yes to replace it.");
    return kExitUsage;
  }
  TakeLines();
  return IsOpen() ? Report() : Fail(context.ShowResolved(project) + " can't be opened.");
}

int RunImport(CommandContext& context) {
  return Import(context).Run();
}

}  // namespace

CommandSpec ImportCommand() {
  return {
      .name = "import",
      .group = CommandGroup::Files,
      .help = "Import a project in the old format",
      .examples = {{"tarn import blinky.prj", "create blinky.tprj from it"},
                   {"tarn import --yes all.stw", "all projects of a workspace, again"}},
      .declare =
          [](CommandArguments& arguments) {
            ImportOptions& own = arguments.Own<ImportOptions>();
            arguments
                .Positional("OLD", own.older,
                            "Project (*.prj) or workspace (*.stw) in the old format")
                .Required();
            arguments.Flag("-y,--yes", own.yes, "Replace an existing project");
          },
      .run = RunImport,
  };
}

}  // namespace tarn::host
