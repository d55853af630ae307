#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "xml/XmlNode.h"

namespace tarn {

// The configuration of an application that names none.
inline constexpr const char* kStandardConfig = "Standard";

// Flags of a type record, as bits.
enum TypeFlag : std::uint32_t {
  kTypeProject = 1u << 0,      // a project root; holds applications
  kTypeApplication = 1u << 1,  // a unit of building, owner of paths and configurations
  kTypeExtern = 1u << 2,       // its content lives in a file of its own
  kTypePath = 1u << 3,         // new nodes get a path
  kTypeIsLeaf = 1u << 4,       // holds no children
  kTypeBuild = 1u << 5,        // takes part in the build
  kTypeDebug = 1u << 6,        // a debuggable application
  kTypeAutoDebug = 1u << 7,    // each change is told to the host
  kTypeInBuild = 1u << 8,      // allowed in a parent that builds; its output is linked
  kTypeInDebug = 1u << 9,      // allowed in a parent that debugs
};

// Whether a child counts as part of the project tree; false for the elements that only carry a
// node's data.
bool IsContentNode(const CXmlNode& node);

// The node types of the configuration file: records named like the elements of the project tree.
// Of two records with one name, without regard to case, the later counts.
class NodeTypes {
 public:
  NodeTypes();

  // The records, in file order.
  const CXmlNode& GetRoot() const { return root; }
  // Takes a deep copy of a record.
  void Add(const CXmlNode& record);

  // The record of a node's type, or null.
  const CXmlNode* GetNodeType(const CXmlNode& node) const;
  // All flags at once; 0 without a type record.
  std::uint32_t FlagsOf(const CXmlNode& node) const { return Find(node.NameView()).flags; }
  // Any flag by its name in the record.
  bool HasTypeFlag(const CXmlNode& node, std::string_view key) const;

 private:
  struct Type {
    const CXmlNode* record = nullptr;
    std::uint32_t flags = 0;
  };

  const Type& Find(std::string_view elementName) const;

  CXmlNode root;
  std::unordered_map<std::string, Type> byName;  // folded names
  // Common names are shared, so the address of a name's text finds it fast; a rare one may have
  // taken the place of another, so the text is compared all the same. Filled as names are asked
  // for; on the host's thread only.
  struct Known {
    std::string name;
    const Type* type = nullptr;
  };
  mutable std::unordered_map<const char*, Known> byAddress;
};

}  // namespace tarn
