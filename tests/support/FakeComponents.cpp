#include "support/FakeComponents.h"

#include <algorithm>
#include <optional>
#include <set>

#include "platform/text/Text.h"

namespace tarn::test {

namespace {

std::string Encode(std::string_view text) {
  std::string encoded;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    const bool plain = byte >= 0x20 && byte < 0x7F &&
                       std::string_view("\"&'<>[]\\|").find(c) == std::string_view::npos;
    encoded += plain ? std::string(1, c) : "&#" + std::to_string(byte) + ";";
  }
  return encoded;
}

std::string Decode(std::string_view text) {
  std::string decoded;
  while (!text.empty()) {
    const auto end = text.starts_with("&#") ? text.find(';') : std::string_view::npos;
    if (end == std::string_view::npos) {
      decoded += text.front();
      text.remove_prefix(1);
    } else {
      decoded += static_cast<char>(ParseDecimal(std::string(text.substr(2, end - 2)).c_str()));
      text.remove_prefix(end + 1);
    }
  }
  return decoded;
}

// One tag of a text of the two kinds that the fake reads; no value in them holds a quote or ">".
class Tag {
 public:
  // The next opening tag; takes it off the text.
  static std::optional<Tag> Next(std::string_view& text) {
    while (true) {
      const auto start = text.find('<');
      const auto end = text.find('>', start);
      if (start == std::string_view::npos || end == std::string_view::npos) return std::nullopt;
      const std::string_view body = text.substr(start + 1, end - start - 1);
      text.remove_prefix(end + 1);
      if (!body.starts_with('/')) return Tag(body);
    }
  }

  std::string_view Name() const { return body.substr(0, body.find_first_of(" \t\r\n/")); }
  std::string Attribute(std::string_view name) const {
    const std::string start = " " + std::string(name) + "=\"";
    const auto found = body.find(start);
    if (found == std::string_view::npos) return {};
    const std::string_view rest = body.substr(found + start.size());
    return Decode(rest.substr(0, rest.find('"')));
  }

 private:
  explicit Tag(std::string_view text) : body(text) {}

  std::string_view body;
};

std::string KeyOf(std::string_view set, std::string_view section, std::string_view property) {
  return std::string(set) + "." + std::string(section) + "." + std::string(property);
}

}  // namespace

std::vector<std::string> CallRecorder::Calls() const {
  const std::lock_guard guard(lock);
  return calls;
}

std::vector<std::string> CallRecorder::CallsOf(std::string_view operation) const {
  const std::string start = std::string(operation) + " ";
  std::vector<std::string> found;
  for (const std::string& call : Calls()) {
    if (call == operation || call.starts_with(start)) found.push_back(call);
  }
  return found;
}

std::vector<std::string> CallRecorder::TakeCalls() {
  const std::lock_guard guard(lock);
  return std::exchange(calls, {});
}

