#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "automation/HostFileCalls.h"
#include "automation/Installation.h"
#include "automation/ManagerWindows.h"
#include "automation/NodeSelection.h"
#include "automation/ProjectCommands.h"
#include "automation/ServerLock.h"
#include "builder/Builder.h"
#include "drivers/PropertyManagerDriver.h"
#include "drivers/ToolManagerDriver.h"
#include "output/BuildOutput.h"
#include "platform/automation/ClassRegistry.h"
#include "platform/automation/DispatchTable.h"
#include "platform/automation/RunningObjects.h"
#include "platform/files/FileSystem.h"
#include "platform/settings/Settings.h"
#include "project/ProjectModel.h"
#include "wizard/ProjectWizard.h"

namespace tarn {

// Platform services that a manager uses; all are borrowed and must outlive the manager.
struct ServerPlatform {
  FileSystem& files;
  Settings& settings;
  ClassRegistry& classes;
  RunningObjectTable& runningObjects;

  static ServerPlatform Native();
};

// Automation object that a host creates and controls. It creates and connects the parts, and
// forwards each call to the part that implements it:
//
//   Installation     folders, configuration file, default project
//   CProjectModel    the project, with its parts
//   Builder          builds
//   ProjectCommands  commands of menus
//   ManagerWindows   windows
//   NodeSelection    nodes that the host selects by a key
//   HostFileCalls    INI files and scripts
//
// Reference-counted; destroyed by its final release. Calling sequence: the host calls Init() first,
// on the thread that makes all other calls too, and Clean() before its last Release(). Between the
// two the object holds a reference to itself, so that clients that find it in the running object
// table find it alive. Before Init() every other call is a no-op and returns the value for an empty
// state.
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
  // First runs a pending task of the worker, so that a host that only polls doesn't block the
  // worker indefinitely.
  DispatchResult Invoke(DispatchId id, std::span<const Variant> arguments,
                        Variant& result) override;

  // The pointers are null before Init().
  CProjectModel* GetModel() { return model_.get(); }
  Builder* GetBuilder() { return builder_.get(); }
  CPropertyManagerDriver* GetPropertyManager() { return propertyManager_.get(); }
  const NodeSelection* GetSelection() const { return selection_.get(); }
  HostFileCalls* GetFileCalls() { return fileCalls_.get(); }
  const Installation& GetInstallation() const { return installation_; }

  // --- Dispatch methods; return 1 on success and 0 on failure unless documented otherwise ---

  // Init.cpp
  //
  // Initialises the manager: loads the configuration, creates the child objects and opens windows.
  // `applicationPath` is the folder of the installation (null for the default), `dataPath` that of
  // the default project, `mainframe` the host's window. Returns 0 if a file or component of the
  // installation is missing, or if the child objects already exist.
  std::int32_t Init(const char* applicationPath, const char* dataPath, std::int32_t mainframe);
  // Sets the tool manager that runs the tools. Always returns 1.
  std::int32_t InitToolManager(IDispatch* toolManagerObject);
  // Revokes the object from the running object table and releases its reference to itself. Always
  // returns 1; further calls are no-ops.
  std::int32_t Clean();

  // ProjectManager.cpp
  //
  // Closes the current project and opens another one; null asks the user. Returns 0 if the project
  // is already open, if the current one can't be closed, or if the other one can't be opened; in
  // the last case the default project is opened.
  std::int32_t ProjectOpen(const char* projectPath);
  // Closes the project and opens the default project. Returns 0 if the project can't be closed, or
  // if it was the default project, which then stays closed.
  std::int32_t ProjectClose();
  // Saves the project. Returns 1 even if a file couldn't be written; the log has the reason.
  std::int32_t ProjectSave();
  // Closes the current project and creates a new one; null asks the user. On failure the default
  // project is opened.
  std::int32_t ProjectNew(const char* projectPath);
  // Builds the current node synchronously on the calling thread.
  std::int32_t ProjectBuild();
  // Returns the handle of the options window.
  std::int32_t GetPropertyWindow();
  // Makes the node with this label current. Always returns 1; see NodeSelection.
  std::int32_t SelectApplication(const char* header);
  // Makes the node of the active application with this path current, after publishing the
  // application's nodes if necessary. Always returns 1; see NodeSelection.
  std::int32_t SelectNode(const char* path);
  // Adds an existing file to the project. If `itemType` is null, the type is determined by the file
  // extension.
  std::int32_t AddExistingItem(const char* itemPath, const char* itemType);
  // Creates a file, a group or an application and adds it to the project.
  std::int32_t AddNewItem(const char* itemPath, const char* itemType);
  std::int32_t RemoveItem(const char* itemName);
  // Stores tool reports, given as XML, in the nodes that they refer to.
  std::int32_t SetBuildInfo(const char* filePath, const char* xmlInfo);
  // Returns the commands of the current node's tools as XML.
  std::string GetDynamicCommands(std::uint32_t commandId);
  // Returns a global symbol as XML.
  std::string GetSymbolInfo(const char* symbolName);
  // Adds a line to the log.
  void ReportMessage(const char* text);
  // Returns the debug files of the active application, quoted and joined by `separator`.
  std::string GetSelectedApplicationsList(const char* separator);
  // Returns the output files of the active application in the same format.
  std::string GetSelectedFilesList(const char* separator);

