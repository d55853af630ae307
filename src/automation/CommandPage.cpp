// Generates docs/commands.md, the reference page of all commands, from the command table.

#include <cstdio>
#include <string>

#include "automation/CommandTable.h"

namespace {

using tarn::CommandKind;
using tarn::CommandRow;
using tarn::EnableRule;

constexpr const char* kHead = R"(# Commands

<!-- Made from src/automation/CommandTable.cpp; don't edit. -->

What a user asks for in a menu or a tool bar reaches the project manager as a number:

| Call | What it does |
|---|---|
| `EnableCommand(id)` | tells whether the command can be given now: 1 or 0 |
| `PrologCommand(id)` | goes in front of a command that works in the background: asks the host by message 0x800C whether it may start, and empties the log. 0: don't give the command |
| `Command(id)` | carries it out. 2: work goes on in the background, the command's own or that of another which can't be interrupted, and message 0x800D tells its end; 1: done |
| `EpilogCommand(id)` | goes behind the end of a command that works in the background. 0: the manager has posted commands that follow |

For all other commands prolog and epilog give 1 and do nothing. A number that isn't here is enabled,
and its command does nothing and gives 1.

Menus of the configuration file hold the number of the second column: up to 57600 it counts from
32772, and above it is the command's own.

| Number | In menus | Command | What it does | Enabled | In the background |
|---|---|---|---|---|---|
)";

constexpr std::uint32_t kFirstOwnNumber = 57601;
constexpr std::uint32_t kCountedFrom = 32772;

const char* WordsOf(EnableRule rule) {
  switch (rule) {
    case EnableRule::Always:
      break;
    case EnableRule::UserProject:
      return "not in the default project";
    case EnableRule::WhileBuilding:
      return "while a build runs";
  }
  return "always";
}

std::string RangeText(const char* format, std::uint32_t first, std::uint32_t last) {
  char text[16];
  std::snprintf(text, sizeof text, format, first);
  std::string range = text;
  if (first == last) return range;
  std::snprintf(text, sizeof text, format, last);
  return range + " to " + text;
}

std::uint32_t MenuNumber(std::uint32_t id) {
  return id < kFirstOwnNumber ? id - kCountedFrom : id;
}

void PrintRow(const CommandRow& row) {
  std::printf("| %s | %s | %s | %s | %s | %s |\n", RangeText("0x%X", row.id, row.LastId()).c_str(),
              RangeText("%u", MenuNumber(row.id), MenuNumber(row.LastId())).c_str(), row.name,
              row.help, WordsOf(row.rule), row.kind == CommandKind::Plain ? "" : "yes");
}

}  // namespace

int main() {
  std::fputs(kHead, stdout);
  for (const CommandRow& row : CommandRow::Table()) PrintRow(row);
  return std::fflush(stdout) == 0 ? 0 : 1;
}
