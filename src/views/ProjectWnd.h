#pragma once

#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "drivers/PropertyManagerDriver.h"
#include "platform/automation/Dispatch.h"
#include "platform/files/FileSystem.h"
#include "platform/settings/Settings.h"
#include "project/ProjectModel.h"
#include "project/ProjectViews.h"
#include "views/EditName.h"
#include "views/XmlMenu.h"
#include "views/XmlTreeCtrl.h"
#include "widgets/ToolBar.h"
#include "widgets/Wnd.h"

namespace tarn {

// The project window: a tool bar above the tree of the open project. It decides nothing about
// projects: events of the tree become operations of the model, look-ups of how a type of node
// behaves, or commands to the host.
//
// Everything on the host's thread. Almost each event ends in a message or an operation that may do
// anything, so nothing of the tree is held across one.
class CProjectWnd : public CWnd, public IProjectWindow {
 public:
  // All borrowed for the window's life; `host` is the main frame, 0 for none.
  CProjectWnd(FileSystem& fileSystem, Settings& userSettings, CProjectModel& projectModel,
              CPropertyManagerDriver& properties, WindowHandle host);
  ~CProjectWnd() override;

  // Reads the pictures of the node types and the popup menus. A file that cannot be read, and a
  // picture that is not there, show less.
  void LoadViewConfig(const std::string& fileName);

  // Who has this window and the model, and may be let go of by a handler of any message: every
  // event holds it to its end. Borrowed, null for none.
  void SetKeeper(IDispatch* object) { keeper = object; }
  // What the model and the drivers hold goes before this window does: from now on nothing of them,
  // nor of the keeper, is used any more.
  void ForgetModel();

  // IProjectWindow.
  bool SetProjectRoot(CXmlNode* root) override;
  void BeginTreeUpdate(UpdateScope scope) override;
  void EndTreeUpdate() override;
  void ClearTree() override;
  CXmlNode* GetSelectedNode() override;
  void SelectTreeNode(CXmlNode* node) override;
  void TellUpdated(const CXmlNode& node) override;
  void ForgetNode(const CXmlNode& node) override;
  void RepaintWindow() override { Invalidate(); }
  void RepaintTree() override { tree.Invalidate(); }
  void StartStepTimer() override;
  void StopStepTimer() override;

  CXmlTreeCtrl& GetTree() { return tree; }
  CToolBar& GetToolBar() { return toolBar; }
  // Null unless a name is being edited.
  CEditName* GetNameEditor() { return nameEditor.get(); }
  const CXmlNode& GetPopupMenus() const { return *popupMenus; }
  bool ShowsSizes() const { return viewSizes; }
  bool ShowsDependencies() const { return viewDeps; }

 protected:
  bool OnCreate() override;
  void OnDestroy() override;
  void OnSize(Size size) override;
  void OnTimer(int timerId) override;
  void OnDropFiles(const std::vector<std::string>& paths) override;
  bool OnContextMenu(Point screen) override;
  bool OnCommand(int command) override;
  std::intptr_t OnMessage(std::uint32_t message, std::intptr_t wParam,
                          std::intptr_t lParam) override;

 private:
  void ForgetUpdated(const CXmlNode& node);
  void AddButtons();
  std::unique_ptr<CMenu> MakeShowMenu() const;
  void LoadTypePictures(const CXmlNode& types);
  void ShowDependencyPicture();
  void Toggle(bool& flag, const char* profileName);

  std::string TypeProperty(const CXmlNode& node, const char* property);
  void SendTypeCommand(const char* property);
  void OnOpen();
  void OnRename(const std::string& name);
  void OnKey(int key);
  void OpenNameEditor(const CXmlNode& node);
  void CloseNameEditor();

  FileSystem& files;
  Settings& settings;
  CXmlTreeCtrl tree;
  CToolBar toolBar;
  CProjectModel* model;
  CPropertyManagerDriver* propertyManager;
  IDispatch* keeper = nullptr;
  std::unique_ptr<CXmlNode> popupMenus;
  std::unique_ptr<CEditName> nameEditor;
  CXmlMenu contextMenu;
  WindowHandle hostWindow;
  int updateDepth = 0;
  bool isWholeUpdate = false;                   // something in this update may be anywhere
  std::unordered_set<const CXmlNode*> updated;  // what has been told in it
  bool viewSizes;
  bool viewDeps;
  bool isStepping = false;
};

}  // namespace tarn
