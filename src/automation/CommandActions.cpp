#include "automation/CommandActions.h"

#include "patterns/ParseNumber.h"
#include "platform/text/Text.h"

namespace tarn {

CPropertyManagerDriver& CommandActions::Properties() const {
  return *model.Services().propertyManager;
}

// Returns 2 even if the start was refused because another worker is running: the host is notified
// when that worker ends.
std::int32_t CommandActions::StartWorker(std::int32_t command) {
  builder.StartBuildThread(command);
  return 2;
}

std::int32_t CommandActions::BuildApplication() {
  if (!builder.CanStartOperation()) return 2;
  model.SetCurrentNode(model.GetActiveApplication());
  return StartWorker(ModeBuild);
}

std::int32_t CommandActions::RunNodeTool(std::uint32_t id) {
  const bool hasTools = model.Publishing().GetDynamicCommandTree() != nullptr;
  if (!hasTools || model.GetOwnCurrentNode() == nullptr) return 1;
  return StartWorker(static_cast<std::int32_t>(id));
}

// Publishes the node again, since its options were changed without its cached values.
void CommandActions::ReloadOptions(CXmlNode& node) {
  model.State().ForgetCurrentNode();
  const std::uint64_t epoch = model.GetTreeEpoch();
  model.SetCurrentNode(&node);
  if (model.GetTreeEpoch() == epoch) model.Publishing().RestorePropState(node);
}

void CommandActions::ApplyOptionChange(bool keepsOutputs) {
  if (!builder.CanStartOperation()) return;
  if (CXmlNode* node = model.GetCurrentNode()) model.Publishing().RenewPropState(*node);
  // Storing can remove the contents of the default application, including the node.
  model.Options().StoreChangedProperty("");
  Properties().BeginUpdate();
  RenewNode(keepsOutputs);
}

void CommandActions::ResetProperty() {
  if (!builder.CanStartOperation()) return;
  model.Options().ResetStoredProperty("");
  Properties().BeginUpdate();
  if (CXmlNode* node = model.GetCurrentNode()) model.Publishing().RenewPropState(*node);
  RenewNode(false);
}

// Publishes the current node after a change of its options, and ends the update of the options.
void CommandActions::RenewNode(bool keepsOutputs) {
  const TreeUpdate update(model.Services().views);
  CXmlNode* node = model.GetCurrentNode();
  const char* outputFile = node == nullptr ? nullptr : node->GetAttrValue("OutputFile");
  if (outputFile != nullptr) {
    model.Host().SendHost(kMsgOutputInvalid, outputFile, -1);
    node = model.GetCurrentNode();
  }
  if (node != nullptr && model.IsOpen()) {
    model.Derived().ResetNodeCache(*node, keepsOutputs);
    ReloadOptions(*node);
  }
  Properties().EndUpdate();
}

void CommandActions::ShowNodeOptions() {
  CXmlNode* node = model.GetCurrentNode();
  model.Services().views.StopStepTimer();
  Properties().EndUpdate();
  Properties().BeginUpdate();
  model.Publishing().RenewPropState(*node);
  {
    const TreeUpdate update(model.Services().views);
    model.Publishing().PublishSubtree(*node);
    const std::uint64_t epoch = model.GetTreeEpoch();
    model.SetCurrentNode(node);
    if (model.GetTreeEpoch() == epoch) model.Publishing().RestorePropState(*node);
    Properties().EndUpdate();
  }
  if (builder.CanStartOperation()) Properties().ShowOptions(model.Services().mainframeHandle);
}

void CommandActions::ShowApplicationOptions() {
  model.Services().views.StopStepTimer();
  Properties().EndUpdate();
  Properties().BeginUpdate();
  if (CXmlNode* application = model.GetActiveApplication()) {
    model.Publishing().PublishSubtree(*application);
    model.SetCurrentNode(application);
  }
  Properties().EndUpdate();
  if (builder.CanStartOperation()) Properties().ShowOptions(model.Services().mainframeHandle);
}

void CommandActions::OpenListing(CXmlNode* node) {
  if (node == nullptr) node = model.GetCurrentNode();
  if (node == nullptr) return;
  if (node->FindChild("#CDATA") == nullptr &&
      model.Publishing().LoadNodeOptions(node, true) == nullptr)
    return;
  const std::string listing = TextOf(node->GetAttrValue("ListingFile"));
  if (!listing.empty()) model.Host().SendHost(kMsgOpenFileAtLine, listing, 0);
}

void CommandActions::RunOpenCommand() {
  const CXmlNode* node = model.GetOwnCurrentNode();
  if (node == nullptr) return;
  const std::string command = Properties().GetPropertyValue(node->NameView(), "Internal", "Open");
  if (!command.empty()) model.Host().SendHost(kMsgCommand, ParseNumber(command), 0);
}

void CommandActions::OpenCurrentFile() {
  const CXmlNode* node = model.GetOwnCurrentNode();
  if (node == nullptr) return;
  const char* path = node->GetAttrValue("Path");
  model.Host().SendHost(kMsgOpenFileAtLine,
                        path != nullptr ? path : TextOf(node->GetAttrValue("Header")), 0);
}

void CommandActions::ShowCurrentFile() {
  const CXmlNode* node = model.GetOwnCurrentNode();
  const char* path = node == nullptr ? nullptr : node->GetAttrValue("Path");
  if (path != nullptr) model.Host().SendHost(kMsgOpenFile, path, -1);
}

void CommandActions::AnnounceActiveApplication() {
  const CXmlNode* application = model.GetActiveApplication();
  if (application == nullptr) return;
  const char* config = application->GetAttrValue("Config");
  model.Host().SendHost(kMsgApplicationActivated, TextOf(application->GetAttrValue("Path")),
                        std::string(config == nullptr ? kStandardConfig : config));
  model.Services().views.BeginTreeUpdate();
  model.Services().views.EndTreeUpdate();
}

void CommandActions::StopPublishing() {
  model.Publishing().SetPublishingSuspended(true);
  model.Services().views.StopStepTimer();
  Properties().EndUpdate();
  model.Publishing().SetPublishingSuspended(false);
}

}  // namespace tarn
