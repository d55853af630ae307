// Initialisation of the manager: creates and connects its parts.

#include "automation/ProjectManager.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

std::int32_t CProjectManager::Init(const char* givenApplicationPath, const char* givenDataPath,
                                   std::int32_t mainframe) {
  // A second Init() would replace the child objects that a project uses; one that a component calls
  // during the first would destroy the driver of that call.
  if (propertyManager_) return 0;
  if (!installation_.Locate(givenApplicationPath, givenDataPath)) return 0;

  propertyManager_ = std::make_unique<CPropertyManagerDriver>();
  if (!CreateComponent(*propertyManager_, CPropertyManagerDriver::kProgId, mainframe)) return 0;
  propertyManager_->InitOptions(installation_.GetFolder(), givenDataPath, mainframe, 1);
  propertyManager_->ReadDefsFromFile("", installation_.GetConfigFile());
  CreateOutput(mainframe);
  toolManager_ = std::make_unique<CToolManagerDriver>();
  if (mainframe == 0) {
    if (!CreateComponent(*toolManager_, CToolManagerDriver::kProgId, mainframe)) return 0;
    toolManager_->InitTools(givenApplicationPath, givenDataPath, mainframe);
  }

  CreateModel(mainframe);
  if (!installation_.Configure(*model_)) return 0;
  windows_->CreateProjectWindows(*model_, *propertyManager_, installation_, this);
  installation_.SeedDefaultProject();
  if (givenApplicationPath != nullptr) platform_.files.SetCurrentFolder(givenApplicationPath);

  activeObjectToken_ = platform_.runningObjects.RegisterActiveObject(kClassId, this);
  AddRef();  // released in Clean()
  return 1;
}

// Without one of its components the manager would open projects but find nothing to build in them.
// The reason is sent to the host as a log line, since the result can't carry it.
bool CProjectManager::CreateComponent(COleDispatchDriver& driver, const char* progId,
                                      WindowHandle mainframe) {
  if (driver.CreateDispatch(platform_.classes, progId)) return true;
  const std::string reason = driver.LastResult().text;
  SendWindowMessage(mainframe, kMsgLogLine, reinterpret_cast<std::intptr_t>(reason.c_str()), 0);
  return false;
}

void CProjectManager::CreateOutput(WindowHandle mainframe) {
  output_ = std::make_unique<CBuildOutput>(platform_.files);
  output_->Initialise(installation_.GetConfigFile(), mainframe);
  windows_ = std::make_unique<ManagerWindows>(platform_.files, platform_.settings, mainframe);
  windows_->CreateOutputViews(*output_);
  output_->SetFlagBits(CBuildOutput::kSaveEachMessage);
  const std::string folder = platform_.files.TemporaryFolder();
  if (!folder.empty()) (void)output_->PlaceLogFile(folder);
  output_->SetSpareFolder(installation_.GetDataPath());
}

void CProjectManager::CreateModel(WindowHandle mainframe) {
  model_ = std::make_unique<CProjectModel>(platform_.files);
  builder_ = std::make_unique<Builder>(*model_);
  commands_ = std::make_unique<ProjectCommands>(*model_, *builder_);
  selection_ = std::make_unique<NodeSelection>(*model_);
  fileCalls_ = std::make_unique<HostFileCalls>(*model_);
  wizard_ = std::make_unique<ProjectWizardMaker>(
      WizardEnvironment{*model_, platform_.files, platform_.settings,
                        installation_.GetTargetCatalogue(&model_->Definitions().GetApplied())});
  ProjectServices& services = model_->Services();
  services.views.wizard = wizard_.get();
  services.output = output_.get();
  services.propertyManager = propertyManager_.get();
  services.toolManager = toolManager_.get();
  services.mainframeHandle = mainframe;
}

std::int32_t CProjectManager::InitToolManager(IDispatch* toolManagerObject) {
  if (toolManager_) toolManager_->AttachDispatch(toolManagerObject, false);
  return 1;
}

std::int32_t CProjectManager::Clean() {
  if (activeObjectToken_ == 0) return 1;
  platform_.runningObjects.RevokeActiveObject(activeObjectToken_);
  activeObjectToken_ = 0;
  Release();
  return 1;
}

}  // namespace tarn
