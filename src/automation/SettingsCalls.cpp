// Dispatch methods for settings: option values, the registry, INI files; and for scripts.

#include "automation/ProjectManager.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/FileAccess.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

std::string KeyOf(const char* set, const char* section, const char* property) {
  return OrEmpty(set) + "." + OrEmpty(section) + "." + OrEmpty(property);
}

}  // namespace

std::int32_t CProjectManager::ReadDefsFromFile(const char* set, const char* file) {
  if (!model_) return 0;
  model_->Extensions().Invalidate();
  return propertyManager_->ReadDefsFromFile(set, file);
}

std::int32_t CProjectManager::ReadConfigFromFile(const char* config, const char* set,
                                                 const char* section, const char* property,
                                                 const char* file) {
  if (!model_) return 0;
  if (file == nullptr) {
    return propertyManager_->ReadConfigFromFile(config, set, section, property, file);
  }
  return propertyManager_->ReadConfigFromFile(config, set, section, property,
                                              installation_.FindConfigFile(file));
}

std::int32_t CProjectManager::UpdateCurNodeConfig(const char* set, const char* file) {
  if (!model_) return 1;
  model_->Extensions().Invalidate();
  propertyManager_->ReadDefsFromFile(set, installation_.FindConfigFile(file));
  return 1;
}

std::string CProjectManager::GetPropertyValue(const char* set, const char* section,
                                              const char* property) {
  return propertyManager_ ? propertyManager_->GetPropertyValue(set, section, property)
                          : std::string();
}

std::int32_t CProjectManager::SetPropertyValue(const char* set, const char* section,
                                               const char* property, const char* value) {
  if (!model_) return 0;
  model_->Extensions().Invalidate();
  return propertyManager_->SetPropertyValue(set, section, property, value);
}

std::string CProjectManager::GetPropertyStringValue(const char* set, const char* section,
                                                    const char* property) {
  return propertyManager_ ? propertyManager_->GetPropertyStringValue(set, section, property)
                          : std::string();
}

std::int32_t CProjectManager::EnableProperty(const char* set, const char* section,
                                             const char* property, std::int32_t enable) {
  return propertyManager_ ? propertyManager_->EnableProperty(set, section, property, enable) : 0;
}

std::int32_t CProjectManager::HideProperty(const char* set, const char* section,
                                           const char* property, std::int32_t hide) {
  if (!propertyManager_) return 0;
  if (!OrEmpty(property).empty()) {
    return propertyManager_->HideProperty(set, section, property, hide);
  }
  if (!OrEmpty(section).empty()) return propertyManager_->HideSection(set, section, hide);
  return propertyManager_->HideSet(set, hide);
}

std::int32_t CProjectManager::SavePropertyValue(const char* set, const char* section,
                                                const char* property, const char* value) {
  if (!model_) return 0;
  model_->Extensions().Invalidate();
  const std::int32_t result = propertyManager_->SetPropertyValue(set, section, property, value);
  model_->Options().StoreChangedProperty(KeyOf(set, section, property));
  return result;
}

std::int32_t CProjectManager::ResetPropertyValue(const char* set, const char* section,
                                                 const char* property) {
  if (!model_) return 0;
  // `ResetStoredProperty()` parses the key from the left and can't handle an empty set.
  std::string setName = OrEmpty(set);
  if (setName.empty()) setName = model_->GetCurrentNode()->GetName();
  return model_->Options().ResetStoredProperty(KeyOf(setName.c_str(), section, property));
}

std::string CProjectManager::GetCurConfig() {
  if (!model_) return {};
  return propertyManager_->GetConfigText(model_->Publishing().GetCurrentConfigName(), "", "", "");
}

std::string CProjectManager::ReadRegistryValue(const char* key, const char* name) {
  return installation_.ReadRegistryValue(key, name);
}

std::string CProjectManager::ReadIniValue(const char* section, const char* key,
                                          const char* iniPath) {
  return fileCalls_ ? fileCalls_->ReadIniValue(section, key, iniPath) : std::string();
}

std::int32_t CProjectManager::WriteIniValue(const char* section, const char* key, const char* value,
                                            const char* iniPath) {
  if (!fileCalls_) return 0;
  fileCalls_->WriteIniValue(section, key, value, iniPath);
  return 1;
}

std::string CProjectManager::GetSelectedApplication() {
  const CXmlNode* application = model_ ? model_->GetActiveApplication() : nullptr;
  return application == nullptr ? std::string() : OrEmpty(application->GetAttrValue("Path"));
}

std::string CProjectManager::GetSelectedDBI() {
  const std::string path = GetSelectedApplication();
  if (path.empty() || !model_->Types().HasTypeFlag(*model_->GetActiveApplication(), "Debug"))
    return {};
  std::string debugFile = WithExtension(path, ".dbi");
  model_->Paths().MakeAbsolutePath(debugFile, debugFile, nullptr);
  CheckFileAccess(platform_.files, debugFile, kMustBeWritable | kCreateFolder, *output_);
  return debugFile;
}

std::int32_t CProjectManager::ExecuteScript(const char* scriptPath) {
  return fileCalls_ ? fileCalls_->ExecuteScript(OrEmpty(scriptPath)) : 0;
}

}  // namespace tarn
