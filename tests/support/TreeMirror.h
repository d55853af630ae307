#pragma once

#include <memory>
#include <string>
#include <vector>

#include "support/RecordingToolkit.h"
#include "widgets/TreeCtrl.h"

namespace tarn::test {

// Formats a tree on one line: the children after their parent, in braces if expanded, in
// parentheses if collapsed; "*" before the selected item, ">" before the drop target.
inline std::string TreeText(const CTreeCtrl& tree, const CTreeItem* above = nullptr) {
  std::string text;
  for (int i = 0; i < tree.GetItemCount(above); ++i) {
    const CTreeItem& item = *tree.GetItemAt(above, i);
    if (i > 0) text += ' ';
    if (&item == tree.GetSelectedItem()) text += '*';
    if (&item == tree.GetDropHighlight()) text += '>';
    text += item.GetText();
    if (!item.HasChildren()) continue;
    const std::string below = TreeText(tree, &item);
    text += item.IsExpanded() ? "{" + below + "}" : "(" + below + ")";
  }
  return text;
}

// Toolkit for one tree at a time: maintains a copy of the tree only from the peer's notifications,
// as a model of a view does. Also records the notifications in `lines`.
class TreeMirror : public RecordingToolkit {
 public:
  using WindowToolkit::MakePeer;
  std::unique_ptr<TreePeer> MakePeer(CTreeCtrl& tree) override {
    return std::make_unique<Peer>(*this, tree);
  }

  // Formats the copy like TreeText().
  std::string Text() const { return ToString(top_); }
  bool dragWorks = true;

 private:
  struct Copy {
    std::string text;
    bool isExpanded = false;
    bool isSelected = false;
    std::vector<Copy> children;
  };

  class Peer : public TreePeer {
   public:
    Peer(TreeMirror& mirror, CTreeCtrl& shownTree) : own_(mirror), tree_(shownTree) { Reset(); }

    void OnResetting() override { own_.lines.push_back("resetting"); }
    void OnReset() override {
      own_.lines.push_back("reset");
      Reset();
    }
    void OnItemsInserted(const CTreeItem* above, int first, int count) override {
      Say("inserted", above, first, count);
      std::vector<Copy>& list = Find(above).children;
      for (int i = first; i < first + count; ++i) {
        list.insert(list.begin() + i, CopyOf(*tree_.GetItemAt(above, i)));
      }
    }
    void OnItemsRemoving(const CTreeItem* above, int first, int count) override {
      Say("removed", above, first, count);
      std::vector<Copy>& list = Find(above).children;
      list.erase(list.begin() + first, list.begin() + first + count);
      if (list.empty()) Find(above).isExpanded = false;
    }
    void OnItemChanged(const CTreeItem& item) override {
      own_.lines.push_back("changed " + item.GetText());
      Find(&item).text = item.GetText();
    }
    void OnItemExpanded(const CTreeItem& item) override {
      own_.lines.push_back((item.IsExpanded() ? "expanded " : "collapsed ") + item.GetText());
      Find(&item).isExpanded = item.IsExpanded();
    }
    void OnSelectionChanged() override {
      const CTreeItem* const item = tree_.GetSelectedItem();
      own_.lines.push_back("selected " + (item == nullptr ? "nothing" : item->GetText()));
      Select();
    }
    void OnScrolled() override {
      own_.lines.push_back("scrolled " + std::to_string(tree_.GetTopRow()));
    }
    void OnCapture(bool isCaptured) override {
      own_.lines.push_back(isCaptured ? "capture" : "no capture");
    }
    bool OnDragBegun(const CTreeItem& item, Point hotSpot, Point screen) override {
      own_.lines.push_back("picture " + item.GetText() + " " + PointText(hotSpot) + " at " +
                           PointText(screen));
      return own_.dragWorks;
    }
    void OnDragMoved(Point screen) override {
      own_.lines.push_back("picture to " + PointText(screen));
    }
    void OnDragEnded() override { own_.lines.push_back("no picture"); }

   private:
    static std::string PointText(Point point) {
      return std::to_string(point.x) + "," + std::to_string(point.y);
    }
    void Say(const char* what, const CTreeItem* above, int first, int count) {
      own_.lines.push_back(std::string(what) + " " + std::to_string(count) + " at " +
                           std::to_string(first) +
                           (above == nullptr ? "" : " below " + above->GetText()));
    }
    Copy CopyOf(const CTreeItem& item) const {
      Copy copy{item.GetText(), item.IsExpanded(), false, {}};
      for (int i = 0; i < item.GetChildCount(); ++i) {
        copy.children.push_back(CopyOf(*item.GetChild(i)));
      }
      return copy;
    }
    Copy& Find(const CTreeItem* item) {
      if (item == nullptr) return own_.top_;
      return Find(item->GetParent()).children.at(static_cast<std::size_t>(item->GetIndex()));
    }
    void Reset() {
      own_.top_.children.clear();
      for (int i = 0; i < tree_.GetItemCount(nullptr); ++i) {
        own_.top_.children.push_back(CopyOf(*tree_.GetItemAt(nullptr, i)));
      }
      Select();
    }
    void Select() {
      Unselect(own_.top_);
      if (tree_.GetSelectedItem() != nullptr) Find(tree_.GetSelectedItem()).isSelected = true;
    }
    static void Unselect(Copy& copy) {
      copy.isSelected = false;
      for (Copy& child : copy.children) Unselect(child);
    }

    TreeMirror& own_;
    CTreeCtrl& tree_;
  };

  static std::string ToString(const Copy& copy) {
    std::string text;
    for (const Copy& child : copy.children) {
      if (&child != &copy.children.front()) text += ' ';
      if (child.isSelected) text += '*';
      text += child.text;
      if (child.children.empty()) continue;
      text += child.isExpanded ? "{" + ToString(child) + "}" : "(" + ToString(child) + ")";
    }
    return text;
  }

  Copy top_;
};

}  // namespace tarn::test
