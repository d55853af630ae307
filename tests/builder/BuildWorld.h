#pragma once

#include <string>
#include <vector>

#include "project/ProjectWorld.h"

namespace tarn::test {

// A project of some sources that a fake compiler builds: each run writes the output that the node's
// options name, and its end is reported like a real host does, from inside the host's message.
//
//   app:  Group "src": a.c, b.c; Group "lib": c.c
class BuildWorld : public ProjectWorld {
 public:
  BuildWorld();

  // Opens the project and publishes every node.
  void Open();
  // Command-started build on a worker thread, waited for; the lines that the host saw.
  std::vector<std::string> Build(std::int32_t command);
  // The tools that ran since the last call: "cc a.c", "ld a.o b.o".
  std::vector<std::string> TakeRuns();
  // Moves the clock and writes the file anew.
  void Touch(const std::string& path);

  // The tool run of this source fails.
  std::string failing;
  // Dependencies that are reported for every source.
  std::string dependencies;

 private:
  std::int32_t Run(const ToolRun& run);
  void Report(const std::string& product);

  std::vector<std::string> runs;
};

}  // namespace tarn::test
