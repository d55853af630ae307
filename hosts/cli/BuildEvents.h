#pragma once

#include <map>

#include "hosts/cli/Console.h"
#include "hosts/core/BuildProgress.h"

namespace tarn::host {

// Prints the events of tool runs as they happen, each as a JSON object on a line of its own; see
// docs/command-line.md. Borrows its arguments.
class BuildEvents {
 public:
  BuildEvents(Console& output, const BuildProgress& buildProgress)
      : console_(output), progress_(buildProgress) {}

  void OnRunEvent(const RunEvent& event);

 private:
  struct Run {
    RunEvent started;
    RunEvent ended;
  };

  Console& console_;
  const BuildProgress& progress_;
  std::map<int, Run> runs_;  // runs that were neither retired nor dropped
};

}  // namespace tarn::host
