#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "xml/XmlInternedName.h"
#include "xml/XmlLoss.h"
#include "xml/XmlParseInfo.h"

// Tree of elements that represents every XML file of the project manager.
//
// A tree belongs to the owner of its root and is used by one thread at a time; different trees may
// be used by different threads. Strings are 8-bit and never converted; a zero byte ends a string.
// Names are case-sensitive. Operations accept pointers (which may be null), strings or views: see
// XmlArg. Read operations are const, but the nodes that they return can be edited: const covers the
// node's own contents, not the tree.
//
// Memory. Trees that are parsed or copied are allocated in an arena (XmlArena). Each of their nodes
// is one block: the node, then its attribute records, then the strings. The blocks of one tree
// share pages, and a page is freed with the last node in it. Attributes that are added later share
// pages too; all other additions and changes are allocated separately on the heap. Addresses of
// nodes and attributes are stable for their lifetime.
namespace tarn {

class CXmlNode;

enum CXmlNodeType : std::uint8_t { XmlElement, XmlComment, XmlCData };

// Attribute of a node, owned by the node.
class CXmlAttr {
 public:
  CXmlAttr(const CXmlAttr&) = delete;
  CXmlAttr& operator=(const CXmlAttr&) = delete;

  std::string GetName() const { return std::string(NameView()); }
  std::string GetValue() const { return value_; }
  // Returns the node that has the attribute. Traverses the attributes after this one.
  CXmlNode* GetParent() const;
  // Returns the next attribute of the node, or nullptr after the last one.
  CXmlAttr* GetNext() const { return IsLast() ? nullptr : reinterpret_cast<CXmlAttr*>(link_); }

  // Borrowed; valid until the value is changed or the attribute is destroyed.
  std::string_view NameView() const { return name_->View(); }
  const char* ValueText() const { return value_; }
  std::string_view ValueView() const;

  void SetValue(XmlArg text);

 private:
  friend class CXmlNode;
  friend class XmlNodeBuilder;
  CXmlAttr(const XmlInternedName* attrName, const char* attrValue)
      : name_(attrName), value_(attrValue) {}
  ~CXmlAttr();

  // The link of the last attribute points back to the node, tagged by the lowest bit: separate
  // pointers for both directions would make a parsed node a sixth larger.
  bool IsLast() const { return (link_ & 1) != 0; }
  void LinkTo(CXmlAttr* next) { link_ = reinterpret_cast<std::uintptr_t>(next); }
  void LinkTo(CXmlNode* owner) { link_ = reinterpret_cast<std::uintptr_t>(owner) | 1; }

  const XmlInternedName* name_;
  const char* value_;
  std::uintptr_t link_ = 1;
};

// Attributes of a node, for a range-based loop.
class XmlAttrRange {
 public:
  class Iterator {
   public:
    explicit Iterator(CXmlAttr* start) : attr_(start) {}
    CXmlAttr& operator*() const { return *attr_; }
    Iterator& operator++() {
      attr_ = attr_->GetNext();
      return *this;
    }
    bool operator==(const Iterator& other) const = default;

   private:
    CXmlAttr* attr_;
  };

  explicit XmlAttrRange(CXmlAttr* firstAttr) : first_(firstAttr) {}
  Iterator begin() const { return Iterator(first_); }
  Iterator end() const { return Iterator(nullptr); }

 private:
  CXmlAttr* first_;
};

class CXmlNode {
 public:
  // Maximum depth of nested elements in parsed input; deeper input is an error.
  static constexpr std::size_t kMaxReadDepth = 2000;

  // Creates an element without name, value, attributes, children and parent.
  CXmlNode() noexcept;
  ~CXmlNode();
  CXmlNode(const CXmlNode&) = delete;
  CXmlNode& operator=(const CXmlNode&) = delete;

  // --- Reading ---

  // Return copies.
  std::string GetName() const { return std::string(NameView()); }
  std::string GetValue() const;
  void AppendValue(std::string& to) const;
  // Borrowed; valid until the name or value is changed or the node is destroyed.
  std::string_view NameView() const { return name_->View(); }
  const char* NameText() const { return name_->Text(); }
  const char* ValueText() const;
  std::string_view ValueView() const;
  CXmlNodeType GetType() const { return type_; }

