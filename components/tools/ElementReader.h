#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

#include "xml/XmlNode.h"

namespace tarn::tools {

// Reads the attributes of a definition's elements; keeps the first thing that is wrong.
class ElementReader {
 public:
  // Empty as long as all was right.
  const std::string& Error() const { return error; }

 protected:
  void Fail(const std::string& reason) {
    if (error.empty()) error = reason;
  }

  // Empty for an attribute that isn't there.
  static std::string Text(const CXmlNode& node, const char* attribute);
  bool IsYes(const CXmlNode& node, const char* attribute) {
    return Choose(node, attribute, {"", "No", "Yes"}) == 2;
  }
  // The index of the attribute's value among those that it may have, without regard to case; any
  // other is a mistake.
  std::size_t Choose(const CXmlNode& node, const char* attribute,
                     std::initializer_list<std::string_view> choices);
  // Any other attribute is a mistake.
  void CheckAttributes(const CXmlNode& node, std::initializer_list<std::string_view> known);

 private:
  std::string error;
};

}  // namespace tarn::tools
