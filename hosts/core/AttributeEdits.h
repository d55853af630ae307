#pragma once

#include <map>
#include <string>
#include <utility>

#include "platform/Result.h"

namespace tarn::host {

// Replaces values of attributes in the text of an XML file and leaves every other byte as it is.
class AttributeEdits {
 public:
  // All attributes with this name and value receive the other value. There has to be one.
  void Add(const std::string& name, const std::string& value, const std::string& replacement);
  // Like Add(), but there need not be one.
  void AddOptional(const std::string& name, const std::string& value,
                   const std::string& replacement);
  bool IsEmpty() const { return edits_.empty(); }

  // All replacements are made at once, so that values can be exchanged. Fails if a value isn't
  // there in double quotes.
  Result<std::string> ApplyTo(const std::string& text) const;

 private:
  struct Edit {
    std::string replacement;
    bool isRequired = false;
  };
  std::map<std::pair<std::string, std::string>, Edit> edits_;  // by name and value
};

}  // namespace tarn::host
