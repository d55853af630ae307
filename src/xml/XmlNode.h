#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "xml/XmlLoss.h"
#include "xml/XmlName.h"
#include "xml/XmlParseInfo.h"

// The tree through which every structured file of the system passes.
//
// A tree belongs to whoever holds its root and is used by one thread at a time; different trees may
// be used by different threads. Texts are 8-bit and never converted; a zero byte ends a text. Names
// compare exactly. Operations take plain pointers (null allowed), strings or views: see XmlArg.
// Reading operations are const and still give nodes that can be edited: const is the node's own
// contents, not the tree's.
//
// Memory. A node that was read or copied is one piece of memory: the node, behind it its attribute
// records, behind them the texts. The pieces of one tree lie in pages that they share; a page goes
// with the last node in it. Attributes that are added later share pages, too; other things that are
// changed or added get memory of their own. Addresses of nodes and attributes never change while
// they exist.
namespace tarn {

class CXmlNode;

enum CXmlNodeType : std::uint8_t { XmlElement, XmlComment, XmlCData };

// One attribute of a node. Owned by its node.
class CXmlAttr {
 public:
  CXmlAttr(const CXmlAttr&) = delete;
  CXmlAttr& operator=(const CXmlAttr&) = delete;

  std::string GetName() const { return std::string(NameView()); }
  std::string GetValue() const { return value; }
  // The node that holds the attribute; walks over the attributes behind this one.
  CXmlNode* GetParent() const;
  // The next attribute of the node, or null.
  CXmlAttr* GetNext() const { return IsLast() ? nullptr : reinterpret_cast<CXmlAttr*>(link); }

  // Borrowed until the value is changed or the attribute goes.
  std::string_view NameView() const { return name->View(); }
  const char* ValueText() const { return value; }
  std::string_view ValueView() const;

  void SetValue(XmlArg text);

 private:
  friend class CXmlNode;
  friend class XmlPiece;
  CXmlAttr(const XmlName* attrName, const char* attrValue) : name(attrName), value(attrValue) {}
  ~CXmlAttr();

  // The last attribute of a node leads back to the node, marked by the lowest bit: a pointer for
  // each direction would make a read node a sixth larger.
  bool IsLast() const { return (link & 1) != 0; }
  void LinkTo(CXmlAttr* next) { link = reinterpret_cast<std::uintptr_t>(next); }
  void LinkTo(CXmlNode* owner) { link = reinterpret_cast<std::uintptr_t>(owner) | 1; }

  const XmlName* name;
  const char* value;
  std::uintptr_t link = 1;
};

// The attributes of a node for a range-based loop.
class XmlAttrRange {
 public:
  class Iterator {
   public:
    explicit Iterator(CXmlAttr* start) : attr(start) {}
    CXmlAttr& operator*() const { return *attr; }
    Iterator& operator++() {
      attr = attr->GetNext();
      return *this;
    }
    bool operator==(const Iterator& other) const = default;

   private:
    CXmlAttr* attr;
  };

  explicit XmlAttrRange(CXmlAttr* firstAttr) : first(firstAttr) {}
  Iterator begin() const { return Iterator(first); }
  Iterator end() const { return Iterator(nullptr); }

 private:
  CXmlAttr* first;
};

class CXmlNode {
 public:
  // Elements nest at most so deep in a text that is read; a deeper text is a failure.
  static constexpr std::size_t kMaxReadDepth = 2000;

  // An element without name, value, attributes, children and parent.
  CXmlNode() noexcept;
  ~CXmlNode();
  CXmlNode(const CXmlNode&) = delete;
  CXmlNode& operator=(const CXmlNode&) = delete;

  // --- Reading ---

  std::string GetName() const { return std::string(NameView()); }
  std::string GetValue() const { return value; }
  // Borrowed until the name or value is changed or the node goes.
  std::string_view NameView() const { return name->View(); }
  const char* NameText() const { return name->Text(); }
  const char* ValueText() const { return value; }
  std::string_view ValueView() const;
  CXmlNodeType GetType() const { return type; }

  // Null at a root. Stale on a detached node until it is attached again.
  CXmlNode* GetParent() const { return parent; }

  // Children in document order, comments and CDATA sections among them.
  int GetChildCount() const { return static_cast<int>(childCount); }
  // Null when there is no such child.
  CXmlNode* GetChild(int index) const;
  // A copy of the list; the nodes stay owned by this node.
  std::vector<CXmlNode*> GetChildren() const;
  // The first child with that name, or null.
  CXmlNode* FindChild(XmlArg childName) const;
  // The first node below this one, depth first in document order, or null.
  CXmlNode* FindDescendant(XmlArg nodeName) const;
  CXmlNode* FindDescendantByAttr(XmlArg attrName, XmlArg attrValue) const;

  // The first attribute with that name, or null.
  CXmlAttr* GetAttr(XmlArg attrName) const;
  // Its value, or null: an absent attribute and an empty one differ. Borrowed until that value is
  // changed or the attribute goes.
  const char* GetAttrValue(XmlArg attrName) const;
  XmlAttrRange Attributes() const { return XmlAttrRange(firstAttr); }
  CXmlAttr* GetFirstAttr() const { return firstAttr; }
  // Both walk over the attributes; a loop over all is written with Attributes.
  int GetAttrCount() const;
  CXmlAttr* GetAttrAt(int index) const;

  // --- Editing ---

  void SetName(XmlArg text);
  void SetValue(XmlArg text);

