// The configurations of an application.

#include "project/NodeOptions.h"

#include "platform/text/Text.h"

namespace tarn {

std::int32_t NodeOptions::AddConfiguration() {
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

std::int32_t NodeOptions::RefreshDefinitions() {
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
    if ((types.FlagsOf(child) & kTypeApplication) != 0) derived.ResetNodeCache(child, false);
  }
  publisher.PublishAll();
  return 1;
}

std::int32_t NodeOptions::SelectConfiguration(const std::string& wanted) {
  if (!services.build.CanStartOperation()) return 0;
  const std::string name = wanted.empty() ? services.propertyManager->GetNewConfigName() : wanted;
  CXmlNode* const noted = state.GetCurrentNode();
  if (state.activeApplication == nullptr || name.empty()) return 0;
  state.NoteModified();
  state.activeApplication->SetAttrValue("Config", name);
  services.propertyManager->BeginUpdate();
  publisher.RenewPropState(*noted);
  derived.ResetNodeCache(*state.activeApplication, false);
  CXmlNode* const application = state.activeApplication;
  while (publisher.PublishNextNode(application)) {
  }
  services.build.RestoreRecords(*application);
  const std::uint64_t epoch = state.treeEpoch;
  publisher.SetCurrentNode(noted);
  if (state.treeEpoch == epoch) publisher.RestorePropState(*noted);
  services.propertyManager->EndUpdate();
  if (state.treeEpoch != epoch) return 1;
  publisher.SendActiveApplication();
  if (state.treeEpoch == epoch && state.activeApplication != nullptr) {
    views.SetGlobalsFile(paths.GlobalsFileOf(*state.activeApplication));
  }
  return 1;
}

}  // namespace tarn
