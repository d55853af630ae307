#include "components/options/PropertyManager.h"

#include <algorithm>

#include "components/options/ValueCheck.h"
#include "components/values/ValuesXml.h"
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
    : files_(fileSystem), definitions_(keys_), values_(keys_, definitions_) {
  definitions_.Index();
}

std::int32_t PropertyManager::InitOptions(const char*, const char*, std::int32_t mainFrame,
                                          std::int32_t) {
  frame_ = mainFrame;
  return 1;
}

void PropertyManager::ProjectClosing() {
  ClearValues();
  undo_.Clear();
  configurations_.clear();
  configurationsText_.clear();
  valueErrors_.clear();
}

// --- Definitions ---

std::int32_t PropertyManager::ReadDefsFromFile(const char* set, const char* file) {
  const std::string_view path = View(file);
  if (View(set).empty()) {
    lastDefinitionFile_ = path;
    if (std::find(definitionFiles_.begin(), definitionFiles_.end(), path) ==
        definitionFiles_.end()) {
      definitionFiles_.emplace_back(path);
    }
    values_.SetConfigFolder(AddSeparator(FolderOf(definitionFiles_.front())));
    return ReadAllDefinitions() ? 1 : 0;
  }
  // Called for each published node, so a file that was read before must cost nothing.
  if (path != lastDefinitionFile_) {
    lastDefinitionFile_ = path;
    if (std::find(definitionFiles_.begin(), definitionFiles_.end(), path) ==
        definitionFiles_.end()) {
      definitionFiles_.emplace_back(path);
      ReadAllDefinitions();
    }
  }
  values_.EnterSet(set);
  return 1;
}

bool PropertyManager::ReadAllDefinitions() {
  OptionDefinitionReader reader(files_, definitions_);
  definitions_.Clear();
  bool lastIsRead = false;
  for (const std::string& file : definitionFiles_) {
    const bool isRead = reader.ReadFile(file);
    if (file == lastDefinitionFile_) lastIsRead = isRead;
  }
  furtherFiles_ = FindFurtherFiles();
  for (const std::string& file : furtherFiles_) reader.ReadFile(file);
  reader.CheckDefaults();
  definitions_.Index();
  definitionErrors_ = reader.Errors();
  lostDefinitions_ = reader.LostFile();
  filesRead_ = reader.FilesRead();
  digest_ = reader.GetDigest();
  return lastIsRead;
}

std::vector<std::string> PropertyManager::FindFurtherFiles() const {
  std::vector<std::string> found;
  for (const std::string& folder : definitionFolders_) {
    const auto entries = files_.ListFolder(folder);
    if (!entries) continue;
    for (const FolderEntry& each : *entries) {
      const bool isOne = !each.isFolder && EndsWithNoCase(each.name, ".options");
      if (isOne) found.push_back(JoinPath(folder, each.name));
    }
  }
  return found;
}

std::int32_t PropertyManager::SetDefinitionFolders(const char* folders) {
  definitionFolders_ = SplitLines(View(folders));
  if (definitionFiles_.empty() || FindFurtherFiles() == furtherFiles_) return 0;
  ReadAllDefinitions();
  return 1;
}

std::int32_t PropertyManager::RefreshDefinitions() {
  const bool isCurrent = definitionFiles_.empty() ||
                         (OptionDefinitionReader::DigestOf(files_, filesRead_) == digest_ &&
                          FindFurtherFiles() == furtherFiles_);
  if (isCurrent) return 0;
  ReadAllDefinitions();
  return 1;
}

std::string PropertyManager::ListProperties(const char* set) {
  return ListDefinitions(
      definitions_, View(set),
      [this](const std::string& name, const std::string& section,
             const PropertyDefinition& property) { return StateOf(name, section, property); });
}

std::string PropertyManager::GetDefinitionErrors() {
  return Lines(definitionErrors_) + Lines(valueErrors_);
}

std::string PropertyManager::GetDefinitionProblem() {
  if (!lostDefinitions_.empty() || !definitions_.IsEmpty()) return lostDefinitions_;
  return lastDefinitionFile_ + ": no options are defined";
}

std::string PropertyManager::CheckValue(const char* set, const char* section, const char* property,
                                        const char* value) {
  const std::string& ownSet = View(set).empty() ? values_.OwnSet() : OrEmpty(set);
  const PropertyDefinition* definition =
      definitions_.Find(keys_.FindSet(ownSet), keys_.FindProperty(View(section), View(property)));
  if (definition == nullptr) return {};
  std::string error;
  std::string missing;
  const std::string resolved =
      values_.Resolve(ownSet, View(section), View(property), View(value), &error, &missing);
  if (!error.empty()) return "The value can't be resolved: " + error + ".";
  if (!missing.empty() && Trim(resolved).empty())
    return "A value is required; there is no default.";
  return CheckAgainst(*definition, resolved);
}

