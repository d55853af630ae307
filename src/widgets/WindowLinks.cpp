#include "widgets/WindowLinks.h"

#include "platform/threads/PerThread.h"
#include "widgets/Wnd.h"

namespace tarn {

namespace {

// Per thread: the windows without a parent.
struct TopWindows {
  std::vector<CWnd*> list;
};

}  // namespace

std::vector<CWnd*>& WindowLinks::ListBelow(CWnd* parent) {
  return parent != nullptr ? parent->children_ : PerThread<TopWindows>::Get().list;
}

const std::vector<CWnd*>& WindowLinks::GetTopWindows() {
  return ListBelow(nullptr);
}

CWnd* WindowLinks::FindChild(int childId) const {
  for (CWnd* const child : children_) {
    if (child->GetId() == childId) return child;
  }
  return nullptr;
}

void WindowLinks::Attach(CWnd& self, CWnd* parent, int id) {
  parent_ = parent;
  id_ = id;
  ListBelow(parent).push_back(&self);
}

void WindowLinks::Detach(const CWnd& self) {
  std::erase(ListBelow(parent_), &self);
  parent_ = nullptr;
}

void WindowLinks::DropLastChild(const CWnd* child) {
  if (!children_.empty() && children_.back() == child) children_.pop_back();
}

}  // namespace tarn
