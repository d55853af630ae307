#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "components/tools/CommandBuilder.h"
#include "components/tools/ToolWorld.h"

namespace tarn::tools {

// Finds the programs and files that a compiler driver takes itself, such as its assembler and the
// start-up code, by asking the driver. Each question costs the start of a program, so answers are
// kept until Forget: those for all files with the same options are the same.
//
// For use by any thread.
class HelperFinder {
 public:
  HelperFinder() = default;
  HelperFinder(const HelperFinder&) = delete;
  HelperFinder& operator=(const HelperFinder&) = delete;

  // Returns absolute paths, each once; files that are not found are left out, and so is everything
  // if the driver doesn't answer.
  std::vector<std::string> Find(const ToolWorld& world, const ToolDefinition& tool,
                                const ToolPlan& plan);
  void Forget();

 private:
  std::string Ask(const ToolWorld& world, const ToolCommand& command,
                  std::vector<std::string> arguments);

  std::mutex lock;
  std::map<std::vector<std::string>, std::string> answers;  // by program and arguments
};

}  // namespace tarn::tools
