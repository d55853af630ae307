// The configurations of an application.

#include "platform/text/Text.h"
#include "project/ProjectModel.h"

namespace tarn {

std::int32_t CProjectModel::AddConfiguration() {
  if (!CanStartOperation() || activeApplication == nullptr) return 0;
  const std::string header = propertyManager->GetNewConfigName();
  const std::string description = propertyManager->GetNewConfigName();
  // An unnamed configuration could never be selected.
  if (header.empty()) return 0;
  NoteModified();
  CXmlNode* configs = activeApplication->FindChild("Configs");
  if (configs == nullptr) configs = activeApplication->AddChild("Configs");
  CXmlNode* config = configs->AddChild("Config");
  config->AddAttr("Header", header);
  config->AddAttr("Desc", description);
  ForgetKeptTexts();
  return 1;
}

std::int32_t CProjectModel::RefreshDefinitions() {
  if (IsWorkerAlive() || walksHere > 0 || propertyManager == nullptr) return 0;
  const bool hasOptions = propertyManager->RefreshDefinitions() != 0;
  const bool hasTools = toolManager != nullptr && toolManager->RefreshTools() != 0;
  if (!hasOptions && !hasTools) return 0;
  ForgetExtensions();
  for (int i = 0; i < projectRoot->GetChildCount(); ++i) {
    CXmlNode& child = *projectRoot->GetChild(i);
    if ((types.FlagsOf(child) & kTypeApplication) != 0) ResetNodeCache(child, false);
  }
  PublishAll();
  return 1;
}

std::int32_t CProjectModel::SelectConfiguration(const std::string& wanted) {
  if (!CanStartOperation()) return 0;
  const std::string name = wanted.empty() ? propertyManager->GetNewConfigName() : wanted;
  CXmlNode* const noted = GetCurrentNode();
  if (activeApplication == nullptr || name.empty()) return 0;
  NoteModified();
  activeApplication->SetAttrValue("Config", name);
  propertyManager->BeginUpdate();
  RenewPropState(*noted);
  ResetNodeCache(*activeApplication, false);
  CXmlNode* const application = activeApplication;
  while (PublishNextNode(application)) {
  }
  RestoreRecords(*application);
  const std::uint64_t epoch = treeEpoch;
  SetCurrentNode(noted);
  if (treeEpoch == epoch) RestorePropState(*noted);
  propertyManager->EndUpdate();
  if (treeEpoch != epoch) return 1;
  SendActiveApplication();
  if (treeEpoch == epoch && activeApplication != nullptr) {
    views.SetGlobalsFile(GlobalsFileOf(*activeApplication));
  }
  return 1;
}

}  // namespace tarn
