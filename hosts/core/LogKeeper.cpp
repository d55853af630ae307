#include "hosts/core/LogKeeper.h"

#include <algorithm>
#include <functional>

#include "xml/StrictText.h"

namespace tarn::host {

namespace {

constexpr std::int32_t kLogTimer = 2;
constexpr std::chrono::milliseconds kUsualPause(250);
// A copy is of all that there is. So that a build does not spend its time on that, the pause behind
// one is this much longer than the copy took.
constexpr int kPauseFactor = 20;

}  // namespace

LogKeeper::LogKeeper(FileSystem& fileSystem, WindowHandle timerWindow)
    : files(fileSystem), window(timerWindow) {}

LogKeeper::~LogKeeper() {
  StopTimer();
}

void LogKeeper::Follow(const std::string& log, const std::string& kept) {
  if (!source.empty()) return;
  source = log;
  target = kept;
  OnTick();
}

void LogKeeper::Renew(const std::string& log) {
  if (!source.empty() && !log.empty()) source = log;
}

void LogKeeper::Forget() {
  StopTimer();
  source.clear();
  copied.reset();
}

Status LogKeeper::Keep() {
  StopTimer();
  return source.empty() ? Status() : Copy();
}

// Readers tell a new log by its time, so one that is kept already is not written again.
Status LogKeeper::Copy() {
  const auto text = files.ReadWholeFile(source);
  if (!text) {
    // The server removes it with the project. One that never came couldn't be written.
    const bool isGone = copied && text.GetError().code == ErrorCode::NotFound;
    return isGone ? Status() : Status(Error{text.GetError().code, text.GetError().text, source});
  }
  const std::size_t hash = std::hash<std::string>()(*text);
  if (copied == hash) return {};
  // Names and paths stand in the log as they are; the kept one is for everybody's tools.
  const Status written = files.WriteOwnFile(target, MakeFileStrict(*text));
  if (written) copied = hash;
  return written;
}

void LogKeeper::OnTick() {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point start = Clock::now();
  // A failure is tried again, and told at the end.
  static_cast<void>(Copy());
  const auto taken = std::chrono::ceil<std::chrono::milliseconds>(Clock::now() - start);
  SetTimer(std::max(kUsualPause, taken * kPauseFactor));
}

void LogKeeper::SetTimer(std::chrono::milliseconds period) {
  SetWindowTimer(window, kLogTimer, period, [this] { OnTick(); });
}

void LogKeeper::StopTimer() {
  KillWindowTimer(window, kLogTimer);
}

}  // namespace tarn::host
