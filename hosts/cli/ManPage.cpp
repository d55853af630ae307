#include "hosts/cli/ManPage.h"

#include "hosts/cli/CommandArguments.h"
#include "hosts/cli/ProgramNotes.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

// Escapes characters that the formatter would interpret as a command or a hyphen.
std::string Plain(const std::string& text) {
  std::string plain = ReplaceAll(text, "\\", "\\e");
  plain = ReplaceAll(plain, "-", "\\-");
  plain = ReplaceAll(plain, "'", "\\(aq");
  plain = ReplaceAll(plain, "`", "\\(ga");
  return plain.starts_with(".") ? "\\&" + plain : plain;
}

std::string Bold(const std::string& text) {
  return "\\fB" + Plain(text) + "\\fR";
}

std::string Italic(const std::string& text) {
  return "\\fI" + Plain(text) + "\\fR";
}

// Formats a sentence; text between grave accents becomes bold.
std::string Prose(const std::string& text) {
  std::string prose;
  const auto pieces = Split(text, '`');
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    const std::string piece(pieces[i]);
    prose += i % 2 == 1 ? Bold(piece) : Plain(piece);
  }
  return prose;
}

std::string Term(const std::string& term, const std::string& help) {
  return ".TP\n" + term + "\n" + Prose(help) + "\n";
}

std::string FlagTerm(const FlagEntry& flag) {
  std::string text;
  for (const std::string& name : flag.names) text += (text.empty() ? "" : ", ") + Bold(name);
  return flag.value.empty() ? text : text + " " + Italic(flag.value);
}

std::string SynopsisOf(const CommandEntry& command) {
  std::string text = Bold(command.Title());
  for (const ArgumentEntry& each : command.arguments) {
    const std::string name = Italic(each.name) + (each.repeated ? "..." : "");
    text += each.required ? " " + name : " [" + name + "]";
  }
  return text;
}

// Adds the executable subcommands, each with its own arguments and options.
void AddCommands(const CommandEntry& command, std::string& text) {
  for (const CommandEntry& each : command.children) AddCommands(each, text);
  if (command.words.empty() || !command.children.empty()) return;
  text += ".SS " + SynopsisOf(command) + "\n" + Prose(command.help) + ".\n";
  for (const ArgumentEntry& each : command.arguments) {
    if (each.kind != ValueKind::Project) text += Term(Italic(each.name), each.help);
  }
  for (const FlagEntry& flag : command.flags) {
    if (!IsCommonFlag(flag.names.back())) text += Term(FlagTerm(flag), flag.help);
  }
}

void AddExamples(const CommandEntry& command, std::string& text) {
  for (const auto& [line, help] : command.examples) text += Term(Bold(line), help);
  for (const CommandEntry& each : command.children) AddExamples(each, text);
}

std::string TableSection(const std::string& heading, const TextTable& table) {
  std::string text = ".SH " + heading + "\n";
  for (const auto& [term, help] : table) text += Term(Bold(term), help);
  return text;
}

std::string CommonFlags(const CommandEntry& program) {
  for (const CommandEntry& command : program.children) {
    if (!command.children.empty()) continue;
    std::string text;
    for (const FlagEntry& flag : command.flags) {
      if (IsCommonFlag(flag.names.back())) text += Term(FlagTerm(flag), flag.help);
    }
    return text;
  }
  return {};
}

}  // namespace

std::string MakeManPage(const CommandEntry& program, const std::string& version) {
  std::string text = ".TH TARN 1 \"\" \"Tarn " + version + "\" \"User Commands\"\n";
  text += ".SH NAME\ntarn \\- build firmware projects\n";
  text += ".SH SYNOPSIS\n" + Bold("tarn") + " " + Italic("COMMAND") + " [" + Italic("PROJECT") +
          "] [" + Italic("options") + "]\n";
  text += ".SH DESCRIPTION\n";
  text += Prose(
              "Tarn manages microcontroller firmware projects: their files, their options with "
              "inheritance and configurations, and their builds with real cross compilers, "
              "rebuilding only what is out of date.") +
          "\n.PP\n";
  text += Italic("PROJECT") + " " +
          Prose(
              "is a project file (*.tprj) or a folder that contains exactly one. Without it, a "
              "command works on the project in the current folder.") +
          "\n";
  text += ".SH COMMANDS\n";
  AddCommands(program, text);
  text += ".SH OPTIONS OF ALL COMMANDS\n" + CommonFlags(program);
  text += TableSection("EXIT STATUS", ExitCodeTexts());
  text += TableSection("ENVIRONMENT", EnvironmentTexts());
  text += TableSection("FILES", FileTexts());
  text += ".SH EXAMPLES\n";
  AddExamples(program, text);
  return text;
}

}  // namespace tarn::host
