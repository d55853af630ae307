#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tarn::host {

// Standard streams and arguments of this process. Supplied by the port.

// Replaces standard streams that are closed, so that no file that is opened later takes their place
// and receives messages. Reading from and writing to them still fails. To be called first in
// main().
void ReserveStandardStreams();
// True if a user can reply on standard input.
bool IsInputTerminal();
bool IsOutputTerminal();
// Columns of the terminal on standard output; nullopt if unknown. Changes when a window is resized.
std::optional<int> TerminalWidth();
// Returns the arguments of the process, program name first, in the encoding of all other strings.
// `argc` and `argv` are those of main().
std::vector<std::string> ProgramArguments(int argc, const char* const* argv);

}  // namespace tarn::host
