#pragma once

#include <optional>

#include "hosts/cli/CommandEntry.h"
#include "hosts/cli/Invocation.h"

namespace tarn::host {

// Reads the command line. Without an invocation everything is said already (help, version or what
// is wrong) and `exitCode` tells how to end.
struct ParsedCommandLine {
  std::optional<Invocation> invocation;
  int exitCode = kExitDone;
};

ParsedCommandLine ParseCommandLine(int argc, const char* const* argv);

// The program with all its commands, as they are defined for the parser.
CommandEntry DescribeCommandLine();

}  // namespace tarn::host
