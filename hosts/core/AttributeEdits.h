#pragma once

#include <map>
#include <string>
#include <utility>

#include "platform/Result.h"

namespace tarn::host {

// Replaces attribute values in the text of an XML file and leaves every other byte unchanged.
class AttributeEdits {
 public:
  // Registers a replacement of `value` in all attributes with this name. At least one must exist.
  void Add(const std::string& name, const std::string& value, const std::string& replacement);
  // Like Add(), but it is not an error if there is no such attribute.
  void AddOptional(const std::string& name, const std::string& value,
                   const std::string& replacement);
  bool IsEmpty() const { return edits_.empty(); }

  // Makes all replacements in a single pass, so that two values can be swapped. Fails if a required
  // value does not occur in double quotes.
  Result<std::string> ApplyTo(const std::string& text) const;

 private:
  struct Edit {
    std::string replacement;
    bool isRequired = false;
  };
  std::map<std::pair<std::string, std::string>, Edit> edits_;  // by name and value
};

}  // namespace tarn::host
