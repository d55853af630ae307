// The vocabulary of command ids that hosts put into their menus: one row an id, with what it does
// and when it is enabled.

#include <array>

#include "automation/ProjectManager.h"
#include "patterns/ParseNumber.h"
#include "platform/text/Text.h"

namespace tarn {

namespace {

enum class EnableRule { Always, UserProject, WhileBuilding };

}  // namespace

struct CommandRow {
  std::uint32_t id;
  EnableRule rule;
  std::int32_t (*action)(CProjectManager& manager);
  bool isBuild = false;  // has steps ahead and behind

  static const CommandRow* Find(std::uint32_t id);

 private:
  template <void (CProjectManager::*Member)()>
  static std::int32_t Do(CProjectManager& manager) {
    (manager.*Member)();
    return 1;
  }
  template <std::int32_t Work>
  static std::int32_t Build(CProjectManager& manager) {
    return manager.StartWorker(Work);
  }
  template <bool KeepsOutputs>
  static std::int32_t Apply(CProjectManager& manager) {
    manager.ApplyOptionChange(KeepsOutputs);
    return 1;
  }
};

const CommandRow* CommandRow::Find(std::uint32_t id) {
  using M = CProjectManager;
  using enum EnableRule;
  static const std::array rows = {
      CommandRow{0x8105, Always, Apply<true>},
      CommandRow{0x8106, Always, Apply<false>},
      CommandRow{0x8108, Always,
                 [](M& manager) { return manager.model->AddExistingItem(nullptr, nullptr), 1; }},
      CommandRow{0x8109, UserProject,
                 [](M& manager) { return manager.model->AddNewItem(nullptr, nullptr), 1; }},
      CommandRow{0x810C, UserProject,
                 [](M& manager) { return manager.model->AddNewItem(nullptr, "Group"), 1; }},
      CommandRow{0x810B, UserProject, Do<&M::ShowNodeOptions>},
      CommandRow{0x810D, Always, [](M& manager) { return manager.OpenListing(nullptr), 1; }},
      CommandRow{0x810E, Always, Do<&M::RunOpenCommand>},
      CommandRow{0x810F, Always, Do<&M::OpenCurrentFile>},
      CommandRow{0x8110, Always, Do<&M::ShowCurrentFile>},
      CommandRow{0x8111, UserProject, Build<kWorkerRebuildAll>, true},
      CommandRow{0x8112, UserProject, Build<kWorkerBuildAll>, true},
      CommandRow{0x8113, UserProject, Build<kWorkerCleanAll>, true},
      CommandRow{0x8114, Always, Build<ModeRebuild>, true},
      CommandRow{0x8115, Always, Build<ModeBuild>, true},
      CommandRow{0x8116, Always, Build<ModeClean>, true},
      CommandRow{0x8117, Always, Build<kWorkerTranslate>, true},
      CommandRow{0x8118, UserProject,
                 [](M& manager) {
                   manager.model->SetActiveApplication(manager.model->GetCurrentNode());
                   return 1;
                 }},
      CommandRow{0x8119, Always,
                 [](M& manager) { return manager.model->SelectConfiguration(""), 1; }},
      CommandRow{0x811A, Always, Do<&M::ResetProperty>},
      CommandRow{0x811B, Always,
                 [](M& manager) { return manager.model->ResetNodeOptions(nullptr), 1; }},
      CommandRow{0x811C, WhileBuilding, [](M& manager) { return manager.model->RequestStop(), 1; }},
      CommandRow{0x811E, Always, Do<&M::AnnounceActiveApplication>},
      CommandRow{0x811F, Always,
                 [](M& manager) {
                   if (!manager.model->CanStartOperation()) return 2;
                   manager.model->SetCurrentNode(manager.model->GetActiveApplication());
                   return manager.StartWorker(ModeBuild);
                 },
                 true},
      CommandRow{
          0x8120, Always,
          [](M& manager) { return manager.OpenListing(manager.model->GetActiveApplication()), 1; }},
      CommandRow{0x8121, Always, Do<&M::ShowApplicationOptions>},
      CommandRow{0x8137, Always, Do<&M::StopPublishing>},
      CommandRow{0x8138, Always, [](M& manager) { return manager.model->AddConfiguration(), 1; }},
      CommandRow{0x8139, Always, [](M& manager) { return manager.rerunAfterBuild = true, 0; }},
      CommandRow{0x813A, Always,
                 [](M& manager) { return manager.model->ClearDefaultApplicationItems(), 1; }},
      CommandRow{0xE120, UserProject,
                 [](M& manager) { return manager.model->RemoveItem(nullptr), 1; }},
      CommandRow{0xE122, UserProject,
                 [](M& manager) { return manager.model->CopyNode(nullptr), 1; }},
      CommandRow{0xE125, UserProject,
                 [](M& manager) { return manager.model->PasteNode(nullptr), 1; }},
  };
  for (const CommandRow& row : rows) {
    if (row.id == id) return &row;
  }
  return nullptr;
}

namespace {

bool IsDynamic(std::uint32_t id) {
  return id >= static_cast<std::uint32_t>(kFirstDynamicCommand) &&
         id <= static_cast<std::uint32_t>(kLastDynamicCommand);
}

bool IsFixedBuild(std::uint32_t id) {
  const CommandRow* row = CommandRow::Find(id);
  return row != nullptr && row->isBuild;
}

}  // namespace

std::int32_t CProjectManager::Command(std::uint32_t id) {
  if (!model) return 1;
  if (IsDynamic(id)) {
    const bool hasTools = model->GetDynamicCommandTree() != nullptr;
    if (!hasTools || model->GetOwnCurrentNode() == nullptr) return 1;
    return StartWorker(static_cast<std::int32_t>(id));
  }
  const CommandRow* row = CommandRow::Find(id);
  return row == nullptr ? 1 : row->action(*this);
}

std::int32_t CProjectManager::EnableCommand(std::uint32_t id) {
  const CommandRow* row = CommandRow::Find(id);
  if (!model || row == nullptr) return 1;
  switch (row->rule) {
    case EnableRule::Always:
      return 1;
    case EnableRule::UserProject:
      return model->IsDefaultProject() ? 0 : 1;
    case EnableRule::WhileBuilding:
      return model->GetBuildState() == StateBuilding ? 1 : 0;
  }
  return 1;
}

std::int32_t CProjectManager::PrologCommand(std::uint32_t id) {
  if (!model || (!IsFixedBuild(id) && !IsDynamic(id))) return 1;
  if (IsFixedBuild(id)) rerunAfterBuild = false;
  if (!model->CanStartOperation()) return 0;
  model->views.StopStepTimer();
  propertyManager->EndUpdate();
  platform.files.SetCurrentFolder(model->GetProjectFolder());
  const std::intptr_t answer = model->SendHost(kMsgBuildStarting, 0, 0);
  if (answer == 0) {
    // Publishing stopped for a build that does not come.
    const bool hasTimer = model->IsOpen() && !model->IsDefaultProject();
    if (hasTimer && !model->IsPublishingStopped() && model->HasUnpublished())
      model->views.StartStepTimer();
    return 0;
  }
  output->ResetLog();
  output->UpdateReport();
  propertyManager->BeginUpdate();
  // An answer is wider than a result, and only one of 0 may become a refusal.
  const auto result = static_cast<std::int32_t>(answer);
  return result == 0 ? 1 : result;
}

std::int32_t CProjectManager::EpilogCommand(std::uint32_t id) {
  if (!model || (!IsFixedBuild(id) && !IsDynamic(id))) return 1;
  propertyManager->EndUpdate();
  if (IsDynamic(id)) return 1;
  if (const CXmlNode* application = model->GetActiveApplication()) {
    model->views.LoadGlobals(model->GlobalsFileOf(*application));
  }
  if (!rerunAfterBuild) return 1;
  model->PostHostCommand(0x8106);
  model->PostHostCommand(0x8111);
  return 0;
}

// Also 2 when the busy check refused the start: the host learns from the message that ends the
// other worker.
std::int32_t CProjectManager::StartWorker(std::int32_t command) {
  model->StartBuildThread(command);
  return 2;
}

// The node's options were changed below its cached values: it is published again.
void CProjectManager::ReloadOptions(CXmlNode& node) {
  model->ForgetCurrentNode();
  const std::uint64_t epoch = model->GetTreeEpoch();
  model->SetCurrentNode(&node);
  if (model->GetTreeEpoch() == epoch) model->RestorePropState(node);
}

void CProjectManager::ApplyOptionChange(bool keepsOutputs) {
  if (!model->CanStartOperation()) return;
  if (CXmlNode* node = model->GetCurrentNode()) model->RenewPropState(*node);
  // Storing can empty the default application, and with it free the node.
  model->StoreChangedProperty("");
  propertyManager->BeginUpdate();
  {
    const TreeUpdate update(model->views);
    CXmlNode* node = model->GetCurrentNode();
    const char* outputFile = node == nullptr ? nullptr : node->GetAttrValue("OutputFile");
    if (outputFile != nullptr) {
      model->SendHost(kMsgOutputInvalid, outputFile, -1);
      node = model->GetCurrentNode();
    }
    if (node != nullptr && model->IsOpen()) {
      model->ResetNodeCache(*node, keepsOutputs);
      ReloadOptions(*node);
    }
    propertyManager->EndUpdate();
  }
}

void CProjectManager::ResetProperty() {
  if (!model->CanStartOperation()) return;
  model->ResetStoredProperty("");
  CXmlNode* node = model->GetCurrentNode();
  propertyManager->BeginUpdate();
  if (node != nullptr) model->RenewPropState(*node);
  {
    const TreeUpdate update(model->views);
    const char* outputFile = node == nullptr ? nullptr : node->GetAttrValue("OutputFile");
    if (outputFile != nullptr) {
      model->SendHost(kMsgOutputInvalid, outputFile, -1);
      node = model->GetCurrentNode();
    }
    if (node != nullptr && model->IsOpen()) {
      model->ResetNodeCache(*node, false);
      ReloadOptions(*node);
    }
    propertyManager->EndUpdate();
  }
}

void CProjectManager::ShowNodeOptions() {
  CXmlNode* node = model->GetCurrentNode();
  model->views.StopStepTimer();
  propertyManager->EndUpdate();
  propertyManager->BeginUpdate();
  model->RenewPropState(*node);
  {
    const TreeUpdate update(model->views);
    model->PublishSubtree(*node);
    const std::uint64_t epoch = model->GetTreeEpoch();
    model->SetCurrentNode(node);
    if (model->GetTreeEpoch() == epoch) model->RestorePropState(*node);
    propertyManager->EndUpdate();
  }
  if (model->CanStartOperation()) propertyManager->ShowOptions(mainframeHandle);
}

void CProjectManager::ShowApplicationOptions() {
  model->views.StopStepTimer();
  propertyManager->EndUpdate();
  propertyManager->BeginUpdate();
  if (CXmlNode* application = model->GetActiveApplication()) {
    model->PublishSubtree(*application);
    model->SetCurrentNode(application);
  }
  propertyManager->EndUpdate();
  if (model->CanStartOperation()) propertyManager->ShowOptions(mainframeHandle);
}

void CProjectManager::OpenListing(CXmlNode* node) {
  if (node == nullptr) node = model->GetCurrentNode();
  if (node == nullptr) return;
  if (node->FindChild("#CDATA") == nullptr && model->LoadNodeOptions(node, true) == nullptr) return;
  const std::string listing = TextOf(node->GetAttrValue("ListingFile"));
  if (!listing.empty()) model->SendHost(kMsgOpenFileAtLine, listing, 0);
}

void CProjectManager::RunOpenCommand() {
  const CXmlNode* node = model->GetOwnCurrentNode();
  if (node == nullptr) return;
  const std::string command =
      propertyManager->GetPropertyValue(node->NameView(), "Internal", "Open");
  if (!command.empty()) model->SendHost(kMsgCommand, ParseNumber(command), 0);
}

void CProjectManager::OpenCurrentFile() {
  const CXmlNode* node = model->GetOwnCurrentNode();
  if (node == nullptr) return;
  const char* path = node->GetAttrValue("Path");
  model->SendHost(kMsgOpenFileAtLine, path != nullptr ? path : TextOf(node->GetAttrValue("Header")),
                  0);
}

void CProjectManager::ShowCurrentFile() {
  const CXmlNode* node = model->GetOwnCurrentNode();
  const char* path = node == nullptr ? nullptr : node->GetAttrValue("Path");
  if (path != nullptr) model->SendHost(kMsgOpenFile, path, -1);
}

void CProjectManager::AnnounceActiveApplication() {
  const CXmlNode* application = model->GetActiveApplication();
  if (application == nullptr) return;
  const char* config = application->GetAttrValue("Config");
  model->SendHost(kMsgApplicationActivated, TextOf(application->GetAttrValue("Path")),
                  std::string(config == nullptr ? kStandardConfig : config));
  model->views.BeginTreeUpdate();
  model->views.EndTreeUpdate();
}

void CProjectManager::StopPublishing() {
  model->SetPublishingSuspended(true);
  model->views.StopStepTimer();
  propertyManager->EndUpdate();
  model->SetPublishingSuspended(false);
}

}  // namespace tarn
