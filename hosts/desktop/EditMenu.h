#pragma once

class QMenu;
class QWidget;

namespace tarn::host {

class DeclarationSearch;
class EditorTabs;
class FindBar;

// Creates the Edit menu: undo to select all act on the text widget with the keyboard focus, all
// others on the current editor. `window` owns the menu; the others are borrowed.
QMenu* MakeEditMenu(QWidget& window, EditorTabs& editors, FindBar& findBar,
                    DeclarationSearch& declarations);

}  // namespace tarn::host
