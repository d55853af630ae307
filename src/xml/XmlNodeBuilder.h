#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "xml/XmlArena.h"
#include "xml/XmlNode.h"
#include "xml/XmlString.h"

namespace tarn {

// Builds a node in one block: node, attribute records, strings. The caller specifies the number of
// attributes and the size of the strings in advance. For use inside the xml folder only.
class XmlNodeBuilder {
 public:
  // Takes ownership of `name`. `textBytes` is the sum of `StringBytes()` over all strings. The
  // node's parent pointer is set immediately; the node isn't added to the parent's children.
  XmlNodeBuilder(XmlArena& arena, const XmlInternedName* name, CXmlNodeType type, CXmlNode* parent,
                 std::size_t attrCount, std::size_t textBytes) {
    const XmlArena::Block block =
        arena.Allocate(sizeof(CXmlNode) + attrCount * sizeof(CXmlAttr) + textBytes);
    node_.reset(::new (block.memory) CXmlNode(name, EmptyString(), type, parent, block.offset));
    records_ = reinterpret_cast<CXmlAttr*>(node_.get() + 1);
    texts_ = reinterpret_cast<char*>(records_ + attrCount);
  }

  // Returns a copy of a node without its children.
  static std::unique_ptr<CXmlNode> CopyAlone(XmlArena& arena, const CXmlNode& source,
                                             CXmlNode* parent);

  // Returns the number of bytes that a string of that length occupies; 0 for an empty string.
  static std::size_t StringBytes(std::size_t length) { return length == 0 ? 0 : length + 2; }

  // Reserves space for a string of at most `length` bytes, which must not be 0. The caller writes
  // the string there and terminates it with `EndStringInside()`.
  char* Reserve(std::size_t length) {
    char* text = texts_ + 1;
    texts_ += StringBytes(length);
    return text;
  }

  // Copies a string into the block and returns the copy.
  const char* CopyString(std::string_view text) {
    if (text.empty()) return EmptyString();
    char* copy = Reserve(text.size());
    std::memcpy(copy, text.data(), text.size());
    return EndStringInside(copy, text.size());
  }

  // Takes ownership of `name`. `value` is a string in this block, or EmptyText.
  void AddAttr(const XmlInternedName* name, const char* value) {
    auto* attr = new (records_ + node_->ownRecords_) CXmlAttr(name, value);
    if (node_->ownRecords_ == 0) {
      node_->firstAttr_ = attr;
    } else {
      (attr - 1)->LinkTo(attr);
    }
    ++node_->ownRecords_;
    attr->LinkTo(node_.get());
  }
  void SetValue(const char* value) { node_->value_ = value; }

  std::unique_ptr<CXmlNode> Take() { return std::move(node_); }

 private:
  std::unique_ptr<CXmlNode> node_;
  CXmlAttr* records_;
  char* texts_;
};

}  // namespace tarn