  // Returns nullptr for a root. Stale on a detached node until it is attached again.
  CXmlNode* GetParent() const { return parent_; }

  // Number of children in document order, including comments and CDATA sections.
  int GetChildCount() const { return static_cast<int>(childCount_); }
  // Returns nullptr if `index` is out of range.
  CXmlNode* GetChild(int index) const;
  // Returns a copy of the list; the nodes stay owned by this node.
  std::vector<CXmlNode*> GetChildren() const;
  // Returns the first child with that name, or nullptr if there is none.
  CXmlNode* FindChild(XmlArg childName) const;
  // Returns the first matching descendant in depth-first document order, or nullptr if there is
  // none.
  CXmlNode* FindDescendant(XmlArg nodeName) const;
  CXmlNode* FindDescendantByAttr(XmlArg attrName, XmlArg attrValue) const;

  // Returns the first attribute with that name, or nullptr if there is none.
  CXmlAttr* GetAttr(XmlArg attrName) const;
  // Returns the attribute's value, or nullptr if the attribute is absent, as opposed to an empty
  // string if it is empty. Borrowed; valid until the value is changed or the attribute is
  // destroyed.
  const char* GetAttrValue(XmlArg attrName) const;
  XmlAttrRange Attributes() const { return XmlAttrRange(firstAttr_); }
  CXmlAttr* GetFirstAttr() const { return firstAttr_; }
  // Both take time linear in the number of attributes; use `Attributes()` to visit all.
  int GetAttrCount() const;
  CXmlAttr* GetAttrAt(int index) const;

  // --- Editing ---

  void SetName(XmlArg text);
  void SetValue(XmlArg text);

  // Overwrites the first attribute of that name, or appends one if there is none. The value may be
  // a string of this node. Returns the attribute.
  CXmlAttr* SetAttrValue(XmlArg attrName, XmlArg attrValue);
  // Appends an attribute even if one of that name exists.
  CXmlAttr* AddAttr(XmlArg attrName, XmlArg attrValue);
  // Appends attributes, given as pairs of name and value, in order. Takes time linear in their
  // number, whereas the same number of calls of `AddAttr()` takes quadratic time.
  template <class Pairs>
  void AddAttrs(const Pairs& pairs) {
    CXmlAttr* last = GetLastAttr();
    for (const auto& [attrName, attrValue] : pairs) last = AddAttrAfter(last, attrName, attrValue);
  }
  // Appends copies of the attributes of another node in linear time.
  void CopyAttrs(const CXmlNode& source);
  // Destroys the attribute. Returns false if it isn't an attribute of this node.
  bool RemoveAttr(const CXmlAttr* attr);

  // Creates an element without a parent.
  static std::unique_ptr<CXmlNode> CreateNode(XmlArg nodeName, XmlArg nodeValue = nullptr);
  // The functions that add a child return the attached node, or nullptr if `node` is null.
  CXmlNode* AppendChild(std::unique_ptr<CXmlNode> node);
  CXmlNode* AddChild(XmlArg nodeName, XmlArg nodeValue = nullptr);
  // Appends `node` if `beforeChild` isn't a child of this node, so that the node isn't lost.
  CXmlNode* InsertChildBefore(std::unique_ptr<CXmlNode> node, const CXmlNode* beforeChild);
  CXmlNode* AddCData(XmlArg text);
  // Adds a section with the value `start` + `end`. Sections with the same end share its memory
  // until `ValueText()` or `ValueView()` is called for one: it then gets a separate copy, which
  // `GetValue()`, `AppendValue()` and `AppendCopy()` avoid. The strings have no zero bytes.
  CXmlNode* AddCData(std::string_view start, std::shared_ptr<const std::string> end);
  // Appends a deep copy of `source` as the last child.
  CXmlNode* AppendCopy(const CXmlNode& source);