  // Return the window handle, 0 if the window doesn't exist; the first two also offer
  // the windows to the host for docking.
  std::int32_t GetProjectWindow();
  std::int32_t GetOutputWindow();
  std::int32_t GetReportWindow();

  // Calling sequence for commands that run in the background: PrologCommand(), which
  // returns 0 if the command is refused; Command(), which returns 2 if the work continues in the
  // background; EpilogCommand() after its end. EnableCommand() returns 0 if the command is
  // currently disabled, and 1 for ids that aren't commands.
  std::int32_t Command(std::uint32_t id);
  std::int32_t EnableCommand(std::uint32_t id);
  std::int32_t PrologCommand(std::uint32_t id);
  std::int32_t EpilogCommand(std::uint32_t id);

  // SettingsCalls.cpp. An option is identified by its set, section and name; the values are those
  // of the current node.
  //
  // Reads definitions of options.
  std::int32_t ReadDefsFromFile(const char* set, const char* file);
  // Reads values of options. A file that doesn't exist is searched for in the configuration folder.
  std::int32_t ReadConfigFromFile(const char* config, const char* set, const char* section,
                                  const char* property, const char* file);
  std::string GetPropertyValue(const char* set, const char* section, const char* property);
  // Changes the value until a different node becomes current. SavePropertyValue() also stores it in
  // the project.
  std::int32_t SetPropertyValue(const char* set, const char* section, const char* property,
                                const char* value);
  // Returns the value as it is displayed.
  std::string GetPropertyStringValue(const char* set, const char* section, const char* property);
  std::int32_t EnableProperty(const char* set, const char* section, const char* property,
                              std::int32_t enable);
  // Hides or shows an option; the whole section if `property` is empty, and the whole set if
  // `section` is empty too.
  std::int32_t HideProperty(const char* set, const char* section, const char* property,
                            std::int32_t hide);
  std::int32_t SavePropertyValue(const char* set, const char* section, const char* property,
                                 const char* value);
  // Removes the stored value. An empty `set` denotes the type of the current node.
  std::int32_t ResetPropertyValue(const char* set, const char* section, const char* property);
  // Like ReadDefsFromFile(), but also searches the configuration folder. Always returns 1.
  std::int32_t UpdateCurNodeConfig(const char* set, const char* file);
  // Returns the options of the active configuration as XML.
  std::string GetCurConfig();
  // Returns a value of the system settings below the key of the installation.
  std::string ReadRegistryValue(const char* key, const char* name);
  // Returns a value of an INI file, truncated to 259 bytes.
  std::string ReadIniValue(const char* section, const char* key, const char* iniPath);
  // Writes a value of an INI file; a null `value` removes the key, a null `key` the section. Always
  // returns 1; the log has the reason if the file couldn't be written, or if the project isn't
  // trusted to write it.
  std::int32_t WriteIniValue(const char* section, const char* key, const char* value,
                             const char* iniPath);
  // Returns the path of the debug information file of the active application, whose folder is
  // created if necessary; an empty string if its type has no such file.
  std::string GetSelectedDBI();
  // Returns the path of the active application.
  std::string GetSelectedApplication();
  // Sends the contents of a script file to the host, which runs it. Returns 0 if the file doesn't
  // exist or the project isn't trusted to run it.
  std::int32_t ExecuteScript(const char* scriptPath);

 protected:
  // If called inside a task of the worker, destruction is delayed until the worker has finished.
  void OnFinalRelease() override;

 private:
  // First member, so that it is destroyed last: the destructor runs entirely inside the library.
  const ServerLock lock_;

  // Steps of Init().
  //
  // Returns false if there is no such component; the host receives the reason as a log line.
  bool CreateComponent(COleDispatchDriver& driver, const char* progId, WindowHandle mainframe);
  void CreateOutput(WindowHandle mainframe);
  void CreateModel(WindowHandle mainframe);

  // Opens the default project, unless another one is open.
  void OpenDefaultProject();

  ServerPlatform platform_;
  Installation installation_;
  std::unique_ptr<CBuildOutput> output_;
  std::unique_ptr<CPropertyManagerDriver> propertyManager_;
  std::unique_ptr<CToolManagerDriver> toolManager_;
  std::unique_ptr<CProjectModel> model_;
  std::unique_ptr<Builder> builder_;
  std::unique_ptr<ProjectWizardMaker> wizard_;
  std::unique_ptr<ProjectCommands> commands_;
  std::unique_ptr<NodeSelection> selection_;
  std::unique_ptr<HostFileCalls> fileCalls_;
  std::unique_ptr<ManagerWindows> windows_;
  std::uint32_t activeObjectToken_ = 0;
};

}  // namespace tarn
