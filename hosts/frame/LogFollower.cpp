#include "hosts/frame/LogFollower.h"

#include <utility>

namespace tarn::host {

namespace {

// Times are whole seconds, so within one a file may change unseen.
constexpr std::int64_t kSettlingSeconds = 1;

// The length of the text in front of the closing tag of the whole file, 0 for one without children;
// nothing when the file does not end as a whole one.
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

}  // namespace

LogFollower::LogFollower(FileSystem& fileSystem, std::string logPath)
    : files(fileSystem), path(std::move(logPath)) {}

LogFollower::News LogFollower::Take(std::int64_t now) {
  const std::optional<FileStatus> status = files.Examine(path);
  if (!status || (isSettled && IsSame(*status))) return {};
  const auto whole = files.ReadWholeFile(path);
  const auto length = whole ? LengthWithoutEnd(*whole) : std::nullopt;
  if (!length) return {};
  std::string text = whole->substr(0, *length);

  News news;
  // Builds may say the same again; a kept log is not written without a reason.
  const bool isLater = state && state->modifiedSeconds != status->modifiedSeconds;
  news.isOtherLog = !text.starts_with(seen) || (isLater && text == seen);
  const std::size_t known = news.isOtherLog ? 0 : seen.size();
  if (known == 0) {
    news.entries = ReadLogEntries(*whole);
  } else if (text.size() > known) {
    news.entries = ReadLogEntries("<log>" + text.substr(known) + "</log>");
  }
  seen = std::move(text);
  state = status;
  isSettled = now - status->modifiedSeconds > kSettlingSeconds;
  return news;
}

bool LogFollower::IsSame(const FileStatus& status) const {
  return state && state->size == status.size && state->modifiedSeconds == status.modifiedSeconds;
}

}  // namespace tarn::host
