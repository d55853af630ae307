#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "xml/XmlNode.h"
#include "xml/XmlPages.h"
#include "xml/XmlText.h"

namespace tarn {

// Builds a node in one block: node, attribute records, strings. The caller specifies the number of
// attributes and the size of the strings in advance. For use inside the xml folder only.
class XmlPiece {
 public:
  // Takes ownership of `name`. `textBytes` is the sum of `TextBytes()` over all strings. The node's
  // parent pointer is set immediately; the node isn't added to the parent's children.
  XmlPiece(XmlPages& pages, const XmlName* name, CXmlNodeType type, CXmlNode* parent,
           std::size_t attrCount, std::size_t textBytes) {
    const XmlPages::Place place =
        pages.Take(sizeof(CXmlNode) + attrCount * sizeof(CXmlAttr) + textBytes);
    node_.reset(::new (place.memory) CXmlNode(name, EmptyText(), type, parent, place.offset));
    records_ = reinterpret_cast<CXmlAttr*>(node_.get() + 1);
    texts_ = reinterpret_cast<char*>(records_ + attrCount);
  }

  // Returns a copy of a node without its children.
  static std::unique_ptr<CXmlNode> CopyAlone(XmlPages& pages, const CXmlNode& source,
                                             CXmlNode* parent);

  // Returns the number of bytes that a string of that length occupies; 0 for an empty string.
  static std::size_t TextBytes(std::size_t length) { return length == 0 ? 0 : length + 2; }

  // Reserves space for a string of at most `length` bytes, which must not be 0. The caller writes
  // the string there and terminates it with `EndTextInside()`.
  char* Reserve(std::size_t length) {
    char* text = texts_ + 1;
    texts_ += TextBytes(length);
    return text;
  }

  // Copies a string into the block and returns the copy.
  const char* CopyText(std::string_view text) {
    if (text.empty()) return EmptyText();
    char* place = Reserve(text.size());
    std::memcpy(place, text.data(), text.size());
    return EndTextInside(place, text.size());
  }

  // Takes ownership of `name`. `value` is a string in this block, or EmptyText.
  void AddAttr(const XmlName* name, const char* value) {
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
