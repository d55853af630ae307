#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "views/XmlTreeMessages.h"
#include "widgets/TipWindow.h"
#include "widgets/TreeCtrl.h"
#include "xml/XmlNode.h"

namespace tarn {

// Which element name has which image.
struct CXmlTreeImage {
  std::string name;
  int imageIndex = -1;
};

// Shows a tree of XML nodes and tells its owner what the user does to it, see XmlTreeMessages.h.
// What a node means, what a double click does and where a drop may go is the owner's matter.
//
// Of a node it reads `Header` or else `Path` (the label), `highlight`, `Info`, `Marker` (how it is
// drawn), `Desc` (its description), and keeps in `sate` whether its item is expanded. An element
// whose name has no image is left out together with all below it.
//
// The nodes are the owner's; the items show the tree as it was at the last filling. Whoever changes
// the shape of the tree calls SaveViewState before and Refill behind it, and ForgetNode before a
// node is freed. Every message may come back as any call, the control's destruction included.
class CXmlTreeCtrl : public CTreeCtrl {
 public:
  CXmlTreeCtrl() = default;
  ~CXmlTreeCtrl() override;

  // Modes 1 and 2 come with lines, buttons and a selection that always shows.
  virtual bool Create(int mode, std::uint32_t style, const Rect& rect, CWnd* parent, int id);

  // --- Pictures ---

  // Elements of that name are shown from the next filling on, with that picture. Nothing when the
  // name has one, or for null. The first bitmap gives the size of all.
  void AddImage(const std::string& name, std::shared_ptr<const Bitmap> bitmap);
  // Elements of that name are left out from the next filling on.
  void RemoveImage(const std::string& name);
  // Adds the pictures that `Marker` counts, one for every 16 pixels of width.
  void AddMarkerImages(std::shared_ptr<const Bitmap> bitmap);

  // --- Filling ---

  // Shows that tree, or none for null. Clears the current node, then selects the node that
  // SaveViewState or SetSelectedNode has recorded, with its message. If that node is not shown any
  // more, or only a label is known, selects every item with the selected label, one after the
  // other, each with its message. Items, lines and scroll position that the new tree has as well
  // stay, so that a filling costs a toolkit what has changed.
  void SetXmlRoot(CXmlNode* newRoot);
  // The same tree again, after a change of it.
  void Refill();
  // ... after a change of nothing but the texts and the children of these nodes. The outcome is
  // that of Refill, for the price of what has changed.
  void RefillNodes(const std::vector<const CXmlNode*>& nodes);
  // Writes into each node whether it is expanded, and records the selected node and its label.
  void SaveViewState();
  // The node and all below it are about to be freed: nothing here points at them any more.
  void ForgetNode(const CXmlNode& node);

  // --- Selection ---

  // Selects the item of that node, if there is one. The message is posted. If the selected node has
  // been freed since the last filling, the next one selects this node.
  void SelectNode(const CXmlNode* node);
  // The node of the last selection or mouse action; null for none.
  CXmlNode* GetCurrentNode() const { return currentNode; }
  CXmlNode* GetXmlRoot() const { return rootNode; }
  // The next fillings select by this label alone.
  void SetSelectedLabel(const std::string& label) {
    selectedLabel = label;
    selectedNode = nullptr;
  }
  // The next fillings select this node of the tree as long as it is shown, whatever its label is.
  void SetSelectedNode(const CXmlNode* node) { selectedNode = node; }
  // Returns nullptr if the next filling selects by the label alone.
  const CXmlNode* GetSelectedNode() const { return selectedNode; }
  const std::string& GetSelectedLabel() const { return selectedLabel; }
  // The label's place in client coordinates, for an editor over it; empty when it isn't visible.
  Rect GetNodeTextRect(const CXmlNode& node) const;

  // --- Switches ---

  // Whether `Info` is drawn behind the label.
  void SetShowInfo(bool on);
  bool IsShowInfo() const { return showInfo; }
  // The next click shows the description of what it hits, and turns this off.
  void SetHelpMode(bool on) { helpMode = on; }
  bool IsHelpMode() const { return helpMode; }
  bool IsDragging() const { return dragging; }

  const CTipWindow& GetTipWindow() const { return tipWindow; }
  const CImageList* GetMarkerImages() const { return markerImageList.get(); }

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
  void OnItemExpanded(const CTreeItem& /*item*/) override { isStateSaved = false; }
  void OnItemGone(const CTreeItem& item) override;
  DrawingSteps OnDrawItem(const CTreeItem& item, const TreeItemPaint& paint) const override;

 private:
  static CXmlNode* NodeOf(const CTreeItem& item) { return static_cast<CXmlNode*>(item.GetData()); }
  CTreeItem* FindItem(const CXmlNode* node) const;

  // --- Filling ---

  struct Filling;
  // Null when elements of its name are not shown.
  const CXmlTreeImage* ImageOf(const CXmlNode& node, Filling& filling) const;
  std::vector<CXmlNode*> ShownChildren(const CXmlNode& node, Filling& filling) const;
  std::unique_ptr<CTreeItem> BuildItem(CXmlNode& node, Filling& filling);
  void UpdateItem(CTreeItem& item, Filling& filling);
  void UpdateChildren(CTreeItem* item, const std::vector<CXmlNode*>& nodes, Filling& filling);
  std::vector<CTreeItem*> ReplaceChildren(CTreeItem* item, const std::vector<CXmlNode*>& nodes,
                                          int head, int tail, Filling& filling);
  void CountChange(Filling& filling);
  void BeginFilling(Filling& filling);
  void EndFilling(Filling& filling);
  void RestoreSelection();
  void FindMatches();
  void SaveExpansion();
  // True when the root of what is shown was among them.
  bool ForgetSubtree(const CXmlNode& node);

  void SendSelected(XmlTreeMessage message);
  void ReorderSelected(bool upwards);
  void EndDrag();

  CXmlNode* currentNode = nullptr;
  CXmlNode* rootNode = nullptr;
  std::unique_ptr<CImageList> imageList;
  std::unique_ptr<CImageList> markerImageList;
  std::vector<CXmlTreeImage> imageEntries;
  std::string selectedLabel;
  const CXmlNode* selectedNode = nullptr;  // the node with that label; compared only
  bool showInfo = true;
  bool helpMode = false;
  bool isEmpty = true;
  bool dragging = false;
  CTreeItem* dragItem = nullptr;
  CTreeItem* dropTarget = nullptr;
  CTipWindow tipWindow;

  std::unordered_map<const CXmlNode*, CTreeItem*> items;
  // Nothing was expanded or filled differently since SaveViewState wrote down what is.
  bool isStateSaved = false;
  // The nodes with that label, in order, as long as no item comes, goes or changes.
  std::vector<const CXmlNode*> labelMatches;
  std::string matchedLabel;
  bool areMatchesKnown = false;
  unsigned fillCount = 0;        // tells a filling that another one ran inside its messages
  bool isSelectingNode = false;  // the message of this selection is posted, not sent
};

}  // namespace tarn
