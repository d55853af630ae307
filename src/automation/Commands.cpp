// Life cycle of a command (enabling, prolog, execution, epilog), and the implementation of those
// that need more than one call.

#include <tarn/commands.h>

#include "automation/CommandTable.h"
#include "automation/ProjectManager.h"
#include "patterns/ParseNumber.h"
#include "platform/text/Text.h"

namespace tarn {

namespace {

CommandKind KindOf(std::uint32_t id) {
  const CommandRow* row = CommandRow::Find(id);
  return row == nullptr ? CommandKind::Plain : row->kind;
}

}  // namespace

std::int32_t CProjectManager::Command(std::uint32_t id) {
  const CommandRow* row = CommandRow::Find(id);
  if (!model || row == nullptr) return 1;
  return row->kind != CommandKind::Plain && RefusesBuild() ? 0 : row->action(*this, id);
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
      return builder->GetBuildState() == StateBuilding ? 1 : 0;
  }
  return 1;
}

// Used by hosts that protect damaged projects. The definitions may have changed since the host
// queried the installation's problems.
bool CProjectManager::RefusesBuild() {
  if (!model->Protection().IsDamageProtected()) return false;
  std::string problem = "the project was read only in part.";
  if (!model->Protection().IsDamageHeld()) {
    problem = FindDefinitionProblem();
    // Reloading them may resolve the problem.
    if (!problem.empty() && model->Options().RefreshDefinitions() != 0)
      problem = FindDefinitionProblem();
  }
  if (!problem.empty()) model->Host().AddLogLine("Nothing was built: " + problem);
  return !problem.empty();
}

std::int32_t CProjectManager::PrologCommand(std::uint32_t id) {
  const CommandKind kind = KindOf(id);
  if (!model || kind == CommandKind::Plain) return 1;
  if (kind == CommandKind::Build) rerunAfterBuild = false;
  if (!builder->CanStartOperation()) return 0;
  if (RefusesBuild()) return 0;
  model->Services().views.StopStepTimer();
  propertyManager->EndUpdate();
  platform.files.SetCurrentFolder(model->GetProjectFolder());
  const std::intptr_t answer = model->Host().SendHost(kMsgBuildStarting, 0, 0);
  if (answer == 0) {
    // Publishing was suspended for a build that now isn't started.
    const bool hasTimer = model->IsOpen() && !model->IsDefaultProject();
    if (hasTimer && !model->Publishing().IsPublishingStopped() &&
        model->Publishing().HasUnpublished())
      model->Services().views.StartStepTimer();
    return 0;
  }
  output->ResetLog();
  output->UpdateReport();
  propertyManager->BeginUpdate();
  // The reply is wider than the result; only a reply of 0 may become a refusal.
  const auto result = static_cast<std::int32_t>(answer);
  return result == 0 ? 1 : result;
}

std::int32_t CProjectManager::EpilogCommand(std::uint32_t id) {
  const CommandKind kind = KindOf(id);
  if (!model || kind == CommandKind::Plain) return 1;
  propertyManager->EndUpdate();
  if (kind == CommandKind::Tool) return 1;
  if (const CXmlNode* application = model->GetActiveApplication()) {
    model->Services().views.LoadGlobals(model->Paths().GlobalsFileOf(*application));
  }
  if (!rerunAfterBuild) return 1;
  model->Host().PostHostCommand(TARN_CMD_APPLY_OPTION_AND_REBUILD);
  model->Host().PostHostCommand(TARN_CMD_REBUILD_ALL);
  return 0;
}

// Returns 2 even if the start was refused because another worker is running: the host is notified
// when that worker ends.
std::int32_t CProjectManager::StartWorker(std::int32_t command) {
  builder->StartBuildThread(command);
  return 2;
}

std::int32_t CProjectManager::RunNodeTool(std::uint32_t id) {
  const bool hasTools = model->Publishing().GetDynamicCommandTree() != nullptr;
  if (!hasTools || model->GetOwnCurrentNode() == nullptr) return 1;
  return StartWorker(static_cast<std::int32_t>(id));
}

// Publishes the node again, since its options were changed without its cached values.
void CProjectManager::ReloadOptions(CXmlNode& node) {
  model->State().ForgetCurrentNode();
  const std::uint64_t epoch = model->GetTreeEpoch();
  model->SetCurrentNode(&node);
  if (model->GetTreeEpoch() == epoch) model->Publishing().RestorePropState(node);
}

