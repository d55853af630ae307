#include "hosts/cli/BuildTrace.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace tarn::host {

namespace {

using Json = nlohmann::json;
using Time = RunEvent::Time;

constexpr std::string_view kStart = "{\"traceEvents\":[";
constexpr int kProcess = 1;
constexpr int kRetiringThread = 0;  // results are delivered one after the other
// Runs that wait don't occupy a job, so they have their own rows.
constexpr int kFirstWaitingThread = 10'000;

// A run whose turn it was when it ended doesn't wait.
constexpr std::chrono::microseconds kShortestWait(100);

std::int64_t Microseconds(Time::duration duration) {
  return std::chrono::duration_cast<std::chrono::microseconds>(duration).count();
}

// The events of a trace, one per line.
class TraceText {
 public:
  explicit TraceText(Time start) : start_(start) {}

  void AddName(int thread, const std::string& name) {
    Add({{"name", "thread_name"},
         {"ph", "M"},
         {"pid", kProcess},
         {"tid", thread},
         {"args", {{"name", name}}}});
  }
  void AddState(const char* state, const std::string& file, int thread, Time from, Time to,
                Json args) {
    args["state"] = state;
    Add({{"name", file},
         {"cat", state},
         {"ph", "X"},
         {"ts", Microseconds(from - start_)},
         {"dur", std::max<std::int64_t>(Microseconds(to - from), 0)},
         {"pid", kProcess},
         {"tid", thread},
         {"args", std::move(args)}});
  }
  std::string Finish(const std::string& result) {
    const Json other = {{"result", result}};
    return std::string(kStart) + events_ +
           "\n],\"displayTimeUnit\":\"ms\",\"otherData\":" + other.dump() + "}\n";
  }

 private:
  void Add(const Json& event) {
    events_ += (events_.empty() ? "\n" : ",\n") +
               event.dump(-1, ' ', false, Json::error_handler_t::replace);
  }

  const Time start_;
  std::string events_;
};

// Rows of states that may overlap: each gets the first row that is free.
class FreeRows {
 public:
  int Take(Time from, Time to) {
    const auto row = std::ranges::find_if(ends_, [&](Time end) { return end <= from; });
    const auto number = static_cast<int>(row - ends_.begin());
    if (row == ends_.end()) ends_.emplace_back();
    ends_[static_cast<std::size_t>(number)] = to;
    return number;
  }
  int GetCount() const { return static_cast<int>(ends_.size()); }

 private:
  std::vector<Time> ends_;
};

}  // namespace

BuildTrace::BuildTrace(FileSystem& fileSystem, std::string tracePath)
    : files_(fileSystem), path_(std::move(tracePath)), start_(std::chrono::steady_clock::now()) {}

bool BuildTrace::MayReplace() const {
  const auto before = files_.ReadOwnFile(path_);
  return before ? before->starts_with(kStart) : before.GetError().code == ErrorCode::NotFound;
}

void BuildTrace::OnRunEvent(const RunEvent& event) {
  Run& run = runs_[event.run];
  switch (event.kind) {
    case RunEvent::Kind::Started:
      run.started = event;
      break;
    case RunEvent::Kind::Ended:
      run.ended = event.time;
      run.isDone = event.isDone;
      run.exitCode = event.exitCode;
      break;
    case RunEvent::Kind::Output:
      break;
    case RunEvent::Kind::Retiring:
      run.retiring = event.time;
      break;
    case RunEvent::Kind::Retired:
    case RunEvent::Kind::Dropped:
      run.retired = event.time;
      run.isDropped = event.kind == RunEvent::Kind::Dropped;
      break;
  }
}

Status BuildTrace::Write(const std::string& result) const {
  const Time now = std::chrono::steady_clock::now();
  const auto orNow = [now](Time time) { return time == Time() ? now : time; };
  TraceText text(start_);
  FreeRows waiting;
  int lanes = 0;
  for (const auto& [number, run] : runs_) {
    const ToolStart& start = run.started.start;
    const std::string file = SubjectOf(start);
    Json args = {{"file", file}, {"tool", start.tool}, {"command", start.command}};
    const bool hasEnded = run.ended != Time();
    if (hasEnded) {
      args["exit"] = run.exitCode;
      args["success"] = run.isDone;
    }
    if (run.isDropped) args["dropped"] = true;
    const int lane = run.started.lane + 1;
    lanes = std::max(lanes, lane);
    text.AddState("running", file, lane, run.started.time, orNow(run.ended), args);
    if (!hasEnded) continue;
    // A run that was dropped while it waited never retires.
    const Time turn =
        run.retiring == Time() ? orNow(run.retired) : std::max(run.retiring, run.ended);
    if (turn > run.ended + kShortestWait) {
      text.AddState("waiting", file, kFirstWaitingThread + waiting.Take(run.ended, turn), run.ended,
                    turn, args);
    }
    if (run.retiring == Time()) continue;
    text.AddState("retiring", file, kRetiringThread, turn, orNow(run.retired), args);
  }
  text.AddName(kRetiringThread, "retiring");
  for (int lane = 1; lane <= lanes; ++lane) text.AddName(lane, "job " + std::to_string(lane));
  for (int row = 0; row < waiting.GetCount(); ++row) {
    text.AddName(kFirstWaitingThread + row, "waiting for its turn");
  }
  return files_.WriteOwnFile(path_, text.Finish(result));
}

}  // namespace tarn::host
