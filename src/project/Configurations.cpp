// The configurations of an application.

#include "project/NodeOptions.h"

#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

std::int32_t NodeOptions::AddConfiguration() {
  if (!services_.build.CanStartOperation() || state_.activeApplication == nullptr) return 0;
  const std::string header = services_.propertyManager->GetNewConfigName();
  const std::string description = services_.propertyManager->GetNewConfigName();
  // An unnamed configuration could never be selected.
  if (header.empty()) return 0;
  state_.MarkModified();
  CXmlNode* configs = state_.activeApplication->FindChild("Configs");
  if (configs == nullptr) configs = state_.activeApplication->AddChild("Configs");
  CXmlNode* config = configs->AddChild("Config");
  config->AddAttr("Header", header);
  config->AddAttr("Desc", description);
  state_.ClearCachedTexts();
  return 1;
}

std::int32_t NodeOptions::RefreshDefinitions() {
  if (services_.build.IsWorkerAlive() || services_.build.IsBuildingSynchronously() ||
      services_.propertyManager == nullptr)
    return 0;
  const bool hasFolders = definitions_.Apply();
  const bool hasOptions = services_.propertyManager->RefreshDefinitions() != 0;
  const bool hasTools =
      services_.toolManager != nullptr && services_.toolManager->RefreshTools() != 0;
  if (!hasFolders && !hasOptions && !hasTools) return 0;
  extensions_.Invalidate();
  for (int i = 0; i < state_.projectRoot->GetChildCount(); ++i) {
    CXmlNode& child = *state_.projectRoot->GetChild(i);
    if ((types_.FlagsOf(child) & kTypeApplication) != 0) derived_.ResetNodeCache(child, false);
  }
  publisher_.PublishAll();
  return 1;
}

std::int32_t NodeOptions::SelectConfiguration(const std::string& wanted) {
  if (!services_.build.CanStartOperation()) return 0;
  const std::string name = wanted.empty() ? services_.propertyManager->GetNewConfigName() : wanted;
  CXmlNode* const noted = state_.GetCurrentNode();
  if (state_.activeApplication == nullptr || name.empty()) return 0;
  state_.MarkModified();
  state_.activeApplication->SetAttrValue("Config", name);
  services_.propertyManager->BeginUpdate();
  publisher_.RenewPropState(*noted);
  derived_.ResetNodeCache(*state_.activeApplication, false);
  CXmlNode* const application = state_.activeApplication;
  while (publisher_.PublishNextNode(application)) {
  }
  services_.build.RestoreRecords(*application);
  const std::uint64_t epoch = state_.treeGeneration;
  publisher_.SetCurrentNode(noted);
  if (state_.treeGeneration == epoch) publisher_.RestorePropState(*noted);
  services_.propertyManager->EndUpdate();
  if (state_.treeGeneration != epoch) return 1;
  publisher_.SendActiveApplication();
  if (state_.treeGeneration == epoch && state_.activeApplication != nullptr) {
    views_.SetGlobalsFile(paths_.GlobalsFileOf(*state_.activeApplication));
  }
  return 1;
}

}  // namespace tarn
