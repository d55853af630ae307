#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "hosts/core/BuildSession.h"
#include "hosts/desktop/EditorTabs.h"

namespace tarn::host {

class CodeEditor;

// The macros that a compiler is given for a source, each as "NAME" or "NAME=VALUE" with blanks
// between: those that it defines by itself and that arguments define, without those that a later
// argument takes away. `commands` is the tool manager's reply.
std::string ReadGivenMacros(const std::string& commands);

// Whether all names beginning with two underscores that the conditions of the text ask for are
// among the macros or defined in the text. Others may be the compiler's own.
bool KnowsConditions(std::string_view text, std::string_view macros);

// Greys in the editor in view the code that the active configuration leaves out, as far as the
// macros tell that the compiler is given and that the text itself defines. A header has those of
// the application's first source. A text whose conditions need more than that stays as it is.
//
// Borrows session and editors. On the main thread.
class EditorMacros {
 public:
  EditorMacros(BuildSession& buildSession, EditorTabs& editorTabs);

  // Asks the server again if another text came into view, or an option changed, and judges the
  // conditions again if a text has changed. Not during a build.
  void Follow();
  // All options are known: what the server could not tell before is asked for at the next Follow.
  void OnOptionsLoaded() { askedFor.clear(); }

 private:
  std::string CommandsFor(const std::string& path);
  void Judge(CodeEditor& editor);

  BuildSession& session;
  EditorTabs& editors;
  std::string askedFor;  // text, application and state of the project that were asked for last
  std::optional<std::string> macros;  // of that; nothing if the server doesn't know them yet
  std::optional<bool> areComplete;    // as the editor was told; nothing if it wasn't
  int judgedChanges = 0;              // how often texts had changed then
};

}  // namespace tarn::host
