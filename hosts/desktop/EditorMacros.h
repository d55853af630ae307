#pragma once

#include <string>
#include <string_view>

#include "hosts/desktop/EditorTabs.h"
#include "hosts/frame/BuildSession.h"

namespace tarn::host {

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

  // Asks the server again if another text came into view, or an option changed. Not during a build.
  void Follow();

 private:
  std::string CommandsFor(const std::string& path);
  std::string CommandsOf(const std::string& application, const std::string& output,
                         const std::string& source);

  BuildSession& session;
  EditorTabs& editors;
  std::string shownFor;  // text, application and state of the project that were asked for last
};

}  // namespace tarn::host
