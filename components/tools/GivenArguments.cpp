#include "components/tools/GivenArguments.h"

#include <algorithm>

#include "components/tools/FileList.h"
#include "platform/text/Text.h"

namespace tarn::tools {

namespace {

class Expander {
 public:
  Expander(const ToolCommand& toolCommand, FileSystem* fileSystem)
      : command(toolCommand), disk(fileSystem) {}

  GivenArguments Expand() {
    for (std::size_t i = command.launched; i < command.arguments.size(); ++i) {
      Add(command.arguments[i]);
    }
    return std::move(given);
  }

 private:
  void Add(const std::string& word) {
    const bool isPassedOn = word.size() > 3 && word.starts_with("-W") && word[3] == ',';
    if (isPassedOn) {
      for (const std::string_view part : Split(std::string_view(word).substr(4), ',')) {
        if (!part.empty()) Add(std::string(part));
      }
    } else if (word.starts_with('@') && word.size() > 1 && AddResponse(word.substr(1))) {
      return;
    } else if (word != "-Xlinker" && word != "-Xassembler" && word != "-Xpreprocessor") {
      given.words.push_back(word);
    }
  }

  // Reads each file once, so that files that name each other come to an end.
  bool AddResponse(const std::string& name) {
    if (disk == nullptr) return false;
    std::string path = AbsolutePath(disk, command.folder, name);
    auto& known = given.responseFiles;
    if (std::find(known.begin(), known.end(), path) != known.end()) return true;
    const auto text = disk->ReadWholeFile(path);
    if (!text) return false;
    known.push_back(std::move(path));
    for (const std::string& word : SplitWords(*text)) Add(word);
    return true;
  }

  const ToolCommand& command;
  FileSystem* const disk;
  GivenArguments given;
};

}  // namespace

GivenArguments ExpandArguments(const ToolCommand& command, FileSystem* disk) {
  return Expander(command, disk).Expand();
}

std::vector<std::string> ValuesOf(const std::vector<std::string>& flags,
                                  const std::vector<std::string>& words) {
  std::vector<std::string> values;
  for (std::size_t i = 0; i < words.size(); ++i) {
    for (const std::string& flag : flags) {
      if (!words[i].starts_with(flag)) continue;
      std::string value = words[i].substr(flag.size());
      if (flag.starts_with("--") && !value.empty()) {
        if (value.front() != '=') continue;
        value.erase(0, 1);
      } else if (value.empty() && i + 1 < words.size()) {
        value = words[++i];
      }
      if (!value.empty()) values.push_back(std::move(value));
      break;
    }
  }
  return values;
}

}  // namespace tarn::tools
