#include "xml/XmlNode.h"

#include <algorithm>
#include <atomic>
#include <new>

#include "xml/XmlArena.h"
#include "xml/XmlString.h"

namespace tarn {

static_assert(sizeof(void*) != 8 || (sizeof(CXmlNode) == 56 && sizeof(CXmlAttr) == 24),
              "large projects hold some hundred thousand of these");

namespace {

// Attributes that are added to an existing node are allocated in common pages: a node usually gets
// several in a row, and a lookup traverses them in order. The pages are small because one remaining
// attribute keeps a whole page allocated.
constexpr std::size_t kLatePage = 4096;

// Header stored before such an attribute.
struct alignas(CXmlAttr) LateHead {
  std::uint16_t pageOffset;
};

// Allocates a block for such an attribute. All threads use the same pages; one that finds them
// taken by another thread allocates a separate block instead of waiting.
XmlArena::Block AllocateLate(std::size_t bytes) {
  static constinit std::atomic_flag inUse;
  // Never destroyed: objects with static storage duration may change trees until the process ends.
  static XmlArena& common = *new XmlArena(kLatePage);
  if (inUse.test_and_set(std::memory_order_acquire)) return XmlArena(0).Allocate(bytes);
  struct Release {
    ~Release() { inUse.clear(std::memory_order_release); }
  } const release;
  return common.Allocate(bytes);
}

}  // namespace

// --- Attributes ---

CXmlAttr::~CXmlAttr() {
  ReleaseName(name_);
  FreeString(value_);
}

CXmlNode* CXmlAttr::GetParent() const {
  const CXmlAttr* last = this;
  while (!last->IsLast()) last = last->GetNext();
  return reinterpret_cast<CXmlNode*>(last->link_ & ~std::uintptr_t{1});
}

std::string_view CXmlAttr::ValueView() const {
  return StringView(value_);
}

void CXmlAttr::SetValue(XmlArg text) {
  AssignString(value_, text.View());
}

CXmlAttr* CXmlNode::GetAttr(XmlArg attrName) const {
  if (attrName.IsNull()) return nullptr;
  for (CXmlAttr& attr : Attributes()) {
    if (attr.NameView() == attrName.View()) return &attr;
  }
  return nullptr;
}

const char* CXmlNode::GetAttrValue(XmlArg attrName) const {
  const CXmlAttr* attr = GetAttr(attrName);
  return attr ? attr->ValueText() : nullptr;
}

int CXmlNode::GetAttrCount() const {
  int count = 0;
  for (const CXmlAttr* attr = firstAttr_; attr; attr = attr->GetNext()) ++count;
  return count;
}

CXmlAttr* CXmlNode::GetAttrAt(int index) const {
  if (index < 0) return nullptr;
  CXmlAttr* attr = firstAttr_;
  for (; attr && index > 0; --index) attr = attr->GetNext();
  return attr;
}

CXmlAttr* CXmlNode::SetAttrValue(XmlArg attrName, XmlArg attrValue) {
  CXmlAttr* last = nullptr;
  for (CXmlAttr& attr : Attributes()) {
    last = &attr;
    if (attr.NameView() != attrName.View()) continue;
    attr.SetValue(attrValue);
    return &attr;
  }
  return AddAttrAfter(last, attrName, attrValue);
}

CXmlAttr* CXmlNode::GetLastAttr() const {
  CXmlAttr* last = firstAttr_;
  while (last && !last->IsLast()) last = last->GetNext();
  return last;
}

CXmlAttr* CXmlNode::AddAttr(XmlArg attrName, XmlArg attrValue) {
  return AddAttrAfter(GetLastAttr(), attrName, attrValue);
}

void CXmlNode::CopyAttrs(const CXmlNode& source) {
  CXmlAttr* last = GetLastAttr();
  for (const CXmlAttr& attr : source.Attributes()) {
    last = AddAttrAfter(last, attr.NameView(), attr.ValueView());
  }
}

CXmlAttr* CXmlNode::AddAttrAfter(CXmlAttr* last, XmlArg attrName, XmlArg attrValue) {
  // The value is stored directly after the record, in the same allocation.
  const std::string_view text = attrValue.View().substr(0, attrValue.View().find('\0'));
  const XmlArena::Block page = AllocateLate(sizeof(LateHead) + sizeof(CXmlAttr) + text.size() + 2);
  void* memory = new (page.memory) LateHead{page.offset} + 1;
  char* place = static_cast<char*>(memory) + sizeof(CXmlAttr) + 1;
  std::copy(text.begin(), text.end(), place);
  EndStringInside(place, text.size());

  auto* attr = new (memory) CXmlAttr(AcquireName(attrName.View()), place);
  attr->LinkTo(this);
  if (last) {
    last->LinkTo(attr);
  } else {
    firstAttr_ = attr;
  }
  return attr;
}

bool CXmlNode::RemoveAttr(const CXmlAttr* attr) {
  CXmlAttr* previous = nullptr;
  for (CXmlAttr* at = firstAttr_; at; previous = at, at = at->GetNext()) {
    if (at != attr) continue;
    if (previous) {
      previous->link_ = at->link_;
    } else {
      firstAttr_ = at->GetNext();
    }
    DestroyAttr(at);
    return true;
  }
  return false;
}

void CXmlNode::DestroyAttr(CXmlAttr* attr) {
  attr->~CXmlAttr();
  const auto first = reinterpret_cast<std::uintptr_t>(this + 1);
  const auto address = reinterpret_cast<std::uintptr_t>(attr);
  const bool isOwn = address >= first && address < first + ownRecords_ * sizeof(CXmlAttr);
  if (isOwn) return;
  LateHead* head = reinterpret_cast<LateHead*>(attr) - 1;
  XmlArena::Release(head, head->pageOffset, sizeof(LateHead) + sizeof(CXmlAttr));
}

void CXmlNode::DestroyAttrs() {
  for (CXmlAttr* attr = firstAttr_; attr;) {
    CXmlAttr* next = attr->GetNext();
    DestroyAttr(attr);
    attr = next;
  }
  firstAttr_ = nullptr;
}

// --- The node ---

CXmlNode::CXmlNode() noexcept : name_(EmptyName()), value_(EmptyString()) {}

void* CXmlNode::operator new(std::size_t size) {
  return ::operator new(size);
}

void CXmlNode::operator delete(CXmlNode* node, std::destroying_delete_t) {
  const std::uint16_t offset = node->pageOffset_;
  const std::size_t bytes = sizeof(CXmlNode) + node->ownRecords_ * sizeof(CXmlAttr);
  node->~CXmlNode();
  if (offset == 0) {
    ::operator delete(node);
  } else {
    XmlArena::Release(node, offset, bytes);
  }
}

CXmlNode::~CXmlNode() {
  Clear();
  ReleaseName(name_);
  FreeString(value_);
}

void CXmlNode::Clear() {
  DestroyChildren();
  DestroyAttrs();
}

std::string CXmlNode::GetValue() const {
  std::string value;
  AppendValue(value);
  return value;
}

void CXmlNode::AppendValue(std::string& to) const {
  if (IsJoined(value_)) return AppendJoinedString(to, value_);
  to.append(StringView(value_));
}

const char* CXmlNode::ValueText() const {
  if (IsJoined(value_)) {
    const char* const joined = value_;
    value_ = NewString(GetValue());
    FreeString(joined);
  }
  return value_;
}

std::string_view CXmlNode::ValueView() const {
  return StringView(ValueText());
}

void CXmlNode::SetName(XmlArg text) {
  const XmlInternedName* old = name_;
  name_ = AcquireName(text.View());
  ReleaseName(old);
}

void CXmlNode::SetValue(XmlArg text) {
  AssignString(value_, text.View());
}

// --- Children ---

// Iterative post-order traversal, so that stack use doesn't depend on the depth of the tree.
void CXmlNode::DestroyChildren() {
  CXmlNode* at = this;
  while (at != this || at->childCount_ > 0) {
    if (at->childCount_ > 0) {
      at = at->children_[at->childCount_ - 1];
      continue;
    }
    CXmlNode* above = at->parent_;
    --above->childCount_;
    delete at;
    at = above;
  }
  children_.reset();
  childCapacity_ = 0;
}

CXmlNode* CXmlNode::GetChild(int index) const {
  if (index < 0 || index >= GetChildCount()) return nullptr;
  return children_[static_cast<std::size_t>(index)];
}

std::vector<CXmlNode*> CXmlNode::GetChildren() const {
  return {children_.get(), children_.get() + childCount_};
}

CXmlNode* CXmlNode::FindChild(XmlArg childName) const {
  if (childName.IsNull()) return nullptr;
  for (std::uint32_t i = 0; i < childCount_; ++i) {
    if (children_[i]->NameView() == childName.View()) return children_[i];
  }
  return nullptr;
}

std::unique_ptr<CXmlNode> CXmlNode::CreateNode(XmlArg nodeName, XmlArg nodeValue) {
  auto node = std::make_unique<CXmlNode>();
  node->SetName(nodeName);
  node->SetValue(nodeValue);
  return node;
}

CXmlNode* CXmlNode::AppendChild(std::unique_ptr<CXmlNode> node) {
  return InsertChild(std::move(node), childCount_);
}

CXmlNode* CXmlNode::AddChild(XmlArg nodeName, XmlArg nodeValue) {
  return AppendChild(CreateNode(nodeName, nodeValue));
}

CXmlNode* CXmlNode::InsertChildBefore(std::unique_ptr<CXmlNode> node, const CXmlNode* beforeChild) {
  const std::int64_t index = FindChildIndex(beforeChild);
  return InsertChild(std::move(node), index < 0 ? childCount_ : static_cast<std::size_t>(index));
}

CXmlNode* CXmlNode::AddCData(XmlArg text) {
  auto node = CreateNode("#CDATA", text);
  node->type_ = XmlCData;
  return AppendChild(std::move(node));
}

CXmlNode* CXmlNode::AddCData(std::string_view start, std::shared_ptr<const std::string> end) {
  CXmlNode* const node = AddCData("");
  node->value_ = NewJoinedString(start, std::move(end));
  return node;
}

CXmlNode* CXmlNode::AppendCopy(const CXmlNode& source) {
  return AppendChild(MakeCopy(source));
}

bool CXmlNode::RemoveChild(const CXmlNode* child) {
  const std::int64_t index = FindChildIndex(child);
  if (index < 0) return false;
  TakeChild(index);
  return true;
}

std::unique_ptr<CXmlNode> CXmlNode::DetachChild(const CXmlNode* child) {
  const std::int64_t index = FindChildIndex(child);
  return index < 0 ? nullptr : TakeChild(index);
}

std::int64_t CXmlNode::FindChildIndex(const CXmlNode* child) const {
  std::int64_t index = childCount_;
  while (--index >= 0) {
    if (children_[static_cast<std::size_t>(index)] == child) break;
  }
  return index;
}

std::unique_ptr<CXmlNode> CXmlNode::TakeChild(std::int64_t index) {
  CXmlNode** place = children_.get() + index;
  std::unique_ptr<CXmlNode> child(*place);
  std::copy(place + 1, children_.get() + childCount_, place);
  --childCount_;
  return child;
}

CXmlNode* CXmlNode::InsertChild(std::unique_ptr<CXmlNode> node, std::size_t index) {
  if (!node) return nullptr;
  if (childCount_ == childCapacity_) ReserveChildren(std::max<std::size_t>(4, childCount_ * 2));
  CXmlNode** place = children_.get() + index;
  std::copy_backward(place, children_.get() + childCount_, children_.get() + childCount_ + 1);
  ++childCount_;
  node->parent_ = this;
  return *place = node.release();
}

void CXmlNode::ReserveChildren(std::size_t capacity) {
  std::unique_ptr<CXmlNode*[]> wider(new CXmlNode*[capacity]);
  std::copy(children_.get(), children_.get() + childCount_, wider.get());
  children_ = std::move(wider);
  childCapacity_ = static_cast<std::uint32_t>(capacity);
}

}  // namespace tarn
