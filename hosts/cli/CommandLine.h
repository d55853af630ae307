#pragma once

#include <optional>

#include "hosts/cli/CommandEntry.h"
#include "hosts/cli/Console.h"
#include "hosts/cli/Invocation.h"

namespace tarn::host {

// Result of parsing the command line. If there is no invocation, the help, the version or an error
// has already been printed, and `exitCode` is the program's exit code.
struct ParsedCommandLine {
  std::optional<Invocation> invocation;
  int exitCode = kExitDone;
};

// Prints to `console`.
ParsedCommandLine ParseCommandLine(int argc, const char* const* argv, Console& console);

// Describes the program with all its commands, from the definitions for the parser.
CommandEntry DescribeCommandLine();

}  // namespace tarn::host
