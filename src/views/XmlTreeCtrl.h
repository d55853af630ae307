#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "views/XmlTreeMessages.h"
#include "widgets/TipWindow.h"
#include "widgets/TreeCtrl.h"

namespace tarn {

class CXmlNode;

// Image of the elements with a given name.
struct CXmlTreeImage {
  std::string name;
  int imageIndex = -1;
};

// Shows a tree of XML nodes and notifies its owner of user actions, see XmlTreeMessages.h. The
// meaning of nodes, double clicks and drops is up to the owner.
//
// Attributes of a node that are used: `Header` or else `Path` (label), `highlight`, `Info`,
// `Marker` (appearance), `Desc` (description). The attribute `sate` stores the expanded state of
// the item. Elements whose name has no image are left out together with their descendants.
//
// The nodes are owned by the owner; the items reflect the tree at the last fill. Code that changes
// the structure of the tree must call SaveViewState() before and Refill() after the change, and
// InvalidateNode() before a node is freed. The handler of any message may call any function, or
// destroy the control.
class CXmlTreeCtrl : public CTreeCtrl {
 public:
  CXmlTreeCtrl() = default;
  ~CXmlTreeCtrl() override;

  // Modes 1 and 2 add lines, buttons and a selection that is always visible to the style.
  virtual bool Create(int mode, std::uint32_t style, const Rect& rect, CWnd* parent, int id);

  // --- Images ---

  // Shows elements of that name, with that image, from the next fill on. No-op if the name already
  // has an image or `bitmap` is null. The first bitmap determines the size of all images.
  void AddImage(const std::string& name, std::shared_ptr<const Bitmap> bitmap);
  // Leaves out elements of that name from the next fill on.
  void RemoveImage(const std::string& name);
  // Adds the images that `Marker` refers to by index, one for every 16 pixels of width.
  void AddMarkerImages(std::shared_ptr<const Bitmap> bitmap);

  // --- Filling ---

  // Shows the given tree, or none if `newRoot` is null. Clears the current node, then selects the
  // node that SaveViewState() or SetSelectedNode() has recorded, and sends its message. If that
  // node isn't shown any more, or only a label is recorded, selects every item with that label, one
  // after the other, each with its message. Items, rows and the scroll position that also exist in
  // the new tree are preserved, so that the toolkit's cost is proportional to the changes.
  void SetXmlRoot(CXmlNode* newRoot);
  // Fills the control again after a change of the tree.
  void Refill();
  // Like Refill(), for a change that is limited to the strings and the children of the given nodes.
  // The result is the same; the cost is proportional to the changes.
  void RefillNodes(const std::vector<const CXmlNode*>& nodes);
  // Stores in each node whether it is expanded, and records the selected node and its label.
  void SaveViewState();
  // Called before the node and its descendants are freed. Clears all references to them.
  void InvalidateNode(const CXmlNode& node);

  // --- Selection ---

  // Selects the item of that node, if there is one, and posts the message. If the selected node has
  // been freed since the last fill, the next fill selects this node.
  void SelectNode(const CXmlNode* node);
  // Returns the node of the last selection or mouse action; nullptr if there is none.
  CXmlNode* GetCurrentNode() const { return currentNode_; }
  CXmlNode* GetXmlRoot() const { return rootNode_; }
  // Makes the next fills select by this label only.
  void SetSelectedLabel(const std::string& label) {
    selectedLabel_ = label;
    selectedNode_ = nullptr;
  }
  // Makes the next fills select this node of the tree as long as it is shown, regardless of its
  // label.
  void SetSelectedNode(const CXmlNode* node) { selectedNode_ = node; }
  // Returns nullptr if the next fill selects by label only.
  const CXmlNode* GetSelectedNode() const { return selectedNode_; }
  const std::string& GetSelectedLabel() const { return selectedLabel_; }
  // Returns the rectangle of the label in client coordinates, for an editor over it; an empty one
  // if it isn't visible.
  Rect GetNodeTextRect(const CXmlNode& node) const;

  // --- Switches ---

