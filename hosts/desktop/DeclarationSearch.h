#pragma once

#include <QCoreApplication>
#include <functional>
#include <string>

class QStatusBar;

namespace tarn::host {

class EditorTabs;

// Jumps from a name in an editor to its declaration, as far as known from the last build. Borrows
// both arguments.
class DeclarationSearch {
  Q_DECLARE_TR_FUNCTIONS(DeclarationSearch)

 public:
  DeclarationSearch(EditorTabs& editorTabs, QStatusBar& statusBar)
      : editors_(editorTabs), bar_(statusBar) {}

  // Returns the known global symbols, as listed by the server (see InspectorDriver::GetGlobals).
  std::function<std::string()> queryGlobals;
  // Opens a file at a line.
  std::function<void(const std::string& file, int line)> open;

  // Looks up the name at the cursor of the current editor. Shows a message in the status bar if it
  // is unknown.
  void Go();

 private:
  EditorTabs& editors_;
  QStatusBar& bar_;
};

}  // namespace tarn::host
