#include "xml/XmlNodeBuilder.h"

namespace tarn {

std::unique_ptr<CXmlNode> XmlNodeBuilder::CopyAlone(XmlArena& arena, const CXmlNode& source,
                                                    CXmlNode* parent) {
  const bool isJoined = IsJoined(source.value_);
  std::size_t textBytes = isJoined ? 0 : StringBytes(StringView(source.value_).size());
  std::size_t attrCount = 0;
  for (const CXmlAttr& attr : source.Attributes()) {
    textBytes += StringBytes(StringView(attr.value_).size());
    ++attrCount;
  }
  XmlNodeBuilder builder(arena, CopyName(source.name_), source.type_, parent, attrCount, textBytes);
  for (const CXmlAttr& attr : source.Attributes()) {
    builder.AddAttr(CopyName(attr.name_), builder.CopyString(StringView(attr.value_)));
  }
  builder.SetValue(isJoined ? CopyJoinedString(source.value_)
                            : builder.CopyString(StringView(source.value_)));
  return builder.Take();
}

}  // namespace tarn
