#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "widgets/ImageList.h"
#include "widgets/PaintCommands.h"
#include "widgets/TreeInput.h"
#include "widgets/TreeRows.h"
#include "widgets/Wnd.h"

namespace tarn {

// Style bits of a tree.
inline constexpr std::uint32_t kTreeHasButtons = 0x1;
inline constexpr std::uint32_t kTreeHasLines = 0x2;
inline constexpr std::uint32_t kTreeLinesAtRoot = 0x4;
inline constexpr std::uint32_t kTreeShowsSelectionAlways = 0x20;

// Line height of a tree without a peer.
inline constexpr int kTreeLineHeight = 16;

// An item of a tree, with all of its descendants. Owned by its parent item, ultimately by the
// control; its address does not change until it is deleted.
class CTreeItem {
 public:
  // `data` is borrowed, belongs to the caller and is never accessed. -1 means no image.
  CTreeItem(std::string itemText, int itemImage, int itemSelectedImage, void* itemData)
      : text_(std::move(itemText)),
        image_(itemImage),
        selectedImage_(itemSelectedImage),
        data_(itemData) {}
  CTreeItem(const CTreeItem&) = delete;
  CTreeItem& operator=(const CTreeItem&) = delete;

  const std::string& GetText() const { return text_; }
  int GetImage() const { return image_; }
  int GetSelectedImage() const { return selectedImage_; }
  void* GetData() const { return data_; }
  void SetData(void* newData) { data_ = newData; }

  // The parent, a child or a sibling; null if there is none. A top-level item has no parent.
  CTreeItem* GetParent() const { return parent_ == nullptr || parent_->isTop_ ? nullptr : parent_; }
  CTreeItem* GetChild(int at) const;
  CTreeItem* GetFirstChildItem() const { return GetChild(0); }
  CTreeItem* GetNextSiblingItem() const;
  CTreeItem* GetPreviousSibling() const;
  int GetChildCount() const { return static_cast<int>(children_.size()); }
  bool HasChildren() const { return !children_.empty(); }
  // Zero-based index among the parent's children.
  int GetIndex() const { return index_; }
  // 0 for a top-level item.
  int GetLevel() const;
  bool IsExpanded() const { return isExpanded_; }
  bool IsBelow(const CTreeItem& other) const;

  // Item on the next or previous line in the current expansion state; null at the ends.
  CTreeItem* GetNextVisible() const;
  CTreeItem* GetPreviousVisible() const;
  // The next item in line order as if all items were expanded.
  CTreeItem* GetNext() const;

  // Line at the last numbering by TreeRows, which sets it.
  int GetNumberedRow() const { return row_; }
  void SetNumberedRow(int row) { row_ = row; }

  // --- Only for an item that is not part of a control yet ---

  // Returns the child.
  CTreeItem& AppendChild(std::unique_ptr<CTreeItem> child);
  void ReserveChildren(int count) { children_.reserve(static_cast<std::size_t>(count)); }
  // No-op for a leaf.
  void SetExpanded(bool expand) { isExpanded_ = expand && HasChildren(); }

 private:
  friend class CTreeCtrl;

  CTreeItem* NextAfterSubtree() const;
  // The sibling before the child at that position, or this item.
  const CTreeItem& BeforeChild(int at) const { return at > 0 ? *GetChild(at - 1) : *this; }
  void NumberChildren(int from);

