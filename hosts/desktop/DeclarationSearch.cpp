#include "hosts/desktop/DeclarationSearch.h"

#include <QStatusBar>

#include "hosts/core/LogEntry.h"
#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/EditorTabs.h"
#include "platform/text/Text.h"
#include "widgets/qt/QtText.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

constexpr int kMessageMs = 8000;

// Returns the row of this symbol with a known declaration, preferring one in `file`; nullptr if
// there is none.
const CXmlNode* FindGlobal(const CXmlNode& globals, const std::string& name,
                           const std::string& file) {
  const CXmlNode* found = nullptr;
  for (const CXmlNode* const row : globals.GetChildren()) {
    if (GetAttribute(row, "Header") != name || GetAttribute(row, "DeclFile").empty()) continue;
    if (found == nullptr || GetAttribute(row, "DeclFile") == file) found = row;
  }
  return found;
}

}  // namespace

void DeclarationSearch::Go() {
  CodeEditor* const editor = editors_.Current();
  if (editor == nullptr) return;
  int line = 0;
  int column = 0;
  editor->getCursorPosition(&line, &column);
  const QString name = editor->wordAtLineIndex(line, column);
  if (name.isEmpty()) {
    bar_.showMessage(tr("No identifier at the cursor"), kMessageMs);
    return;
  }
  const auto globals = ParseXml(queryGlobals ? queryGlobals() : std::string());
  const CXmlNode* const found =
      globals == nullptr ? nullptr : FindGlobal(*globals, FromQt(name), editor->GetPath());
  if (found != nullptr) {
    if (open) open(GetAttribute(found, "DeclFile"), ParseDecimal(found->GetAttrValue("DeclLine")));
    return;
  }
  const bool isBuilt = GetAttribute(globals.get(), "Found") == "Yes";
  bar_.showMessage((isBuilt ? tr("No global named %1 found")
                            : tr("No global named %1 found; build the project first"))
                       .arg(name),
                   kMessageMs);
}

}  // namespace tarn::host
