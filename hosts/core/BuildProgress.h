#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "hosts/core/BuildSession.h"

namespace tarn::host {

// Progress of a build, computed from the notifications of its observer interface. Elapsed time
// counts from construction. Main thread only.
class BuildProgress : public BuildObserver {
 public:
  using Clock = std::chrono::steady_clock;

  // `countWork` returns the number of tools to run; it is called once, when the first tool starts.
  // Pass an empty function if the number is unknown.
  explicit BuildProgress(std::function<int()> countWork);

  void OnToolStarted(const ToolStart& start) override;
  void OnToolEnded(bool success, const std::vector<LogEntry>& messages) override;

  // Number of the running tool, counted from 1; 0 before the first one.
  int GetNumber() const { return number; }
  // Total number of tools, never less than GetNumber(); 0 if unknown.
  int GetTotal() const { return total; }
  // The file that identifies the running tool, or the tool's name if there is none.
  const std::string& GetSubject() const { return subject; }
  int GetErrors() const { return errors; }
  int GetWarnings() const { return warnings; }
  std::chrono::milliseconds GetElapsed() const;

 private:
  std::function<int()> askCount;
  const Clock::time_point started = Clock::now();
  int number = 0;
  int total = 0;
  std::string subject;
  int errors = 0;
  int warnings = 0;
};

}  // namespace tarn::host
