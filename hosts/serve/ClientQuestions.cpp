#include "hosts/serve/ClientQuestions.h"

#include "hosts/serve/Binding.h"
#include "hosts/serve/MessageNames.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

using nlohmann::json;

constexpr const char* kAsk = "host/ask";
constexpr const char* kMessageBox = "host/messageBox";
constexpr const char* kOpenFile = "host/openFile";
constexpr const char* kWizard = "host/wizard";

// The pairs of label and patterns, each ended by a bar.
json FiltersOf(const std::string& filter) {
  json filters = json::array();
  const std::vector<std::string_view> pieces = Split(filter, '|');
  for (std::size_t i = 0; i + 1 < pieces.size() && !pieces[i].empty(); i += 2) {
    filters.push_back({{"label", pieces[i]}, {"patterns", Split(pieces[i + 1], ';')}});
  }
  return filters;
}

json FieldsOf(const NewApplication& application) {
  return {{"createNewProject", application.createNewProject},
          {"mayJoinProject", application.mayJoinProject},
          {"applicationName", application.applicationName},
          {"location", application.location},
          {"typeHeader", application.typeHeader},
          {"typeHeaders", application.typeHeaders},
          {"targetText", application.targetText},
          {"configName", application.configName},
          {"useCobbler", application.useCobbler},
          {"wizardPath", application.wizardPath}};
}

// A field that is missing keeps what was proposed; false when one has another type.
bool TakeField(const json& fields, const char* name, std::string& field) {
  const auto found = fields.find(name);
  if (found == fields.end()) return true;
  std::optional<std::string> text = TextOfJson(*found);
  if (text) field = std::move(*text);
  return text.has_value();
}

bool TakeField(const json& fields, const char* name, bool& field) {
  const auto found = fields.find(name);
  if (found == fields.end()) return true;
  if (found->is_boolean()) field = found->get<bool>();
  return found->is_boolean();
}

bool TakeFields(const json& fields, NewApplication& application) {
  return TakeField(fields, "createNewProject", application.createNewProject) &&
         TakeField(fields, "applicationName", application.applicationName) &&
         TakeField(fields, "location", application.location) &&
         TakeField(fields, "typeHeader", application.typeHeader) &&
         TakeField(fields, "targetText", application.targetText) &&
         TakeField(fields, "configName", application.configName) &&
         TakeField(fields, "useCobbler", application.useCobbler) &&
         TakeField(fields, "wizardPath", application.wizardPath);
}

}  // namespace

json ToJson(const HostEvent& event) {
  json message = {{"number", event.number}, {"name", NameOfHostMessage(event.number)}};
  message["wParam"] = event.hasText ? json(event.text) : json(event.wParam);
  message["lParam"] = event.hasDetail ? json(event.detail) : json(event.lParam);
  return message;
}

const std::vector<std::string>& ClientQuestions::Names() {
  static const std::vector<std::string> names = {kAsk, kMessageBox, kOpenFile, kWizard};
  return names;
}

void ClientQuestions::SetAnswered(const std::vector<std::string>& names) {
  answered = {names.begin(), names.end()};
}

ClientQuestions::Outcome ClientQuestions::Ask(const char* name, json params, json& answer) {
  if (!answered.contains(name)) return Outcome::NotAnswered;
  std::optional<RpcAnswer> given = channel.Ask(name, std::move(params));
  if (!given) return Outcome::Refused;
  if (given->isError) return Outcome::NotAnswered;
  answer = std::move(given->result);
  return Outcome::Answered;
}

std::intptr_t ClientQuestions::AskHost(const HostEvent& event) {
  json answer;
  const Outcome outcome = Ask(kAsk, ToJson(event), answer);
  if (outcome != Outcome::Answered) return outcome == Outcome::NotAnswered ? 1 : 0;
  return answer.is_number_integer() ? answer.get<std::int32_t>() : 0;
}

bool ClientQuestions::AskOkCancel(const std::string& text, const std::string& caption) {
  json answer;
  const Outcome outcome = Ask(kMessageBox, {{"text", text}, {"caption", caption}}, answer);
  return outcome == Outcome::NotAnswered || (outcome == Outcome::Answered && answer == "ok");
}

void ClientQuestions::ShowMessage(const std::string& text, const std::string& caption) {
  json answer;
  const json onlyOk = json::array({"ok"});
  Ask(kMessageBox, {{"text", text}, {"caption", caption}, {"buttons", onlyOk}}, answer);
}

std::vector<std::string> ClientQuestions::ChooseFiles(const FileQuestion& question) {
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

bool ClientQuestions::AskNewApplication(NewApplication& application) {
  NewApplication chosen = application;
  if (chosen.typeHeader.empty() && !chosen.typeHeaders.empty()) {
    chosen.typeHeader = chosen.typeHeaders.front();  // as a list begins with its first entry
  }
  json answer;
  const Outcome outcome = Ask(kWizard, FieldsOf(chosen), answer);
  if (outcome != Outcome::Answered || !answer.is_object()) return false;
  if (!TakeFields(answer, chosen)) return false;
  application = std::move(chosen);
  return true;
}

}  // namespace tarn::host
