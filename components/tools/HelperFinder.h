#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "components/tools/CommandBuilder.h"
#include "components/tools/ToolEnvironment.h"

namespace tarn::tools {

// Determines the programs and files that a compiler driver uses implicitly, such as its assembler
// and the start-up code, by querying the driver. Each query starts a process, so results are cached
// until Clear; they are the same for all files compiled with the same options.
//
// Thread-safe.
class HelperFinder {
 public:
  HelperFinder() = default;
  HelperFinder(const HelperFinder&) = delete;
  HelperFinder& operator=(const HelperFinder&) = delete;

  // Returns absolute paths without duplicates. Omits files that are not found, and returns nothing
  // if the driver does not respond.
  std::vector<std::string> Find(const ToolEnvironment& world, const ToolDefinition& tool,
                                const ToolPlan& plan);
  void Clear();

 private:
  std::string Ask(const ToolEnvironment& world, const ToolCommand& command,
                  std::vector<std::string> arguments);

  std::mutex lock_;
  std::map<std::vector<std::string>, std::string> answers_;  // by program and arguments
};

}  // namespace tarn::tools