  // Shows or hides `Info` after the label.
  void SetShowInfo(bool on);
  bool IsShowInfo() const { return showInfo_; }
  // Makes the next click show the description of the item that it hits, and end help mode.
  void SetHelpMode(bool on) { helpMode_ = on; }
  bool IsHelpMode() const { return helpMode_; }
  bool IsDragging() const { return dragging_; }

  const CTipWindow& GetTipWindow() const { return tipWindow_; }
  const CImageList* GetMarkerImages() const { return markerImageList_.get(); }

 protected:
  void OnSelectionChanged() override;
  void OnClick(const TreeHit& hit, Point point) override;
  void OnLeftDoubleClick(Point point) override;
  void OnMiddleDoubleClick(Point point) override;
  void OnItemActivated(Point point) override;
  void OnRightClick(Point point) override;
  bool OnItemKey(const KeyEvent& event) override;
  void OnBeginDrag(CTreeItem& item, Point point) override;
  void OnMouseMove(Point point) override;
  void OnLeftButtonUp(Point point) override;
  bool OnDragCancelled() override;
  void OnKillFocus() override;
  void OnDestroy() override;
  void OnItemExpanded(const CTreeItem& item) override { unsaved_.insert(&item); }
  void OnItemGone(const CTreeItem& item) override;
  PaintCommands OnDrawItem(const CTreeItem& item, const TreeItemPaint& paint) const override;

 private:
  static CXmlNode* NodeOf(const CTreeItem& item) { return static_cast<CXmlNode*>(item.GetData()); }
  CTreeItem* FindItem(const CXmlNode* node) const;

  // --- Filling ---

  // State of a fill, see XmlTreeFilling.cpp.
  struct Filling;
  // Returns nullptr if elements of that name aren't shown.
  const CXmlTreeImage* ImageOf(const CXmlNode& node, Filling& filling) const;
  std::vector<CXmlNode*> ShownChildren(const CXmlNode& node, Filling& filling) const;
  std::unique_ptr<CTreeItem> BuildItem(CXmlNode& node, Filling& filling);
  void UpdateItem(CTreeItem& item, Filling& filling);
  void UpdateChildren(CTreeItem* item, const std::vector<CXmlNode*>& nodes, Filling& filling);
  std::vector<CTreeItem*> ReplaceChildren(CTreeItem* item, const std::vector<CXmlNode*>& nodes,
                                          int head, int tail, Filling& filling);
  // Records a change of the items; suspends redrawing after many changes.
  void CountChange(Filling& filling);
  void BeginFilling(Filling& filling);
  void EndFilling(Filling& filling);
  void RestoreSelection();
  void FindMatches();
  void SaveExpansion();
  // Returns true if the root of the shown tree was one of the nodes.
  bool InvalidateSubtree(const CXmlNode& node);

  void SendSelected(XmlTreeMessage message);
  void ReorderSelected(bool upwards);
  void EndDrag();

  CXmlNode* currentNode_ = nullptr;
  CXmlNode* rootNode_ = nullptr;
  std::unique_ptr<CImageList> imageList_;
  std::unique_ptr<CImageList> markerImageList_;
  std::vector<CXmlTreeImage> imageEntries_;
  std::string selectedLabel_;
  const CXmlNode* selectedNode_ = nullptr;  // node with that label; only compared
  bool showInfo_ = true;
  bool helpMode_ = false;
  bool isEmpty_ = true;
  bool dragging_ = false;
  CTreeItem* dragItem_ = nullptr;
  CTreeItem* dropTarget_ = nullptr;
  CTipWindow tipWindow_;

  std::unordered_map<const CXmlNode*, CTreeItem*> items_;
  // Items that were added, expanded or collapsed since the last SaveViewState().
  std::unordered_set<const CTreeItem*> unsaved_;
  // Nodes with that label, in order; valid until an item is added, removed or changed.
  std::vector<const CXmlNode*> labelMatches_;
  std::string matchedLabel_;
  bool areMatchesKnown_ = false;
  unsigned fillCount_ = 0;        // detects a nested fill by a message handler
  bool isSelectingNode_ = false;  // the message of this selection is posted, not sent
};

}  // namespace tarn
