#pragma once

#include <string>
#include <vector>

#include "components/tools/MessageRules.h"
#include "components/tools/ToolMessage.h"
#include "platform/files/FileSystem.h"

namespace tarn::tools {

// Makes messages of the lines that one program says, in their order.
class MessageReader {
 public:
  // `ruleLists` is borrowed; the first list with a rule that fits decides. Names count from
  // `folder` until a line tells of another. `disk` is borrowed and may be null, see ToolPaths.h.
  MessageReader(const MessageRuleLists& ruleLists, std::string folder, FileSystem* disk = nullptr)
      : lists(ruleLists), fileSystem(disk), folders{std::move(folder)} {}

  // `line` is clean; see CleanLine. `isErrorStream`: it is from the standard error stream. Files
  // become absolute.
  ToolMessage Read(const std::string& line, bool isErrorStream = true);

 private:
  std::string Absolute(const std::string& file) const;
  void Change(FolderChange change, const std::string& folder);

  const MessageRuleLists& lists;
  FileSystem* fileSystem;
  std::vector<std::string> folders;  // never empty
};

}  // namespace tarn::tools
