#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "hosts/core/check/CheckScope.h"

namespace tarn::host {

// Checks the options that nodes have stored: whether definitions have them, whether the values fit,
// and the files, folders and libraries that they name.
class OptionCheck {
 public:
  explicit OptionCheck(CheckScope& checkScope);

  void Check(const CheckedNode& node);

 private:
  // A stored option on the way from the file to its definition.
  struct Stored {
    CheckedNode owner;  // whose position is that of the option
    std::string configuration, set, section, name, value;
    bool isActive = false;  // its configuration is
  };

  void CheckConfiguration(const Stored& stored);
  void CheckStored(const Stored& stored);
  const OptionDefinition* FindDefinition(const Stored& stored);
  void CheckValue(const Stored& stored, const OptionDefinition& definition);
  void CheckPaths(const Stored& stored, const OptionDefinition& definition);
  void CheckLauncher(const Stored& stored);
  // Whether what macros stand for in the value is known.
  static bool IsResolvable(const Stored& stored);
  void CheckLibraries(const Stored& stored);
  bool HasLibrary(const CheckedNode& node, const std::string& name);
  std::vector<std::string> LibraryFoldersOf(const CheckedNode& node);
  std::vector<std::string> FoldersBeside(const std::string& program);

  CheckScope& scope;
  std::map<std::string, std::map<std::string, OptionDefinition>> bySet;  // both in small letters
  std::map<std::string, std::vector<std::string>> foldersByProgram;
  std::set<std::string> seenConfigurations;  // places of nodes with unknown ones, in small letters
};

}  // namespace tarn::host
