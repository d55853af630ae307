// The configurations of an application.

#include "platform/text/Text.h"
#include "project/ProjectModel.h"

namespace tarn {

std::int32_t CProjectModel::AddConfiguration() {
  if (!services.build.CanStartOperation() || state.activeApplication == nullptr) return 0;
  const std::string header = services.propertyManager->GetNewConfigName();
  const std::string description = services.propertyManager->GetNewConfigName();
  // An unnamed configuration could never be selected.
  if (header.empty()) return 0;
  state.NoteModified();
  CXmlNode* configs = state.activeApplication->FindChild("Configs");
  if (configs == nullptr) configs = state.activeApplication->AddChild("Configs");
  CXmlNode* config = configs->AddChild("Config");
  config->AddAttr("Header", header);
  config->AddAttr("Desc", description);
  state.ForgetKeptTexts();
  return 1;
}

std::int32_t CProjectModel::RefreshDefinitions() {
  if (services.build.IsWorkerAlive() || services.build.IsBuildingHere() ||
      services.propertyManager == nullptr)
    return 0;
  const bool hasOptions = services.propertyManager->RefreshDefinitions() != 0;
  const bool hasTools =
      services.toolManager != nullptr && services.toolManager->RefreshTools() != 0;
  if (!hasOptions && !hasTools) return 0;
  extensions.Forget();
  for (int i = 0; i < state.projectRoot->GetChildCount(); ++i) {
    CXmlNode& child = *state.projectRoot->GetChild(i);
    if ((types.FlagsOf(child) & kTypeApplication) != 0) ResetNodeCache(child, false);
  }
  PublishAll();
  return 1;
}

std::int32_t CProjectModel::SelectConfiguration(const std::string& wanted) {
  if (!services.build.CanStartOperation()) return 0;
  const std::string name = wanted.empty() ? services.propertyManager->GetNewConfigName() : wanted;
  CXmlNode* const noted = state.GetCurrentNode();
  if (state.activeApplication == nullptr || name.empty()) return 0;
  state.NoteModified();
  state.activeApplication->SetAttrValue("Config", name);
  services.propertyManager->BeginUpdate();
  RenewPropState(*noted);
  ResetNodeCache(*state.activeApplication, false);
  CXmlNode* const application = state.activeApplication;
  while (PublishNextNode(application)) {
  }
  services.build.RestoreRecords(*application);
  const std::uint64_t epoch = state.treeEpoch;
  SetCurrentNode(noted);
  if (state.treeEpoch == epoch) RestorePropState(*noted);
  services.propertyManager->EndUpdate();
  if (state.treeEpoch != epoch) return 1;
  SendActiveApplication();
  if (state.treeEpoch == epoch && state.activeApplication != nullptr) {
    views.SetGlobalsFile(paths.GlobalsFileOf(*state.activeApplication));
  }
  return 1;
}

}  // namespace tarn
