#include "automation/CommandActions.h"

#include "patterns/ParseNumber.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

CPropertyManagerDriver& CommandActions::Properties() const {
  return *model_.Services().propertyManager;
}

// Returns 2 even if the start was refused because another worker is running: the host is notified
// when that worker ends.
std::int32_t CommandActions::StartWorker(std::int32_t command) {
  builder_.StartBuildThread(command);
  return 2;
}

std::int32_t CommandActions::BuildApplication() {
  if (!builder_.CanStartOperation()) return 2;
  model_.SetCurrentNode(model_.GetActiveApplication());
  return StartWorker(ModeBuild);
}

std::int32_t CommandActions::RunNodeTool(std::uint32_t id) {
  const bool hasTools = model_.Publishing().GetDynamicCommandTree() != nullptr;
  if (!hasTools || model_.GetOwnCurrentNode() == nullptr) return 1;
  return StartWorker(static_cast<std::int32_t>(id));
}

// Publishes the node again, since its options were changed without its cached values.
void CommandActions::ReloadOptions(CXmlNode& node) {
  model_.State().ClearCurrentNode();
  const std::uint64_t epoch = model_.GetTreeGeneration();
  model_.SetCurrentNode(&node);
  if (model_.GetTreeGeneration() == epoch) model_.Publishing().RestorePropState(node);
}

void CommandActions::ApplyOptionChange(bool keepsOutputs) {
  if (!builder_.CanStartOperation()) return;
  if (CXmlNode* node = model_.GetCurrentNode()) model_.Publishing().RenewPropState(*node);
  // Storing can remove the contents of the default application, including the node.
  model_.Options().StoreChangedProperty("");
  Properties().BeginUpdate();
  RenewNode(keepsOutputs);
}

void CommandActions::ResetProperty() {
  if (!builder_.CanStartOperation()) return;
  model_.Options().ResetStoredProperty("");
  Properties().BeginUpdate();
  if (CXmlNode* node = model_.GetCurrentNode()) model_.Publishing().RenewPropState(*node);
  RenewNode(false);
}

// Publishes the current node after a change of its options, and ends the update of the options.
void CommandActions::RenewNode(bool keepsOutputs) {
  const TreeUpdate update(model_.Services().views);
  CXmlNode* node = model_.GetCurrentNode();
  const char* outputFile = node == nullptr ? nullptr : node->GetAttrValue("OutputFile");
  if (outputFile != nullptr) {
    model_.Host().SendHost(kMsgOutputInvalid, outputFile, -1);
    node = model_.GetCurrentNode();
  }
  if (node != nullptr && model_.IsOpen()) {
    model_.Derived().ResetNodeCache(*node, keepsOutputs);
    ReloadOptions(*node);
  }
  Properties().EndUpdate();
}

void CommandActions::ShowNodeOptions() {
  CXmlNode* node = model_.GetCurrentNode();
  model_.Services().views.StopStepTimer();
  Properties().EndUpdate();
  Properties().BeginUpdate();
  model_.Publishing().RenewPropState(*node);
  {
    const TreeUpdate update(model_.Services().views);
    model_.Publishing().PublishSubtree(*node);
    const std::uint64_t epoch = model_.GetTreeGeneration();
    model_.SetCurrentNode(node);
    if (model_.GetTreeGeneration() == epoch) model_.Publishing().RestorePropState(*node);
    Properties().EndUpdate();
  }
  if (builder_.CanStartOperation()) Properties().ShowOptions(model_.Services().mainframeHandle);
}

void CommandActions::ShowApplicationOptions() {
  model_.Services().views.StopStepTimer();
  Properties().EndUpdate();
  Properties().BeginUpdate();
  if (CXmlNode* application = model_.GetActiveApplication()) {
    model_.Publishing().PublishSubtree(*application);
    model_.SetCurrentNode(application);
  }
  Properties().EndUpdate();
  if (builder_.CanStartOperation()) Properties().ShowOptions(model_.Services().mainframeHandle);
}

void CommandActions::OpenListing(CXmlNode* node) {
  if (node == nullptr) node = model_.GetCurrentNode();
  if (node == nullptr) return;
  if (node->FindChild("#CDATA") == nullptr &&
      model_.Publishing().LoadNodeOptions(node, true) == nullptr)
    return;
  const std::string listing = OrEmpty(node->GetAttrValue("ListingFile"));
  if (!listing.empty()) model_.Host().SendHost(kMsgOpenFileAtLine, listing, 0);
}

void CommandActions::RunOpenCommand() {
  const CXmlNode* node = model_.GetOwnCurrentNode();
  if (node == nullptr) return;
  const std::string command = Properties().GetPropertyValue(node->NameView(), "Internal", "Open");
  if (!command.empty()) model_.Host().SendHost(kMsgCommand, ParseNumber(command), 0);
}

void CommandActions::OpenCurrentFile() {
  const CXmlNode* node = model_.GetOwnCurrentNode();
  if (node == nullptr) return;
  const char* path = node->GetAttrValue("Path");
  model_.Host().SendHost(kMsgOpenFileAtLine,
                         path != nullptr ? path : OrEmpty(node->GetAttrValue("Header")), 0);
}

void CommandActions::ShowCurrentFile() {
  const CXmlNode* node = model_.GetOwnCurrentNode();
  const char* path = node == nullptr ? nullptr : node->GetAttrValue("Path");
  if (path != nullptr) model_.Host().SendHost(kMsgOpenFile, path, -1);
}

void CommandActions::AnnounceActiveApplication() {
  const CXmlNode* application = model_.GetActiveApplication();
  if (application == nullptr) return;
  const char* config = application->GetAttrValue("Config");
  model_.Host().SendHost(kMsgApplicationActivated, OrEmpty(application->GetAttrValue("Path")),
                         std::string(config == nullptr ? kStandardConfig : config));
  model_.Services().views.BeginTreeUpdate();
  model_.Services().views.EndTreeUpdate();
}

void CommandActions::StopPublishing() {
  model_.Publishing().SetPublishingSuspended(true);
  model_.Services().views.StopStepTimer();
  Properties().EndUpdate();
  model_.Publishing().SetPublishingSuspended(false);
}

}  // namespace tarn