  std::string text_;
  int image_;
  int selectedImage_;
  void* data_;
  CTreeItem* parent_ = nullptr;
  int index_ = 0;
  int row_ = 0;
  bool isExpanded_ = false;
  bool isTop_ = false;  // not an item, but the container of the top level
  std::vector<std::unique_ptr<CTreeItem>> children_;
};

// Owning list of sibling items, for bulk insertion and removal.
using CTreeItems = std::vector<std::unique_ptr<CTreeItem>>;

enum class TreePart { Nowhere, Indent, Button, StateIcon, Icon, Label, RightOfLabel };

struct TreeHit {
  CTreeItem* item = nullptr;  // null for Nowhere
  TreePart part = TreePart::Nowhere;
  // Returns whether the point is on an icon or the label of an item.
  bool IsOnItem() const {
    return part == TreePart::Icon || part == TreePart::StateIcon || part == TreePart::Label;
  }
  friend bool operator==(const TreeHit&, const TreeHit&) = default;
};

// Parameters for painting an item.
struct TreeItemPaint {
  Rect rect;  // rectangle of the whole line
  Color background = 0;
  Color foreground = 0;
};

// Draws a tree. A null parent means the top level.
class TreePeer : public WindowPeer {
 public:
  // Everything may change: items, expansion, selection, scroll position. Called before the first
  // change and after the last; the state is inconsistent in between.
  virtual void OnResetting() {}
  virtual void OnReset() {}
  // Called before and after a change of `count` items from index `first` on.
  virtual void OnItemsInserting(const CTreeItem* /*parent*/, int /*first*/, int /*count*/) {}
  virtual void OnItemsInserted(const CTreeItem* /*parent*/, int /*first*/, int /*count*/) {}
  virtual void OnItemsRemoving(const CTreeItem* /*parent*/, int /*first*/, int /*count*/) {}
  virtual void OnItemsRemoved(const CTreeItem* /*parent*/, int /*first*/, int /*count*/) {}
  virtual void OnItemChanged(const CTreeItem& /*item*/) {}   // text or images
  virtual void OnItemExpanded(const CTreeItem& /*item*/) {}  // or collapsed
  virtual void OnSelectionChanged() {}
  virtual void OnDropHighlightChanged() {}
  virtual void OnScrolled() {}

  // Shows an image of the item that follows the cursor, which is at a point of the screen. Returns
  // false if that is impossible; then there is no drag.
  virtual bool OnDragBegun(const CTreeItem& /*item*/, Point /*hotSpot*/, Point /*screen*/) {
    return true;
  }
  virtual void OnDragMoved(Point /*screen*/) {}
  virtual void OnDragEnded() {}

  // Metrics, for a peer that overrides the fixed defaults.
  virtual int GetLineHeight() { return kTreeLineHeight; }
  virtual std::optional<TreeHit> HitTest(Point /*point*/) { return std::nullopt; }
  virtual std::optional<Rect> GetTextRect(const CTreeItem& /*item*/) { return std::nullopt; }
};

// A tree control: its items, their expansion, the selection and the scroll position. A toolkit that
// forwards mouse, keys and focus covers all user actions; one with its own gestures calls the
// functions for them.
//
// Deleting items fires no event. Every other function below "Called by the toolkit", and every
// function that changes the selection or expands, may run an event handler that destroys the
// control.
class CTreeCtrl : public CWnd, protected TreeInputEvents {
 public:
  CTreeCtrl();
  ~CTreeCtrl() override;

  // --- Items. A null `above` means the top level ---

  // Appends an item as the last child and returns it.
  CTreeItem& InsertItem(CTreeItem* above, std::string label, int image, int selectedImage,
                        void* data);
  // Inserts the items with their descendants before the child `first`, or after the last child.
  void InsertItems(CTreeItem* above, int first, CTreeItems items);
  // Out-of-range positions are clamped. The selection is cleared, without an event, if it was below
  // a deleted item.
  void DeleteItems(CTreeItem* above, int first, int count);
  void DeleteAllItems();
  // Returns whether the item changed.
  bool SetItem(CTreeItem& item, std::string_view label, int image, int selectedImage);
  CTreeItem* GetRootItem() const { return top_.GetFirstChildItem(); }
  int GetItemCount(const CTreeItem* above) const;
  // Returns null if `at` is out of range.
  CTreeItem* GetItemAt(const CTreeItem* above, int at) const;

  // --- Selection and expansion ---

  CTreeItem* GetSelectedItem() const { return selected_; }
  // Selects an item and scrolls to it. Fires OnSelectionChanged() once before it returns, or not at
  // all if the item is already selected. Null clears the selection.
  void SelectItem(CTreeItem* item);
  // No-op for a leaf. Collapsing an ancestor of the selection moves the selection to it.
  void Expand(CTreeItem& item, bool expand);
  // Borrowed, or null.
  void SetDropHighlight(CTreeItem* item);
  CTreeItem* GetDropHighlight() const { return dropHighlight_; }

  // --- Lines ---

  const TreeRows& GetRows() const { return rows_; }
  // Number of whole lines that fit into the window, at least 1.
  int GetRowsPerPage() const;
  // Index of the line at the top of the window.
  int GetTopRow() const;
  void SetTopRow(int row);
  // Expands the ancestors and scrolls if necessary.
  void EnsureVisible(CTreeItem& item);

