#pragma once

class QMenu;
class QWidget;

namespace tarn::host {

class DeclarationSearch;
class EditorTabs;
class FindBar;

// The menu of what is done to texts: undo to select all concern the text that has the keyboard, the
// rest the editor in view. `window` owns the menu; the others are borrowed.
QMenu* MakeEditMenu(QWidget& window, EditorTabs& editors, FindBar& findBar,
                    DeclarationSearch& declarations);

}  // namespace tarn::host
