#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "components/tools/DefinitionReader.h"
#include "platform/files/FileSystem.h"
#include "platform/text/Text.h"

namespace tarn::tools {

// All tools that are known. Made once, then only read, from any thread.
class ToolSet {
 public:
  ToolSet() = default;
  // Reads every *.tools file of the folder in the order of the names. Of two tools with one name
  // the later counts, and the errors say so. A missing folder gives an empty set and an error.
  static std::unique_ptr<ToolSet> FromFolder(FileSystem& files, const std::string& folder);

  // A number of the names and texts of all definition files of a folder.
  static std::uint64_t DigestOf(FileSystem& files, const std::string& folder);
  // That of the files which this set was read from.
  std::uint64_t GetDigest() const { return digest; }

  // Null when there is none. Names compare without regard to case.
  const ToolDefinition* Find(std::string_view name) const;
  // What a program that no definition tells of may say: the list "gcc", whose shapes most compilers
  // share, if there is one.
  MessageRuleLists CommonMessages() const;
  // The element that lists the tools for an extension with its dot, at most kMaxListed of them.
  std::string ToolsForExtension(std::string_view extension) const;
  // Returns whether a tool takes files with this extension.
  bool HasExtension(std::string_view extension) const {
    return listsByExtension.contains(FoldCase(extension));
  }
  // The element that describes all tools.
  std::string ListText() const;
  const std::vector<std::string>& Errors() const { return errors; }
  // Why tools may be missing: the folder or a file that can't be read, or a folder without a tool.
  // Empty if there is no reason.
  const std::string& Problem() const { return problem; }
  // The folder that the tools come from.
  const std::string& Folder() const { return folder; }

  static constexpr std::size_t kMaxListed = 20;  // as many as there are commands for them

 private:
  void Take(std::unique_ptr<ToolDefinition> tool);
  void PrepareLists();

  std::vector<std::unique_ptr<ToolDefinition>> tools;
  NamedMessageRules messages;
  std::map<std::string, const ToolDefinition*, std::less<>> byName;  // in small letters
  std::map<std::string, std::string, std::less<>> listsByExtension;  // ready-made elements
  std::vector<std::string> errors;
  std::string problem;
  std::string folder;
  std::uint64_t digest = 0;
};

}  // namespace tarn::tools
