#pragma once

#include <string>

namespace tarn {

// Reasons for a node to be out of date, in the order in which they are checked: first those based
// on file times, in whole seconds, then those based on the build record.
enum class StaleReason {
  None,
  NoOutputName,
  OutputMissing,
  NeverBuilt,
  OutputChanged,
  PartMissing,  // a file that the application consists of
  PartNewer,
  SourceMissing,
  SourceNewer,
  SourceRenamed,  // the tool was given the file under a different spelling
  DependencyMissing,
  DependencyNewer,
  CommandChanged,  // the tool would be run with different commands
  RunFailed,       // the tool has failed on the node since
  SourceChanged,   // differs from the version used in the run, regardless of its time
  DependencyChanged,
  ProgramChanged,    // for example the compiler
  ChangedDuringRun,  // a file was written while the tool ran
  Shadowed,          // a different file now takes precedence over one that was read
  UnknownTest,       // tests for a file whose name only the compiler can determine
};

struct StaleVerdict {
  StaleReason reason = StaleReason::None;
  std::string file;  // the file concerned; empty if none

  explicit operator bool() const { return reason != StaleReason::None; }
};

}  // namespace tarn
