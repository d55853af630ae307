#include "hosts/core/LogMirror.h"

#include <algorithm>
#include <utility>

#include "xml/XmlEscape.h"

namespace tarn::host {

namespace {

constexpr std::int32_t kLogTimer = 2;
constexpr std::chrono::milliseconds kUsualPause(250);
// The pause after a copy is this much longer than the copy took, so that a build spends little time
// on copies.
constexpr int kPauseFactor = 20;
constexpr std::size_t kSeamBytes = 1024;

// Returns the length of the log without its closing tag, which begins a line; nullopt if the top
// element has no children or the log is incomplete.
std::optional<std::size_t> LengthOfKept(std::string_view log) {
  constexpr std::string_view kClosing = "\r\n</";
  const std::size_t tag = log.rfind('<');
  if (tag == log.npos || tag < 2 || !log.ends_with('>')) return std::nullopt;
  return log.substr(tag - 2).starts_with(kClosing) ? std::optional(tag - 2) : std::nullopt;
}

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
  hasCopied_ = false;
  last_.reset();
}

Status LogMirror::Sync() {
  StopTimer();
  return source_.empty() ? Status() : Copy();
}

Status LogMirror::Copy() {
  return CopyNews() ? Status() : CopyWhole();
}

// The server replaces its file if it can't continue it. The identity of the file shows that, except
// if the number of the old file was used again, which the seam excludes.
bool LogMirror::CopyNews() {
  if (!last_ || last_->log != source_) return false;
  const std::optional<FileStatus> status = files_.Examine(source_);
  const bool isSameFile = status && status->device == last_->logStatus.device &&
                          status->inode == last_->logStatus.inode;
  if (!isSameFile) return false;
  const auto text = files_.ReadFrom(source_, last_->kept - last_->seam.size());
  if (!text || !text->starts_with(last_->seam)) return false;
  const std::string_view news = std::string_view(*text).substr(last_->seam.size());
  if (news == last_->end) return true;
  const std::size_t length = LengthOfKept(news).value_or(0);
  if (length == 0) return false;
  const std::string kept = ToConformingXml(news.substr(0, length));
  const Copied before = *std::move(last_);
  last_.reset();
  const Result<FileStatus> written = files_.ContinueFile(
      target_, before.copyStatus, before.written, kept + ToConformingXml(news.substr(length)));
  if (!written) return false;
  Record(*status, before.kept - before.seam.size(), *text, before.written + kept.size(), *written);
  return true;
}

// The server's log has names and paths verbatim; the copy must be conforming XML. Readers recognise
// a new log by its modification time, so unchanged content is not written again.
Status LogMirror::CopyWhole() {
  last_.reset();
  const std::optional<FileStatus> status = files_.Examine(source_);
  const auto text = files_.ReadWholeFile(source_);
  if (!text) {
    // The server removes its log with the project. A log that never appeared couldn't be written.
    const bool isGone = hasCopied_ && text.GetError().code == ErrorCode::NotFound;
    return isGone ? Status() : Status(Error{text.GetError().code, text.GetError().text, source_});
  }
  const std::size_t length = LengthOfKept(*text).value_or(0);
  std::string copy = ToConformingXml(std::string_view(*text).substr(0, length));
  const std::size_t kept = copy.size();
  copy += ToConformingXml(std::string_view(*text).substr(length));
  const auto present = hasCopied_ ? files_.ReadOwnFile(target_) : Result<std::string>(Error{});
  if (!present || *present != copy) {
    if (const Status written = files_.WriteOwnFile(target_, copy); !written) return written;
  }
  hasCopied_ = true;
  const std::optional<FileStatus> copied = files_.Examine(target_);
  const bool isKnown = status && copied && copied->size == copy.size();
  if (isKnown && length > 0) Record(*status, 0, *text, kept, *copied);
  return {};
}

// Records a copy after which the log has `text` from the offset `begin` on.
void LogMirror::Record(const FileStatus& log, std::uint64_t begin, std::string_view text,
                       std::uint64_t written, const FileStatus& copy) {
  const std::size_t length = LengthOfKept(text).value_or(0);
  const std::size_t seam = length - std::min(length, kSeamBytes);
  last_ = Copied{source_,
                 log,
                 begin + length,
                 std::string(text.substr(seam, length - seam)),
                 std::string(text.substr(length)),
                 written,
                 copy};
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
