#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "components/values/OptionValues.h"
#include "hosts/core/BuildSession.h"
#include "hosts/core/OptionTable.h"
#include "hosts/core/check/FileElements.h"
#include "hosts/core/check/Finding.h"

namespace tarn::host {

// A node of the tree, with the context that its check needs.
struct CheckedNode {
  const CXmlNode* node = nullptr;
  const CXmlNode* application = nullptr;   // that contains it or is it; null for the project
  std::string place;                       // argument for the inspector's SelectNodeByPlace
  std::string listedIn;                    // file that contains its parent's list of children
  int line = 0;                            // in that file, from 1; 0 if not found
  std::string writtenPath;                 // as written in that file; resolved in memory
  const FileElements* elements = nullptr;  // of the file with its contents; null if unreadable
  std::size_t element = 0;                 // index in them; 0 if not found
  std::string file;                        // file with its contents: its own for an application
};

// A tool as its definition describes it.
struct KnownTool {
  std::vector<std::string> programs;  // required programs
};

// A path as written in a project.
struct NamedPath {
  std::string text;
  std::string option;  // option that contains it; empty for the node's own path
  FindingKind ifMissing = FindingKind::MissingFile;
  enum class Wanted { Anything, File, Folder } wanted = Wanted::Anything;
  bool isResolved = false;  // macros are expanded, which may have made it absolute
};

// State shared by the parts of a check: the project's tree and definitions at the start of the
// check, and the findings so far.
class CheckScope {
 public:
  CheckScope(BuildSession& buildSession, FileSystem& fileSystem);

  // Adds a finding about a node; the caller fills in subject and detail.
  Finding& Add(FindingKind kind, const CheckedNode& node);
  // Adds a finding that concerns no node.
  Finding& Add(FindingKind kind);
  // Resolves a path relative to the node's application, or to the project if it has none.
  std::string AbsolutePath(const CheckedNode& node, const std::string& path) const;
  // Resolves a path in an option of a node or of the application itself.
  std::string OptionPath(const CheckedNode& node, const std::string& path) const;
  // Returns the option values that the node's tool would receive, else those of its application.
  const OptionValues& ValuesOf(const CheckedNode& node);
  // Returns true if a node of this type represents a file.
  bool NeedsFile(const CXmlNode& node) const;
  // Checks that a path exists and is of the expected kind.
  void CheckPath(const CheckedNode& node, const NamedPath& named);

  BuildSession& session;
  FileSystem& files;
  std::vector<Finding> findings;
  std::vector<CheckedNode> nodes;  // in tree order
  OptionTable options;
  std::set<std::string> types;                 // lower-case names; empty: unknown
  std::set<std::string> fileTypes;             // those of nodes that represent a file
  std::map<std::string, KnownTool> tools;      // by lower-case name
  std::set<std::string> madeByTools;           // lower-case options that name a tool's outputs
  std::map<std::string, std::size_t> outputs;  // path: first node that produces it

 private:
  std::string AbsoluteIn(const CXmlNode* application, const std::string& path) const;
  void ReadTools();
  void ReadTypes();
  void AddNodes();
  void AddNode(const CheckedNode& node);
  std::vector<CheckedNode> ChildrenOf(const CheckedNode& parent);
  void Locate(CheckedNode& node, const CheckedNode& parent, std::size_t& after);
  void EnterFile(CheckedNode& application);
  const FileElements* ElementsOf(const std::string& path);
  bool IsFoundElsewhere(const CheckedNode& node, const std::string& path);

  std::unique_ptr<CXmlNode> tree_;
  std::map<std::string, std::unique_ptr<FileElements>> elementsByFile_;
  std::map<std::string, OptionValues> valuesByOutput_;
};

// The default configuration, which every application has.
inline constexpr const char* kStandardConfiguration = "Standard";

// Returns the label of a node, or the name of its file if it has none.
std::string LabelOf(const CXmlNode& node);
// Returns the active configuration of the node's application.
std::string ConfigurationOf(const CheckedNode& node);

}  // namespace tarn::host
