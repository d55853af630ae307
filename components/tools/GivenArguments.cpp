#include "components/tools/GivenArguments.h"

#include <algorithm>
#include <utility>

#include "components/tools/FileList.h"
#include "platform/text/Text.h"

namespace tarn::tools {

namespace {

// Splits a response file as compilers and linkers do: quotes of both kinds hold words together, and
// a backslash makes the character after it an ordinary one, within quotes, too.
std::vector<std::string> SplitResponse(std::string_view text) {
  std::vector<std::string> words;
  bool isWord = false;
  char quote = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char each = text[i];
    if (quote == 0 && IsSpace(each)) {
      isWord = false;
      continue;
    }
    if (!isWord) words.emplace_back();
    isWord = true;
    if (each == '\\') {
      if (i + 1 < text.size()) words.back() += text[++i];
    } else if (quote == 0 && (each == '"' || each == '\'')) {
      quote = each;
    } else if (each == quote) {
      quote = 0;
    } else {
      words.back() += each;
    }
  }
  return words;
}

class Expander {
 public:
  Expander(const ToolCommand& toolCommand, FileSystem* fileSystem)
      : command_(toolCommand), disk_(fileSystem) {}

  GivenArguments Expand() {
    for (std::size_t i = command_.launched; i < command_.arguments.size(); ++i) {
      Add(command_.arguments[i]);
    }
    return std::move(given_);
  }

 private:
  void Add(const std::string& word) {
    // Programs that arguments are passed on to don't interpret these flags.
    const bool isCompilers = receiver_ == ' ' && splitReceiver_ == ' ';
    if (isCompilers && PassesParts(word)) {
      splitReceiver_ = word[2];
      for (const std::string_view part : Split(std::string_view(word).substr(3), ',')) {
        if (!part.empty()) Add(std::string(part));
      }
      splitReceiver_ = ' ';
    } else if (word.starts_with('@') && word.size() > 1 && AddResponse(word.substr(1))) {
      return;
    } else if (isCompilers &&
               (word == "-Xlinker" || word == "-Xassembler" || word == "-Xpreprocessor")) {
      receiver_ = word[2];
    } else {
      given_.words.push_back(word);
      const char next = std::exchange(receiver_, ' ');
      given_.receivers += splitReceiver_ == ' ' ? next : splitReceiver_;
    }
  }

  static bool PassesParts(const std::string& word) {
    return word.size() > 3 && word.starts_with("-W") && (word[3] == ',' || word[3] == '-');
  }

  // Reads each file once, so that files that refer to each other don't cause an endless loop.
  // Returns false for further mentions: they may be for another program.
  bool AddResponse(const std::string& name) {
    if (disk_ == nullptr) return false;
    std::string path = AbsolutePath(disk_, command_.folder, name);
    auto& known = given_.responseFiles;
    if (std::find(known.begin(), known.end(), path) != known.end()) return false;
    const auto text = disk_->ReadWholeFile(path);
    if (!text) return false;
    known.push_back(std::move(path));
    for (const std::string& word : SplitResponse(*text)) Add(word);
    return true;
  }

  const ToolCommand& command_;
  FileSystem* const disk_;
  GivenArguments given_;
  char receiver_ = ' ';       // of the next word
  char splitReceiver_ = ' ';  // of the words in a flag like "-Wl,a,b", and in files that they name
};

}  // namespace

GivenArguments ExpandArguments(const ToolCommand& command, FileSystem* disk) {
  return Expander(command, disk).Expand();
}

const std::string* FindFlag(const std::vector<std::string>& flags, std::string_view word) {
  const std::string* best = nullptr;
  for (const std::string& flag : flags) {
    const bool isLonger = best == nullptr || flag.size() > best->size();
    if (isLonger && word.starts_with(flag)) best = &flag;
  }
  return best;
}

bool FitsPattern(const ArgumentPatterns& patterns, const std::vector<std::string>& words,
                 std::size_t at) {
  const std::string& word = words[at];
  if (!word.starts_with('-')) {
    return std::any_of(patterns.endings.begin(), patterns.endings.end(),
                       [&word](const std::string& ending) { return word.ends_with(ending); });
  }
  const std::string* const flag = FindFlag(patterns.flags, word);
  if (flag == nullptr) return false;
  const bool isValueNext = *flag == word && at + 1 < words.size();
  const std::string text = isValueNext ? word + words[at + 1] : word;
  const std::string* const closest = FindFlag(patterns.flags, text);
  const std::string* const exception = FindFlag(patterns.exceptions, text);
  return exception == nullptr || exception->size() < closest->size();
}

std::vector<FlagValue> FlagValuesOf(const std::vector<std::string>& flags,
                                    const std::vector<std::string>& words) {
  std::vector<FlagValue> values;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string& word = words[i];
    std::size_t best = flags.size();
    for (std::size_t each = 0; each < flags.size(); ++each) {
      const std::string& flag = flags[each];
      const bool isLonger = best == flags.size() || flag.size() > flags[best].size();
      const bool hasEnd =
          !flag.starts_with("--") || word.size() <= flag.size() || word[flag.size()] == '=';
      if (isLonger && hasEnd && word.starts_with(flag)) best = each;
    }
    if (best == flags.size()) continue;
    std::string value = word.substr(flags[best].size());
    if (flags[best].starts_with("--") && !value.empty()) {
      value.erase(0, 1);
    } else if (value.empty() && i + 1 < words.size()) {
      value = words[++i];
    }
    if (!value.empty()) values.push_back({best, std::move(value)});
  }
  return values;
}

std::vector<std::string> ValuesOf(const std::vector<std::string>& flags,
                                  const std::vector<std::string>& words) {
  std::vector<std::string> values;
  for (FlagValue& each : FlagValuesOf(flags, words)) values.push_back(std::move(each.value));
  return values;
}

bool LeavesCodeToTheLink(const ToolDefinition& tool, const std::vector<std::string>& words) {
  bool isLater = false;
  for (const std::string& word : words) {
    if (FindFlag(tool.linkTime, word) != nullptr) isLater = true;
    if (FindFlag(tool.notLinkTime, word) != nullptr) isLater = false;
  }
  return isLater;
}

}  // namespace tarn::tools
