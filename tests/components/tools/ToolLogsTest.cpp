#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <sstream>

#include "components/tools/MessageReader.h"
#include "components/tools/ToolText.h"
#include "platform/text/Text.h"
#include "support/TestEnvironment.h"
#include "tests/components/tools/ShippedTools.h"

// Recorded output of real tools in tests/data/toollogs (created by scripts/make-toollogs), with the
// expected messages: next to each log there is a file with one line per message,
//
//   line number|E, W or P for plain|file|line|bare message
//
// Plain lines that name no file are omitted. File names are relative to the folder in which the
// tool ran, which "folder NAME" in the first line may change. Logs with colors or different line
// endings have to yield the same as the plain log.
namespace tarn::tools {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFolder = "/tmp/firmware";

// by line number
using Seen = std::map<int, std::string>;

struct Counts {
  int messages = 0;
  int expected = 0;
  int found = 0;
  int right = 0;
};

std::string Base(const fs::path& log) {
  std::string name = log.stem();
  for (const std::string variant : {"-colour", "-crlf"}) {
    if (name.ends_with(variant)) name.erase(name.size() - variant.size());
  }
  return log.parent_path() / name;
}

Seen ReadExpected(const std::string& path, std::string& folder) {
  Seen seen;
  std::istringstream lines(tarn::testing::ReadBytes(path));
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("folder ")) {
      folder += '/' + line.substr(7);
    } else {
      seen[ParseDecimal(line.c_str())] = line.substr(line.find('|') + 1);
    }
  }
  return seen;
}

Seen ReadLog(const std::string& path, const MessageRuleLists& rules, const std::string& folder) {
  Seen seen;
  MessageReader reader(rules, folder);
  int number = 0;
  const auto take = [&](std::string_view line) {
    ++number;
    const ToolMessage message = reader.Read(CleanLine(line));
    if (message.severity == Severity::Plain && message.file.empty()) return;
    const char kind = "PEWH"[static_cast<std::size_t>(message.severity)];
    const std::string file = ReplaceAll(message.file, std::string(kFolder) + '/', "");
    seen[number] = kind + ("|" + file + '|' + message.line + '|' + message.content);
  };
  LineAssembler lines;
  lines.Add(tarn::testing::ReadBytes(path), take);
  lines.Finish(take);
  return seen;
}

// Returns file and line of a message, without its kind and text; empty if it names no file.
std::string PositionOf(const Seen& seen, int number) {
  const auto found = seen.find(number);
  if (found == seen.end()) return {};
  const auto parts = Split(found->second, '|');
  return parts[1].empty() ? std::string() : std::string(parts[1]) + ':' + std::string(parts[2]);
}

void Count(const Seen& expected, const Seen& found, Counts& counts) {
  counts.messages += static_cast<int>(expected.size());
  for (const auto& [number, message] : expected) {
    const std::string place = PositionOf(expected, number);
    if (place.empty()) continue;
    ++counts.expected;
    if (place == PositionOf(found, number)) ++counts.right;
  }
  for (const auto& [number, message] : found)
    counts.found += PositionOf(found, number).empty() ? 0 : 1;
}

TEST(ToolLogs, EveryPlaceInWhatRealToolsSayIsFoundAndNoOther) {
  const std::pair<const char*, const char*> tools[] = {
      {"gcc", "gcc"},       {"g++", "gcc"},           {"ld", "gnu-ld gcc"},
      {"avr-gcc", "gcc"},   {"avr-ld", "gnu-ld gcc"}, {"sdcc", "sdcc"},
      {"sdas8051", "sdcc"}, {"sdld", "sdcc"},         {"make", "make gnu-ld gcc"},
  };
  for (const auto& [tool, messages] : tools) {
    Counts counts;
    int logs = 0;
    const MessageRuleLists rules = testing::ShippedMessages(messages);
    for (const auto& entry : fs::directory_iterator(
             tarn::testing::SourcePath(std::string("tests/data/toollogs/") + tool))) {
      if (entry.path().extension() != ".log") continue;
      ++logs;
      std::string folder = kFolder;
      const Seen expected = ReadExpected(Base(entry.path()) + ".expected", folder);
      const Seen found = ReadLog(entry.path(), rules, folder);
      EXPECT_EQ(found, expected) << entry.path();
      Count(expected, found, counts);
    }
    const auto percent = [&](int of) { return of == 0 ? 100.0 : 100.0 * counts.right / of; };
    std::printf("%-9s %2d logs, %3d messages, %3d places", tool, logs, counts.messages,
                counts.expected);
    if (counts.expected > 0) {
      std::printf(": precision %.1f %%, recall %.1f %%", percent(counts.found),
                  percent(counts.expected));
    }
    std::printf("\n");
    EXPECT_GT(counts.messages, 0) << tool;
    EXPECT_EQ(counts.right, counts.found) << tool << " names places that are none";
    EXPECT_EQ(counts.right, counts.expected) << tool << " names places that were missed";
  }
}

}  // namespace
}  // namespace tarn::tools
