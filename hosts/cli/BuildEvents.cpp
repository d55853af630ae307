#include "hosts/cli/BuildEvents.h"

#include <nlohmann/json.hpp>

namespace tarn::host {

namespace {

using std::chrono::duration_cast;
using std::chrono::milliseconds;

}  // namespace

void BuildEvents::OnRunEvent(const RunEvent& event) {
  Run& run = runs_[event.run];
  if (event.kind == RunEvent::Kind::Started) run.started = event;
  if (event.kind == RunEvent::Kind::Ended) run.ended = event;
  if (event.kind == RunEvent::Kind::Ended || event.kind == RunEvent::Kind::Retiring) return;
  if (event.kind == RunEvent::Kind::Output) return;

  const ToolStart& start = run.started.start;
  nlohmann::json line = {
      {"file", SubjectOf(start)},
      {"tool", start.tool},
      {"output", start.output},
      {"run", event.run},
      {"milliseconds", duration_cast<milliseconds>(event.time - progress_.GetStart()).count()}};
  if (event.kind == RunEvent::Kind::Started) {
    line["event"] = "started";
    line["command"] = start.command;
  } else {
    line["event"] = event.kind == RunEvent::Kind::Retired ? "retired" : "dropped";
    if (event.kind == RunEvent::Kind::Retired) {
      line["success"] = run.ended.isDone;
      line["exitCode"] = run.ended.exitCode;
      line["duration"] = duration_cast<milliseconds>(run.ended.time - run.started.time).count();
    }
    line["retired"] = progress_.GetRetired();
    line["total"] = progress_.GetTotal();
    auto remaining = progress_.GetRemaining(event.time);
    if (progress_.GetRetired() == progress_.GetTotal()) remaining = milliseconds(0);
    line["remaining"] = remaining ? nlohmann::json(remaining->count()) : nlohmann::json();
    runs_.erase(event.run);
  }
  console_.PrintDocument(line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace),
                         DocumentFormat::Json);
}

}  // namespace tarn::host
