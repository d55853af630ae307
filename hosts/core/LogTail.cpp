#include "hosts/core/LogTail.h"

#include <string_view>
#include <utility>

namespace tarn::host {

namespace {

// Modification times are whole seconds, so changes within one second go unnoticed.
constexpr std::int64_t kSettlingSeconds = 1;

// Returns the length of the text before the closing tag of the document element, 0 if it has no
// children; nullopt if the file doesn't end as a complete document.
std::optional<std::size_t> LengthWithoutEnd(std::string_view text) {
  const std::string_view whole = text.substr(0, text.find_last_not_of(" \t\r\n") + 1);
  const std::size_t end = whole.rfind('<');
  if (end == whole.npos || !whole.ends_with('>')) return std::nullopt;
  if (whole.substr(end).starts_with("</")) return end;
  const std::string_view before = whole.substr(0, end);
  const std::size_t last = before.rfind('<');
  const bool isFirst = last == before.npos || before.substr(last).starts_with("<?");
  return isFirst && whole.ends_with("/>") ? std::optional<std::size_t>(0) : std::nullopt;
}

// Returns the offset after the tag, comment or similar construct that begins at `at`; npos if it is
// not terminated. `depth` is the number of open elements.
std::size_t EndOfTag(std::string_view text, std::size_t at, int& depth) {
  constexpr std::string_view kNoElements[][2] = {
      {"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};
  for (const auto& [open, close] : kNoElements) {
    if (!text.substr(at).starts_with(open)) continue;
    const std::size_t end = text.find(close, at + open.size());
    return end == text.npos ? end : end + close.size();
  }
  std::size_t end = text.find_first_of("\"'>", at);
  while (end != text.npos && text[end] != '>') {
    const std::size_t quoteEnd = text.find(text[end], end + 1);
    end = quoteEnd == text.npos ? quoteEnd : text.find_first_of("\"'>", quoteEnd + 1);
  }
  if (end == text.npos) return end;
  if (text[at + 1] == '/') {
    --depth;
  } else if (text[end - 1] != '/') {
    ++depth;
  }
  return end + 1;
}

// Returns the length of the children of the top element that begin within the first `wanted` bytes.
// If `isInside` is set, the text begins inside that element.
std::size_t LengthOfPiece(std::string_view text, bool isInside, std::size_t wanted) {
  int depth = isInside ? 1 : 0;
  for (std::size_t at = text.find('<'); at != text.npos; at = text.find('<', at)) {
    if (depth == 1 && at >= wanted) return at;
    at = EndOfTag(text, at, depth);
    if (at == text.npos) break;
  }
  return text.size();
}

}  // namespace

LogTail::LogTail(FileSystem& fileSystem, std::string logPath)
    : files_(fileSystem), path_(std::move(logPath)) {}

LogTail::Update LogTail::Take(std::int64_t now, std::size_t most) {
  Update update;
  if (taken_ == seen_.size()) update.isOtherLog = Read(now);
  const std::string_view rest = std::string_view(seen_).substr(taken_);
  if (rest.empty()) return update;
  const std::size_t length =
      rest.size() <= most ? rest.size() : LengthOfPiece(rest, taken_ != 0, most);
  const std::string part(rest.substr(0, length));
  update.entries = ReadLogEntries(taken_ == 0 ? part : "<log>" + part + "</log>");
  taken_ += length;
  update.hasMore = taken_ < seen_.size();
  return update;
}

bool LogTail::Read(std::int64_t now) {
  const std::optional<FileStatus> status = files_.Examine(path_);
  if (!status || (isSettled_ && IsSame(*status))) return false;
  const auto whole = files_.ReadOwnFile(path_);
  const auto length = whole ? LengthWithoutEnd(*whole) : std::nullopt;
  if (!length) return false;
  std::string text = whole->substr(0, *length);

  // Two builds may write the same text; a log is not rewritten without a build, so a new time means
  // a new build.
  const bool isLater = state_ && state_->modifiedSeconds != status->modifiedSeconds;
  const bool isOtherLog = !text.starts_with(seen_) || (isLater && text == seen_);
  if (isOtherLog) taken_ = 0;
  seen_ = std::move(text);
  state_ = status;
  isSettled_ = now - status->modifiedSeconds > kSettlingSeconds;
  return isOtherLog;
}

bool LogTail::IsSame(const FileStatus& status) const {
  return state_ && state_->size == status.size && state_->modifiedSeconds == status.modifiedSeconds;
}

}  // namespace tarn::host
