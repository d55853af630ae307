#include "components/tools/FileList.h"

#include <algorithm>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::tools {

namespace {

void AddPath(std::vector<std::string>& paths, std::string_view path) {
  if (!path.empty()) paths.push_back(ToNativeSeparators(path));
}

// Returns the position of the quote that ends an entry. It is followed by a comma or the end of the
// list, so that other quotes are part of the name.
std::size_t FindClosingQuote(std::string_view list, std::size_t at) {
  for (std::size_t i = list.find('"', at); i != std::string_view::npos; i = list.find('"', i + 1)) {
    if (i + 1 == list.size() || list[i + 1] == ',') return i;
  }
  return list.size();
}

class WordSplitter {
 public:
  std::vector<std::string> Split(std::string_view line) {
    for (std::size_t i = 0; i < line.size(); ++i) {
      const char next = i + 1 < line.size() ? line[i + 1] : '\0';
      if (IsProtection(line[i], next)) {
        Take(next);
        ++i;
      } else {
        TakePlain(line[i]);
      }
    }
    EndWord();
    return std::move(words_);
  }

 private:
  bool IsProtection(char c, char next) const {
    if (c != '\\' || quote_ == '\'') return false;
    return next == '"' || next == '\\' || (quote_ == '\0' && (next == '\'' || next == ' '));
  }

  void TakePlain(char c) {
    if (quote_ == '\0' && IsSpace(c)) {
      EndWord();
    } else if (c == quote_) {
      quote_ = '\0';
    } else if (quote_ == '\0' && (c == '"' || c == '\'')) {
      quote_ = c;
      isInWord_ = true;
    } else {
      Take(c);
    }
  }

  void Take(char c) {
    word_ += c;
    isInWord_ = true;
  }

  void EndWord() {
    if (isInWord_) words_.push_back(word_);
    word_.clear();
    isInWord_ = false;
  }

  char quote_ = '\0';
  bool isInWord_ = false;
  std::string word_;
  std::vector<std::string> words_;
};

}  // namespace

std::vector<std::string> SplitFileList(std::string_view list) {
  std::vector<std::string> paths;
  for (std::size_t at = 0; at < list.size();) {
    if (list[at] == '"') {
      const std::size_t end = FindClosingQuote(list, at + 1);
      AddPath(paths, list.substr(at + 1, end - at - 1));
      at = end + 2;
    } else {
      const std::size_t end = std::min(list.find(',', at), list.size());
      AddPath(paths, Trim(list.substr(at, end - at)));
      at = end + 1;
    }
  }
  return paths;
}

std::vector<std::string> SplitOptionList(std::string_view list) {
  std::vector<std::string> entries;
  for (const std::string_view part : Split(list, ';')) {
    const std::string_view entry = Trim(part);
    if (!entry.empty()) entries.emplace_back(entry);
  }
  return entries;
}

std::vector<std::string> SplitWords(std::string_view line) {
  return WordSplitter().Split(line);
}

std::string JoinWords(const std::vector<std::string>& words) {
  std::string line;
  for (const std::string& word : words) {
    if (!line.empty()) line += ' ';
    const bool isPlain = !word.empty() && word.find_first_of(" \t\"'") == std::string::npos;
    line += isPlain ? word : '"' + ReplaceAll(word, "\"", "\\\"") + '"';
  }
  return line;
}

}  // namespace tarn::tools
