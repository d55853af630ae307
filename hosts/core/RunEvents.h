#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace tarn {
class CXmlNode;
}

namespace tarn::host {

// The inputs and outputs of a tool that is being started.
struct ToolStart {
  std::string tool;
  std::vector<std::string> files;
  std::string output;
  std::string command;
  std::string subject = {};  // file that identifies the run; empty: its only file, or its output
};

ToolStart ReadToolStart(const CXmlNode* element);
// Returns the file that identifies the run; the tool's name if there is none.
std::string SubjectOf(const ToolStart& start);

// An event of a tool run. Several tools run at the same time, and each is retired when its turn in
// the order of the build comes.
struct RunEvent {
  enum class Kind {
    Started,
    Output,  // of a tool that performs an action
    Ended,
    Retiring,  // its turn has come
    Retired,   // its result was delivered
    Dropped,   // its result isn't used
  };
  using Time = std::chrono::steady_clock::time_point;

  Kind kind = Kind::Started;
  int run = 0;  // number of the run
  Time time;
  // Of Started:
  int lane = 0;  // no two tools that run at the same time have the same one
  ToolStart start = {};
  // Of Ended:
  bool isDone = false;
  int exitCode = 0;
  // Of Output:
  std::string text = {};
};

// Parses the tool manager's list of events; malformed ones are skipped.
std::vector<RunEvent> ParseRunEvents(const std::string& xml);

}  // namespace tarn::host
