#include "xml/XmlPiece.h"

#include <cstring>
#include <new>
#include <utility>

#include "xml/XmlText.h"

namespace tarn {
namespace {

const char* CopyText(XmlPiece& piece, const char* text) {
  const std::size_t length = std::strlen(text);
  if (length == 0) return EmptyText();
  std::memcpy(piece.NextText(), text, length);
  return piece.EndText(length, length);
}

}  // namespace

XmlPiece::XmlPiece(const XmlName* name, CXmlNodeType type, std::size_t attrCount,
                   std::size_t textBytes)
    : node(new (CXmlNode::Extra{attrCount * sizeof(CXmlAttr) + textBytes}) CXmlNode),
      records(reinterpret_cast<CXmlAttr*>(node.get() + 1)),
      texts(reinterpret_cast<char*>(records + attrCount)) {
  node->name = name;
  node->type = type;
}

const char* XmlPiece::EndText(std::size_t length, std::size_t reserved) {
  char* text = texts + 1;
  text[-1] = kTextInside;
  text[length] = '\0';
  texts += TextBytes(reserved);
  return text;
}

void XmlPiece::AddAttr(const XmlName* name, const char* value) {
  CXmlAttr* attr = new (records + node->ownRecords) CXmlAttr(name, value);
  if (node->ownRecords == 0) {
    node->firstAttr = attr;
  } else {
    (attr - 1)->LinkTo(attr);
  }
  ++node->ownRecords;
  attr->LinkTo(node.get());
}

std::unique_ptr<CXmlNode> XmlPiece::CopyAlone(const CXmlNode& source) {
  std::size_t textBytes = TextBytes(std::strlen(source.value));
  std::size_t attrCount = 0;
  for (const CXmlAttr& attr : source.Attributes()) {
    textBytes += TextBytes(std::strlen(attr.value));
    ++attrCount;
  }
  XmlPiece piece(CopyName(source.name), source.type, attrCount, textBytes);
  for (const CXmlAttr& attr : source.Attributes()) {
    piece.AddAttr(CopyName(attr.name), CopyText(piece, attr.value));
  }
  piece.SetValue(CopyText(piece, source.value));
  return piece.Take();
}

std::unique_ptr<CXmlNode> XmlPiece::Take() {
  return std::move(node);
}

}  // namespace tarn
