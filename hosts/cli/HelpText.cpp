#include "hosts/cli/HelpText.h"

#include <algorithm>

#include "hosts/cli/ProgramNotes.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr std::size_t kWidth = 79;       // some terminals wrap a line that fills the last column
constexpr std::size_t kWidestTerm = 26;  // a wider term gets a separate line

// Wraps the text into lines of at most `width` bytes; a longer word gets its own line.
std::vector<std::string> Wrap(const std::string& text, std::size_t width) {
  std::vector<std::string> lines(1);
  for (const std::string_view word : Split(text, ' ')) {
    std::string& line = lines.back();
    if (!line.empty() && line.size() + 1 + word.size() > width) {
      lines.emplace_back(word);
    } else {
      line.append(line.empty() ? "" : " ").append(word);
    }
  }
  return lines;
}

// Formats a heading and a table of two columns; returns an empty string if there are no rows.
std::string Section(const std::string& heading, const TextTable& rows, std::size_t widestTerm) {
  if (rows.empty()) return {};
  std::size_t column = 0;
  for (const auto& [term, help] : rows) {
    if (term.size() <= widestTerm) column = std::max(column, term.size());
  }
  column += 4;
  std::string text = "\n" + heading + "\n";
  for (const auto& [term, help] : rows) {
    std::string line = "  " + term;
    for (const std::string& part : Wrap(help, kWidth - column)) {
      if (line.size() + 2 > column) {
        text += line + "\n";
        line.clear();
      }
      line.resize(column, ' ');
      text += line + part + "\n";
      line.clear();
    }
  }
  return text;
}

std::string TermOf(const FlagEntry& flag) {
  const bool hasShort = flag.names.front().size() == 2;
  std::string term = hasShort ? "" : "    ";
  for (std::size_t i = 0; i < flag.names.size(); ++i) term += (i > 0 ? ", " : "") + flag.names[i];
  return flag.value.empty() ? term : term + " " + flag.value;
}

TextTable RowsOf(const std::vector<CommandEntry>& commands, const CommandGroup* group) {
  TextTable rows;
  for (const CommandEntry& each : commands) {
    if (group == nullptr || each.group == *group) rows.emplace_back(each.words.back(), each.help);
  }
  return rows;
}

std::string CommandSections(const CommandEntry& command) {
  if (!command.words.empty()) {
    return Section("Commands", RowsOf(command.children, nullptr), kWidestTerm);
  }
  // All groups use the same column.
  std::size_t widest = 0;
  for (const CommandEntry& each : command.children) {
    widest = std::max(widest, each.words.back().size());
  }
  std::string text;
  for (const CommandGroup group : {CommandGroup::Building, CommandGroup::Files,
                                   CommandGroup::Settings, CommandGroup::Integration}) {
    TextTable rows = RowsOf(command.children, &group);
    for (auto& [name, help] : rows) name.resize(widest, ' ');
    text += Section(HeadingOf(group), rows, kWidestTerm);
  }
  return text;
}

}  // namespace

std::string MakeHelpText(const CommandEntry& command) {
  std::string text = command.help + (command.help.ends_with(".") ? "" : ".") + "\n";
  text += "\nUsage: " + command.Usage() + "\n" + CommandSections(command);
  TextTable arguments;
  for (const ArgumentEntry& each : command.arguments) arguments.emplace_back(each.name, each.help);
  text += Section("Arguments", arguments, kWidestTerm);
  TextTable flags;
  for (const FlagEntry& each : command.flags) flags.emplace_back(TermOf(each), each.help);
  text += Section("Options", flags, kWidestTerm);
  text += Section("Examples", command.examples, kWidth);
  if (!command.words.empty()) return text;
  text += Section("Exit codes", ExitCodeTexts(), kWidestTerm);
  return text +
         "\nWithout PROJECT, a command works on the project file in the current folder.\n"
         "See `tarn COMMAND --help` for more about a command.\n";
}

}  // namespace tarn::host
