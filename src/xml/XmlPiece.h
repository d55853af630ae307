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

// Builds a node in one piece of memory: node, attribute records, texts. The caller says beforehand
// what it will put in. Inside the xml folder only.
class XmlPiece {
 public:
  // Takes over `name`. `textBytes` is the sum of TextBytes over all texts. The node knows its
  // parent from the start; the parent doesn't know the node yet.
  XmlPiece(XmlPages& pages, const XmlName* name, CXmlNodeType type, CXmlNode* parent,
           std::size_t attrCount, std::size_t textBytes) {
    const XmlPages::Place place =
        pages.Take(sizeof(CXmlNode) + attrCount * sizeof(CXmlAttr) + textBytes);
    node.reset(::new (place.memory) CXmlNode(name, EmptyText(), type, parent, place.offset));
    records = reinterpret_cast<CXmlAttr*>(node.get() + 1);
    texts = reinterpret_cast<char*>(records + attrCount);
  }

  // A copy of a node without its children.
  static std::unique_ptr<CXmlNode> CopyAlone(XmlPages& pages, const CXmlNode& source,
                                             CXmlNode* parent);

  // What a text of that length needs; nothing when it is empty.
  static std::size_t TextBytes(std::size_t length) { return length == 0 ? 0 : length + 2; }

  // A place for a text of up to that length, not for an empty one. The caller writes the text there
  // and ends it with EndTextInside.
  char* Reserve(std::size_t length) {
    char* text = texts + 1;
    texts += TextBytes(length);
    return text;
  }

  const char* CopyText(std::string_view text) {
    if (text.empty()) return EmptyText();
    char* place = Reserve(text.size());
    std::memcpy(place, text.data(), text.size());
    return EndTextInside(place, text.size());
  }

  // Takes over `name`. `value` lies in this piece or is EmptyText.
  void AddAttr(const XmlName* name, const char* value) {
    auto* attr = new (records + node->ownRecords) CXmlAttr(name, value);
    if (node->ownRecords == 0) {
      node->firstAttr = attr;
    } else {
      (attr - 1)->LinkTo(attr);
    }
    ++node->ownRecords;
    attr->LinkTo(node.get());
  }
  void SetValue(const char* value) { node->value = value; }

  std::unique_ptr<CXmlNode> Take() { return std::move(node); }

 private:
  std::unique_ptr<CXmlNode> node;
  CXmlAttr* records;
  char* texts;
};

}  // namespace tarn
