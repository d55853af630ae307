// Initialisation of the manager: configuration file, child objects, node types, default project.

#include "automation/ProjectManager.h"
#include "output/MessageTable.h"
#include "patterns/ParseNumber.h"
#include "platform/paths/Paths.h"
#include "platform/settings/InstalledData.h"
#include "platform/text/Text.h"
#include "xml/XmlDamage.h"

namespace tarn {

namespace {

constexpr const char* kConfigFileName = "projectmanager.config";

std::string BehindLastSeparator(const std::string& path) {
  std::size_t start = path.size();
  while (start > 0 && !IsSeparator(path[start - 1])) --start;
  return path.substr(start);
}

}  // namespace

std::int32_t CProjectManager::Init(const char* givenApplicationPath, const char* givenDataPath,
                                   std::int32_t mainframe) {
  // A second Init() would replace the child objects that a project uses; one that a component calls
  // during the first would destroy the driver of that call.
  if (propertyManager) return 0;
  mainframeHandle = mainframe;
  std::string root = givenApplicationPath != nullptr && *givenApplicationPath != '\0'
                         ? std::string(givenApplicationPath)
                         : InstalledDataFolder(platform.files);
  // The current folder changes with every project.
  if (IsRelativePath(root)) root = JoinPath(platform.files.CurrentFolder(), root);
  dataPath = TextOf(givenDataPath);
  if (!ChooseConfigFile(root)) return 0;
  applicationPath = root;

  propertyManager = std::make_unique<CPropertyManagerDriver>();
  if (!CreateComponent(*propertyManager, CPropertyManagerDriver::kProgId)) return 0;
  propertyManager->InitOptions(root, givenDataPath, mainframeHandle, 1);
  propertyManager->ReadDefsFromFile("", configFilePath);

  output = std::make_unique<CBuildOutput>(platform.files);
  output->Initialise(configFilePath, mainframeHandle);
  CreateOutputViews();
  output->SetFlagBits(CBuildOutput::kSaveEachMessage);
  NameLogFile();

  toolManager = std::make_unique<CToolManagerDriver>();
  if (mainframeHandle == 0) {
    if (!CreateComponent(*toolManager, CToolManagerDriver::kProgId)) return 0;
    toolManager->InitTools(givenApplicationPath, givenDataPath, mainframeHandle);
  }

  model = std::make_unique<CProjectModel>(platform.files);
  builder = std::make_unique<Builder>(*model);
  MakeWizard();
  if (!LoadConfiguration()) return 0;
  model->Services().applicationPath = root;
  model->Services().dataPath = dataPath;
  ChooseProfileKey();
  ReadImportSettings();
  CreateWindows();
  SeedDefaultProject();
  if (givenApplicationPath != nullptr) platform.files.SetCurrentFolder(givenApplicationPath);

  activeObjectToken = platform.runningObjects.RegisterActiveObject(kClassId, this);
  AddRef();  // released in Clean()
  return 1;
}

// Without one of its components the manager would open projects but find nothing to build in them.
// The reason is sent to the host as a log line, since the result can't carry it.
bool CProjectManager::CreateComponent(COleDispatchDriver& driver, const char* progId) {
  if (driver.CreateDispatch(platform.classes, progId)) return true;
  const std::string reason = driver.LastResult().text;
  SendWindowMessage(mainframeHandle, kMsgLogLine, reinterpret_cast<std::intptr_t>(reason.c_str()),
                    0);
  return false;
}

bool CProjectManager::ChooseConfigFile(const std::string& root) {
  configFolder = root + "config" + kSeparator;
  const std::string own = configFolder + BehindLastSeparator(dataPath) + "_" + kConfigFileName;
  const auto canBeRead = [this] {
    const Result<std::string> text = platform.files.ReadWholeFile(configFilePath);
    return text || text.GetError().code != ErrorCode::NotFound;
  };
  configFilePath = own;
  if (platform.files.Exists(own) && canBeRead()) return true;
  configFilePath = configFolder + kConfigFileName;
  return platform.files.Exists(configFilePath) || canBeRead();
}

void CProjectManager::NameLogFile() {
  const std::string folder = platform.files.TemporaryFolder();
  if (!folder.empty()) (void)output->PlaceLogFile(folder);
  output->SetSpareFolder(dataPath);
}

void CProjectManager::MakeWizard() {
  wizard = std::make_unique<ProjectWizardMaker>(
      WizardSurroundings{*model, platform.files, platform.settings, GetTargetCatalogue()});
  model->Services().views.wizard = wizard.get();
}

bool CProjectManager::LoadConfiguration() {
  model->Services().output = output.get();
  model->Services().propertyManager = propertyManager.get();
  model->Services().toolManager = toolManager.get();
  model->Services().mainframeHandle = mainframeHandle;
  model->Services().configFilePath = configFilePath;
  model->Services().configFolder = configFolder;
  model->Services().examplesFolder = applicationPath + "examples" + kSeparator;

  const Result<std::string> text = platform.files.ReadWholeFile(configFilePath);
  CXmlNode configuration;
  if (!text) {
    // The result already means that the file doesn't exist.
    const Error& error = text.GetError();
    const std::string reason = configFilePath + ": " + error.text;
    if (error.code != ErrorCode::NotFound) model->Host().SendHost(kMsgLogLine, reason, 0);
    return false;
  }
  configurationProblem = LoadWhole(configuration, *text, XmlTexts::None, configFilePath);
  const bool isDamaged = !configurationProblem.empty();
  if (isDamaged && configuration.Load(*text, g_xmlParseInfo) == nullptr) return false;
  for (int i = 0; i < configuration.GetChildCount(); ++i) {
    const CXmlNode& section = *configuration.GetChild(i);
    if (section.NameView() != "Types") continue;
    for (int record = 0; record < section.GetChildCount(); ++record) {
      const CXmlNode& type = *section.GetChild(record);
      if (type.GetType() == XmlElement) model->Services().types.Add(type);
    }
  }
  SendMenus(configuration);
  return true;
}

void CProjectManager::SendMenus(const CXmlNode& configuration) {
  const std::string caption = GetMessageText(kRowProjectWord);
  for (int i = 0; i < configuration.GetChildCount(); ++i) {
    const CXmlNode& section = *configuration.GetChild(i);
    if (section.NameView() == "ToolBar") {
      model->Host().SendHost(kMsgCreateToolbar, caption, section.ToString(g_xmlDisplayOptions));
    } else if (section.NameView() == "MainMenus") {
      for (int menu = 0; menu < section.GetChildCount(); ++menu) {
        const CXmlNode& entry = *section.GetChild(menu);
        if (entry.GetType() != XmlElement) continue;
        model->Host().SendHost(kMsgAddMainMenu, caption, entry.ToString(g_xmlDisplayOptions));
      }
    }
  }
}

std::string CProjectManager::OwnFolderName() const {
  const std::string path = platform.files.Canonical(applicationPath);
  std::string name = BehindLastSeparator(path);
  if (name.empty() && !path.empty()) name = BehindLastSeparator(path.substr(0, path.size() - 1));
  return EqualNoCase(name, "Tarn") ? std::string() : name;
}

void CProjectManager::ChooseProfileKey() {
  const std::string name = OwnFolderName();
  if (!name.empty()) platform.settings.SetProfileKey("Corvane\\" + name);
}

void CProjectManager::ReadImportSettings() {
  model->Services().importProgram = platform.settings.ReadProfile("Import", "Interpreter", "");
  const std::int32_t seconds = ParseNumber(platform.settings.ReadProfile("Import", "Seconds", "0"));
  if (seconds > 0 && seconds != kNoNumber) model->Services().importSeconds = seconds;
}

void CProjectManager::SeedDefaultProject() {
  std::string base = dataPath;
  if (base.empty()) {
    base = platform.settings.GetFolders().userData;
    // No other component creates it for a new user.
    (void)platform.files.CreateFolders(base);
  }
  if (IsRelativePath(base)) base = JoinPath(platform.files.CurrentFolder(), base);
  const std::string name = BehindLastSeparator(dataPath);
  defaultProjectPath = platform.files.Canonical(base + kSeparator + name + ".tprj");
  const std::string application = base + kSeparator + name + ".tapp";
  if (platform.files.Exists(defaultProjectPath) && platform.files.Exists(application)) return;
  // A copy that fails is reported when the default project is opened.
  const std::string seeds = ReadRegistryValue("Default Directories", "LastTargetConfig");
  (void)platform.files.CopyFileTo(seeds + kSeparator + name + ".tprj", defaultProjectPath);
  (void)platform.files.CopyFileTo(seeds + kSeparator + name + ".tapp", application);
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
