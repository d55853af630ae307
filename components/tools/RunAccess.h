#pragma once

#include <string>
#include <vector>

#include "components/tools/CommandBuilder.h"
#include "components/tools/ToolWorld.h"

namespace tarn::tools {

struct FileWrite {
  std::string path;       // absolute
  std::string option;     // whose value names it: "Linker.MapFile"; empty if none does
  bool isCertain = true;  // false: an argument that may just as well name a file to read
};

// What a run of a tool would reach for because of the options of its node, so that a caller can
// decide whether the project that they come from may do that.
struct RunAccess {
  // Code that is not of the installed definition, in words that follow "run": "the launcher
  // ./x.sh".
  std::vector<std::string> code;
  std::vector<std::string> programs;  // that the definition names, as found on this machine
  std::vector<FileWrite> writes;      // each once
};

// Errs on the side of a write: an argument with the path of a file counts as one unless it is a
// file of the job, or the definition says that its flag only reads. Starts no process.
RunAccess FindRunAccess(const ToolWorld& world, const ToolDefinition& tool, const ToolPlan& plan,
                        const ToolJob& job);

// Each entry as JoinFileTexts writes a file, with "code", "program" or "write" for its path, and
// "option" after a write that an option names: no byte of a name is lost on the way to the caller.
std::string RunAccessText(const RunAccess& access);

}  // namespace tarn::tools
