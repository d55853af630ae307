#include "automation/ProjectManager.h"

#include "builder/LinkFiles.h"
#include "platform/text/Text.h"

namespace tarn {

ServerPlatform ServerPlatform::Native() {
  return {FileSystem::Native(), Settings::Native(), ClassRegistry::Native(),
          RunningObjectTable::Native()};
}

CProjectManager::CProjectManager(const ServerPlatform& serverPlatform)
    : platform(serverPlatform), installation(serverPlatform.files, serverPlatform.settings) {}

CProjectManager::~CProjectManager() {
  if (activeObjectToken != 0) platform.runningObjects.RevokeActiveObject(activeObjectToken);
  // A running worker uses all other members until it has finished.
  if (builder) builder->StopAndWait();
  if (windows) windows->Detach();
  if (output) output->DeleteLogFile();
  output.reset();
  propertyManager.reset();
  toolManager.reset();
  commands.reset();
  builder.reset();
  model.reset();
  windows.reset();
}

void CProjectManager::OnFinalRelease() {
  if (builder && builder->IsWorkerWaiting()) {
    builder->RequestStop();
    model->Host().ForgetHost();
    // The manager may be deleted inside an event of the window, and no reference delays that any
    // more.
    if (windows) windows->DetachProjectWindow();
    builder->RunAfterWorker([this] { delete this; });
    return;
  }
  delete this;
}

DispatchResult CProjectManager::Invoke(DispatchId id, std::span<const Variant> arguments,
                                       Variant& result) {
  const DispatchPtr self(this);  // a handler may release the host's last reference
  if (builder && builder->IsWorkerAlive()) builder->ServeWorker();
  return DispatchObject::Invoke(id, arguments, result);
}

// A handler may have opened another project in the meantime, which then stays open.
void CProjectManager::OpenDefaultProject() {
  if (!model->IsOpen()) model->OpenProject(installation.GetDefaultProject().c_str(), 1);
}

std::int32_t CProjectManager::ProjectOpen(const char* projectPath) {
  if (!model) return 0;
  selection->Reset();
  const std::string path = TextOf(projectPath);
  if (model->Paths().IsOpenAs(path)) return 0;
  const bool isDefault = !path.empty() && EqualNoCase(model->Paths().FullProjectPath(path),
                                                      installation.GetDefaultProject());
  if (!model->CloseProject()) return 0;
  if (model->OpenProject(projectPath, isDefault ? 1 : 0)) return 1;
  OpenDefaultProject();
  return 0;
}

std::int32_t CProjectManager::ProjectClose() {
  if (!model) return 0;
  selection->Reset();
  const bool wasDefault = model->IsDefaultProject();
  if (!model->CloseProject() || wasDefault) return 0;
  model->OpenProject(installation.GetDefaultProject().c_str(), 1);
  return 1;
}

std::int32_t CProjectManager::ProjectSave() {
  if (!model) return 0;
  model->SaveProject();
  return 1;
}

std::int32_t CProjectManager::ProjectNew(const char* projectPath) {
  if (!model) return 0;
  selection->Reset();
  if (!model->CloseProject()) return 0;
  if (model->Items().NewProject(projectPath)) return 1;
  OpenDefaultProject();
  return 0;
}

std::int32_t CProjectManager::ProjectBuild() {
  return builder && !commands->RefusesBuild() ? builder->BuildHere() : 0;
}

std::int32_t CProjectManager::GetPropertyWindow() {
  return propertyManager ? propertyManager->GetPropertyWindow() : 0;
}

std::int32_t CProjectManager::SelectApplication(const char* header) {
  if (!model) return 0;
  selection->SelectByHeader(header);
  return 1;
}

std::int32_t CProjectManager::SelectNode(const char* path) {
  if (!model) return 0;
  selection->SelectByPath(path);
  return 1;
}

std::int32_t CProjectManager::GetProjectWindow() {
  return windows ? windows->ShowProjectWindow() : 0;
}

std::int32_t CProjectManager::GetOutputWindow() {
  return windows ? windows->ShowOutputWindow() : 0;
}

std::int32_t CProjectManager::GetReportWindow() {
  return windows ? windows->GetReportWindow() : 0;
}

std::int32_t CProjectManager::Command(std::uint32_t id) {
  return commands ? commands->Run(id) : 1;
}

std::int32_t CProjectManager::EnableCommand(std::uint32_t id) {
  return commands ? commands->Enable(id) : 1;
}

std::int32_t CProjectManager::PrologCommand(std::uint32_t id) {
  return commands ? commands->Prolog(id) : 1;
}

std::int32_t CProjectManager::EpilogCommand(std::uint32_t id) {
  return commands ? commands->Epilog(id) : 1;
}

std::int32_t CProjectManager::AddExistingItem(const char* itemPath, const char* itemType) {
  return model ? model->Items().AddExistingItem(itemPath, itemType) : 0;
}

// The tool that generates initial sources is for users who chose it in the wizard, not for
// automation clients. The user's saved choice isn't changed.
std::int32_t CProjectManager::AddNewItem(const char* itemPath, const char* itemType) {
  if (!model) return 0;
  const ProfileOverride withoutTool(platform.settings, "Project", "UseCobbler", "No");
  return model->Items().AddNewItem(itemPath, itemType);
}

std::int32_t CProjectManager::RemoveItem(const char* itemName) {
  return model ? model->Editor().RemoveItem(itemName) : 0;
}

std::int32_t CProjectManager::SetBuildInfo(const char* filePath, const char* xmlInfo) {
  return builder ? builder->Information().SetBuildInfo(filePath, xmlInfo) : 0;
}

std::string CProjectManager::GetDynamicCommands(std::uint32_t commandId) {
  return model ? model->Publishing().GetDynamicCommands(commandId) : std::string();
}

std::string CProjectManager::GetSymbolInfo(const char* symbolName) {
  return model ? model->Services().views.GetSymbolInfo(symbolName) : std::string();
}

void CProjectManager::ReportMessage(const char* text) {
  if (model) model->Host().ReportMessage(text);
}

std::string CProjectManager::GetSelectedApplicationsList(const char* separator) {
  std::string list;
  const CXmlNode* application = model ? model->GetActiveApplication() : nullptr;
  if (application != nullptr && application->GetAttr("Path") != nullptr) {
    CollectDebugFiles(list, application, application, TextOf(separator));
  }
  return list;
}

std::string CProjectManager::GetSelectedFilesList(const char* separator) {
  std::string list;
  const CXmlNode* application = model ? model->GetActiveApplication() : nullptr;
  if (application != nullptr && application->GetAttr("Path") != nullptr) {
    CollectLinkFiles(model->Types(), list, application, true, application, TextOf(separator));
  }
  return list;
}

}  // namespace tarn