  // Overwrites the first attribute of that name, else appends one. The value may be a text of this
  // node. Gives the attribute.
  CXmlAttr* SetAttrValue(XmlArg attrName, XmlArg attrValue);
  // Appends an attribute even where one of that name exists.
  CXmlAttr* AddAttr(XmlArg attrName, XmlArg attrValue);
  // Appends attributes, pairs of name and value, in their order. Linear in their number, which as
  // many calls of AddAttr are not.
  template <class Pairs>
  void AddAttrs(const Pairs& pairs) {
    CXmlAttr* last = GetLastAttr();
    for (const auto& [attrName, attrValue] : pairs) last = AddAttrBehind(last, attrName, attrValue);
  }
  // Appends copies of the attributes of another node. Linear in their number.
  void CopyAttrs(const CXmlNode& source);
  // Destroys the attribute; false when it isn't one of this node's.
  bool RemoveAttr(const CXmlAttr* attr);

  // A free-standing element.
  static std::unique_ptr<CXmlNode> CreateNode(XmlArg nodeName, XmlArg nodeValue = nullptr);
  // These give the attached node; null for a null node.
  CXmlNode* AppendChild(std::unique_ptr<CXmlNode> node);
  CXmlNode* AddChild(XmlArg nodeName, XmlArg nodeValue = nullptr);
  // A `beforeChild` that isn't a child of this node makes it an append, so the node isn't lost.
  CXmlNode* InsertChildBefore(std::unique_ptr<CXmlNode> node, const CXmlNode* beforeChild);
  CXmlNode* AddCData(XmlArg text);
  // A copy of `source` and all below it as the last child.
  CXmlNode* AppendCopy(const CXmlNode& source);

  // Destroys the child and all below it; false when it isn't a child of this node. Children are
  // looked for from the last to the first, so that removing all of them backwards is linear.
  bool RemoveChild(const CXmlNode* child);
  // Gives the child to the caller, with its parent pointer left as it was; null when it isn't a
  // child of this node.
  std::unique_ptr<CXmlNode> DetachChild(const CXmlNode* child);

  // Destroys all children, the last first, and all attributes. Name, value, type and parent stay.
  void Clear();
  // Makes this node equal to `source` and all below it, its place in its own tree excepted.
  // `source` may be this node, or lie below it.
  void CopyFrom(const CXmlNode& source);

  // --- Text ---

  // Fills this node from the first element of the terminated `text` and gives the position behind
  // what was read, or null on failure; what was read before the failure stays in the tree. Old
  // attributes and children go first; the old name and value stay where the text has nothing to
  // put there. A text that ends inside an element, behind a complete tag or in its text, is no
  // failure. The text may be released after the call.
  const char* Load(const char* text, CXmlParseInfo& parseInfo);
  const char* Load(const std::string& text, CXmlParseInfo& parseInfo) {
    return Load(text.c_str(), parseInfo);
  }
  // Like `Load()`, with the same tree and result, but reports to `losses` what is not in the tree.
  const char* Load(const char* text, CXmlParseInfo& parseInfo, XmlLossListener& losses);
  // Load with the full entity table and an error record that goes with the call.
  const char* LoadWithFullEntities(const char* text);

  // This node and all below it as text. Begins with CR LF when line breaks are on and ends without.
  // A nameless element is left out. A value that ends in an odd number of backslashes is written
  // with one more, so that it can't protect what ends it.
  std::string ToString(const CXmlDisplayOptions& options) const;
  // The same, added to `out`, with `depth` tabs in front of the first line.
  void AppendText(std::string& out, const CXmlDisplayOptions& options, int depth) const;

  static void* operator new(std::size_t size);
  // Ends the node and gives its memory back to where it came from.
  static void operator delete(CXmlNode* node, std::destroying_delete_t);

 private:
  friend class XmlPiece;
  friend class XmlReader;

  // In a piece of memory that lies in a page. Takes over `nodeName`.
  CXmlNode(const XmlName* nodeName, const char* nodeValue, CXmlNodeType nodeType,
           CXmlNode* nodeParent, std::uint16_t offset)
      : name(nodeName), value(nodeValue), parent(nodeParent), type(nodeType), pageOffset(offset) {}

  CXmlAttr* GetLastAttr() const;
  // Appends an attribute behind `last`, the present last one or null.
  CXmlAttr* AddAttrBehind(CXmlAttr* last, XmlArg attrName, XmlArg attrValue);
  bool IsOwnRecord(const CXmlAttr* attr) const;
  void DestroyAttr(CXmlAttr* attr);
  void DestroyAttrs();
  void DestroyChildren();
  // -1 when it isn't a child of this node.
  std::int64_t FindChildIndex(const CXmlNode* child) const;
  std::unique_ptr<CXmlNode> TakeChild(std::int64_t index);
  CXmlNode* InsertChild(std::unique_ptr<CXmlNode> node, std::size_t index);
  void ReserveChildren(std::size_t capacity);
  // A free-standing copy, its nodes in pages.
  static std::unique_ptr<CXmlNode> MakeCopy(const CXmlNode& source);

  const XmlName* name;
  const char* value;
  CXmlNode* parent = nullptr;
  std::unique_ptr<CXmlNode*[]> children;
  std::uint32_t childCount = 0;
  std::uint32_t childCapacity = 0;
  CXmlAttr* firstAttr = nullptr;
  std::uint32_t ownRecords = 0;  // attribute records that lie behind this node in its memory
  CXmlNodeType type = XmlElement;
  std::uint16_t pageOffset = 0;  // see XmlPages; 0 when the node doesn't lie in a page
};

}  // namespace tarn
