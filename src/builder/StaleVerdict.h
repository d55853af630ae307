#pragma once

#include <string>

namespace tarn {

// Why a node has work to do, in the order in which the reasons are looked for: first those that the
// times of files show, in whole seconds, then those that the build record shows.
enum class StaleReason {
  None,
  NoOutputName,
  OutputMissing,
  NeverBuilt,
  OutputChanged,
  PartMissing,  // a file that the application is made of
  PartNewer,
  SourceMissing,
  SourceNewer,
  SourceRenamed,  // the tool was given the file by another spelling of its name
  DependencyMissing,
  DependencyNewer,
  CommandChanged,  // the tool would be run with other commands than it was
  RunFailed,       // the tool failed on it since
  SourceChanged,   // not the file any more that the tool was run on, whatever its time
  DependencyChanged,
  ProgramChanged,    // the compiler itself
  ChangedDuringRun,  // a file that was written while the tool ran
  Shadowed,          // a file that is found earlier now than the one that was read
  UnknownTest,       // the file tests for another one whose name only its compiler knows
};

struct StaleVerdict {
  StaleReason reason = StaleReason::None;
  std::string file;  // the file that the reason is about; empty if it is about none

  explicit operator bool() const { return reason != StaleReason::None; }
};

}  // namespace tarn
