#pragma once

#include <map>
#include <string>
#include <vector>

#include "hosts/core/RunEvents.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// Timeline of the tool runs of a build in Chrome's trace format, for Perfetto and similar viewers.
// A run has up to three complete ("X") events: "running", in the lane of its job; "waiting" for its
// turn in the order of the build; and "retiring", while its result is checked and delivered.
//
// Calling sequence: Begin, OnRunEvent for each event, Write.
class BuildTrace {
 public:
  // `fileSystem` is borrowed.
  BuildTrace(FileSystem& fileSystem, std::string tracePath);

  const std::string& GetPath() const { return path_; }
  // Returns true if the path may be written: nothing exists there, or an earlier trace.
  bool MayReplace() const;
  // Writes an empty trace, so that the build doesn't start if that fails.
  Status Begin() { return Write("unfinished"); }
  void OnRunEvent(const RunEvent& event);
  // Replaces the file by the trace of all events so far. `result` is the result of the build.
  Status Write(const std::string& result) const;

 private:
  struct Run {
    RunEvent started;
    RunEvent::Time ended = {}, retiring = {}, retired = {};  // zero: not yet
    bool isDone = false;
    bool isDropped = false;
    int exitCode = 0;
  };

  FileSystem& files_;
  const std::string path_;
  const RunEvent::Time start_;
  std::map<int, Run> runs_;  // by number, in the order of their start
};

}  // namespace tarn::host
