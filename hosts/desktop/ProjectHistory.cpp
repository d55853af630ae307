#include "hosts/desktop/ProjectHistory.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr std::size_t kMostSteps = 100;
constexpr std::size_t kMostBytes = 64 << 20;

std::size_t SizeOf(const std::deque<std::vector<FileText>>& steps) {
  std::size_t bytes = 0;
  for (const auto& step : steps) {
    for (const FileText& each : step) bytes += each.text.size();
  }
  return bytes;
}

// The next line that holds anything, from a place on that goes behind it; empty at the end.
std::string_view NextLine(std::string_view text, std::size_t& at) {
  while (at < text.size()) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    const std::string_view line = Trim(text.substr(at, end - at));
    at = end + 1;
    if (!line.empty()) return line;
  }
  return {};
}

// Blank lines come and go with each save.
bool IsSameText(std::string_view one, std::string_view other) {
  std::size_t here = 0;
  std::size_t there = 0;
  while (true) {
    const std::string_view line = NextLine(one, here);
    if (line != NextLine(other, there)) return false;
    if (line.empty()) return true;
  }
}

bool IsSame(const std::vector<FileText>& one, const std::vector<FileText>& other) {
  return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                    [](const FileText& a, const FileText& b) {
                      return a.path == b.path && IsSameText(a.text, b.text);
                    });
}

}  // namespace

std::vector<FileText> ParseFileTexts(const std::string& all) {
  std::vector<FileText> texts;
  std::size_t at = 0;
  while (at < all.size()) {
    const std::size_t blank = all.find(' ', at);
    const std::size_t end = all.find('\n', at);
    std::size_t size = 0;
    if (blank == std::string::npos || end == std::string::npos || blank > end) break;
    std::from_chars(all.data() + at, all.data() + blank, size);
    if (size > all.size() - end - 1) break;
    texts.push_back({all.substr(blank + 1, end - blank - 1), all.substr(end + 1, size)});
    at = end + 1 + size;
  }
  return texts;
}

ProjectHistory::Step ProjectHistory::Ask() {
  return ParseFileTexts(session.Inspector().GetFileTexts());
}

void ProjectHistory::Begin() {
  seen = session.Inspector().GetChangeCount();
  opened = seen;
  if (isGoing) return;
  Step now = Ask();
  // Behind a save it is the same.
  if (!IsSame(now, present)) {
    past.clear();
    future.clear();
  }
  present = std::move(now);
}

bool ProjectHistory::HasUnsaved() {
  return session.Inspector().GetChangeCount() != opened;
}

bool ProjectHistory::Note() {
  if (runner.IsBuilding()) return false;
  const std::int32_t now = session.Inspector().GetChangeCount();
  if (now == seen) return false;
  seen = now;
  Step changed = Ask();
  if (IsSame(changed, present)) return false;
  past.push_back(std::move(present));
  present = std::move(changed);
  future.clear();
  while (past.size() > kMostSteps || (past.size() > 1 && SizeOf(past) > kMostBytes)) {
    past.pop_front();
  }
  return true;
}

Status ProjectHistory::Change(const std::vector<FileText>& texts) {
  Note();
  isGoing = true;
  const Status done = runner.ReopenWith(texts);
  isGoing = false;
  if (!done) return done;
  past.push_back(std::move(present));
  present = Ask();
  future.clear();
  return {};
}

Status ProjectHistory::Go(std::deque<Step>& from, std::deque<Step>& to) {
  Note();
  if (from.empty() || runner.IsBuilding()) return {};
  isGoing = true;
  const Status done = runner.ReopenWith(from.back());
  isGoing = false;
  if (!done) return done;
  to.push_back(std::move(present));
  present = std::move(from.back());
  from.pop_back();
  return {};
}

}  // namespace tarn::host
