#include "hosts/desktop/EditorMacros.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <set>
#include <vector>

#include "hosts/core/BuildInputs.h"
#include "hosts/core/CompileCommands.h"
#include "hosts/desktop/CodeEditor.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

std::string NameOf(const std::string& macro) {
  return macro.substr(0, macro.find('='));
}

void Remove(std::vector<std::string>& macros, const std::string& name) {
  macros.erase(std::remove_if(macros.begin(), macros.end(),
                              [&name](const std::string& each) { return NameOf(each) == name; }),
               macros.end());
}

void Define(std::vector<std::string>& macros, const std::string& macro) {
  // Macros with parameters or spaces can't decide a condition here.
  if (macro.empty() || macro.find_first_of("( \t\r\n\"") != std::string::npos) return;
  Remove(macros, NameOf(macro));
  macros.push_back(macro);
}

// Predefined for other languages, never by an option.
constexpr std::string_view kOfLanguages[] = {"__cplusplus", "__ASSEMBLER__", "__OBJC__"};

bool IsWordSign(char sign) {
  return sign == '_' || std::isalnum(static_cast<unsigned char>(sign)) != 0;
}

// Returns the next word of the line from `place` on, and advances `place` past it; empty at the
// end.
std::string_view NextWord(std::string_view line, std::size_t& place) {
  while (place < line.size() && !IsWordSign(line[place])) ++place;
  const std::size_t start = place;
  while (place < line.size() && IsWordSign(line[place])) ++place;
  return line.substr(start, place - start);
}

}  // namespace

bool KnowsConditions(std::string_view text, std::string_view macros) {
  std::set<std::string_view> known(std::begin(kOfLanguages), std::end(kOfLanguages));
  for (const std::string_view each : Split(macros, ' '))
    known.insert(each.substr(0, each.find('=')));
  std::vector<std::string_view> asked;
  for (const std::string_view line : Split(text, '\n')) {
    std::size_t place = line.find_first_not_of(" \t");
    if (place == std::string_view::npos || line[place] != '#') continue;
    const std::string_view directive = NextWord(line, place);
    if (directive == "define") {
      known.insert(NextWord(line, place));
    } else if (directive.substr(0, 2) == "if" || directive == "elif") {
      for (std::string_view word = NextWord(line, place); !word.empty();
           word = NextWord(line, place)) {
        if (word.substr(0, 2) == "__") asked.push_back(word);
      }
    }
  }
  return std::all_of(asked.begin(), asked.end(),
                     [&known](std::string_view each) { return known.count(each) != 0; });
}

std::string ReadGivenMacros(const std::string& commands) {
  const auto root = ParseXml(commands);
  if (root == nullptr) return {};
  std::vector<std::string> macros;
  const std::string predefined = GetAttribute(root.get(), "Predefined");
  for (const std::string_view each : Split(predefined, ';')) {
    Define(macros, std::string(each));
  }
  for (const CXmlNode* command : root->GetChildren()) {
    const std::vector<CXmlNode*> arguments = command->GetChildren();
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      std::string text = GetAttribute(arguments[i], "V");
      const std::string flag = text.substr(0, 2);
      if (flag != "-D" && flag != "-U") continue;
      text.erase(0, 2);
      if (text.empty() && i + 1 < arguments.size()) text = GetAttribute(arguments[++i], "V");
      flag == "-D" ? Define(macros, text) : Remove(macros, text);
    }
  }
  std::string list;
  for (const std::string& each : macros) list.append(list.empty() ? "" : " ") += each;
  return list;
}

EditorMacros::EditorMacros(BuildSession& buildSession, EditorTabs& editorTabs)
    : session_(buildSession), editors_(editorTabs) {}

void EditorMacros::Follow() {
  CodeEditor* const editor = editors_.Current();
  if (editor == nullptr || !editor->HasConditions() || !session_.HasProject()) return;
  const std::string wanted = editor->GetPath() + '\n' +
                             session_.Manager().GetSelectedApplication() + '\n' +
                             std::to_string(session_.Inspector().GetChangeCount());
  if (wanted != askedFor_) {
    askedFor_ = wanted;
    areComplete_.reset();
    const std::string commands = CommandsFor(editor->GetPath());
    macros_ = commands.empty() ? std::nullopt : std::optional(ReadGivenMacros(commands));
  }
  if (macros_ && (!areComplete_ || judgedChanges_ != editors_.GetChangeCount())) Judge(*editor);
}

void EditorMacros::Judge(CodeEditor& editor) {
  judgedChanges_ = editors_.GetChangeCount();
  const bool isKnown = KnowsConditions(editor.GetText().toStdString(), *macros_);
  if (areComplete_ != isKnown) editor.SetMacros(*macros_, isKnown);
  areComplete_ = isKnown;
}

// Returns the commands for the source at `path`, or for the first source; an empty string if none
// is known yet.
std::string EditorMacros::CommandsFor(const std::string& path) {
  const std::string application = session_.Manager().GetSelectedApplication();
  const std::string lines = session_.Inspector().GetBuildInputs();
  std::vector<std::string> outputs;
  for (const ApplicationInputs& each : ParseBuildInputs(lines)) {
    if (each.application != application || each.outputs.empty()) continue;
    // The last output is the linked program.
    outputs.assign(each.outputs.begin(), each.outputs.end() - 1);
  }
  const std::string stem = SplitPath(path).title;
  for (const std::string& output : outputs) {
    if (!FileNameOf(output).starts_with(stem)) continue;
    const OutputCommands made = GetOutputCommands(session_, application, output);
    if (std::find(made.sources.begin(), made.sources.end(), path) != made.sources.end()) {
      return made.commands;
    }
  }
  return outputs.empty() ? std::string()
                         : GetOutputCommands(session_, application, outputs.front()).commands;
}

}  // namespace tarn::host
