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

// A node of the tree, with what the check of it needs to know of its surroundings.
struct CheckedNode {
  const CXmlNode* node = nullptr;
  const CXmlNode* application = nullptr;   // it belongs to or is; null for the project
  std::string place;                       // for the inspector's SelectNodeByPlace
  std::string listedIn;                    // file in which its parent lists it
  int line = 0;                            // there, from 1; 0 if it is not found there
  std::string writtenPath;                 // there; in memory it is resolved
  const FileElements* elements = nullptr;  // of the file with its contents; null: none is readable
  std::size_t element = 0;                 // in them; 0 if it is not found there
  std::string file;                        // with its contents: for an application its own
};

// A tool as its definition describes it.
struct KnownTool {
  std::vector<std::string> programs;  // without optional ones
};

// A path as a project names it.
struct NamedPath {
  std::string text;
  std::string option;  // that has it; empty for the node's own path
  FindingKind ifMissing = FindingKind::MissingFile;
  enum class Wanted { Anything, File, Folder } wanted = Wanted::Anything;
  bool isResolved = false;  // macros in it are replaced, which may well make it absolute
};

// What the parts of a check share: the project's tree and definitions as they are at its start, and
// the findings so far.
class CheckScope {
 public:
  CheckScope(BuildSession& buildSession, FileSystem& fileSystem);

  // A finding about a node; the caller adds what it is.
  Finding& Add(FindingKind kind, const CheckedNode& node);
  // A finding about none.
  Finding& Add(FindingKind kind);
  // The path in a node's application, or in the project for a node of none.
  std::string AbsolutePath(const CheckedNode& node, const std::string& path) const;
  // The path in an option of a node, also of an application itself.
  std::string OptionPath(const CheckedNode& node, const std::string& path) const;
  // The option values that the node's tool would get, else those of its application.
  const OptionValues& ValuesOf(const CheckedNode& node);
  // Whether a node of this type stands for a file.
  bool NeedsFile(const CXmlNode& node) const;
  // Checks a path that should be there.
  void CheckPath(const CheckedNode& node, const NamedPath& named);

  BuildSession& session;
  FileSystem& files;
  std::vector<Finding> findings;
  std::vector<CheckedNode> nodes;  // in the order of the tree
  OptionTable options;
  std::set<std::string> types;                 // names in small letters; empty: not known
  std::set<std::string> fileTypes;             // those of nodes that stand for a file
  std::map<std::string, KnownTool> tools;      // by names in small letters
  std::set<std::string> madeByTools;           // options that name a tool's outputs, small letters
  std::map<std::string, std::size_t> outputs;  // path: the first node that makes it

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

  std::unique_ptr<CXmlNode> tree;
  std::map<std::string, std::unique_ptr<FileElements>> elementsByFile;
  std::map<std::string, OptionValues> valuesByOutput;
};

// The configuration of an application that names none, which every application has.
inline constexpr const char* kStandardConfiguration = "Standard";

// Label of a node, or the name of its file.
std::string LabelOf(const CXmlNode& node);
// Configuration that is active for the node's application.
std::string ConfigurationOf(const CheckedNode& node);

}  // namespace tarn::host
