#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/cli/EditRecord.h"

namespace tarn::host {

namespace {

nlohmann::json LabelOf(const ProjectStep* step) {
  return step == nullptr ? nlohmann::json() : nlohmann::json(step->label);
}

void Report(CommandContext& context, const std::string& line, const std::vector<std::string>& names,
            const EditRecord& record) {
  if (context.Asked().json) {
    PrintJson(context, {{"changes", {line}},
                        {"files", names},
                        {"undo", LabelOf(record.GetUndo())},
                        {"redo", LabelOf(record.GetRedo())}});
  } else if (!context.Asked().quiet) {
    context.Out().PrintLine(line);
  }
}

}  // namespace

int RunUndo(CommandContext& context) {
  const bool isUndo = context.Asked().command == "undo";
  if (const int code = context.OpenProject(); code != kExitDone) return code;
  EditRecord record(context.Files(), context.Session().GetProjectPath());
  const ProjectStep* const found = isUndo ? record.GetUndo() : record.GetRedo();
  if (found == nullptr) {
    context.Complain(isUndo ? "There is no change of a command to undo."
                            : "There is no change to redo.");
    return kExitUsage;
  }
  const ProjectStep& step = *found;
  const std::string label = Printable(step.label);
  const Status applied =
      ApplyChanges(context.Session().Inspector(), isUndo ? Reverse(step.changes) : step.changes);
  if (!applied) {
    context.Complain("\"" + label + "\" can't be " + (isUndo ? "undone" : "redone") +
                     ", nothing was changed:\n" + applied.GetError().text);
    return kExitCannotOpen;
  }
  if (const int code = context.SaveFiles(); code != kExitDone) return code;
  std::vector<std::string> names;
  for (const FileChange& each : step.changes) names.push_back(context.Show(each.path));
  if (isUndo) {
    record.MoveBack();
  } else {
    record.MoveOn();
  }
  context.WriteRecord(record);
  Report(context, (isUndo ? "undone: " : "redone: ") + label, names, record);
  return kExitDone;
}

}  // namespace tarn::host
