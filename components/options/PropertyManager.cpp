#include "components/options/PropertyManager.h"

#include <algorithm>

#include "components/options/ValueCheck.h"
#include "components/values/ValuesText.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::options {

namespace {

constexpr std::size_t kMaxValueErrors = 100;

std::string_view View(const char* text) {
  return text == nullptr ? std::string_view() : std::string_view(text);
}

std::string Joined(std::initializer_list<const char*> names) {
  std::string text;
  for (const char* name : names) {
    if (!text.empty()) text += '.';
    text += View(name);
  }
  return text;
}

std::string Lines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

}  // namespace

PropertyManager::PropertyManager(FileSystem& fileSystem)
    : files(fileSystem), definitions(keys), values(keys, definitions) {
  definitions.Index();
}

std::int32_t PropertyManager::InitOptions(const char*, const char*, std::int32_t mainFrame,
                                          std::int32_t) {
  frame = mainFrame;
  return 1;
}

void PropertyManager::ProjectClosing() {
  ClearValues();
  undo.Clear();
  configurations.clear();
  configurationsText.clear();
  valueErrors.clear();
}

// --- Definitions ---

std::int32_t PropertyManager::ReadDefsFromFile(const char* set, const char* file) {
  const std::string_view path = View(file);
  if (View(set).empty()) {
    lastDefinitionFile = path;
    if (std::find(definitionFiles.begin(), definitionFiles.end(), path) == definitionFiles.end()) {
      definitionFiles.emplace_back(path);
    }
    values.SetConfigFolder(AddSeparator(FolderOf(definitionFiles.front())));
    return ReadAllDefinitions() ? 1 : 0;
  }
  // Called for each published node, so a file that was read before must cost nothing.
  if (path != lastDefinitionFile) {
    lastDefinitionFile = path;
    if (std::find(definitionFiles.begin(), definitionFiles.end(), path) == definitionFiles.end()) {
      definitionFiles.emplace_back(path);
      ReadAllDefinitions();
    }
  }
  values.EnterSet(set);
  return 1;
}

bool PropertyManager::ReadAllDefinitions() {
  DefinitionReader reader(files, definitions);
  definitions.Clear();
  bool lastIsRead = false;
  for (const std::string& file : definitionFiles) {
    const bool isRead = reader.ReadFile(file);
    if (file == lastDefinitionFile) lastIsRead = isRead;
  }
  reader.CheckDefaults();
  definitions.Index();
  definitionErrors = reader.Errors();
  lostDefinitions = reader.LostFile();
  filesRead = reader.FilesRead();
  digest = reader.GetDigest();
  return lastIsRead;
}

std::int32_t PropertyManager::RefreshDefinitions() {
  if (definitionFiles.empty() || DefinitionReader::DigestOf(files, filesRead) == digest) return 0;
  ReadAllDefinitions();
  return 1;
}

std::string PropertyManager::ListProperties(const char* set) {
  return ListDefinitions(
      definitions, View(set),
      [this](const std::string& name, const std::string& section,
             const PropertyDefinition& property) { return StateOf(name, section, property); });
}

std::string PropertyManager::GetDefinitionErrors() {
  return Lines(definitionErrors) + Lines(valueErrors);
}

std::string PropertyManager::GetDefinitionProblem() {
  if (!lostDefinitions.empty() || !definitions.IsEmpty()) return lostDefinitions;
  return lastDefinitionFile + ": no options are defined";
}

std::string PropertyManager::CheckValue(const char* set, const char* section, const char* property,
                                        const char* value) {
  const std::string& ownSet = View(set).empty() ? values.OwnSet() : TextOf(set);
  const PropertyDefinition* definition =
      definitions.Find(keys.FindSet(ownSet), keys.FindProperty(View(section), View(property)));
  if (definition == nullptr) return {};
  std::string error;
  std::string missing;
  const std::string resolved =
      values.Resolve(ownSet, View(section), View(property), View(value), &error, &missing);
  if (!error.empty()) return "The value can't be resolved: " + error + ".";
  if (!missing.empty() && Trim(resolved).empty())
    return "A value is required; there is no default.";
  return CheckAgainst(*definition, resolved);
}

// --- Values of the node currently held ---

