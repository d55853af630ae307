#pragma once

#include <string>
#include <vector>

#include "components/tools/CommandBuilder.h"
#include "components/tools/ToolEnvironment.h"
#include "platform/files/TrustRequest.h"

namespace tarn::tools {

// A file that a tool run writes.
struct FileWrite {
  std::string path;       // absolute
  std::string option;     // the option whose value names it, as "Linker.MapFile"; may be empty
  std::string argument;   // the argument that names it; empty if the definition does
  bool isCertain = true;  // false: the argument may just as well name a file to read
};

// Accesses that a tool run would make because of its node's options, so that the caller can decide
// if their project may do so.
struct RunAccess {
  std::vector<TrustRequest> code;     // code that does not come from the installed definition
  std::vector<std::string> programs;  // named by the definition, as found on this system
  std::vector<FileWrite> writes;      // without duplicates
  std::vector<std::string> reads;     // absolute paths that may name files to read
  bool writesUnknownFiles = false;    // also writes files whose names it invents
  bool writesNothingElse = false;     // the definition says so, and no other code is run
  std::vector<std::string> searched;  // folders searched for headers, in order
};

// Errs on the side of reporting a write: an argument containing a file path counts as one, unless
// the file is an input of the job or the definition says that its flag only reads. Starts no
// process.
RunAccess FindRunAccess(const ToolEnvironment& world, const ToolDefinition& tool,
                        const ToolPlan& plan, const ToolInvocation& job);
// Same without `code` and `programs`, and without the effects of options that the inputs of a link
// carry: doesn't look into them, which takes most of the time of a large link.
RunAccess FindRunFiles(const ToolEnvironment& world, const ToolDefinition& tool,
                       const ToolPlan& plan, const ToolInvocation& job);

// Serializes each entry as JoinFileTexts writes a file, with the identifier of the request,
// "program", "write", "maybe", "read" or "search" as its path, and "option" or "named-by" after a
// write that an option or an argument names; "nothing-else" if there are no other writes. Names are
// preserved byte for byte.
std::string RunAccessText(const RunAccess& access);

}  // namespace tarn::tools
