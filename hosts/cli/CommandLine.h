#pragma once

#include <optional>

#include "hosts/cli/CommandEntry.h"
#include "hosts/cli/Invocation.h"

namespace tarn::host {

// Result of parsing the command line. If there is no invocation, the help, the version or an error
// has already been printed, and `exitCode` is the program's exit code.
struct ParsedCommandLine {
  std::optional<Invocation> invocation;
  int exitCode = kExitDone;
};

ParsedCommandLine ParseCommandLine(int argc, const char* const* argv);

// Describes the program with all its commands, from the definitions for the parser.
CommandEntry DescribeCommandLine();

}  // namespace tarn::host
