#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "xml/XmlNode.h"

// Inheritance between tools. A tool is a list of layers: those of the tools that its `Base` names,
// in order, then its own element. Each layer changes what the layers before it have defined, and
// the result is one element that is read as if it had been written in full.
namespace tarn::tools {

class ToolInheritance {
 public:
  // Longest chain of bases. Bounds the recursion; real definitions need four.
  static constexpr std::size_t kMaxDepth = 16;

  // Registers an element; later ones replace earlier ones of the same name as a base. The element
  // must outlive this object.
  void Add(const CXmlNode& tool);
  // Returns the element with everything that it inherits, or nullptr and the reason in `error`.
  std::unique_ptr<CXmlNode> Resolve(const CXmlNode& tool, std::string& error) const;

 private:
  using Layers = std::vector<const CXmlNode*>;

  // Returns nullptr if no such tool exists. A base with the tool's own name is the definition
  // before it.
  const CXmlNode* FindBase(const CXmlNode& tool, std::string_view name) const;
  // Appends the layers of the tool unless they were appended before. `path` has the tools that lead
  // to it.
  void Collect(const CXmlNode& tool, Layers& path, Layers& layers, std::string& error) const;

  std::map<std::string, Layers, std::less<>> byName_;  // by lower-case name, in order
};

// Returns true if the element has this attribute with the value "Yes".
bool HasYes(const CXmlNode& node, const char* attribute);

}  // namespace tarn::tools
