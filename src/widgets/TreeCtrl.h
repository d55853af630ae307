#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "widgets/DrawingSteps.h"
#include "widgets/ImageList.h"
#include "widgets/Wnd.h"

namespace tarn {

// Bits of a tree's style.
inline constexpr std::uint32_t kTreeHasButtons = 0x1;
inline constexpr std::uint32_t kTreeHasLines = 0x2;
inline constexpr std::uint32_t kTreeLinesAtRoot = 0x4;
inline constexpr std::uint32_t kTreeShowsSelectionAlways = 0x20;

// Of a tree that nobody draws.
inline constexpr int kTreeLineHeight = 16;

// One line of a tree with all below it. Owned by the item above it, in the end by the control; an
// address stays the same until the item is deleted.
class CTreeItem {
 public:
  // `data` is the maker's, borrowed and never looked into. -1 is no image.
  CTreeItem(std::string itemText, int itemImage, int itemSelectedImage, void* itemData)
      : text(std::move(itemText)),
        image(itemImage),
        selectedImage(itemSelectedImage),
        data(itemData) {}
  CTreeItem(const CTreeItem&) = delete;
  CTreeItem& operator=(const CTreeItem&) = delete;

  const std::string& GetText() const { return text; }
  int GetImage() const { return image; }
  int GetSelectedImage() const { return selectedImage; }
  void* GetData() const { return data; }
  void SetData(void* newData) { data = newData; }

  // Null for none; an item of the top level has no parent.
  CTreeItem* GetParent() const { return parent == nullptr || parent->isTop ? nullptr : parent; }
  CTreeItem* GetChild(int at) const;
  CTreeItem* GetFirstChild() const { return GetChild(0); }
  CTreeItem* GetNextSibling() const;
  CTreeItem* GetPreviousSibling() const;
  int GetChildCount() const { return static_cast<int>(children.size()); }
  bool HasChildren() const { return !children.empty(); }
  // Which child of its parent it is, from 0.
  int GetIndex() const { return index; }
  // 0 on the top level.
  int GetLevel() const;
  bool IsExpanded() const { return isExpanded; }
  bool IsBelow(const CTreeItem& other) const;

  // The item on the line below and above, as the tree is expanded now. Null at the ends.
  CTreeItem* GetNextVisible() const;
  CTreeItem* GetPreviousVisible() const;
  // The next one in the order of the lines if all were expanded.
  CTreeItem* GetNext() const;

  // --- For an item that is in no control yet ---

  CTreeItem& AppendChild(std::unique_ptr<CTreeItem> child);
  void ReserveChildren(int count) { children.reserve(static_cast<std::size_t>(count)); }
  // Nothing for an item without children.
  void SetExpanded(bool expand) { isExpanded = expand && HasChildren(); }

 private:
  friend class CTreeCtrl;

  CTreeItem* NextBehindSubtree() const;
  void NumberChildren(int from);

  std::string text;
  int image;
  int selectedImage;
  void* data;
  CTreeItem* parent = nullptr;
  int index = 0;
  mutable int row = 0;  // where it stood when the control numbered its lines
  bool isExpanded = false;
  bool isTop = false;  // no item, but what holds the top level together
  std::vector<std::unique_ptr<CTreeItem>> children;
};

using CTreeItems = std::vector<std::unique_ptr<CTreeItem>>;

enum class TreePart { Nowhere, Indent, Button, StateIcon, Icon, Label, RightOfLabel };

struct TreeHit {
  CTreeItem* item = nullptr;  // null for Nowhere
  TreePart part = TreePart::Nowhere;
  friend bool operator==(const TreeHit&, const TreeHit&) = default;
};

// What of an item is to be painted.
struct TreeItemPaint {
  Rect rect;  // of the whole line
  Color background = 0;
  Color foreground = 0;
};

// What draws a tree. A parent that is null is the top level.
class TreePeer : public WindowPeer {
 public:
  // All may be different: items, expansion, selection, scroll position. Called before the first
  // change and behind the last; in between there is nothing to rely on.
  virtual void OnResetting() {}
  virtual void OnReset() {}
  // `count` items from place `first` on; called before and behind the change.
  virtual void OnItemsInserting(const CTreeItem* /*parent*/, int /*first*/, int /*count*/) {}
  virtual void OnItemsInserted(const CTreeItem* /*parent*/, int /*first*/, int /*count*/) {}
  virtual void OnItemsRemoving(const CTreeItem* /*parent*/, int /*first*/, int /*count*/) {}
  virtual void OnItemsRemoved(const CTreeItem* /*parent*/, int /*first*/, int /*count*/) {}
  virtual void OnItemChanged(const CTreeItem& /*item*/) {}   // text or images
  virtual void OnItemExpanded(const CTreeItem& /*item*/) {}  // or collapsed
  virtual void OnSelectionChanged() {}
  virtual void OnDropHighlightChanged() {}
  virtual void OnScrolled() {}

