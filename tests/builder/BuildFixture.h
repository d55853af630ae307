#pragma once

#include <string>
#include <vector>

#include "project/ProjectFixture.h"

namespace tarn::test {

// A project with a few sources and a fake compiler: each run writes the output named by the node's
// options, and its end is reported as a real host does, from inside the host's message handler.
//
//   app:  Group "src": a.c, b.c; Group "lib": c.c
class BuildFixture : public ProjectFixture {
 public:
  BuildFixture();

  // Opens the project and publishes every node.
  void Open();
  // Runs a command on a worker thread and waits for it. Returns the messages received by the host.
  std::vector<std::string> Build(std::int32_t command);
  // Returns the tool runs since the last call: "cc a.c", "ld a.o b.o".
  std::vector<std::string> TakeRuns();
  // Advances the clock and rewrites the file.
  void Touch(const std::string& path);

  // The tool run of this source fails.
  std::string failing;
  // Dependencies reported for every source.
  std::string dependencies;

 private:
  std::int32_t Run(const ToolRun& run);
  void Report(const std::string& product);

  std::vector<std::string> runs_;
};

}  // namespace tarn::test