// --- Values of the node currently held ---

std::int32_t PropertyManager::ReadConfigFromFile(const char* config, const char* set,
                                                 const char* section, const char* property,
                                                 const char* file) {
  const Result<std::string> text = files_.ReadWholeFile(OrEmpty(file));
  if (!text) return 0;
  if (!HasRoot(*text, "Config") && !HasRoot(*text, "Options")) return 0;
  const std::string_view name = View(config).empty() ? values_.GetConfig() : View(config);
  values_.ApplySome(*ParseStoredOptions(*text, keys_), name, View(set), View(section),
                    View(property));
  return 1;
}

std::int32_t PropertyManager::ReadValuesFromText(const char* text) {
  if (values_.ReadText(View(text))) return 1;
  if (HasRoot(View(text), "ProjectsConfigs")) {
    ReadConfigurations(text);
    return 1;
  }
  if (!HasRoot(View(text), "Config") && !HasRoot(View(text), "Options")) return 0;
  values_.ApplySome(*ParseStoredOptions(View(text), keys_), values_.GetConfig(), {}, {}, {});
  return 1;
}

void PropertyManager::ReadConfigurations(const char* text) {
  configurationsAreCurrent_ = true;
  if (configurationsText_ == text) return;
  configurationsText_ = text;
  configurations_.clear();
  CXmlNode root;
  CXmlParseInfo parseInfo;
  root.Load(configurationsText_, parseInfo);
  for (const CXmlNode* list : root.GetChildren()) {
    for (const CXmlNode* child : list->GetChildren()) {
      const char* header = child->GetAttrValue("Header");
      if (header != nullptr && *header != '\0') configurations_.emplace_back(header);
    }
  }
}

std::string PropertyManager::GetPropertyValue(const char* set, const char* section,
                                              const char* property) {
  std::string error;
  std::string value = values_.Get(View(set), View(section), View(property), &error);
  if (!error.empty()) RecordError(Joined({set, section, property}), error);
  return value;
}

void PropertyManager::RecordError(std::string_view name, std::string_view error) {
  std::string line = std::string(name) + ": " + std::string(error);
  if (valueErrors_.size() >= kMaxValueErrors) return;
  if (std::find(valueErrors_.begin(), valueErrors_.end(), line) != valueErrors_.end()) return;
  valueErrors_.push_back(std::move(line));
}

std::string PropertyManager::GetPropertyStringValue(const char* set, const char* section,
                                                    const char* property) {
  std::string value = GetPropertyValue(set, section, property);
  const PropertyId id = keys_.FindProperty(View(section), View(property));
  const PropertyDefinition* definition = definitions_.Find(values_.AnsweringSet(View(set), id), id);
  return definition == nullptr ? value : DisplayText(*definition, value);
}

std::int32_t PropertyManager::SetPropertyValue(const char* set, const char* section,
                                               const char* property, const char* value) {
  values_.SetValue(View(set), View(section), View(property), View(value));
  return 1;
}

std::string PropertyManager::GetConfigText(const char* config, const char* set, const char* section,
                                           const char* property) {
  return values_.ConfigText(View(config), View(set), View(section), View(property));
}

std::string PropertyManager::GetValuesAsText(const char*, const char*, const char*) {
  return values_.ToText();
}

std::string PropertyManager::GetOrigin(const char* set, const char* section, const char* property) {
  switch (values_.GetOrigin(View(set), View(section), View(property))) {
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
  values_.Apply(View(config), View(text));
  return 1;
}

void PropertyManager::ClearValues() {
  values_.Clear();
  changedProperty_.clear();
  configurationsAreCurrent_ = false;
  if (window_) window_->RefillSoon();
}

void PropertyManager::EndParentLevel() {
  values_.EndParentLevel();
}

void PropertyManager::BeginChildLevel() {
  values_.BeginChildLevel();
}

void PropertyManager::SetCurrentConfig(const char* config) {
  values_.SetConfig(View(config));
  // If nothing was read before this call, the application has no configurations.
  if (configurationsAreCurrent_) return;
  configurations_.clear();
  configurationsText_.clear();
}

std::string PropertyManager::ListConfigurations() {
  return Lines(configurations_);
}

}  // namespace tarn::options
