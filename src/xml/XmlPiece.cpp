#include "xml/XmlPiece.h"

namespace tarn {

std::unique_ptr<CXmlNode> XmlPiece::CopyAlone(XmlPages& pages, const CXmlNode& source,
                                              CXmlNode* parent) {
  std::size_t textBytes = TextBytes(TextView(source.value_).size());
  std::size_t attrCount = 0;
  for (const CXmlAttr& attr : source.Attributes()) {
    textBytes += TextBytes(TextView(attr.value_).size());
    ++attrCount;
  }
  XmlPiece piece(pages, CopyName(source.name_), source.type_, parent, attrCount, textBytes);
  for (const CXmlAttr& attr : source.Attributes()) {
    piece.AddAttr(CopyName(attr.name_), piece.CopyText(TextView(attr.value_)));
  }
  piece.SetValue(piece.CopyText(TextView(source.value_)));
  return piece.Take();
}

}  // namespace tarn
