#include "components/tools/ElementReader.h"

#include <algorithm>

#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::tools {

std::string ElementReader::Text(const CXmlNode& node, const char* attribute) {
  return OrEmpty(node.GetAttrValue(attribute));
}

std::size_t ElementReader::Choose(const CXmlNode& node, const char* attribute,
                                  std::initializer_list<std::string_view> choices) {
  const std::string value = Text(node, attribute);
  const auto found = std::find_if(choices.begin(), choices.end(), [&](std::string_view choice) {
    return EqualNoCase(choice, value);
  });
  if (found == choices.end()) Fail(std::string(attribute) + " can't be " + value);
  return static_cast<std::size_t>(found - choices.begin());
}

void ElementReader::CheckAttributes(const CXmlNode& node,
                                    std::initializer_list<std::string_view> known) {
  for (const CXmlAttr& attribute : node.Attributes()) {
    const std::string_view name = attribute.NameView();
    if (std::find(known.begin(), known.end(), name) == known.end()) {
      Fail("unknown attribute " + std::string(name) + " in " + node.GetName());
    }
  }
}

}  // namespace tarn::tools
