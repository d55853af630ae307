// Dispatch methods for settings: option values, the registry, INI files; and for scripts.

#include "automation/ProjectManager.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/FileAccess.h"

namespace tarn {

namespace {

std::string KeyOf(const char* set, const char* section, const char* property) {
  return TextOf(set) + "." + TextOf(section) + "." + TextOf(property);
}

}  // namespace

std::int32_t CProjectManager::ReadDefsFromFile(const char* set, const char* file) {
  if (!model) return 0;
  model->Extensions().Forget();
  return propertyManager->ReadDefsFromFile(set, file);
}

std::int32_t CProjectManager::ReadConfigFromFile(const char* config, const char* set,
                                                 const char* section, const char* property,
                                                 const char* file) {
  if (!model) return 0;
  if (file == nullptr) {
    return propertyManager->ReadConfigFromFile(config, set, section, property, file);
  }
  return propertyManager->ReadConfigFromFile(config, set, section, property,
                                             installation.FindConfigFile(file));
}

std::int32_t CProjectManager::UpdateCurNodeConfig(const char* set, const char* file) {
  if (!model) return 1;
  model->Extensions().Forget();
  propertyManager->ReadDefsFromFile(set, installation.FindConfigFile(file));
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
  return installation.ReadRegistryValue(key, name);
}

std::string CProjectManager::ReadIniValue(const char* section, const char* key,
                                          const char* iniPath) {
  return fileCalls ? fileCalls->ReadIniValue(section, key, iniPath) : std::string();
}

std::int32_t CProjectManager::WriteIniValue(const char* section, const char* key, const char* value,
                                            const char* iniPath) {
  if (!fileCalls) return 0;
  fileCalls->WriteIniValue(section, key, value, iniPath);
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

std::int32_t CProjectManager::ExecuteScript(const char* scriptPath) {
  return fileCalls ? fileCalls->ExecuteScript(TextOf(scriptPath)) : 0;
}

}  // namespace tarn
