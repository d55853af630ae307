#include "hosts/core/LogMirror.h"

#include <algorithm>
#include <functional>

#include "xml/XmlEscape.h"

namespace tarn::host {

namespace {

constexpr std::int32_t kLogTimer = 2;
constexpr std::chrono::milliseconds kUsualPause(250);
// Each copy covers the whole log. The pause after a copy is this much longer than the copy took, so
// that a build spends little time on copies.
constexpr int kPauseFactor = 20;

}  // namespace

LogMirror::LogMirror(FileSystem& fileSystem, WindowHandle timerWindow)
    : files_(fileSystem), window_(timerWindow) {}

LogMirror::~LogMirror() {
  StopTimer();
}

void LogMirror::Follow(const std::string& log, const std::string& kept) {
  if (!source_.empty()) return;
  source_ = log;
  target_ = kept;
  OnTick();
}

void LogMirror::Renew(const std::string& log) {
  if (!source_.empty() && !log.empty()) source_ = log;
}

void LogMirror::Stop() {
  StopTimer();
  source_.clear();
  copied_.reset();
}

Status LogMirror::Sync() {
  StopTimer();
  return source_.empty() ? Status() : Copy();
}

// Readers recognise a new log by its modification time, so unchanged content is not written again.
Status LogMirror::Copy() {
  const auto text = files_.ReadWholeFile(source_);
  if (!text) {
    // The server removes its log with the project. A log that never appeared couldn't be written.
    const bool isGone = copied_ && text.GetError().code == ErrorCode::NotFound;
    return isGone ? Status() : Status(Error{text.GetError().code, text.GetError().text, source_});
  }
  const std::size_t hash = std::hash<std::string>()(*text);
  if (copied_ == hash) return {};
  // The server's log has names and paths verbatim; the copy must be conforming XML.
  const Status written = files_.WriteOwnFile(target_, ToConformingXml(*text));
  if (written) copied_ = hash;
  return written;
}

void LogMirror::OnTick() {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point start = Clock::now();
  // A failed copy is retried on the next tick, and reported at the end.
  static_cast<void>(Copy());
  const auto taken = std::chrono::ceil<std::chrono::milliseconds>(Clock::now() - start);
  SetTimer(std::max(kUsualPause, taken * kPauseFactor));
}

void LogMirror::SetTimer(std::chrono::milliseconds period) {
  SetWindowTimer(window_, kLogTimer, period, [this] { OnTick(); });
}

void LogMirror::StopTimer() {
  KillWindowTimer(window_, kLogTimer);
}

}  // namespace tarn::host