  // A picture of the item follows the cursor, which is at a point of the screen. False when it
  // can't: then there is no drag.
  virtual bool OnDragBegun(const CTreeItem& /*item*/, Point /*hotSpot*/, Point /*screen*/) {
    return true;
  }
  virtual void OnDragMoved(Point /*screen*/) {}
  virtual void OnDragEnded() {}

  // Measures, for a peer that knows better than the fixed numbers.
  virtual int GetLineHeight() { return kTreeLineHeight; }
  virtual std::optional<TreeHit> HitTest(Point /*point*/) { return std::nullopt; }
  virtual std::optional<Rect> GetTextRect(const CTreeItem& /*item*/) { return std::nullopt; }
};

// A tree of items: which there are, which are expanded, which one is selected, how far it is
// scrolled. A toolkit that passes on mouse, keys and focus has everything that a user does; one
// with gestures of its own calls the functions for these.
//
// Deleting items fires no event. Every other function below "From the toolkit", and those that
// change the selection, may run an event in which the control is destroyed.
class CTreeCtrl : public CWnd {
 public:
  CTreeCtrl();
  ~CTreeCtrl() override;

  // --- Items. An `above` that is null is the top level ---

  // As the last child. Gives the item.
  CTreeItem& InsertItem(CTreeItem* above, std::string label, int image, int selectedImage,
                        void* data);
  // Puts the items, each with all below it, in front of the child `first`, or behind the last.
  void InsertItems(CTreeItem* above, int first, CTreeItems items);
  void DeleteItems(CTreeItem* above, int first, int count);
  void DeleteAllItems();
  // Whether it was different.
  bool SetItem(CTreeItem& item, std::string_view label, int image, int selectedImage);
  CTreeItem* GetRootItem() const { return top.GetFirstChild(); }
  int GetItemCount(const CTreeItem* above) const;
  // Null when there is no such one.
  CTreeItem* GetItemAt(const CTreeItem* above, int at) const;

  // --- Selection and expansion ---

  CTreeItem* GetSelectedItem() const { return selected; }
  // Makes it visible; fires OnSelectionChanged once, before it returns, and not at all when it is
  // selected already. Null selects nothing.
  void SelectItem(CTreeItem* item);
  // Nothing for an item without children. What collapses over the selected item is selected.
  void Expand(CTreeItem& item, bool expand);
  // Borrowed, or null.
  void SetDropHighlight(CTreeItem* item);
  CTreeItem* GetDropHighlight() const { return dropHighlight; }

  // --- Lines ---

  // How many lines there are, as the tree is expanded now.
  int GetRowCount() const;
  CTreeItem* GetRow(int row) const;
  // -1 for an item below a collapsed one.
  int GetRowOf(const CTreeItem& item) const;
  // The line at the top of the window.
  int GetTopRow() const;
  void SetTopRow(int row);
  // Expands what is above it and scrolls, as far as there is need.
  void EnsureVisible(CTreeItem& item);

  TreeHit HitTest(Point point) const;
  // In client coordinates; empty for an item below a collapsed one.
  Rect GetTextRect(const CTreeItem& item) const;
  int GetLineHeight() const;

  // Borrowed, or null for none. Outlives the control, or is taken away before.
  void SetImageList(const CImageList* list);
  const CImageList* GetImageList() const { return images; }

  // Off: the peer hears nothing of items, selection and lines. On again: one reset, if there was
  // anything.
  void SetRedraw(bool redraw);

  // What is to be painted over a line of the window, in order, when its lines, button and image
  // stand; nothing: the label is the toolkit's.
  DrawingSteps DrawItem(const CTreeItem& item) const;

