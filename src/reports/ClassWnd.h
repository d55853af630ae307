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

// Tree control of the class view.
class CXmlGlobalsCtrl : public CXmlTreeCtrl {
 public:
  ~CXmlGlobalsCtrl() override;
};

// Class view of the globals: a tree of symbols below a tool bar with a sort menu. No tool produces
// such a tree yet, so it stays empty until SetContents() is called.
class CClassWnd : public CWnd, public IClassWindow {
 public:
  // All arguments are borrowed; `host` is 0 for no host. Images are loaded from "resources" below
  // `configFolder`.
  CClassWnd(FileSystem& fileSystem, Settings& profile, WindowHandle host,
            const std::string& configFolder);
  ~CClassWnd() override;

  // Loads the icons of the known kinds of elements and of the sort choices.
  virtual void CreateImages();
  // Shows a tree that the caller owns, or nothing if `node` is null. Borrowed until the next call.
  virtual void SetTree(CXmlNode* node);
  // No-op: a globals file has no data for this view. Always returns 1.
  virtual int Load(const std::string& path);
  void SetGlobalsFile(const std::string& path) override { Load(path); }
  // Removes the tree and the sort choices.
  void Clear() override;
  // Returns the node of the last selection or mouse action; nullptr if there is none.
  virtual CXmlNode* GetCurrentNode();
  virtual void SelectNode(const CXmlNode* node);
  virtual void Redraw();

  // Shows `newTree` in its own order. `newChoices` has a child `Row` for each attribute that the
  // tree can be sorted by: `Header` is the attribute's name, `Icon` the name of an image.
  void SetContents(std::unique_ptr<CXmlNode> newTree, std::unique_ptr<CXmlNode> newChoices);
  // Returns the last sort choice, which may be from an earlier session; -1 if there is none.
  int GetSortIndex() const { return sortIndex_; }

  CXmlGlobalsCtrl& GetTree() { return tree_; }
  CToolBar& GetToolBar() { return toolBar_; }

  // Command ids of the choices in the drop-down menu, and of the button itself.
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
  // Sorts a copy of the tree's top-level children by the attribute of a choice (stable,
  // case-insensitive) and saves the choice in the user's settings.
  void SortBy(int choice);
  // Notifies the host of the declaration of the current node, if it has one.
  void OpenDeclaration();

  FileSystem& files_;
  Settings& settings_;
  const WindowHandle hostWindow_;
  const std::string pictureFolder_;
  std::unique_ptr<CXmlNode> root_;  // sorted copy of shownTree that the tree shows
  std::unique_ptr<CXmlNode> shownTree_;
  std::unique_ptr<CXmlNode> sortChoices_;
  CXmlGlobalsCtrl tree_;
  CToolBar toolBar_;
  int sortIndex_;
};

}  // namespace tarn
