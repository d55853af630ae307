#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "automation/ServerLock.h"
#include "drivers/PropertyManagerDriver.h"
#include "drivers/ToolManagerDriver.h"
#include "output/BuildOutput.h"
#include "output/OutputEdit.h"
#include "platform/automation/ClassRegistry.h"
#include "platform/automation/DispatchTable.h"
#include "platform/automation/RunningObjects.h"
#include "platform/files/FileSystem.h"
#include "platform/settings/Settings.h"
#include "project/ProjectModel.h"
#include "reports/ClassWnd.h"
#include "reports/GlobalsReportWnd.h"
#include "reports/OutputReportWnd.h"
#include "views/ProjectWnd.h"
#include "wizard/ProjectWizard.h"
#include "wizard/TargetCatalogue.h"

namespace tarn {

// The machine, as a manager uses it; all borrowed for the manager's life.
struct ServerPlatform {
  FileSystem& files;
  Settings& settings;
  ClassRegistry& classes;
  RunningObjectTable& runningObjects;

  static ServerPlatform Native();
};

struct CommandRow;

// The automation object that a host creates and drives: it makes the child objects, wires them
// together, loads the configuration and forwards each call to the child that does the work.
//
// Counted; destroyed at its final release. A host calls Init first, from the thread that all other
// calls come from too, and Clean in front of its last Release: until Clean the object holds itself,
// so that whoever finds it in the running object table finds it alive. Before Init every other call
// does nothing and gives what it gives when there is nothing to do.
class CProjectManager : public DispatchObject<CProjectManager> {
 public:
  static constexpr const char* kProgId = "TarnProjectManager.ProjectManager";
  static constexpr const char* kClassId = "{D9B8CA9D-D21F-48A2-8AC1-31865478798D}";
  static constexpr ServerIdentity kIdentity = {kProgId,
                                               kClassId,
                                               "ProjectManager",
                                               "{E8E835AB-D2A1-42C2-B4CC-4E62A03378AE}",
                                               "TarnProjectManager",
                                               "1.0",
                                               "{F9C0223E-22A5-40A4-BEDE-46BF952B9F48}",
                                               "IProjectManager"};

  explicit CProjectManager(const ServerPlatform& serverPlatform);
  ~CProjectManager() override;

  static const DispatchTable<CProjectManager>& Table();
  // A worker that waits for this thread is served first, so that a host that only polls does not
  // hold it up for ever.
  DispatchResult Invoke(DispatchId id, std::span<const Variant> arguments,
                        Variant& result) override;

  // Null until Init has made it.
  CProjectModel* GetModel() { return model.get(); }
  CPropertyManagerDriver* GetPropertyManager() { return propertyManager.get(); }
  // What this machine knows of targets, or else the installation.
  TargetCatalogue GetTargetCatalogue() const {
    return {platform.files, platform.settings, applicationPath + "targets"};
  }
  // The folder that relative names of a caller mean.
  std::string GetCurrentFolder() const { return platform.files.CurrentFolder(); }
  FileSystem& GetFiles() const { return platform.files; }
  // The first fault of the configuration file, "FILE:LINE: what"; empty if there is none.
  const std::string& GetConfigurationProblem() const { return configurationProblem; }
  // What the last SelectNode or SelectApplication looked for if it found nothing and the node that
  // was current then still is; nullopt otherwise.
  std::optional<std::string> GetMissedKey() const;
  // What is missing of the definitions of options and tools, as they are now; empty if nothing is.
  std::string FindDefinitionProblem();

  // --- The dispatch methods; 1 for success and 0 for failure unless told otherwise ---

  // Init.cpp
  std::int32_t Init(const char* applicationPath, const char* dataPath, std::int32_t mainframe);
  std::int32_t InitToolManager(IDispatch* toolManagerObject);
  std::int32_t Clean();

  // ProjectManager.cpp
  std::int32_t ProjectOpen(const char* projectPath);
  std::int32_t ProjectClose();
  std::int32_t ProjectSave();
  std::int32_t ProjectNew(const char* projectPath);
  std::int32_t ProjectBuild();
  std::int32_t GetPropertyWindow();
  std::int32_t SelectApplication(const char* header);
  std::int32_t SelectNode(const char* path);
  std::int32_t AddExistingItem(const char* itemPath, const char* itemType);
  std::int32_t AddNewItem(const char* itemPath, const char* itemType);
  std::int32_t RemoveItem(const char* itemName);
  std::int32_t SetBuildInfo(const char* filePath, const char* xmlInfo);
  std::string GetDynamicCommands(std::uint32_t commandId);
  std::string GetSymbolInfo(const char* symbolName);
  void ReportMessage(const char* text);
  std::string GetSelectedApplicationsList(const char* separator);
  std::string GetSelectedFilesList(const char* separator);

  // Windows.cpp: handles, 0 for a window that does not stand.
  std::int32_t GetProjectWindow();
  std::int32_t GetOutputWindow();
  std::int32_t GetReportWindow();

