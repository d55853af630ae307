#pragma once

#include "hosts/core/ToolCommand.h"
#include "platform/Result.h"

namespace tarn::host {

// Runs a program that uses the terminal of this process, such as a debugger, and waits for its end.
// Interrupts of the user are left to the program in the meantime. Returns its exit code, 128 plus
// the signal if it was ended by one. Supplied by the port.
Result<int> RunInForeground(const ToolCommand& command);

}  // namespace tarn::host
