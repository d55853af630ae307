#include "support/FakeComponents.h"

#include <tarn/methods.h>

#include <algorithm>
#include <set>

#include "platform/text/Text.h"
#include "xml/XmlNode.h"

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

std::string Attribute(const CXmlNode& node, const char* name) {
  return Decode(OrEmpty(node.GetAttrValue(name)));
}

std::string KeyOf(const char* set, const char* section, const char* property) {
  return OrEmpty(set) + "." + OrEmpty(section) + "." + OrEmpty(property);
}

std::string Show(const Variant& argument) {
  if (argument.GetKind() == Variant::Kind::Long) return std::to_string(argument.AsLong());
  const std::string text = argument.AsText().value_or("null");
  return text.empty() ? "\"\"" : text;
}

}  // namespace

void CallRecorder::Record(std::string_view operation, std::span<const Variant> arguments) {
  std::string line(operation);
  for (const Variant& argument : arguments) line += " " + Show(argument);
  {
    const std::lock_guard guard(lock_);
    calls_.push_back(std::move(line));
  }
  if (onCall) onCall(operation);
}

std::vector<std::string> CallRecorder::Calls() const {
  const std::lock_guard guard(lock_);
  return calls_;
}

std::vector<std::string> CallRecorder::CallsOf(std::string_view operation) const {
  const std::string start = std::string(operation) + " ";
  std::vector<std::string> found = Calls();
  std::erase_if(found, [&](const std::string& call) { return !(call + " ").starts_with(start); });
  return found;
}

std::vector<std::string> CallRecorder::TakeCalls() {
  const std::lock_guard guard(lock_);
  return std::exchange(calls_, {});
}

const DispatchTable<FakePropertyManager>& FakePropertyManager::Table() {
  using Fake = FakePropertyManager;
  using Text = const char*;
  using Number = std::int32_t;
  static const DispatchTable<Fake> table({
      Method<&Fake::Accept<Text, Text>>("ReadDefsFromFile", TARN_OPT_READ_DEFS_FROM_FILE, {}),
      Method<&Fake::Accept<Text, Text, Text, Text, Text>>("ReadConfigFromFile",
                                                          TARN_OPT_READ_CONFIG_FROM_FILE, {}),
      Method<&Fake::ReadValuesFromText>("ReadValuesFromText", TARN_OPT_READ_VALUES_FROM_TEXT, {}),
      Method<&Fake::GetPropertyValue>("GetPropertyValue", TARN_OPT_GET_PROPERTY_VALUE, {}),
      Method<&Fake::SetPropertyValue>("SetPropertyValue", TARN_OPT_SET_PROPERTY_VALUE, {}),
      Method<&Fake::Accept<Text, Text, Text, Number>>("HideProperty", TARN_OPT_HIDE_PROPERTY, {}),
      Method<&Fake::Accept<Text, Text, Text, Number>>("EnableProperty", TARN_OPT_ENABLE_PROPERTY,
                                                      {}),
      Method<&Fake::Accept<Text, Text, Number>>("HideSection", TARN_OPT_HIDE_SECTION, {}),
      Method<&Fake::Accept<Text, Number>>("HideSet", TARN_OPT_HIDE_SET, {}),
      Method<&Fake::GetConfigText>("GetConfigText", TARN_OPT_GET_CONFIG_TEXT, {}),
      Method<&Fake::Accept<Number>>("ShowOptions", TARN_OPT_SHOW_OPTIONS, {}),
      Method<&Fake::GetPropertyWindow>("GetPropertyWindow", TARN_OPT_GET_PROPERTY_WINDOW, {}),
      Method<&Fake::ClearValues>("ClearValues", TARN_OPT_CLEAR_VALUES, {}),
      Method<&Fake::GetChangedProperty>("GetChangedProperty", TARN_OPT_GET_CHANGED_PROPERTY, {}),
      Method<&Fake::BeginUpdate>("BeginUpdate", TARN_OPT_BEGIN_UPDATE, {}),
      Method<&Fake::EndUpdate>("EndUpdate", TARN_OPT_END_UPDATE, {}),
      Method<&Fake::GetValuesAsText>("GetValuesAsText", TARN_OPT_GET_VALUES_AS_TEXT, {}),
      Method<&Fake::Accept<Text, Text, Number, Number>>("InitOptions", TARN_OPT_INIT_OPTIONS, {}),
      Method<&Fake::BeginChildLevel>("BeginChildLevel", TARN_OPT_BEGIN_CHILD_LEVEL, {}),
      Method<&Fake::GetNewConfigName>("GetNewConfigName", TARN_OPT_GET_NEW_CONFIG_NAME, {}),
      Method<&Fake::SetCurrentConfig>("SetCurrentConfig", TARN_OPT_SET_CURRENT_CONFIG, {}),
      Method<&Fake::GetPropertyValue>("GetPropertyStringValue", TARN_OPT_GET_PROPERTY_STRING_VALUE,
                                      {}),
      Method<&Fake::GetPropState>("GetPropState", TARN_OPT_GET_PROP_STATE, {}),
      Method<&Fake::SetPropState>("SetPropState", TARN_OPT_SET_PROP_STATE, {}),
      Method<&Fake::ApplyOptions>("ApplyOptions", TARN_OPT_APPLY_OPTIONS, {}),
      Method<&Fake::ProjectClosing>("ProjectClosing", TARN_OPT_PROJECT_CLOSING, {}),
      Method<&Fake::Accept<>>("EndParentLevel", TARN_OPT_END_PARENT_LEVEL, {}),
  });
  return table;
}