  // Commands.cpp: 2 for work that goes on in the background.
  std::int32_t Command(std::uint32_t id);
  std::int32_t EnableCommand(std::uint32_t id);
  std::int32_t PrologCommand(std::uint32_t id);
  std::int32_t EpilogCommand(std::uint32_t id);

  // SettingsCalls.cpp
  std::int32_t ReadDefsFromFile(const char* set, const char* file);
  std::int32_t ReadConfigFromFile(const char* config, const char* set, const char* section,
                                  const char* property, const char* file);
  std::string GetPropertyValue(const char* set, const char* section, const char* property);
  std::int32_t SetPropertyValue(const char* set, const char* section, const char* property,
                                const char* value);
  std::string GetPropertyStringValue(const char* set, const char* section, const char* property);
  std::int32_t EnableProperty(const char* set, const char* section, const char* property,
                              std::int32_t enable);
  std::int32_t HideProperty(const char* set, const char* section, const char* property,
                            std::int32_t hide);
  std::int32_t SavePropertyValue(const char* set, const char* section, const char* property,
                                 const char* value);
  std::int32_t ResetPropertyValue(const char* set, const char* section, const char* property);
  std::int32_t UpdateCurNodeConfig(const char* set, const char* file);
  std::string GetCurConfig();
  std::string ReadRegistryValue(const char* key, const char* name);
  std::string ReadIniValue(const char* section, const char* key, const char* iniPath);
  std::int32_t WriteIniValue(const char* section, const char* key, const char* value,
                             const char* iniPath);
  std::string GetSelectedDBI();
  std::string GetSelectedApplication();
  std::int32_t ExecuteScript(const char* scriptPath);
  // Not of the dispatch interface. Returns why the script may not run, as its project is not
  // trusted; empty if it may.
  std::string CheckScript(const std::string& path);

 protected:
  // A release from inside a step of the worker waits for the worker's end.
  void OnFinalRelease() override;

 private:
  friend struct CommandRow;

  // First, so that it goes last: all of the object's end is in the library.
  const ServerLock lock;

  // Windows.cpp: steps of Init, and of the end.
  void CreateOutputViews();
  void CreateWindows();
  // From now on the windows use nothing of model, drivers and hub.
  void ReleaseWindows();
  // Offers a window to the host, to be docked.
  void Announce(CWnd* window, const char* title, int id) const;

  // Steps of Init.
  // False if there is no such component; the host gets the reason as a line of the log.
  bool CreateComponent(COleDispatchDriver& driver, const char* progId);
  bool ChooseConfigFile(const std::string& root);
  void NameLogFile();
  void MakeWizard();
  bool LoadConfiguration();
  bool RefusesBuild();
  bool RefusesIniFile(const std::string& path);
  void SendMenus(const CXmlNode& configuration);
  void ChooseProfileKey();
  void ReadImportSettings();
  void SeedDefaultProject();
  // The application folder's own name, which settings are kept under; empty for the standard one.
  std::string OwnFolderName() const;
  std::string FindConfigFile(const char* file) const;

  // Makes the node current that a search for `key` has found, or records that it found nothing.
  void Select(CXmlNode* found, const char* key);

  // Actions of commands.
  std::int32_t StartWorker(std::int32_t command);
  std::int32_t RunNodeTool(std::uint32_t id);
  void ApplyOptionChange(bool keepsOutputs);
  void ResetProperty();
  void ShowNodeOptions();
  void ShowApplicationOptions();
  void OpenListing(CXmlNode* node);
  void RunOpenCommand();
  void OpenCurrentFile();
  void ShowCurrentFile();
  void AnnounceActiveApplication();
  void StopPublishing();
  void ReloadOptions(CXmlNode& node);

  ServerPlatform platform;
  std::unique_ptr<CBuildOutput> output;
  std::unique_ptr<CPropertyManagerDriver> propertyManager;
  std::unique_ptr<CToolManagerDriver> toolManager;
  std::unique_ptr<CProjectModel> model;
  std::unique_ptr<COutputEdit> logView;
  std::unique_ptr<COutputReportWnd> reportView;
  std::unique_ptr<CProjectWnd> projectWindow;
  std::unique_ptr<CClassWnd> classWindow;
  std::unique_ptr<CGlobalsReportWnd> globalsWindow;
  std::unique_ptr<ProjectWizardMaker> wizard;
  std::string configFolder;
  std::string defaultProjectPath;
  std::uint32_t activeObjectToken = 0;
  WindowHandle mainframeHandle = 0;
  std::string applicationPath;  // ends in a separator
  std::string dataPath;
  std::string configFilePath;
  std::string configurationProblem;
  bool rerunAfterBuild = false;
  std::optional<std::string> missedKey;   // of a search that found no node
  const CXmlNode* nodeInstead = nullptr;  // current node at that time; compared only
};

}  // namespace tarn
