#include "xml/XmlPiece.h"

namespace tarn {

std::unique_ptr<CXmlNode> XmlPiece::CopyAlone(XmlPages& pages, const CXmlNode& source,
                                              CXmlNode* parent) {
  std::size_t textBytes = TextBytes(TextView(source.value).size());
  std::size_t attrCount = 0;
  for (const CXmlAttr& attr : source.Attributes()) {
    textBytes += TextBytes(TextView(attr.value).size());
    ++attrCount;
  }
  XmlPiece piece(pages, CopyName(source.name), source.type, parent, attrCount, textBytes);
  for (const CXmlAttr& attr : source.Attributes()) {
    piece.AddAttr(CopyName(attr.name), piece.CopyText(TextView(attr.value)));
  }
  piece.SetValue(piece.CopyText(TextView(source.value)));
  return piece.Take();
}

}  // namespace tarn
