#pragma once

#include <cstddef>
#include <memory>

#include "xml/XmlNode.h"

namespace tarn {

// Builds a node in one piece of memory: node, attribute records, texts. The caller says beforehand
// what it will put in. Inside the xml folder only.
class XmlPiece {
 public:
  // Takes over `name`. `textBytes` is the sum of TextBytes over all texts.
  XmlPiece(const XmlName* name, CXmlNodeType type, std::size_t attrCount, std::size_t textBytes);

  // A copy of a node without its children.
  static std::unique_ptr<CXmlNode> CopyAlone(const CXmlNode& source);

  // What a text of that length needs; nothing when it is empty.
  static std::size_t TextBytes(std::size_t length) { return length == 0 ? 0 : length + 2; }

  // The place for the next text, not for an empty one. The caller writes the text there and then
  // says how many bytes stay reserved for it; the terminator comes behind `length` bytes.
  char* NextText() { return texts + 1; }
  const char* EndText(std::size_t length, std::size_t reserved);

  // Takes over `name`. `value` comes from EndText or EmptyText.
  void AddAttr(const XmlName* name, const char* value);
  void SetValue(const char* value) { node->value = value; }

  std::unique_ptr<CXmlNode> Take();

 private:
  std::unique_ptr<CXmlNode> node;
  CXmlAttr* records;
  char* texts;
};

}  // namespace tarn
