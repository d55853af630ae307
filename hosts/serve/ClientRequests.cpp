#include "hosts/serve/ClientRequests.h"

#include "hosts/core/WizardForm.h"
#include "hosts/serve/ArgumentBinding.h"
#include "platform/text/Text.h"
#include "widgets/HostMessageNames.h"

namespace tarn::host {

namespace {

using nlohmann::json;

constexpr const char* kAsk = "host/ask";
constexpr const char* kMessageBox = "host/messageBox";
constexpr const char* kOpenFile = "host/openFile";
constexpr const char* kWizard = "host/wizard";

// Parses pairs of label and patterns, each terminated by a vertical bar.
json FiltersOf(const std::string& filter) {
  json filters = json::array();
  const std::vector<std::string_view> pieces = Split(filter, '|');
  for (std::size_t i = 0; i + 1 < pieces.size() && !pieces[i].empty(); i += 2) {
    filters.push_back({{"label", pieces[i]}, {"patterns", Split(pieces[i + 1], ';')}});
  }
  return filters;
}

json FieldsOf(const WizardProposals& proposals) {
  return {{"typeHeader", proposals.typeHeader},
          {"typeHeaders", proposals.typeHeaders},
          {"target", proposals.target},
          {"targets", proposals.targets},
          {"applicationName", proposals.applicationName},
          {"location", proposals.location},
          {"createNewProject", proposals.createNewProject},
          {"mayJoinProject", proposals.mayJoinProject},
          {"launchTool", proposals.launchTool},
          {"mayLaunchTool", proposals.mayLaunchTool}};
}

// Reads an optional field; returns false if it has the wrong type.
bool TakeField(const json& fields, const char* name, std::optional<std::string>& field) {
  const auto found = fields.find(name);
  if (found == fields.end()) return true;
  field = TextOfJson(*found);
  return field.has_value();
}

bool TakeField(const json& fields, const char* name, std::optional<bool>& field) {
  const auto found = fields.find(name);
  if (found == fields.end()) return true;
  if (found->is_boolean()) field = found->get<bool>();
  return found->is_boolean();
}

bool TakeFields(const json& fields, WizardChoices& choices) {
  return TakeField(fields, "typeHeader", choices.typeHeader) &&
         TakeField(fields, "target", choices.target) &&
         TakeField(fields, "applicationName", choices.applicationName) &&
         TakeField(fields, "location", choices.location) &&
         TakeField(fields, "createNewProject", choices.createNewProject) &&
         TakeField(fields, "launchTool", choices.launchTool);
}

}  // namespace

json ToJson(const HostMessageEvent& event) {
  json message = {{"number", event.number}, {"name", NameOfHostMessage(event.number)}};
  message["wParam"] = event.hasText ? json(event.text) : json(event.wParam);
  message["lParam"] = event.hasDetail ? json(event.detail) : json(event.lParam);
  return message;
}

const std::vector<std::string>& ClientRequests::Names() {
  static const std::vector<std::string> names = {kAsk, kMessageBox, kOpenFile, kWizard};
  return names;
}

void ClientRequests::SetAnswered(const std::vector<std::string>& names) {
  answered_ = {names.begin(), names.end()};
}

ClientRequests::Outcome ClientRequests::Ask(const char* name, json params, json& answer) {
  if (!answered_.contains(name)) return Outcome::NotAnswered;
  std::optional<RpcAnswer> given = channel_.Ask(name, std::move(params));
  if (!given) return Outcome::Refused;
  if (given->isError) return Outcome::NotAnswered;
  answer = std::move(given->result);
  return Outcome::Answered;
}

std::intptr_t ClientRequests::QueryHost(const HostMessageEvent& event) {
  json answer;
  const Outcome outcome = Ask(kAsk, ToJson(event), answer);
  if (outcome != Outcome::Answered) return outcome == Outcome::NotAnswered ? 1 : 0;
  return answer.is_number_integer() ? answer.get<std::int32_t>() : 0;
}

// OK permits something to be replaced, stopped or written, so it is never assumed by default.
bool ClientRequests::AskOkCancel(const std::string& text, const std::string& caption) {
  json answer;
  const Outcome outcome = Ask(kMessageBox, {{"text", text}, {"caption", caption}}, answer);
  return outcome == Outcome::Answered && answer == "ok";
}

void ClientRequests::ShowMessage(const std::string& text, const std::string& caption) {
  json answer;
  const json onlyOk = json::array({"ok"});
  Ask(kMessageBox, {{"text", text}, {"caption", caption}, {"buttons", onlyOk}}, answer);
}

std::vector<std::string> ClientRequests::ChooseFiles(const FileQuestion& question) {
  json answer;
  const Outcome outcome = Ask(kOpenFile,
                              {{"filters", FiltersOf(question.filter)},
                               {"folder", question.folder},
                               {"multiple", question.multiple}},
                              answer);
  std::vector<std::string> paths;
  if (outcome != Outcome::Answered || !answer.is_array()) return paths;
  for (const json& each : answer) {
    std::optional<std::string> path = TextOfJson(each);
    if (!path || path->empty() || (!question.multiple && !paths.empty())) return {};
    paths.push_back(std::move(*path));
  }
  return paths;
}

int ClientRequests::RunSheet(CPropertySheet& sheet) {
  if (!WizardForm::Fits(sheet)) return kSheetCancel;
  WizardForm form(sheet);
  json answer;
  const Outcome outcome = Ask(kWizard, FieldsOf(form.Read()), answer);
  WizardChoices choices;
  if (outcome != Outcome::Answered || !answer.is_object() || !TakeFields(answer, choices)) {
    return kSheetCancel;
  }
  const std::optional<WizardRefusal> refusal = form.Fill(choices);
  const std::string problem = refusal ? refusal->text : sheet.GetPage()->FindFinishProblem();
  if (problem.empty()) return kSheetFinish;
  ShowMessage(problem, sheet.GetControlText());
  return kSheetCancel;
}

}  // namespace tarn::host
