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
  int GetNumber() const { return number_; }
  // Total number of tools, never less than GetNumber(); 0 if unknown.
  int GetTotal() const { return total_; }
  // The file that identifies the running tool, or the tool's name if there is none.
  const std::string& GetSubject() const { return subject_; }
  int GetErrors() const { return errors_; }
  int GetWarnings() const { return warnings_; }
  std::chrono::milliseconds GetElapsed() const;

 private:
  std::function<int()> queryCount_;
  const Clock::time_point started_ = Clock::now();
  int number_ = 0;
  int total_ = 0;
  std::string subject_;
  int errors_ = 0;
  int warnings_ = 0;
};

}  // namespace tarn::host
