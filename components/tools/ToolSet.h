#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "components/tools/ToolDefinitionReader.h"
#include "platform/files/FileSystem.h"
#include "platform/text/Text.h"

namespace tarn::tools {

// Returns the environment variable with the folder of a toolchain: TARN_AVR_GCC for "avr-gcc".
std::string VariableOfToolchain(std::string_view toolchain);

// All known tools. Immutable once loaded, so it can be read from any thread.
class ToolSet {
 public:
  ToolSet() = default;
  // Loads every *.tools file of the folder and then of each of the `further` ones, in order of file
  // names. If two tools have the same name, the later one wins; if they are in the same folder, an
  // error is recorded. A missing folder yields an error, a missing further one doesn't.
  static std::unique_ptr<ToolSet> FromFolder(FileSystem& files, const std::string& folder,
                                             const std::vector<std::string>& further = {},
                                             const ToolchainLocator& locate = {});

  // Returns a digest of the names and contents of all definition files in these folders.
  static std::uint64_t DigestOf(FileSystem& files, const std::string& folder,
                                const std::vector<std::string>& further = {});
  // Returns the digest of the files that this set was loaded from.
  std::uint64_t GetDigest() const { return digest_; }

  // Returns true if the toolchains still are where they were when this set was loaded.
  bool HasLocations(const ToolchainLocator& locate) const;

  // Returns nullptr if the tool does not exist. Ignores case.
  const ToolDefinition* Find(std::string_view name) const;
  // Returns why the tool can't be used although it is defined; an empty string if there is no error
  // in its last definition. `name` may also be that of an action that such a tool performs.
  std::string FindFault(std::string_view name) const;
  // Returns the message rules for a program without a definition: the list "gcc", whose patterns
  // most compilers share, if it exists.
  MessageRuleLists CommonMessages() const;
  // Returns the element that lists the tools and the actions for an extension (including its dot),
  // at most kMaxListed of them.
  std::string ToolsForExtension(std::string_view extension) const;
  const ActionRules& Actions() const { return actions_; }
  // Returns nullptr if the action does not exist. Ignores case.
  const ActionRule* FindAction(std::string_view name) const;
  std::vector<const ToolDefinition*> ToolsForAction(std::string_view action) const;
  // Returns true if a tool accepts files with this extension.
  bool HasExtension(std::string_view extension) const {
    return listsByExtension_.contains(FoldCase(extension));
  }
  // Returns the element that describes all tools.
  std::string ListText() const;
  const std::vector<std::string>& Errors() const { return errors_; }
  // Returns why tools may be missing: the folder or a file can't be read, or the folder defines no
  // tool. Empty if there is no known reason.
  const std::string& Problem() const { return problem_; }
  // Returns the folder that the tools were loaded from.
  const std::string& Folder() const { return folder_; }
  // Returns the value of $(Install.ConfigFolder), including its trailing separator: the folder that
  // contains Folder(). Empty if no tools were loaded.
  const std::string& ConfigFolder() const { return configFolder_; }

  static constexpr std::size_t kMaxListed = 20;  // the number of commands available for them

 private:
  void Take(std::unique_ptr<ToolDefinition> tool);
  void PrepareLists();

  std::vector<std::unique_ptr<ToolDefinition>> tools_;
  FaultyTools faulty_;
  ActionRules actions_;
  NamedMessageRules messages_;
  std::map<std::string, std::string> toolchains_;  // their folders, which may be empty
  std::map<std::string, const ToolDefinition*, std::less<>> byName_;  // by lower-case name
  std::map<std::string, std::string, std::less<>> listsByExtension_;  // serialized elements
  std::vector<std::string> errors_;
  std::string problem_;
  std::string folder_;
  std::string configFolder_;
  std::uint64_t digest_ = 0;
};

}  // namespace tarn::tools
