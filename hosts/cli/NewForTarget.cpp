#include "hosts/cli/NewForTarget.h"

#include <tarn/commands.h>

#include <algorithm>
#include <optional>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/core/FirstSource.h"
#include "hosts/core/WizardForm.h"
#include "platform/paths/Paths.h"
#include "platform/text/Suggest.h"
#include "platform/text/Text.h"
#include "widgets/Dialogs.h"

namespace tarn::host {

namespace {

// Returns "\"a\", \"b\""; unnamed entries are skipped, because the user can't select them.
std::string Listed(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& each : names) {
    if (!each.empty()) text += (text.empty() ? "\"" : ", \"") + each + '"';
  }
  return text;
}

// One creation. Also acts as the user to whom the server's questions are directed.
class Creation final : private DialogResponder {
 public:
  Creation(CommandContext& commandContext, const NewProject& stagedProject,
           const NewProject& newProject)
      : context_(commandContext), staged_(stagedProject), project_(newProject) {
    SetDialogResponder(context_.Frame().GetHandle(), this);
  }
  Creation(const Creation&) = delete;
  Creation& operator=(const Creation&) = delete;
  ~Creation() { SetDialogResponder(context_.Frame().GetHandle(), nullptr); }

  int Run();

 private:
  bool AskOkCancel(const std::string&, const std::string&) override { return false; }
  void ShowMessage(const std::string& text, const std::string&) override { Note(text); }
  std::vector<std::string> ChooseFiles(const FileQuestion&) override { return {}; }
  int RunSheet(CPropertySheet& sheet) override;

  std::string Path(const char* extension) const {
    return JoinPath(staged_.folder, staged_.name + extension);
  }
  // Messages show the folder of the finished project.
  void Note(const std::string& line) {
    lines_.push_back(ReplaceAll(line, staged_.folder, project_.folder));
  }
  int Fail(const std::string& text);
  int ExplainRefusal();
  void ChooseConfiguration();
  int AddFirstSource();

  CommandContext& context_;
  const NewProject& staged_;   // where it is created
  const NewProject& project_;  // where it will be moved
  std::optional<WizardRefusal> refusal_;
  std::vector<std::string> lines_;  // messages of the server
};

int Creation::RunSheet(CPropertySheet& sheet) {
  if (!WizardForm::Fits(sheet)) return kSheetCancel;
  WizardChoices choices;
  choices.target = context_.Own<NewOptions>().target;
  if (!context_.Own<NewOptions>().type.empty())
    choices.typeHeader = context_.Own<NewOptions>().type;
  choices.applicationName = staged_.name;
  choices.location = staged_.folder;
  choices.createNewProject = true;
  refusal_ = WizardForm(sheet).Fill(choices);
  if (!refusal_) {
    std::string problem = sheet.GetPage()->FindFinishProblem();
    if (problem.empty()) {
      problem = DescribeNameProblem(context_, WizardForm(sheet).GetToolchain(), staged_.name);
    }
    if (!problem.empty()) refusal_ = WizardRefusal{problem, {}, {}};
  }
  return refusal_ ? kSheetCancel : kSheetFinish;
}

int Creation::Fail(const std::string& text) {
  context_.Complain(text, lines_);
  return kExitCannotOpen;
}

int Creation::ExplainRefusal() {
  std::string hint = refusal_->hint;
  if (hint.empty()) hint = SuggestionText(refusal_->value, refusal_->choices);
  const bool isUnknown = !refusal_->choices.empty();  // else it is ambiguous
  if (hint.empty() && isUnknown) {
    hint = refusal_->value == context_.Own<NewOptions>().target
               ? " See `tarn targets`."
               : " Expected one of: " + Listed(refusal_->choices) + ".";
  }
  context_.Complain(Printable(refusal_->text + hint));
  return kExitUsage;
}

// Must run before the target is chosen, because the target's script stores its options in the
// active configuration.
void Creation::ChooseConfiguration() {
  const std::string& wanted = context_.Asked().configuration;
  if (wanted.empty()) return;
  BuildSession& session = context_.Session();
  session.Options().SetNewConfigName(wanted);
  bool isKnown = false;
  for (const ApplicationEntry& each : ListApplications(session.Inspector())) {
    const auto& known = each.configurations;
    isKnown = isKnown || std::find(known.begin(), known.end(), wanted) != known.end();
  }
  if (!isKnown) session.Manager().Command(TARN_CMD_ADD_CONFIGURATION);
  session.Manager().Command(TARN_CMD_SELECT_CONFIGURATION);
}

int Creation::AddFirstSource() {
  BuildSession& session = context_.Session();
  session.Inspector().PublishAll();
  const auto applications = ListApplications(session.Inspector());
  if (applications.size() != 1) return kExitDone;
  const std::string& application = applications.front().path;
  const auto added = host::AddFirstSource(session, context_.Files(), application);
  if (added) return kExitDone;
  const Error& error = added.GetError();
  return Fail(context_.ShowFailure(error.place, "written", error.text));
}

int Creation::Run() {
  BuildSession& session = context_.Session();
  const std::string targets = session.Inspector().GetTargets();
  if (const int code = CheckTargetFiles(context_, targets); code != kExitDone) return code;
  session.TakeLogLines();
  session.beforeScript = [this] { ChooseConfiguration(); };
  session.Scripts().onLine = [this](const std::string& line) { Note(line); };
  const bool isMade = session.Manager().AddNewItem() != 0;
  session.beforeScript = {};
  session.Scripts().onLine = {};
  if (refusal_) return ExplainRefusal();
  for (const std::string& line : session.TakeLogLines()) Note(line);
  if (!isMade) return Fail(context_.Show(project_.folder) + " can't be made a project.");
  session.Adopt(Path(".tprj"));
  ChooseConfiguration();
  if (const int code = AddFirstSource(); code != kExitDone) return code;
  if (const int code = context_.SaveProject(); code != kExitDone) return code;
  for (const std::string& line : lines_) context_.Remark(Printable(line));
  return kExitDone;
}

}  // namespace

int MakeProjectForTarget(CommandContext& context, const NewProject& staged,
                         const NewProject& project) {
  return Creation(context, staged, project).Run();
}

}  // namespace tarn::host