const DispatchTable<FakePropertyManager>& FakePropertyManager::Table() {
  using Fake = FakePropertyManager;
  static const DispatchTable<Fake> table({
      Method<&Fake::ReadDefsFromFile>("ReadDefsFromFile", 1, {"set", "file"}),
      Method<&Fake::ReadConfigFromFile>("ReadConfigFromFile", 2,
                                        {"config", "set", "section", "property", "file"}),
      Method<&Fake::ReadValuesFromText>("ReadValuesFromText", 4, {"text"}),
      Method<&Fake::GetPropertyValue>("GetPropertyValue", 5, {"set", "section", "property"}),
      Method<&Fake::SetPropertyValue>("SetPropertyValue", 6,
                                      {"set", "section", "property", "value"}),
      Method<&Fake::HideProperty>("HideProperty", 7, {"set", "section", "property", "hide"}),
      Method<&Fake::EnableProperty>("EnableProperty", 8, {"set", "section", "property", "enable"}),
      Method<&Fake::HideSection>("HideSection", 9, {"set", "section", "hide"}),
      Method<&Fake::HideSet>("HideSet", 11, {"set", "hide"}),
      Method<&Fake::GetConfigText>("GetConfigText", 14, {"config", "set", "section", "property"}),
      Method<&Fake::ShowOptions>("ShowOptions", 15, {"frame"}),
      Method<&Fake::GetPropertyWindow>("GetPropertyWindow", 17, {}),
      Method<&Fake::ClearValues>("ClearValues", 18, {}),
      Method<&Fake::GetChangedProperty>("GetChangedProperty", 19, {}),
      Method<&Fake::BeginUpdate>("BeginUpdate", 20, {}),
      Method<&Fake::EndUpdate>("EndUpdate", 21, {}),
      Method<&Fake::GetValuesAsText>("GetValuesAsText", 22, {"set", "section", "property"}),
      Method<&Fake::InitOptions>("InitOptions", 23, {"application", "data", "frame", "mode"}),
      Method<&Fake::BeginChildLevel>("BeginChildLevel", 24, {}),
      Method<&Fake::GetNewConfigName>("GetNewConfigName", 25, {}),
      Method<&Fake::SetCurrentConfig>("SetCurrentConfig", 26, {"config"}),
      Method<&Fake::GetPropertyStringValue>("GetPropertyStringValue", 27,
                                            {"set", "section", "property"}),
      Method<&Fake::GetPropState>("GetPropState", 28, {}),
      Method<&Fake::SetPropState>("SetPropState", 29, {"state"}),
      Method<&Fake::ApplyOptions>("ApplyOptions", 30, {"config", "xml"}),
      Method<&Fake::ProjectClosing>("ProjectClosing", 31, {}),
      Method<&Fake::EndParentLevel>("EndParentLevel", 32, {}),
  });
  return table;
}

std::int32_t FakePropertyManager::ReadDefsFromFile(const char* set, const char* file) {
  Note("ReadDefsFromFile", set, file);
  return 1;
}

std::int32_t FakePropertyManager::ReadConfigFromFile(const char* config, const char* set,
                                                     const char* section, const char* property,
                                                     const char* file) {
  Note("ReadConfigFromFile", config, set, section, property, file);
  return 1;
}

std::int32_t FakePropertyManager::ReadValuesFromText(const char* text) {
  Note("ReadValuesFromText", text);
  const std::string whole = TextOf(text);
  if (Trim(whole).starts_with("<ProjectsConfigs")) {
    projectsConfigs = whole;
    return 1;
  }
  std::string_view rest = whole;
  while (const auto tag = Tag::Next(rest)) {
    if (tag->Name() != "V") continue;
    Store(tag->Attribute("S"), tag->Attribute("N"), tag->Attribute("P"), tag->Attribute("V"));
  }
  return 1;
}

std::string FakePropertyManager::GetPropertyValue(const char* set, const char* section,
                                                  const char* property) {
  Note("GetPropertyValue", set, section, property);
  return ValueOf(TextOf(set), TextOf(section), TextOf(property));
}

std::int32_t FakePropertyManager::SetPropertyValue(const char* set, const char* section,
                                                   const char* property, const char* value) {
  Note("SetPropertyValue", set, section, property, value);
  Store(TextOf(set), TextOf(section), TextOf(property), TextOf(value));
  return 1;
}

std::int32_t FakePropertyManager::HideProperty(const char* set, const char* section,
                                               const char* property, std::int32_t hide) {
  Note("HideProperty", set, section, property, hide);
  return 1;
}

std::int32_t FakePropertyManager::EnableProperty(const char* set, const char* section,
                                                 const char* property, std::int32_t enable) {
  Note("EnableProperty", set, section, property, enable);
  return 1;
}

std::int32_t FakePropertyManager::HideSection(const char* set, const char* section,
                                              std::int32_t hide) {
  Note("HideSection", set, section, hide);
  return 1;
}

std::int32_t FakePropertyManager::HideSet(const char* set, std::int32_t hide) {
  Note("HideSet", set, hide);
  return 1;
}

