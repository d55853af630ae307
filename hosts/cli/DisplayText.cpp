#include "hosts/cli/DisplayText.h"

#include <algorithm>
#include <cstdio>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr std::size_t kMostLevelsUp = 2;

struct MessageLabel {
  LogKind kind;
  const char* word;
  Paint paint;
};

constexpr MessageLabel kMessageLabels[] = {
    {LogKind::Error, "error", Paint::Red},
    {LogKind::Warning, "warning", Paint::Yellow},
};

// Colours the first "error" or "warning" that is a separate word before a colon.
ConsoleText DyeKind(const std::string& text, const MessageLabel& kind, const Console& console) {
  for (const std::string& word : {std::string("fatal ") + kind.word, std::string(kind.word)}) {
    const std::size_t at = text.find(word + ":");
    if (at == std::string::npos) continue;
    return text.substr(0, at) + console.Dye(kind.paint, word + ":") +
           text.substr(at + word.size() + 1);
  }
  return console.Dye(kind.paint, std::string(kind.word) + ":") + " " + text;
}

// Returns the rest of the line after the file name, with the column, if the tool's position matches
// that of the entry.
std::string TextAfterFile(const LogEntry& entry) {
  const std::string place = ":" + std::to_string(entry.line) + ":";
  const std::size_t at = entry.text.find(place);
  if (at == std::string::npos) return {};
  const bool namesFile =
      EndsWithNoCase(std::string_view(entry.text).substr(0, at), FileNameOf(entry.file));
  return namesFile ? entry.text.substr(at) : std::string();
}

// Returns the part of a line that names the file, as the tool wrote it: the whole path, or as much
// of its end as the line contains, including leading "../". Empty if there is none.
std::string_view FindName(std::string_view line, std::string_view file) {
  constexpr std::string_view kUp = "../";
  const auto isStart = [line](std::size_t at) {
    return at == 0 || std::string_view(" '\"`(").find(line[at - 1]) != std::string_view::npos;
  };
  for (std::size_t from = 0; from < file.size(); from = file.find(kSeparator, from) + 1) {
    const std::string_view end = file.substr(from);
    for (std::size_t at = line.find(end); at != line.npos; at = line.find(end, at + 1)) {
      std::size_t start = at;
      while (start >= kUp.size() && line.substr(start - kUp.size(), kUp.size()) == kUp) {
        start -= kUp.size();
      }
      if (isStart(start)) return line.substr(start, at + end.size() - start);
    }
    if (file.find(kSeparator, from) == file.npos) break;
  }
  return {};
}

}  // namespace

std::string DisplayPath(const std::string& path, const std::string& folder) {
  if (IsRelativePath(path) || folder.empty()) return path;
  // The OS resolves a symbolic link before this "..", so the path can't be shortened lexically.
  if (FindParentStep(path) != std::string::npos) return path;
  std::string relative = ReplaceAll(RelativeDiskPath(folder, path), "\\", "/");
  if (relative.empty()) return path;
  if (relative.starts_with("./")) relative.erase(0, 2);
  std::size_t levels = 0;
  while (std::string_view(relative).substr(levels * 3).starts_with("../")) ++levels;
  // A relative path that passes through the root is less readable than the path itself.
  const auto depth = static_cast<std::size_t>(std::count(folder.begin(), folder.end(), '/'));
  return levels > kMostLevelsUp || (levels > 0 && levels >= depth) ? path : relative;
}

ConsoleText DisplayEntry(const LogEntry& entry, const std::string& folder, const Console& console) {
  const MessageLabel* kind = nullptr;
  for (const MessageLabel& each : kMessageLabels) {
    if (each.kind == entry.kind) kind = &each;
  }
  const std::string text = Printable(entry.text);
  if (kind == nullptr || entry.file.empty()) {
    if (kind != nullptr) return DyeKind(text, *kind, console);
    const std::string_view name = FindName(text, entry.file);
    if (!name.empty()) {
      const auto at = static_cast<std::size_t>(name.data() - text.data());
      return text.substr(0, at) + DisplayPath(entry.file, folder) + text.substr(at + name.size());
    }
    return entry.kind == LogKind::Heading ? console.Dye(Paint::Bold, text) : text;
  }
  const std::string file = Printable(DisplayPath(entry.file, folder));
  std::string rest = Printable(TextAfterFile(entry));
  const std::string word = std::string(kind->word) + ":";
  if (rest.empty()) {
    if (entry.line > 0) rest = ":" + std::to_string(entry.line);
    rest += ": " + word + " " + Printable(entry.message);
  } else if (rest.find(word) == std::string::npos) {
    // Not every tool prints the severity; insert it after line and column.
    rest.insert(std::min(rest.find_first_not_of(":0123456789"), rest.size()), " " + word);
  }
  return console.Dye(Paint::Bold, file) + DyeKind(rest, *kind, console);
}

std::string ClockText(std::chrono::milliseconds elapsed) {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(elapsed).count();
  char text[32];
  std::snprintf(text, sizeof text, "%lld:%02lld", static_cast<long long>(seconds / 60),
                static_cast<long long>(seconds % 60));
  return text;
}

std::string DurationText(std::chrono::milliseconds elapsed) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f s", static_cast<double>(elapsed.count()) / 1000.0);
  return text;
}

std::string SecondsText(std::chrono::milliseconds elapsed) {
  std::string text = DurationText(elapsed);
  std::erase(text, ' ');
  return text;
}

std::string CountText(int count, std::string_view noun) {
  return std::to_string(count).append(" ").append(noun).append(count == 1 ? "" : "s");
}

std::size_t ColumnsOf(std::string_view text) {
  const auto startsCharacter = [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  };
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), startsCharacter));
}

std::string Padded(std::string text, std::size_t columns) {
  const std::size_t taken = ColumnsOf(text);
  if (taken < columns) text.append(columns - taken, ' ');
  return text;
}

}  // namespace tarn::host