std::int32_t FakePropertyManager::ReadValuesFromText(const char* text) {
  CXmlNode root;
  CXmlParseInfo info;
  root.Load(text, info);
  for (const CXmlNode* value : root.GetChildren()) {
    if (value->GetName() == "V") Store(Attribute(*value, "K"), Attribute(*value, "V"));
  }
  return 1;
}

std::string FakePropertyManager::GetPropertyValue(const char* set, const char* section,
                                                  const char* property) {
  const std::string key = KeyOf(set, section, property);
  for (auto level = levels_.rbegin(); level != levels_.rend(); ++level) {
    for (const auto& [stored, text] : *level) {
      if (stored == key || (key.front() == '.' && stored.ends_with(key))) return text;
    }
  }
  auto found = defaults.find(key);
  if (found == defaults.end()) found = defaults.find(KeyOf("", section, property));
  return found == defaults.end() ? std::string() : found->second;
}

std::int32_t FakePropertyManager::SetPropertyValue(const char* set, const char* section,
                                                   const char* property, const char* value) {
  Store(KeyOf(set, section, property), OrEmpty(value));
  return 1;
}

std::string FakePropertyManager::GetConfigText(const char* config, const char* set,
                                               const char* section, const char* property) {
  const std::string start = "<Opt Header=\"" + Encode(OrEmpty(config)) + "\"";
  if (KeyOf(set, section, property) == "..") return start + " />";
  return start + "><Set Header=\"" + Encode(OrEmpty(set)) + "\"><Sec Header=\"" +
         Encode(OrEmpty(section)) + "\"><Prop Header=\"" + Encode(OrEmpty(property)) +
         "\" Removable=\"Yes\" Value=\"" + Encode(GetPropertyValue(set, section, property)) +
         "\" /></Sec></Set></Opt>";
}

std::string FakePropertyManager::GetValuesAsText(const char*, const char*, const char*) {
  // Writes the levels from the innermost outwards, without hidden values: so a reader that uses the
  // first of several definitions finds the same value as this class.
  std::string text = "<Values>";
  std::set<std::string> seen;
  for (auto level = levels_.rbegin(); level != levels_.rend(); ++level) {
    for (const auto& [key, value] : *level) {
      if (!seen.insert(key).second) continue;
      text += "<V K=\"" + Encode(key) + "\" V=\"" + Encode(value) + "\" />";
    }
  }
  return text + "</Values>";
}

// Applies the options of the configuration, and section General of "Standard".
std::int32_t FakePropertyManager::ApplyOptions(const char* config, const char* xml) {
  CXmlNode root;
  CXmlParseInfo info;
  root.Load(xml, info);
  for (const CXmlNode* opt : root.GetChildren()) {
    const bool isMeant = EqualNoCase(Attribute(*opt, "Header"), OrEmpty(config));
    const bool isStandard = EqualNoCase(Attribute(*opt, "Header"), "Standard");
    for (const CXmlNode* set : opt->GetChildren()) {
      for (const CXmlNode* section : set->GetChildren()) {
        const std::string name = Attribute(*section, "Header");
        if (!isMeant && !(isStandard && name == "General")) continue;
        for (const CXmlNode* property : section->GetChildren()) {
          Store(Attribute(*set, "Header") + "." + name + "." + Attribute(*property, "Header"),
                Attribute(*property, "Value"));
        }
      }
    }
  }
  return 1;
}

void FakePropertyManager::ProjectClosing() {
  ClearValues();
  changedProperty.clear();
}

void FakePropertyManager::Store(const std::string& key, std::string text) {
  Level& level = levels_.back();
  const auto found =
      std::find_if(level.begin(), level.end(), [&](const auto& each) { return each.first == key; });
  if (found != level.end()) {
    found->second = std::move(text);
  } else {
    level.emplace_back(key, std::move(text));
  }
}

const DispatchTable<FakeToolManager>& FakeToolManager::Table() {
  using Fake = FakeToolManager;
  static const DispatchTable<Fake> table({
      Method<&Fake::RunTool>("RunTool", TARN_TOOL_RUN_TOOL, {}),
      Method<&Fake::InitTools>("InitTools", TARN_TOOL_INIT_TOOLS, {}),
      Method<&Fake::GetToolsForExtension>("GetToolsForExtension", TARN_TOOL_GET_TOOLS_FOR_EXTENSION,
                                          {}),
      Method<&Fake::GetRunFiles>("GetRunFiles", TARN_TOOL_GET_RUN_FILES, {}),
  });
  return table;
}

std::int32_t FakeToolManager::RunTool(const char* tool, const char* files, const char* options,
                                      const char* messageFile) {
  if (!onRun) return 1;
  return onRun({OrEmpty(tool), OrEmpty(files), OrEmpty(options),
                messageFile == nullptr ? NullableText() : NullableText(messageFile)});
}

std::string FakeToolManager::GetToolsForExtension(const char* extension) {
  const auto found = tools.find(OrEmpty(extension));
  return found == tools.end() ? tools[""] : found->second;
}

FakeComponents::FakeComponents()
    : properties_(DispatchPtr::Adopt(new FakePropertyManager)),
      tools_(DispatchPtr::Adopt(new FakeToolManager)) {}

void FakeComponents::RegisterWith(ClassRegistry& classes) const {
  classes.RegisterFactory("TarnOptionsManager.PropertyManager",
                          [object = properties_] { return object; });
  classes.RegisterFactory("TarnToolManager.ToolManager", [object = tools_] { return object; });
}

FakePropertyManager& FakeComponents::Properties() const {
  return static_cast<FakePropertyManager&>(*properties_.Get());
}

FakeToolManager& FakeComponents::Tools() const {
  return static_cast<FakeToolManager&>(*tools_.Get());
}

}  // namespace tarn::test