std::string FakePropertyManager::GetConfigText(const char* config, const char* set,
                                               const char* section, const char* property) {
  Note("GetConfigText", config, set, section, property);
  const std::string start = "<Opt Header=\"" + Encode(TextOf(config)) + "\"";
  if (TextOf(set).empty() && TextOf(section).empty() && TextOf(property).empty()) {
    return start + " />";
  }
  return start + "><Set Header=\"" + Encode(TextOf(set)) + "\"><Sec Header=\"" +
         Encode(TextOf(section)) + "\"><Prop Header=\"" + Encode(TextOf(property)) +
         "\" Removable=\"Yes\" Value=\"" +
         Encode(ValueOf(TextOf(set), TextOf(section), TextOf(property))) +
         "\" /></Sec></Set></Opt>";
}

std::int32_t FakePropertyManager::ShowOptions(std::int32_t frame) {
  Note("ShowOptions", frame);
  return 1;
}

std::int32_t FakePropertyManager::GetPropertyWindow() {
  Note("GetPropertyWindow");
  return propertyWindow;
}

void FakePropertyManager::ClearValues() {
  Note("ClearValues");
  levels.assign(1, {});
}

std::string FakePropertyManager::GetChangedProperty() {
  Note("GetChangedProperty");
  return changedProperty;
}

void FakePropertyManager::BeginUpdate() {
  Note("BeginUpdate");
  ++holds;
}

void FakePropertyManager::EndUpdate() {
  Note("EndUpdate");
  if (holds > 0) --holds;
}

std::string FakePropertyManager::GetValuesAsText(const char* set, const char* section,
                                                 const char* property) {
  Note("GetValuesAsText", set, section, property);
  // From the inside out, and nothing that is hidden by an inner level: so a reader that keeps the
  // first of several finds what this one would.
  std::string text = "<Values>";
  std::set<std::string> seen;
  for (auto level = levels.rbegin(); level != levels.rend(); ++level) {
    for (const Value& value : *level) {
      if (!seen.insert(KeyOf(value.set, value.section, value.property)).second) continue;
      text += "<V S=\"" + Encode(value.set) + "\" N=\"" + Encode(value.section) + "\" P=\"" +
              Encode(value.property) + "\" V=\"" + Encode(value.text) + "\" />";
    }
  }
  return text + "</Values>";
}

std::int32_t FakePropertyManager::InitOptions(const char* application, const char* data,
                                              std::int32_t frame, std::int32_t mode) {
  Note("InitOptions", application, data, frame, mode);
  return 1;
}

void FakePropertyManager::BeginChildLevel() {
  Note("BeginChildLevel");
  levels.emplace_back();
}

std::string FakePropertyManager::GetNewConfigName() {
  Note("GetNewConfigName");
  return newConfigName;
}

void FakePropertyManager::SetCurrentConfig(const char* config) {
  Note("SetCurrentConfig", config);
  currentConfig = TextOf(config);
}

std::string FakePropertyManager::GetPropertyStringValue(const char* set, const char* section,
                                                        const char* property) {
  Note("GetPropertyStringValue", set, section, property);
  return ValueOf(TextOf(set), TextOf(section), TextOf(property));
}

std::string FakePropertyManager::GetPropState() {
  Note("GetPropState");
  return propState;
}

void FakePropertyManager::SetPropState(const char* state) {
  Note("SetPropState", state);
  propState = TextOf(state);
}

// What stands under the configuration counts, and section General of "Standard" in each.
std::int32_t FakePropertyManager::ApplyOptions(const char* config, const char* xml) {
  Note("ApplyOptions", config, xml);
  const std::string wanted = TextOf(config);
  const std::string whole = TextOf(xml);
  std::string_view rest = whole;
  std::string opt;
  std::string set;
  std::string section;
  while (const auto tag = Tag::Next(rest)) {
    const std::string header = tag->Attribute("Header");
    if (tag->Name() == "Opt") opt = header;
    if (tag->Name() == "Set") set = header;
    if (tag->Name() == "Sec") section = header;
    if (tag->Name() != "Prop") continue;
    if (EqualNoCase(opt, wanted) || (section == "General" && EqualNoCase(opt, "Standard"))) {
      Store(set, section, header, tag->Attribute("Value"));
    }
  }
  return 1;
}

