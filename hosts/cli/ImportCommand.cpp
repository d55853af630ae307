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

constexpr std::string_view kConvertedExtension = ".tprj";

// One import. Also acts as the user to whom the server's questions and messages are directed.
class Import final : private DialogResponder {
 public:
  explicit Import(CommandContext& commandContext)
      : context_(commandContext),
        older_(FullPath(commandContext)),
        project_(WithExtension(older_, std::string(kConvertedExtension))) {
    SetDialogResponder(context_.Frame().GetHandle(), this);
  }
  Import(const Import&) = delete;
  Import& operator=(const Import&) = delete;
  ~Import() { SetDialogResponder(context_.Frame().GetHandle(), nullptr); }

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

  CommandContext& context_;
  std::string older_;
  std::string project_;  // path of the new project
  bool isDeclined_ = false;
  std::optional<std::string> failure_;  // the server's message about it; may be empty
  std::vector<std::string> lines_;      // output of the script and the server
};

bool Import::AskOkCancel(const std::string& text, const std::string&) {
  if (context_.Own<ImportOptions>().yes) return true;
  isDeclined_ = true;
  // Without a terminal there is no user to reply.
  if (!IsInputTerminal()) return false;
  context_.Out().ShowQuestion(Printable(text) + " [y/N]");
  std::string answer;
  std::getline(std::cin, answer);
  isDeclined_ = !EqualNoCase(Trim(answer), "y") && !EqualNoCase(Trim(answer), "yes");
  return !isDeclined_;
}

// Later log lines refer to the placeholder project that the server opens instead.
void Import::ShowMessage(const std::string& text, const std::string&) {
  failure_ = text;
  TakeLines();
}

void Import::TakeLines() {
  for (std::string& line : context_.Session().TakeLogLines()) lines_.push_back(std::move(line));
}

int Import::CheckFile() const {
  if (EqualNoCase(ExtensionOf(older_), kConvertedExtension)) {
    context_.Complain(context_.Show(older_) + " needs no conversion.");
    return kExitUsage;
  }
  const auto text = context_.Files().ReadWholeFile(older_);
  if (text) return kExitDone;
  const Error& error = text.GetError();
  context_.Complain(error.code == ErrorCode::NotFound
                        ? context_.Show(older_) + " does not exist."
                        : context_.ShowFailure(older_, "read", error.text) + ".");
  return kExitCannotOpen;
}

bool Import::IsOpen() const {
  const ProjectTree tree(context_.Session().Inspector().GetTree());
  return EqualNoCase(GetAttribute(tree.GetRoot(), "Path"), project_);
}

int Import::Fail(const std::string& text) const {
  context_.Complain(text);
  for (const std::string& line : lines_) context_.Complain(Printable(line));
  return kExitCannotOpen;
}

int Import::Report() const {
  if (context_.Asked().json) {
    PrintJson(context_, {{"project", project_}, {"remarks", lines_}});
    return kExitDone;
  }
  if (context_.Asked().quiet) return kExitDone;
  for (const std::string& line : lines_) context_.Remark(Printable(line));
  context_.Out().PrintLine("created " + context_.Show(project_));
  context_.Out().PrintLine("Run `tarn build " + ShellWord(context_.Show(project_)) +
                           "` to build it.");
  return kExitDone;
}

int Import::Run() {
  if (const int code = CheckFile(); code != kExitDone) return code;
  if (const int code = context_.StartSession(); code != kExitDone) return code;
  BuildSession& session = context_.Session();
  if (const std::string missing = session.Inspector().MissingImportProgram(); !missing.empty()) {
    context_.Complain("Old projects are converted by a script that needs the program " + missing +
                      ", which was not found.");
    return kExitToolMissing;
  }
  session.TakeLogLines();
  // Drops messages from the start-up, which are not about the conversion.
  failure_.reset();
  session.Manager().ProjectOpen(older_);
  if (failure_) {
    const bool isNamed = failure_->find(older_) != std::string::npos;
    const std::string text = context_.Show(older_) + " can't be converted";
    return Fail(isNamed ? Printable(*failure_)
                        : text + (failure_->empty() ? "." : ": " + Printable(*failure_)));
  }
  if (isDeclined_) {
    context_.Complain(context_.Show(project_) +
                      " already exists and was not changed. Use --yes to replace it.");
    return kExitUsage;
  }
  TakeLines();
  return IsOpen() ? Report() : Fail(context_.ShowResolved(project_) + " can't be opened.");
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
