#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

namespace tarn {
class CXmlNode;
}

namespace tarn::tools {

// Reads the attributes of a definition's elements; records the first error.
class ElementReader {
 public:
  // Returns the first error; empty if there was none.
  const std::string& Error() const { return error_; }

 protected:
  void Fail(const std::string& reason) {
    if (error_.empty()) error_ = reason;
  }

  // Returns an empty string if the attribute is missing.
  static std::string Text(const CXmlNode& node, const char* attribute);
  bool IsYes(const CXmlNode& node, const char* attribute) {
    return Choose(node, attribute, {"", "No", "Yes"}) == 2;
  }
  // Returns the index of the attribute's value in `choices`, ignoring case. Any other value is an
  // error.
  std::size_t Choose(const CXmlNode& node, const char* attribute,
                     std::initializer_list<std::string_view> choices);
  // Reports an error if the element has any other attribute.
  void CheckAttributes(const CXmlNode& node, std::initializer_list<std::string_view> known);

 private:
  std::string error_;
};

}  // namespace tarn::tools