void FakePropertyManager::ProjectClosing() {
  Note("ProjectClosing");
  levels.assign(1, {});
  changedProperty.clear();
}

void FakePropertyManager::EndParentLevel() {
  Note("EndParentLevel");
}

const std::string* FakePropertyManager::Find(std::string_view set, std::string_view section,
                                             std::string_view property) const {
  for (auto level = levels.rbegin(); level != levels.rend(); ++level) {
    for (const Value& value : *level) {
      if ((set.empty() || value.set == set) && value.section == section &&
          value.property == property) {
        return &value.text;
      }
    }
  }
  return nullptr;
}

std::string FakePropertyManager::ValueOf(std::string_view set, std::string_view section,
                                         std::string_view property) const {
  if (const std::string* value = Find(set, section, property)) return *value;
  auto found = defaults.find(KeyOf(set, section, property));
  if (found == defaults.end()) found = defaults.find(KeyOf("", section, property));
  return found == defaults.end() ? std::string() : found->second;
}

void FakePropertyManager::Store(std::string_view set, std::string_view section,
                                std::string_view property, std::string text) {
  Level& level = levels.back();
  const auto found = std::find_if(level.begin(), level.end(), [&](const Value& value) {
    return value.set == set && value.section == section && value.property == property;
  });
  if (found != level.end()) {
    found->text = std::move(text);
  } else {
    level.push_back(
        {std::string(set), std::string(section), std::string(property), std::move(text)});
  }
}

const DispatchTable<FakeToolManager>& FakeToolManager::Table() {
  using Fake = FakeToolManager;
  static const DispatchTable<Fake> table({
      Method<&Fake::RunTool>("RunTool", 2, {"tool", "files", "options", "messageFile"}),
      Method<&Fake::InitTools>("InitTools", 3, {"applicationPath", "dataPath", "frame"}),
      Method<&Fake::GetToolsForExtension>("GetToolsForExtension", 9, {"extension"}),
  });
  return table;
}

std::int32_t FakeToolManager::RunTool(const char* tool, const char* files, const char* options,
                                      const char* messageFile) {
  Record("RunTool", tool, files, options, messageFile);
  if (!onRun) return 1;
  return onRun({TextOf(tool), TextOf(files), TextOf(options),
                messageFile == nullptr ? NullableText() : NullableText(messageFile)});
}

std::int32_t FakeToolManager::InitTools(const char* applicationPath, const char* dataPath,
                                        std::int32_t frame) {
  Record("InitTools", applicationPath, dataPath, frame);
  return 1;
}

std::string FakeToolManager::GetToolsForExtension(const char* extension) {
  Record("GetToolsForExtension", extension);
  auto found = tools.find(TextOf(extension));
  if (found == tools.end()) found = tools.find("");
  return found == tools.end() ? std::string() : found->second;
}

FakeComponents::FakeComponents()
    : properties(DispatchPtr::Adopt(new FakePropertyManager)),
      tools(DispatchPtr::Adopt(new FakeToolManager)) {}

void FakeComponents::RegisterWith(ClassRegistry& classes) const {
  classes.RegisterFactory("TarnOptionsManager.PropertyManager",
                          [object = properties] { return object; });
  classes.RegisterFactory("TarnToolManager.ToolManager", [object = tools] { return object; });
}

FakePropertyManager& FakeComponents::Properties() const {
  return static_cast<FakePropertyManager&>(*properties.Get());
}

FakeToolManager& FakeComponents::Tools() const {
  return static_cast<FakeToolManager&>(*tools.Get());
}

}  // namespace tarn::test
