#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "hosts/core/check/CheckScope.h"

namespace tarn::host {

// Checks the options stored in nodes: that definitions for them exist, that their values are valid,
// and that the files, folders and libraries in them exist.
class OptionCheck {
 public:
  explicit OptionCheck(CheckScope& checkScope);

  void Check(const CheckedNode& node);

 private:
  // A stored option together with its context in the file.
  struct Stored {
    CheckedNode owner;  // its position is that of the option
    std::string configuration, set, section, name, value;
    bool isActive = false;  // belongs to the active configuration
  };

  void CheckConfiguration(const Stored& stored);
  void CheckStored(const Stored& stored);
  const OptionDefinition* FindDefinition(const Stored& stored);
  void CheckValue(const Stored& stored, const OptionDefinition& definition);
  void CheckPaths(const Stored& stored, const OptionDefinition& definition);
  void CheckLauncher(const Stored& stored);
  // Returns true if the macros in the value can be expanded.
  static bool IsResolvable(const Stored& stored);
  void CheckLibraries(const Stored& stored);
  void CheckApplications(const Stored& stored);
  bool HasLibrary(const CheckedNode& node, const std::string& name);
  std::vector<std::string> CompilerFoldersOf(const CheckedNode& node);
  std::vector<std::string> OwnLibraryFoldersOf(const CheckedNode& node);
  std::vector<std::string> TargetsOf(const std::string& program, const std::string& library);
  std::vector<std::string> FoldersBeside(const std::string& program);

  CheckScope& scope_;
  std::map<std::string, std::map<std::string, OptionDefinition>> bySet_;  // both lower-case
  std::map<std::string, std::vector<std::string>> foldersByProgram_;
  std::set<std::string> seenConfigurations_;  // lower-case places of nodes with unknown ones
};

}  // namespace tarn::host
