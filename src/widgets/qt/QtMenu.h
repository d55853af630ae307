#pragma once

#include "widgets/Menu.h"
#include "widgets/Wnd.h"

namespace tarn {

// Shows the menu at a point of the screen and runs a nested loop until the user has decided.
// Returns the chosen command; 0 for none, and also if the owner's widget was destroyed in the
// meantime.
int RunMenu(const CMenu& menu, Point screen, const CWnd& owner);

}  // namespace tarn