  // Destroys the child and its descendants. Returns false if it isn't a child of this node.
  // Searches from the last child to the first, so that removing all children backwards is linear.
  bool RemoveChild(const CXmlNode* child);
  // Transfers ownership of the child to the caller; its parent pointer keeps its value. Returns
  // nullptr if it isn't a child of this node.
  std::unique_ptr<CXmlNode> DetachChild(const CXmlNode* child);

  // Destroys all children, the last one first, and all attributes. Name, value, type and parent
  // stay.
  void Clear();
  // Makes this node a deep copy of `source`, except for its own position in the tree. `source` may
  // be this node or one of its descendants.
  void CopyFrom(const CXmlNode& source);

  // --- Text ---

  // Parses the first element of the zero-terminated `text` into this node. Returns the position
  // after it, or nullptr on error; the part read before the error stays in the tree. Existing
  // attributes and children are removed first; the existing name and value stay if the input has no
  // replacement for them. Input that ends inside an element, after a complete tag or in its text,
  // isn't an error. `text` may be released after the call.
  const char* Load(const char* text, CXmlParseInfo& parseInfo);
  const char* Load(const std::string& text, CXmlParseInfo& parseInfo) {
    return Load(text.c_str(), parseInfo);
  }
  // Like `Load()`, with the same tree and result, but reports everything that isn't in the tree to
  // `losses`.
  const char* Load(const char* text, CXmlParseInfo& parseInfo, XmlLossListener& losses);
  // Like `Load()`, with the full entity table and an error record that is discarded after the call.
  const char* LoadWithFullEntities(const char* text);

  // Returns this node and its descendants as XML. Begins with CR LF if line breaks are enabled, and
  // doesn't end with a line break. A nameless element is left out. A value that ends in an odd
  // number of backslashes is written with one more, so that it can't escape the character after it.
  std::string ToString(const CXmlDisplayOptions& options) const;
  // Like `ToString()`, but appends to `out` and indents the first line by `depth` tabs.
  void AppendText(std::string& out, const CXmlDisplayOptions& options, int depth) const;

  static void* operator new(std::size_t size);
  // Destroys the node and returns its memory to its page or to the heap.
  static void operator delete(CXmlNode* node, std::destroying_delete_t);

 private:
  friend class XmlNodeBuilder;
  friend class XmlReader;

  // Constructs a node in a block of a page. Takes ownership of `nodeName`.
  CXmlNode(const XmlInternedName* nodeName, const char* nodeValue, CXmlNodeType nodeType,
           CXmlNode* nodeParent, std::uint16_t offset)
      : name_(nodeName),
        value_(nodeValue),
        parent_(nodeParent),
        type_(nodeType),
        pageOffset_(offset) {}

  CXmlAttr* GetLastAttr() const;
  // Appends an attribute after `last`, which is the current last attribute, or nullptr if there is
  // none.
  CXmlAttr* AddAttrAfter(CXmlAttr* last, XmlArg attrName, XmlArg attrValue);
  void DestroyAttr(CXmlAttr* attr);
  void DestroyAttrs();
  void DestroyChildren();
  // Returns -1 if it isn't a child of this node.
  std::int64_t FindChildIndex(const CXmlNode* child) const;
  std::unique_ptr<CXmlNode> TakeChild(std::int64_t index);
  CXmlNode* InsertChild(std::unique_ptr<CXmlNode> node, std::size_t index);
  void ReserveChildren(std::size_t capacity);
  // Returns a deep copy without a parent, its nodes allocated in pages.
  static std::unique_ptr<CXmlNode> MakeCopy(const CXmlNode& source);

  const XmlInternedName* name_;
  mutable const char* value_;  // joined until ValueText is called, see AddCData
  CXmlNode* parent_ = nullptr;
  std::unique_ptr<CXmlNode*[]> children_;
  std::uint32_t childCount_ = 0;
  std::uint32_t childCapacity_ = 0;
  CXmlAttr* firstAttr_ = nullptr;
  std::uint32_t ownRecords_ = 0;  // attribute records in this node's own block
  CXmlNodeType type_ = XmlElement;
  std::uint16_t pageOffset_ = 0;  // see XmlArena; 0 if the node isn't in a page
};

}  // namespace tarn
