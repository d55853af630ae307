// Operations that traverse all descendants of a node. They keep an explicit stack of open levels
// instead of recursing, so that call depth doesn't depend on the depth of the tree.
#include <utility>
#include <vector>

#include "xml/XmlNode.h"
#include "xml/XmlNodeBuilder.h"

namespace tarn {
namespace {

// Returns the first descendant of `top`, in document order, that satisfies `fits`.
template <class Fits>
CXmlNode* FindBelow(const CXmlNode& top, Fits fits) {
  struct Level {
    const CXmlNode* node;
    int nextChild;
  };
  std::vector<Level> levels{{&top, 0}};
  while (!levels.empty()) {
    CXmlNode* child = levels.back().node->GetChild(levels.back().nextChild++);
    if (!child) {
      levels.pop_back();
      continue;
    }
    if (fits(*child)) return child;
    if (child->GetChildCount() > 0) levels.push_back({child, 0});
  }
  return nullptr;
}

}  // namespace

CXmlNode* CXmlNode::FindDescendant(XmlArg nodeName) const {
  if (nodeName.IsNull()) return nullptr;
  return FindBelow(*this, [&](const CXmlNode& node) { return node.NameView() == nodeName.View(); });
}

CXmlNode* CXmlNode::FindDescendantByAttr(XmlArg attrName, XmlArg attrValue) const {
  if (attrName.IsNull() || attrValue.IsNull()) return nullptr;
  return FindBelow(*this, [&](const CXmlNode& node) {
    const CXmlAttr* found = node.GetAttr(attrName);
    return found && found->ValueView() == attrValue.View();
  });
}

std::unique_ptr<CXmlNode> CXmlNode::MakeCopy(const CXmlNode& source) {
  struct Level {
    const CXmlNode* from;
    CXmlNode* to;
  };
  XmlArena arena;
  auto copy = XmlNodeBuilder::CopyAlone(arena, source, nullptr);
  std::vector<Level> levels{{&source, copy.get()}};
  while (!levels.empty()) {
    const auto [from, to] = levels.back();
    if (to->childCount_ == from->childCount_) {
      levels.pop_back();
      continue;
    }
    if (to->childCount_ == 0) to->ReserveChildren(from->childCount_);
    const CXmlNode* child = from->children_[to->childCount_];
    CXmlNode* childCopy = XmlNodeBuilder::CopyAlone(arena, *child, to).release();
    to->children_[to->childCount_++] = childCopy;
    if (child->childCount_ > 0) levels.push_back({child, childCopy});
  }
  return copy;
}

void CXmlNode::CopyFrom(const CXmlNode& source) {
  if (&source == this) return;
  // Copy before changing this node: `source` may be one of its descendants.
  const auto copy = MakeCopy(source);
  Clear();
  std::swap(name_, copy->name_);
  SetValue(copy->ValueView());
  type_ = copy->type_;
  CopyAttrs(*copy);
  std::swap(children_, copy->children_);
  std::swap(childCount_, copy->childCount_);
  std::swap(childCapacity_, copy->childCapacity_);
  for (std::uint32_t i = 0; i < childCount_; ++i) children_[i]->parent_ = this;
}

}  // namespace tarn
