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

// Project window: a tool bar above the tree of the open project. It has no project logic of its
// own: it maps events of the tree to operations of the model, queries of the behaviour of a node
// type, or commands to the host.
//
// Main thread only. Almost every event ends in a message or an operation that may change anything,
// so no pointer into the tree is kept across one.
class CProjectWnd : public CWnd, public IProjectWindow {
 public:
  // All references are borrowed and must outlive the window, unless DetachModel() is called; `host`
  // is the main frame, 0 for no host.
  CProjectWnd(FileSystem& fileSystem, Settings& userSettings, CProjectModel& projectModel,
              CPropertyManagerDriver& properties, WindowHandle host);
  ~CProjectWnd() override;

  // Loads the images of the node types and the popup menus. Files that can't be read and missing
  // images are skipped.
  void LoadViewConfig(const std::string& fileName);

  // Sets the owner of this window and the model. Handlers of messages may release the owner, so
  // every event holds a reference to it until it has been handled. Borrowed; nullptr for no owner.
  void SetKeeper(IDispatch* object) { keeper_ = object; }
  // Called before the model and the drivers are destroyed, if this window outlives them. From then
  // on the window uses neither them nor the keeper.
  void DetachModel();

  // IProjectWindow implementation.
  bool SetProjectRoot(CXmlNode* root) override;
  void BeginTreeUpdate(UpdateScope scope) override;
  void EndTreeUpdate() override;
  void ClearTree() override;
  CXmlNode* GetSelectedNode() override;
  void SelectTreeNode(CXmlNode* node) override;
  void NotifyNodeUpdated(const CXmlNode& node) override;
  void InvalidateNode(const CXmlNode& node) override;
  void RepaintWindow() override { Invalidate(); }
  void RepaintTree() override { tree_.Invalidate(); }
  void StartStepTimer() override;
  void StopStepTimer() override;
  bool IsStepping() const override { return isStepping_; }

  CXmlTreeCtrl& GetTree() { return tree_; }
  CToolBar& GetToolBar() { return toolBar_; }
  // Returns nullptr unless a name is being edited.
  CEditName* GetNameEditor() { return nameEditor_.get(); }
  const CXmlNode& GetPopupMenus() const { return *popupMenus_; }
  bool ShowsSizes() const { return viewSizes_; }
  bool ShowsDependencies() const { return viewDeps_; }

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
  void ClearUpdated(const CXmlNode& node);
  void AddButtons();
  std::unique_ptr<CMenu> MakeShowMenu() const;
  void LoadTypePictures(const CXmlNode& types);
  // Shows or hides the dependencies by adding or removing their image.
  void ShowDependencyPicture();
  // Inverts a view option, saves it in the user's settings and refills the tree.
  void Toggle(bool& flag, const char* profileName);

  std::string TypeProperty(const CXmlNode& node, const char* property);
  // Sends the host the command in this property of the selected node's type.
  void SendTypeCommand(const char* property);
  void OnOpen();
  void OnRename(const std::string& name);
  void OnKey(int key);
  void OpenNameEditor(const CXmlNode& node);
  void CloseNameEditor();

  FileSystem& files_;
  Settings& settings_;
  CXmlTreeCtrl tree_;
  CToolBar toolBar_;
  CProjectModel* model_;
  CPropertyManagerDriver* propertyManager_;
  IDispatch* keeper_ = nullptr;
  std::unique_ptr<CXmlNode> popupMenus_;
  std::unique_ptr<CEditName> nameEditor_;
  CXmlMenu contextMenu_;
  WindowHandle hostWindow_;
  int updateDepth_ = 0;
  bool isWholeUpdate_ = false;                   // refill everything, not just `updated`
  std::unordered_set<const CXmlNode*> updated_;  // nodes reported in the current update
  bool viewSizes_;
  bool viewDeps_;
  bool isStepping_ = false;
};

}  // namespace tarn
