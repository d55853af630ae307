#pragma once

#include <string>
#include <vector>

#include "components/tools/MessageRules.h"
#include "components/tools/ToolMessage.h"
#include "platform/files/FileSystem.h"

namespace tarn::tools {

// Converts the output lines of one program to messages, in order. Tracks the folder that relative
// names refer to.
class MessageReader {
 public:
  // `ruleLists` is borrowed; the first list with a matching rule wins. Names are relative to
  // `folder` until a line announces a different one. `disk` is borrowed and may be null, see
  // ToolPaths.h.
  MessageReader(const MessageRuleLists& ruleLists, std::string folder, FileSystem* disk = nullptr)
      : lists_(ruleLists), fileSystem_(disk), folders_{std::move(folder)} {}

  // `line` must have been cleaned with CleanLine. `isErrorStream`: the line is from the standard
  // error stream. Makes file names absolute.
  ToolMessage Read(const std::string& line, bool isErrorStream = true);

 private:
  std::string Absolute(const std::string& file) const;
  void Change(FolderChange change, const std::string& folder);

  const MessageRuleLists& lists_;
  FileSystem* fileSystem_;
  std::vector<std::string> folders_;  // never empty
};

}  // namespace tarn::tools
