#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tarn {

class CXmlNode;

// Configuration of an application that names none.
inline constexpr const char* kStandardConfig = "Standard";

// Flags of a type record, as bits.
enum TypeFlag : std::uint32_t {
  kTypeProject = 1u << 0,      // a project root; holds applications
  kTypeApplication = 1u << 1,  // a unit of building, owner of paths and configurations
  kTypeExtern = 1u << 2,       // its content is stored in a separate file
  kTypePath = 1u << 3,         // new nodes are given a path
  kTypeIsLeaf = 1u << 4,       // holds no children
  kTypeBuild = 1u << 5,        // takes part in the build
  kTypeDebug = 1u << 6,        // a debuggable application
  kTypeAutoDebug = 1u << 7,    // every change is reported to the host
  kTypeInBuild = 1u << 8,      // allowed in a parent that builds; its output is linked
  kTypeInDebug = 1u << 9,      // allowed in a parent that debugs
  kTypeFirst = 1u << 10,       // built before all other nodes of its application
};

// Returns true if the element is a node of the project tree; false for elements that only carry
// data of a node.
bool IsContentNode(const CXmlNode& node);

// The node types defined by the configuration file: one record per type, named like the elements of
// the project tree. If two records have the same name, ignoring case, the later one wins. Lookups
// are for the main thread only.
class NodeTypes {
 public:
  NodeTypes();
  ~NodeTypes();

  // All records, in file order.
  const CXmlNode& GetRoot() const { return *root_; }
  // Adds a deep copy of a record.
  void Add(const CXmlNode& record);

  // Returns the type record of a node, or nullptr if its type is unknown.
  const CXmlNode* GetNodeType(const CXmlNode& node) const;
  // Returns all flags of the node's type, as TypeFlag bits; 0 if the type is unknown.
  std::uint32_t FlagsOf(const CXmlNode& node) const;
  // Returns a flag, including ones without a TypeFlag, by its name in the record.
  bool HasTypeFlag(const CXmlNode& node, std::string_view key) const;
  // Returns true if the types allow `child`, a node or a type record, below `parent`. Null nodes
  // are never allowed.
  bool CanContain(const CXmlNode* parent, const CXmlNode* child) const;

 private:
  struct Type {
    const CXmlNode* record = nullptr;
    std::uint32_t flags = 0;
  };

  // Finds a type, first in the cache. An unknown type has no record and no flags.
  const Type& Find(std::string_view elementName) const;

  const std::unique_ptr<CXmlNode> root_;
  std::unordered_map<std::string, Type> byName_;  // by lower-case name
  // Lookup cache, keyed by the address of the name. Common names are interned, so the address
  // usually identifies the name; a rare name may reuse the address of a freed one, so the string is
  // compared as well. Filled on demand; main thread only.
  struct Known {
    std::string name;
    const Type* type = nullptr;
  };
  mutable std::unordered_map<const char*, Known> byAddress_;
};

}  // namespace tarn
