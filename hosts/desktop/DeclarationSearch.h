#pragma once

#include <QCoreApplication>
#include <functional>
#include <string>

class QStatusBar;

namespace tarn::host {

class EditorTabs;

// Leads from a name in an editor to where it is declared, as far as the last build has told.
// Borrows both.
class DeclarationSearch {
  Q_DECLARE_TR_FUNCTIONS(DeclarationSearch)

 public:
  DeclarationSearch(EditorTabs& editorTabs, QStatusBar& statusBar)
      : editors(editorTabs), bar(statusBar) {}

  // The globals that are known, as the server lists them (see InspectorDriver::GetGlobals).
  std::function<std::string()> askGlobals;
  // Shows a place.
  std::function<void(const std::string& file, int line)> open;

  // From the name at the cursor of the editor in view. The bar says when it is not known.
  void Go();

 private:
  EditorTabs& editors;
  QStatusBar& bar;
};

}  // namespace tarn::host
