#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "hosts/core/BuildSession.h"
#include "hosts/desktop/EditorTabs.h"

namespace tarn::host {

class CodeEditor;

// Returns the macros that a compiler has when it compiles a source, as "NAME" or "NAME=VALUE"
// separated by spaces: predefined ones and those defined by arguments, except for those undefined
// by a later argument. `commands` is the tool manager's reply.
std::string ReadGivenMacros(const std::string& commands);

// Returns true if all names beginning with two underscores in the conditions of the text are among
// the macros or defined in the text. Unknown ones may be predefined by the compiler.
bool KnowsConditions(std::string_view text, std::string_view macros);

// Greys out code excluded by the active configuration in the current editor, based on the
// compiler's macros and those defined in the text itself. A header uses the macros of the
// application's first source. If the macros are not sufficient to decide the conditions, nothing is
// greyed out.
//
// Borrows session and editors. Main thread only.
class EditorMacros {
 public:
  EditorMacros(BuildSession& buildSession, EditorTabs& editorTabs);

  // Queries the server again if a different text is in view or an option has changed, and evaluates
  // the conditions again if a text has changed. Must not be called during a build.
  void Follow();
  // Call this when all options are published: replies that were incomplete are requested again by
  // the next Follow.
  void OnOptionsLoaded() { askedFor_.clear(); }

 private:
  std::string CommandsFor(const std::string& path);
  void Judge(CodeEditor& editor);

  BuildSession& session_;
  EditorTabs& editors_;
  std::string askedFor_;               // text, application and project state of the last query
  std::optional<std::string> macros_;  // its result; nullopt if not known yet
  std::optional<bool> areComplete_;    // as set in the editor; nullopt if not set
  int judgedChanges_ = 0;              // text change count at that time
};

}  // namespace tarn::host