std::int32_t PropertyManager::ReadConfigFromFile(const char* config, const char* set,
                                                 const char* section, const char* property,
                                                 const char* file) {
  const Result<std::string> text = files.ReadWholeFile(TextOf(file));
  if (!text) return 0;
  if (!HasRoot(*text, "Config") && !HasRoot(*text, "Options")) return 0;
  const std::string_view name = View(config).empty() ? values.GetConfig() : View(config);
  values.ApplySome(*ParseStoredOptions(*text, keys), name, View(set), View(section),
                   View(property));
  return 1;
}

std::int32_t PropertyManager::ReadValuesFromText(const char* text) {
  if (values.ReadText(View(text))) return 1;
  if (HasRoot(View(text), "ProjectsConfigs")) {
    ReadConfigurations(text);
    return 1;
  }
  if (!HasRoot(View(text), "Config") && !HasRoot(View(text), "Options")) return 0;
  values.ApplySome(*ParseStoredOptions(View(text), keys), values.GetConfig(), {}, {}, {});
  return 1;
}

void PropertyManager::ReadConfigurations(const char* text) {
  configurationsAreCurrent = true;
  if (configurationsText == text) return;
  configurationsText = text;
  configurations.clear();
  CXmlNode root;
  CXmlParseInfo parseInfo;
  root.Load(configurationsText, parseInfo);
  for (const CXmlNode* list : root.GetChildren()) {
    for (const CXmlNode* child : list->GetChildren()) {
      const char* header = child->GetAttrValue("Header");
      if (header != nullptr && *header != '\0') configurations.emplace_back(header);
    }
  }
}

std::string PropertyManager::GetPropertyValue(const char* set, const char* section,
                                              const char* property) {
  std::string error;
  std::string value = values.Get(View(set), View(section), View(property), &error);
  if (!error.empty()) NoteError(Joined({set, section, property}), error);
  return value;
}

void PropertyManager::NoteError(std::string_view name, std::string_view error) {
  std::string line = std::string(name) + ": " + std::string(error);
  if (valueErrors.size() >= kMaxValueErrors) return;
  if (std::find(valueErrors.begin(), valueErrors.end(), line) != valueErrors.end()) return;
  valueErrors.push_back(std::move(line));
}

std::string PropertyManager::GetPropertyStringValue(const char* set, const char* section,
                                                    const char* property) {
  std::string value = GetPropertyValue(set, section, property);
  const PropertyId id = keys.FindProperty(View(section), View(property));
  const PropertyDefinition* definition = definitions.Find(values.AnsweringSet(View(set), id), id);
  return definition == nullptr ? value : DisplayText(*definition, value);
}

std::int32_t PropertyManager::SetPropertyValue(const char* set, const char* section,
                                               const char* property, const char* value) {
  values.SetValue(View(set), View(section), View(property), View(value));
  return 1;
}

std::string PropertyManager::GetConfigText(const char* config, const char* set, const char* section,
                                           const char* property) {
  return values.ConfigText(View(config), View(set), View(section), View(property));
}

std::string PropertyManager::GetValuesAsText(const char*, const char*, const char*) {
  return values.ToText();
}

std::string PropertyManager::GetOrigin(const char* set, const char* section, const char* property) {
  switch (values.GetOrigin(View(set), View(section), View(property))) {
    case Origin::Own:
      return "own";
    case Origin::Inherited:
      return "inherited";
    case Origin::Definition:
      return "definition";
    case Origin::None:
      break;
  }
  return "none";
}

std::int32_t PropertyManager::ApplyOptions(const char* config, const char* text) {
  values.Apply(View(config), View(text));
  return 1;
}

void PropertyManager::ClearValues() {
  values.Clear();
  changedProperty.clear();
  configurationsAreCurrent = false;
  if (window) window->RefillSoon();
}

void PropertyManager::EndParentLevel() {
  values.EndParentLevel();
}

void PropertyManager::BeginChildLevel() {
  values.BeginChildLevel();
}

void PropertyManager::SetCurrentConfig(const char* config) {
  values.SetConfig(View(config));
  // If nothing was read before this call, the application has no configurations.
  if (configurationsAreCurrent) return;
  configurations.clear();
  configurationsText.clear();
}

std::string PropertyManager::ListConfigurations() {
  return Lines(configurations);
}

}  // namespace tarn::options
