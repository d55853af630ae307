#pragma once

#include <vector>

namespace tarn {

class CWnd;

// Links from a window to others: its parent, its children, and the owner that it notifies. Base
// class of CWnd, which creates and removes the links together with the window.
class WindowLinks {
 public:
  WindowLinks(const WindowLinks&) = delete;
  WindowLinks& operator=(const WindowLinks&) = delete;

  // Null if the window does not exist or has no parent.
  CWnd* GetParent() const { return parent_; }
  int GetId() const { return id_; }
  // Direct children in the order of their creation.
  const std::vector<CWnd*>& GetChildren() const { return children_; }
  // Returns null if not found.
  CWnd* FindChild(int childId) const;
  // Receiver of the window's notifications: the owner that was set, otherwise the parent; null if
  // there is neither. The owner is borrowed and must outlive the window.
  CWnd* GetOwner() const { return owner_ != nullptr ? owner_ : parent_; }
  void SetOwner(CWnd* newOwner) { owner_ = newOwner; }

  // The windows of the calling thread that have no parent.
  static const std::vector<CWnd*>& GetTopWindows();

 protected:
  WindowLinks() = default;
  ~WindowLinks() = default;

  // Appends `self`, the window with these links, to the children of `parent`, or to the windows
  // without a parent if that is null.
  void Attach(CWnd& self, CWnd* parent, int id);
  // Reverses Attach(), except for the id.
  void Detach(const CWnd& self);
  // Removes `child` from the list if it is the last one there.
  void DropLastChild(const CWnd* child);

 private:
  static std::vector<CWnd*>& ListBelow(CWnd* parent);

  CWnd* parent_ = nullptr;
  CWnd* owner_ = nullptr;
  int id_ = 0;
  std::vector<CWnd*> children_;
};

}  // namespace tarn
