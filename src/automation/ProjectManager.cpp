#include "automation/ProjectManager.h"

#include "builder/LinkFiles.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

ServerPlatform ServerPlatform::Native() {
  return {FileSystem::Native(), Settings::Native(), ClassRegistry::Native(),
          RunningObjectTable::Native()};
}

CProjectManager::CProjectManager(const ServerPlatform& serverPlatform)
    : platform_(serverPlatform), installation_(serverPlatform.files, serverPlatform.settings) {}

CProjectManager::~CProjectManager() {
  if (activeObjectToken_ != 0) platform_.runningObjects.RevokeActiveObject(activeObjectToken_);
  // A running worker uses all other members until it has finished.
  if (builder_) builder_->StopAndWait();
  if (windows_) windows_->Detach();
  if (output_) output_->DeleteLogFile();
  output_.reset();
  propertyManager_.reset();
  toolManager_.reset();
  commands_.reset();
  builder_.reset();
  model_.reset();
  windows_.reset();
}

void CProjectManager::OnFinalRelease() {
  if (builder_ && builder_->IsWorkerWaiting()) {
    builder_->RequestStop();
    model_->Host().ClearHost();
    // The manager may be deleted inside an event of the window, and no reference delays that any
    // more.
    if (windows_) windows_->DetachProjectWindow();
    builder_->RunAfterWorker([this] { delete this; });
    return;
  }
  delete this;
}

DispatchResult CProjectManager::Invoke(DispatchId id, std::span<const Variant> arguments,
                                       Variant& result) {
  const DispatchPtr self(this);  // a handler may release the host's last reference
  if (builder_ && builder_->IsWorkerAlive()) builder_->RunPendingStep();
  return DispatchObject::Invoke(id, arguments, result);
}

// A handler may have opened another project in the meantime, which then stays open.
void CProjectManager::OpenDefaultProject() {
  if (!model_->IsOpen()) model_->OpenProject(installation_.GetDefaultProject().c_str(), 1);
}

std::int32_t CProjectManager::ProjectOpen(const char* projectPath) {
  if (!model_) return 0;
  selection_->Reset();
  const std::string path = OrEmpty(projectPath);
  if (model_->Paths().IsOpenAs(path)) return 0;
  const bool isDefault = !path.empty() && EqualNoCase(model_->Paths().FullProjectPath(path),
                                                      installation_.GetDefaultProject());
  if (!model_->CloseProject()) return 0;
  if (model_->OpenProject(projectPath, isDefault ? 1 : 0)) return 1;
  OpenDefaultProject();
  return 0;
}

std::int32_t CProjectManager::ProjectClose() {
  if (!model_) return 0;
  selection_->Reset();
  const bool wasDefault = model_->IsDefaultProject();
  if (!model_->CloseProject() || wasDefault) return 0;
  model_->OpenProject(installation_.GetDefaultProject().c_str(), 1);
  return 1;
}

std::int32_t CProjectManager::ProjectSave() {
  if (!model_) return 0;
  model_->SaveProject();
  return 1;
}

std::int32_t CProjectManager::ProjectNew(const char* projectPath) {
  if (!model_) return 0;
  selection_->Reset();
  if (!model_->CloseProject()) return 0;
  if (model_->Items().NewProject(projectPath)) return 1;
  OpenDefaultProject();
  return 0;
}

std::int32_t CProjectManager::ProjectBuild() {
  return builder_ && !commands_->RefusesBuild() ? builder_->BuildSynchronously() : 0;
}

std::int32_t CProjectManager::GetPropertyWindow() {
  return propertyManager_ ? propertyManager_->GetPropertyWindow() : 0;
}

std::int32_t CProjectManager::SelectApplication(const char* header) {
  if (!model_) return 0;
  selection_->SelectByHeader(header);
  return 1;
}

std::int32_t CProjectManager::SelectNode(const char* path) {
  if (!model_) return 0;
  selection_->SelectByPath(path);
  return 1;
}

std::int32_t CProjectManager::GetProjectWindow() {
  return windows_ ? windows_->ShowProjectWindow() : 0;
}

std::int32_t CProjectManager::GetOutputWindow() {
  return windows_ ? windows_->ShowOutputWindow() : 0;
}

std::int32_t CProjectManager::GetReportWindow() {
  return windows_ ? windows_->GetReportWindow() : 0;
}

std::int32_t CProjectManager::Command(std::uint32_t id) {
  return commands_ ? commands_->Run(id) : 1;
}

std::int32_t CProjectManager::EnableCommand(std::uint32_t id) {
  return commands_ ? commands_->Enable(id) : 1;
}

std::int32_t CProjectManager::PrologCommand(std::uint32_t id) {
  return commands_ ? commands_->Prolog(id) : 1;
}

std::int32_t CProjectManager::EpilogCommand(std::uint32_t id) {
  return commands_ ? commands_->Epilog(id) : 1;
}

std::int32_t CProjectManager::AddExistingItem(const char* itemPath, const char* itemType) {
  return model_ ? model_->Items().AddExistingItem(itemPath, itemType) : 0;
}

// The tool that generates initial sources is for users who chose it in the wizard, not for
// automation clients. The user's saved choice isn't changed.
std::int32_t CProjectManager::AddNewItem(const char* itemPath, const char* itemType) {
  if (!model_) return 0;
  const ProfileOverride withoutTool(platform_.settings, "Project", "UseCobbler", "No");
  return model_->Items().AddNewItem(itemPath, itemType);
}

std::int32_t CProjectManager::RemoveItem(const char* itemName) {
  return model_ ? model_->Editor().RemoveItem(itemName) : 0;
}

std::int32_t CProjectManager::SetBuildInfo(const char* filePath, const char* xmlInfo) {
  return builder_ ? builder_->Information().SetBuildInfo(filePath, xmlInfo) : 0;
}

std::string CProjectManager::GetDynamicCommands(std::uint32_t commandId) {
  return model_ ? model_->Publishing().GetDynamicCommands(commandId) : std::string();
}

std::string CProjectManager::GetSymbolInfo(const char* symbolName) {
  return model_ ? model_->Services().views.GetSymbolInfo(symbolName) : std::string();
}

void CProjectManager::ReportMessage(const char* text) {
  if (model_) model_->Host().ReportMessage(text);
}

std::string CProjectManager::GetSelectedApplicationsList(const char* separator) {
  std::string list;
  const CXmlNode* application = model_ ? model_->GetActiveApplication() : nullptr;
  if (application != nullptr && application->GetAttr("Path") != nullptr) {
    CollectDebugFiles(list, application, application, OrEmpty(separator));
  }
  return list;
}

std::string CProjectManager::GetSelectedFilesList(const char* separator) {
  std::string list;
  const CXmlNode* application = model_ ? model_->GetActiveApplication() : nullptr;
  if (application != nullptr && application->GetAttr("Path") != nullptr) {
    CollectLinkFiles(model_->Types(), list, application, true, application, OrEmpty(separator));
  }
  return list;
}

}  // namespace tarn