void CProjectManager::ApplyOptionChange(bool keepsOutputs) {
  if (!builder->CanStartOperation()) return;
  if (CXmlNode* node = model->GetCurrentNode()) model->Publishing().RenewPropState(*node);
  // Storing can remove the contents of the default application, including the node.
  model->Options().StoreChangedProperty("");
  propertyManager->BeginUpdate();
  {
    const TreeUpdate update(model->Services().views);
    CXmlNode* node = model->GetCurrentNode();
    const char* outputFile = node == nullptr ? nullptr : node->GetAttrValue("OutputFile");
    if (outputFile != nullptr) {
      model->Host().SendHost(kMsgOutputInvalid, outputFile, -1);
      node = model->GetCurrentNode();
    }
    if (node != nullptr && model->IsOpen()) {
      model->Derived().ResetNodeCache(*node, keepsOutputs);
      ReloadOptions(*node);
    }
    propertyManager->EndUpdate();
  }
}

void CProjectManager::ResetProperty() {
  if (!builder->CanStartOperation()) return;
  model->Options().ResetStoredProperty("");
  CXmlNode* node = model->GetCurrentNode();
  propertyManager->BeginUpdate();
  if (node != nullptr) model->Publishing().RenewPropState(*node);
  {
    const TreeUpdate update(model->Services().views);
    const char* outputFile = node == nullptr ? nullptr : node->GetAttrValue("OutputFile");
    if (outputFile != nullptr) {
      model->Host().SendHost(kMsgOutputInvalid, outputFile, -1);
      node = model->GetCurrentNode();
    }
    if (node != nullptr && model->IsOpen()) {
      model->Derived().ResetNodeCache(*node, false);
      ReloadOptions(*node);
    }
    propertyManager->EndUpdate();
  }
}

void CProjectManager::ShowNodeOptions() {
  CXmlNode* node = model->GetCurrentNode();
  model->Services().views.StopStepTimer();
  propertyManager->EndUpdate();
  propertyManager->BeginUpdate();
  model->Publishing().RenewPropState(*node);
  {
    const TreeUpdate update(model->Services().views);
    model->Publishing().PublishSubtree(*node);
    const std::uint64_t epoch = model->GetTreeEpoch();
    model->SetCurrentNode(node);
    if (model->GetTreeEpoch() == epoch) model->Publishing().RestorePropState(*node);
    propertyManager->EndUpdate();
  }
  if (builder->CanStartOperation()) propertyManager->ShowOptions(mainframeHandle);
}

void CProjectManager::ShowApplicationOptions() {
  model->Services().views.StopStepTimer();
  propertyManager->EndUpdate();
  propertyManager->BeginUpdate();
  if (CXmlNode* application = model->GetActiveApplication()) {
    model->Publishing().PublishSubtree(*application);
    model->SetCurrentNode(application);
  }
  propertyManager->EndUpdate();
  if (builder->CanStartOperation()) propertyManager->ShowOptions(mainframeHandle);
}

void CProjectManager::OpenListing(CXmlNode* node) {
  if (node == nullptr) node = model->GetCurrentNode();
  if (node == nullptr) return;
  if (node->FindChild("#CDATA") == nullptr &&
      model->Publishing().LoadNodeOptions(node, true) == nullptr)
    return;
  const std::string listing = TextOf(node->GetAttrValue("ListingFile"));
  if (!listing.empty()) model->Host().SendHost(kMsgOpenFileAtLine, listing, 0);
}

void CProjectManager::RunOpenCommand() {
  const CXmlNode* node = model->GetOwnCurrentNode();
  if (node == nullptr) return;
  const std::string command =
      propertyManager->GetPropertyValue(node->NameView(), "Internal", "Open");
  if (!command.empty()) model->Host().SendHost(kMsgCommand, ParseNumber(command), 0);
}

void CProjectManager::OpenCurrentFile() {
  const CXmlNode* node = model->GetOwnCurrentNode();
  if (node == nullptr) return;
  const char* path = node->GetAttrValue("Path");
  model->Host().SendHost(kMsgOpenFileAtLine,
                         path != nullptr ? path : TextOf(node->GetAttrValue("Header")), 0);
}

void CProjectManager::ShowCurrentFile() {
  const CXmlNode* node = model->GetOwnCurrentNode();
  const char* path = node == nullptr ? nullptr : node->GetAttrValue("Path");
  if (path != nullptr) model->Host().SendHost(kMsgOpenFile, path, -1);
}

void CProjectManager::AnnounceActiveApplication() {
  const CXmlNode* application = model->GetActiveApplication();
  if (application == nullptr) return;
  const char* config = application->GetAttrValue("Config");
  model->Host().SendHost(kMsgApplicationActivated, TextOf(application->GetAttrValue("Path")),
                         std::string(config == nullptr ? kStandardConfig : config));
  model->Services().views.BeginTreeUpdate();
  model->Services().views.EndTreeUpdate();
}

void CProjectManager::StopPublishing() {
  model->Publishing().SetPublishingSuspended(true);
  model->Services().views.StopStepTimer();
  propertyManager->EndUpdate();
  model->Publishing().SetPublishingSuspended(false);
}

}  // namespace tarn
