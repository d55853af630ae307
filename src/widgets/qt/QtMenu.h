#pragma once

#include "widgets/Menu.h"
#include "widgets/Wnd.h"

namespace tarn {

// Shows the menu at a point of the screen and runs a loop until the user has decided. The command
// that was chosen; 0 for none, also when the owner's widget went meanwhile.
int RunMenu(const CMenu& menu, Point screen, const CWnd& owner);

}  // namespace tarn
