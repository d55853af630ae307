// Initialisation of the manager: creates and connects its parts.

#include "automation/ProjectManager.h"
#include "platform/text/Text.h"

namespace tarn {

std::int32_t CProjectManager::Init(const char* givenApplicationPath, const char* givenDataPath,
                                   std::int32_t mainframe) {
  // A second Init() would replace the child objects that a project uses; one that a component calls
  // during the first would destroy the driver of that call.
  if (propertyManager) return 0;
  if (!installation.Locate(givenApplicationPath, givenDataPath)) return 0;

  propertyManager = std::make_unique<CPropertyManagerDriver>();
  if (!CreateComponent(*propertyManager, CPropertyManagerDriver::kProgId, mainframe)) return 0;
  propertyManager->InitOptions(installation.GetFolder(), givenDataPath, mainframe, 1);
  propertyManager->ReadDefsFromFile("", installation.GetConfigFile());
  CreateOutput(mainframe);
  toolManager = std::make_unique<CToolManagerDriver>();
  if (mainframe == 0) {
    if (!CreateComponent(*toolManager, CToolManagerDriver::kProgId, mainframe)) return 0;
    toolManager->InitTools(givenApplicationPath, givenDataPath, mainframe);
  }

  CreateModel(mainframe);
  if (!installation.Configure(*model)) return 0;
  windows->CreateProjectWindows(*model, *propertyManager, installation, this);
  installation.SeedDefaultProject();
  if (givenApplicationPath != nullptr) platform.files.SetCurrentFolder(givenApplicationPath);

  activeObjectToken = platform.runningObjects.RegisterActiveObject(kClassId, this);
  AddRef();  // released in Clean()
  return 1;
}

// Without one of its components the manager would open projects but find nothing to build in them.
// The reason is sent to the host as a log line, since the result can't carry it.
bool CProjectManager::CreateComponent(COleDispatchDriver& driver, const char* progId,
                                      WindowHandle mainframe) {
  if (driver.CreateDispatch(platform.classes, progId)) return true;
  const std::string reason = driver.LastResult().text;
  SendWindowMessage(mainframe, kMsgLogLine, reinterpret_cast<std::intptr_t>(reason.c_str()), 0);
  return false;
}

void CProjectManager::CreateOutput(WindowHandle mainframe) {
  output = std::make_unique<CBuildOutput>(platform.files);
  output->Initialise(installation.GetConfigFile(), mainframe);
  windows = std::make_unique<ManagerWindows>(platform.files, platform.settings, mainframe);
  windows->CreateOutputViews(*output);
  output->SetFlagBits(CBuildOutput::kSaveEachMessage);
  const std::string folder = platform.files.TemporaryFolder();
  if (!folder.empty()) (void)output->PlaceLogFile(folder);
  output->SetSpareFolder(installation.GetDataPath());
}

void CProjectManager::CreateModel(WindowHandle mainframe) {
  model = std::make_unique<CProjectModel>(platform.files);
  builder = std::make_unique<Builder>(*model);
  commands = std::make_unique<ProjectCommands>(*model, *builder);
  selection = std::make_unique<NodeSelection>(*model);
  fileCalls = std::make_unique<HostFileCalls>(*model);
  wizard = std::make_unique<ProjectWizardMaker>(WizardSurroundings{
      *model, platform.files, platform.settings, installation.GetTargetCatalogue()});
  ProjectServices& services = model->Services();
  services.views.wizard = wizard.get();
  services.output = output.get();
  services.propertyManager = propertyManager.get();
  services.toolManager = toolManager.get();
  services.mainframeHandle = mainframe;
}

std::int32_t CProjectManager::InitToolManager(IDispatch* toolManagerObject) {
  if (toolManager) toolManager->AttachDispatch(toolManagerObject, false);
  return 1;
}

std::int32_t CProjectManager::Clean() {
  if (activeObjectToken == 0) return 1;
  platform.runningObjects.RevokeActiveObject(activeObjectToken);
  activeObjectToken = 0;
  Release();
  return 1;
}

}  // namespace tarn
