// Calls that give the host access to stored settings: option values and the machine-wide registry.

#include "automation/ProjectManager.h"
#include "output/MessageTable.h"
#include "platform/paths/Paths.h"
#include "platform/settings/IniFile.h"
#include "platform/text/Text.h"
#include "project/FileAccess.h"

namespace tarn {

namespace {

// Capacity of a caller's buffer of 260 bytes without the terminating zero.
constexpr std::size_t kLongestIniValue = 259;

std::string KeyOf(const char* set, const char* section, const char* property) {
  return TextOf(set) + "." + TextOf(section) + "." + TextOf(property);
}

}  // namespace

std::int32_t CProjectManager::ReadDefsFromFile(const char* set, const char* file) {
  if (!model) return 0;
  model->Extensions().Forget();
  return propertyManager->ReadDefsFromFile(set, file);
}

// Resolves a name that isn't an existing file against the configuration folder, without checking
// that the result exists.
std::string CProjectManager::FindConfigFile(const char* file) const {
  const std::string name = TextOf(file);
  return platform.files.Exists(name) ? name : configFolder + name;
}

std::int32_t CProjectManager::ReadConfigFromFile(const char* config, const char* set,
                                                 const char* section, const char* property,
                                                 const char* file) {
  if (!model) return 0;
  if (file == nullptr) {
    return propertyManager->ReadConfigFromFile(config, set, section, property, file);
  }
  return propertyManager->ReadConfigFromFile(config, set, section, property, FindConfigFile(file));
}

std::int32_t CProjectManager::UpdateCurNodeConfig(const char* set, const char* file) {
  if (!model) return 1;
  model->Extensions().Forget();
  propertyManager->ReadDefsFromFile(set, FindConfigFile(file));
  return 1;
}

std::string CProjectManager::GetPropertyValue(const char* set, const char* section,
                                              const char* property) {
  return propertyManager ? propertyManager->GetPropertyValue(set, section, property)
                         : std::string();
}

std::int32_t CProjectManager::SetPropertyValue(const char* set, const char* section,
                                               const char* property, const char* value) {
  if (!model) return 0;
  model->Extensions().Forget();
  return propertyManager->SetPropertyValue(set, section, property, value);
}

std::string CProjectManager::GetPropertyStringValue(const char* set, const char* section,
                                                    const char* property) {
  return propertyManager ? propertyManager->GetPropertyStringValue(set, section, property)
                         : std::string();
}

std::int32_t CProjectManager::EnableProperty(const char* set, const char* section,
                                             const char* property, std::int32_t enable) {
  return propertyManager ? propertyManager->EnableProperty(set, section, property, enable) : 0;
}

std::int32_t CProjectManager::HideProperty(const char* set, const char* section,
                                           const char* property, std::int32_t hide) {
  if (!propertyManager) return 0;
  if (!TextOf(property).empty()) {
    return propertyManager->HideProperty(set, section, property, hide);
  }
  if (!TextOf(section).empty()) return propertyManager->HideSection(set, section, hide);
  return propertyManager->HideSet(set, hide);
}

std::int32_t CProjectManager::SavePropertyValue(const char* set, const char* section,
                                                const char* property, const char* value) {
  if (!model) return 0;
  model->Extensions().Forget();
  const std::int32_t result = propertyManager->SetPropertyValue(set, section, property, value);
  model->Options().StoreChangedProperty(KeyOf(set, section, property));
  return result;
}

std::int32_t CProjectManager::ResetPropertyValue(const char* set, const char* section,
                                                 const char* property) {
  if (!model) return 0;
  // `ResetStoredProperty()` parses the key from the left and can't handle an empty set.
  std::string setName = TextOf(set);
  if (setName.empty()) setName = model->GetCurrentNode()->GetName();
  return model->Options().ResetStoredProperty(KeyOf(setName.c_str(), section, property));
}

std::string CProjectManager::GetCurConfig() {
  if (!model) return {};
  return propertyManager->GetConfigText(model->Publishing().GetCurrentConfigName(), "", "", "");
}

std::string CProjectManager::ReadRegistryValue(const char* key, const char* name) {
  const std::string own = OwnFolderName();
  const std::string base =
      own.empty() ? std::string("Software\\Corvane\\Tarn7\\") : "Software\\Corvane\\" + own + "\\";
  return platform.settings.ReadRegistry(base + TextOf(key), TextOf(name)).value_or(std::string());
}

std::string CProjectManager::ReadIniValue(const char* section, const char* key,
                                          const char* iniPath) {
  if (!model) return {};
  const Result<std::string> text = platform.files.ReadWholeFile(TextOf(iniPath));
  if (!text || section == nullptr || key == nullptr) return {};
  std::string value = IniFile(*text).Read(section, key).value_or(std::string());
  if (value.size() > kLongestIniValue) value.resize(kLongestIniValue);
  return value;
}

// Returns true if an untrusted project requests access to a file outside its folder. The refusal is
// logged.
bool CProjectManager::RefusesIniFile(const std::string& path) {
  const std::string folder = platform.files.CurrentFolder();
  const std::string whole = IsRelativePath(path) ? JoinPath(folder, path) : path;
  ProjectTrust& trust = model->Protection().GetTrust();
  if (model->Protection().MayWriteOutside() || !trust.RefusesWrite(whole)) return false;
  trust.Refuse(trust.WishFor("write", whole));
  output->WriteMessage(kRowCannotSave, {whole},
                       "it is outside the folder of the project, which is not trusted");
  return true;
}

// A null value removes the key, a null key removes the whole section.
std::int32_t CProjectManager::WriteIniValue(const char* section, const char* key, const char* value,
                                            const char* iniPath) {
  if (!model) return 0;
  const std::string path = TextOf(iniPath);
  if (path.empty() || section == nullptr) return 1;
  if (RefusesIniFile(path)) return 1;
  GetFileAccess(platform.files, path, kMustBeWritable | kCreateFolder);
  const Result<std::string> text = platform.files.ReadWholeFile(path);
  const bool isNew = !text && text.GetError().code == ErrorCode::NotFound;
  IniFile store = text ? IniFile(*text) : IniFile();
  Status saved = text || isNew ? Status() : Status(text.GetError());
  if (saved && key == nullptr) {
    store.RemoveSection(section);
  } else if (saved && value == nullptr) {
    store.Remove(section, key);
  } else if (saved && !store.Write(section, key, value)) {
    saved = Error{ErrorCode::InvalidName, "it has no form for that value", path};
  }
  if (saved) saved = platform.files.WriteWholeFile(path, store.ToText());
  if (!saved) output->WriteMessage(kRowCannotSave, {path}, saved.GetError().text);
  return 1;
}

std::string CProjectManager::GetSelectedApplication() {
  const CXmlNode* application = model ? model->GetActiveApplication() : nullptr;
  return application == nullptr ? std::string() : TextOf(application->GetAttrValue("Path"));
}

std::string CProjectManager::GetSelectedDBI() {
  const std::string path = GetSelectedApplication();
  if (path.empty() || !model->Types().HasTypeFlag(*model->GetActiveApplication(), "Debug"))
    return {};
  std::string debugFile = WithExtension(path, ".dbi");
  model->Paths().MakeAbsolutePath(debugFile, debugFile, nullptr);
  CheckFileAccess(platform.files, debugFile, kMustBeWritable | kCreateFolder, *output);
  return debugFile;
}

std::string CProjectManager::CheckScript(const std::string& path) {
  const std::string folder = platform.files.CurrentFolder();
  const std::string whole = IsRelativePath(path) ? JoinPath(folder, path) : path;
  ProjectTrust& trust = model->Protection().GetTrust();
  if (!trust.RefusesProgram(whole)) return {};
  trust.Refuse("run the script " + whole);
  return "the project wants to run the script " + whole + ", and its folder is not trusted";
}

std::int32_t CProjectManager::ExecuteScript(const char* scriptPath) {
  if (!model) return 0;
  const std::string path = TextOf(scriptPath);
  if (const std::string refusal = CheckScript(path); !refusal.empty()) {
    model->Host().AddLogError(refusal);
    return 0;
  }
  const Result<std::string> script = platform.files.ReadWholeFile(path);
  if (!script) return script.GetError().code == ErrorCode::Io ? 1 : 0;
  model->Host().SendHost(kMsgRunScript, *script, 0);
  return 1;
}

}  // namespace tarn
