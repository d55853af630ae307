#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "hosts/core/BuildSession.h"

namespace tarn::host {

// How far a build is, by what its observer hears, from the moment when it is made. On the host's
// thread.
class BuildProgress : public BuildObserver {
 public:
  using Clock = std::chrono::steady_clock;

  // `countWork` tells how many tools there are to run; asked once, when the first one starts. Empty
  // when nobody knows.
  explicit BuildProgress(std::function<int()> countWork);

  void OnToolStarted(const ToolStart& start) override;
  void OnToolEnded(bool success, const std::vector<LogEntry>& messages) override;

  // Of the tool that runs, from 1 on; 0 ahead of the first.
  int GetNumber() const { return number; }
  // At least the number; 0 when nobody knows.
  int GetTotal() const { return total; }
  // The file that the tool that runs is known by, or else its name.
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