  // --- From the toolkit, besides NotifyMouse and NotifyKey, which come to these by themselves ---

  void NotifyClick(Point point);
  void NotifyDoubleClick(MouseButton button, Point point);
  // The toolkit's own gesture for what is to be done with an item.
  void NotifyItemActivated(Point point);
  // The request for a context menu follows it.
  void NotifyRightClick(Point point);
  void NotifyBeginDrag(Point point);
  void NotifyScrolled(int newTopRow);
  // The user gives a drag up, as with Escape, or the button went up where the tree does not see it.
  // False when there is none.
  bool NotifyDragCancelled() { return IsCreated() && OnDragCancelled(); }

 protected:
  // --- Events; what they do here is what a tree does by itself ---

  virtual void OnSelectionChanged() {}
  // Before a hit on a button expands, or one on an icon or label selects.
  virtual void OnClick(const TreeHit& /*hit*/, Point /*point*/) {}
  // Tells OnItemActivated, and expands or collapses.
  virtual void OnLeftDoubleClick(Point point);
  virtual void OnMiddleDoubleClick(Point /*point*/) {}
  virtual void OnItemActivated(Point /*point*/) {}
  virtual void OnRightClick(Point /*point*/) {}
  // True when the key must not move the selection.
  virtual bool OnItemKey(const KeyEvent& /*event*/) { return false; }
  virtual void OnBeginDrag(CTreeItem& /*item*/, Point /*point*/) {}
  virtual void OnMouseMove(Point /*point*/) {}
  virtual void OnLeftButtonUp(Point /*point*/) {}
  // False when there is no drag.
  virtual bool OnDragCancelled() { return false; }
  virtual void OnItemExpanded(const CTreeItem& /*item*/) {}  // or collapsed
  // The item is about to be freed, with all below it; it is in no list any more. Must not change
  // the control.
  virtual void OnItemGone(const CTreeItem& /*item*/) {}
  virtual DrawingSteps OnDrawItem(const CTreeItem& /*item*/, const TreeItemPaint& /*paint*/) const {
    return {};
  }

  // For a class that fills the tree anew: the selection is dropped and chosen without events of
  // the line, and the peer hears of the outcome.
  void DropSelection() { selected = nullptr; }
  void ChooseItem(CTreeItem* item);
  void TellSelection();
  // Out of the tree but not freed; nothing is selected or highlighted in them any more.
  CTreeItems TakeItems(CTreeItem* above, int first, int count);
  // Frees what has been taken.
  void DiscardItems(CTreeItems&& items);

  bool BeginDragImage(const CTreeItem& item, Point hotSpot, Point point);
  void MoveDragImage(Point point);
  void EndDragImage();

  void OnMouse(const MouseEvent& event) override;
  bool OnKeyDown(const KeyEvent& event) override;
  void OnKillFocus() override;
  void OnDestroy() override;
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) override;

 private:
  TreePeer* Peer() const { return static_cast<TreePeer*>(GetPeer()); }
  // The peer, when it may hear; otherwise it will be told all at once.
  TreePeer* Listener();
  CTreeItem& ParentOf(CTreeItem* above) { return above == nullptr ? top : *above; }
  void LetGo(const CTreeItem& above, int first, int count);
  void TellGone(const CTreeItem& item);
  void FillRows() const;
  int RowsPerPage() const;
  // Where the image of an item begins.
  int ImageLeft(const CTreeItem& item) const;
  int ImageWidth() const;
  bool IsShownSelected(const CTreeItem& item) const;
  // False when the control is gone.
  bool TakeFocus();
  void OnLeftPress(Point point);
  void OnLeftRelease(Point point);
  void OnMove(Point point);

  CTreeItem top{{}, -1, -1, nullptr};
  CTreeItem* selected = nullptr;
  CTreeItem* shownSelection = nullptr;  // what the peer has been told
  CTreeItem* dropHighlight = nullptr;
  const CImageList* images = nullptr;
  int topRow = 0;
  bool isRedrawOff = false;
  bool isResetDue = false;
  std::optional<Point> pressed;  // where the left button went down and may become a drag
  mutable std::vector<CTreeItem*> rows;
  mutable bool areRowsValid = false;
};

}  // namespace tarn