  TreeHit HitTest(Point point) const;
  // Rectangle in client coordinates; empty for an item below a collapsed one.
  Rect GetTextRect(const CTreeItem& item) const;
  int GetLineHeight() const;

  // Borrowed, or null for none. Must outlive the control or be removed before.
  void SetImageList(const CImageList* list);
  const CImageList* GetImageList() const { return images_; }

  // While off, the peer is not notified of items, selection and lines. Turning it on again sends a
  // single reset if anything has changed.
  void SetRedraw(bool redraw);

  // Paint commands to execute on a line of the window, in order, after its lines, button and image
  // have been drawn. Empty: the toolkit draws the label.
  PaintCommands DrawItem(const CTreeItem& item) const;

  // --- Called by the toolkit; NotifyMouse() and NotifyKey() call these as well ---

  // Takes the focus, and selects the item at the point, or toggles its expansion if the point is on
  // its button.
  void NotifyClick(Point point) { input_.Click(point); }
  void NotifyDoubleClick(MouseButton button, Point point) { input_.DoubleClick(button, point); }
  // The toolkit's gesture for activating an item.
  void NotifyItemActivated(Point point) {
    if (IsCreated()) OnItemActivated(point);
  }
  // A request for a context menu follows.
  void NotifyRightClick(Point point) { input_.RightClick(point); }
  // The user starts to drag at a point; an event only if that is on an item.
  void NotifyBeginDrag(Point point) { input_.BeginDrag(point); }
  // The user scrolled; the peer is not notified in return.
  void NotifyScrolled(int newTopRow);
  // The user cancelled a drag, for example with Escape, or the button was released outside the
  // tree. Returns false if there is no drag.
  bool NotifyDragCancelled() { return IsCreated() && OnDragCancelled(); }

 protected:
  // --- Events, in addition to those of TreeInputEvents; the default implementations do nothing ---

  virtual void OnSelectionChanged() {}
  virtual void OnItemExpanded(const CTreeItem& /*item*/) {}  // or collapsed
  // The item is about to be freed, with its descendants; it is already removed from all lists. Must
  // not change the control.
  virtual void OnItemGone(const CTreeItem& /*item*/) {}
  virtual PaintCommands OnDrawItem(const CTreeItem& /*item*/,
                                   const TreeItemPaint& /*paint*/) const {
    return {};
  }
  // Calls OnItemActivated() and expands or collapses.
  void OnLeftDoubleClick(Point point) override;

  // Clear, set and report the selection without firing events, for a class that refills the tree;
  // the peer is notified once of the result.
  void DropSelection() { selected_ = nullptr; }
  void ChooseItem(CTreeItem* item);
  void NotifySelection();
  // Removes items without freeing them; clears the selection and the highlight if they are among
  // them.
  CTreeItems TakeItems(CTreeItem* above, int first, int count);
  // Frees removed items.
  void DiscardItems(CTreeItems&& items);

  // Show, move and remove the image that follows the cursor during a drag.
  bool BeginDragImage(const CTreeItem& item, Point hotSpot, Point point);
  void MoveDragImage(Point point);
  void EndDragImage();

  void OnMouse(const MouseEvent& event) override { input_.OnMouse(event); }
  bool OnKeyDown(const KeyEvent& event) override { return input_.OnKey(event); }
  void OnKillFocus() override { input_.CancelPress(); }
  void OnDestroy() override;
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) override;

 private:
  TreePeer* Peer() const { return static_cast<TreePeer*>(GetPeer()); }
  // Returns the peer if it is to be notified; otherwise records that a reset is due.
  TreePeer* Listener();
  CTreeItem& ParentOf(CTreeItem* above) { return above == nullptr ? top_ : *above; }
  void LetGo(const CTreeItem& above, int first, int count);
  void NotifyItemDeleted(const CTreeItem& item);

  CTreeItem top_{{}, -1, -1, nullptr};
  CTreeItem* selected_ = nullptr;
  CTreeItem* shownSelection_ = nullptr;  // selection that the peer was last notified of
  CTreeItem* dropHighlight_ = nullptr;
  const CImageList* images_ = nullptr;
  int topRow_ = 0;
  bool isRedrawOff_ = false;
  bool isResetDue_ = false;
  TreeRows rows_{top_};
  TreeInput input_{*this, *this};
};

}  // namespace tarn
