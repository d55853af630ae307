// Generates docs/commands.md, the reference page of all commands, from the command table.

#include <cstdio>
#include <string>

#include "automation/CommandTable.h"

namespace {

using tarn::CommandKind;
using tarn::CommandRow;
using tarn::EnableRule;

constexpr const char* kHead = R"(# Commands

<!-- Generated from src/automation/CommandTable.cpp; don't edit. -->

Menus and tool bars send commands to the project manager as numbers:

| Call | What it does |
|---|---|
| `EnableCommand(id)` | returns whether the command is enabled: 1 or 0 |
| `PrologCommand(id)` | is called before a command that works in the background: asks the host by the message `TARN_MSG_BUILD_STARTING` whether the command may start, and clears the log. 0: the command must not be called |
| `Command(id)` | carries the command out. 2: work continues in the background, for this command or for another one that can't be interrupted, and the message `TARN_MSG_WORKER_ENDED` reports its end; 1: done |
| `EpilogCommand(id)` | is called after a command that works in the background has ended. 0: the manager has posted follow-up commands |

For all other commands, the prolog and the epilog do nothing and return 1. Numbers that are not
listed here are enabled; their commands do nothing and return 1.

Menus in the configuration file contain the number in the second column. Up to 57600 it is an offset
from 32772; above that it is the command's own number.

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
