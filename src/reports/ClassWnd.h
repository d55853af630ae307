#pragma once

#include <memory>
#include <string>

#include "platform/files/FileSystem.h"
#include "platform/settings/Settings.h"
#include "project/ProjectViews.h"
#include "views/XmlTreeCtrl.h"
#include "widgets/Menu.h"
#include "widgets/ToolBar.h"

namespace tarn {

// The tree of the class view.
class CXmlGlobalsCtrl : public CXmlTreeCtrl {
 public:
  ~CXmlGlobalsCtrl() override;
};

// The class view of the globals: a tree of symbols below a tool bar that sorts it. No tool gives
// such a tree yet, so it stays empty until somebody hands one over.
class CClassWnd : public CWnd, public IClassWindow {
 public:
  // All borrowed; `host` is 0 for none. Pictures come from "resources" below `configFolder`.
  CClassWnd(FileSystem& fileSystem, Settings& profile, WindowHandle host,
            const std::string& configFolder);
  ~CClassWnd() override;

  // Pictures for the kinds of elements that are known, and for those that can be sorted by.
  virtual void CreateImages();
  // Shows a tree of somebody else's, null for none; borrowed until the next one.
  virtual void SetTree(CXmlNode* node);
  // A globals file has nothing for this view. Always 1.
  virtual int Load(const std::string& path);
  void SetGlobalsFile(const std::string& path) override { Load(path); }
  void Clear() override;
  virtual CXmlNode* GetCurrentNode();
  virtual void SelectNode(const CXmlNode* node);
  virtual void Redraw();

  // What is shown, and a child `Row` for each attribute that it can be sorted by: `Header` is its
  // name, `Icon` that of a picture. Shows it in its own order.
  void SetContents(std::unique_ptr<CXmlNode> newTree, std::unique_ptr<CXmlNode> newChoices);
  // The choice that was sorted by last, also in an earlier session; -1 for none.
  int GetSortIndex() const { return sortIndex; }

  CXmlGlobalsCtrl& GetTree() { return tree; }
  CToolBar& GetToolBar() { return toolBar; }

  // Numbers of the choices of the drop-down button, and the button itself.
  static constexpr int kFirstSortCommand = 8192;
  static constexpr int kLastSortCommand = 8212;
  static constexpr int kSortButton = 32778;
  static constexpr int kInfoCommand = 32779;

 protected:
  bool OnCreate() override;
  void OnSize(Size size) override;
  bool OnCommand(int command) override;
  std::intptr_t OnMessage(std::uint32_t message, std::intptr_t wParam,
                          std::intptr_t lParam) override;

 private:
  static constexpr int kTreeId = 100;
  static constexpr int kToolBarId = 59392;

  std::shared_ptr<const Bitmap> LoadPicture(const std::string& name) const;
  void AddChoiceImages();
  std::unique_ptr<CMenu> MakeSortMenu() const;
  void SortBy(int choice);
  void OpenDeclaration();

  FileSystem& files;
  Settings& settings;
  const WindowHandle hostWindow;
  const std::string pictureFolder;
  std::unique_ptr<CXmlNode> root;  // what the tree shows of shownTree, once it is sorted
  std::unique_ptr<CXmlNode> shownTree;
  std::unique_ptr<CXmlNode> sortChoices;
  CXmlGlobalsCtrl tree;
  CToolBar toolBar;
  int sortIndex;
};

}  // namespace tarn
