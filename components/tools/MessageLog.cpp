#include "components/tools/MessageLog.h"

#include <algorithm>
#include <utility>

namespace tarn::tools {

namespace {

// Limits on the memory for long lines, per kind of message.
constexpr std::size_t kMaxBytes = 8u << 20;
// A longer message counts as several towards the limit of a build.
constexpr std::size_t kUsualBytes = 160;
constexpr std::size_t kMaxTailBytes = 1u << 20;

std::size_t BytesOf(const ToolMessage& message) {
  return message.text.size() + message.content.size() + message.file.size() + message.line.size();
}

// Returns "1 more error" or "2 more errors".
std::string MoreOf(std::size_t count, std::string_view noun) {
  return std::to_string(count) + " more " + std::string(noun) + (count == 1 ? "" : "s");
}

}  // namespace

bool MessageLog::Share::TakesIn(const ToolMessage& message, std::size_t maxCount) {
  const std::size_t size = BytesOf(message);
  if (dropped > 0 || count == maxCount || bytes + size > kMaxBytes) {
    ++dropped;
    return false;
  }
  ++count;
  bytes += size;
  return true;
}

void MessageLog::Add(ToolMessage message) {
  Entry entry{std::move(message), position_++};
  const bool isError = entry.message.severity == Severity::Error;
  if (isError || entry.message.severity == Severity::Warning) {
    Share& share = isError ? errors_ : warnings_;
    const std::size_t most = isError ? kMaxProblems : std::min(kMaxProblems, most_);
    if (share.TakesIn(entry.message, most)) entries_.push_back(std::move(entry));
    return;
  }
  if (!isHeadFull_ && head_.TakesIn(entry.message, std::min(kHeadLines, most_))) {
    entries_.push_back(std::move(entry));
    return;
  }
  if (!std::exchange(isHeadFull_, true)) head_.dropped = 0;  // this line goes to the tail
  AddToTail(std::move(entry));
}

std::size_t MessageLog::GetRetained() const {
  const auto units = [](const Share& share) {
    return std::max(share.count, share.bytes / kUsualBytes);
  };
  return units(warnings_) + units(head_);
}

void MessageLog::AddToTail(Entry entry) {
  tailBytes_ += BytesOf(entry.message);
  tail_.push_back(std::move(entry));
  while (tail_.size() > kTailLines || tailBytes_ > kMaxTailBytes) {
    tailBytes_ -= BytesOf(tail_.front().message);
    tail_.pop_front();
    ++head_.dropped;
  }
}

void MessageLog::AddPlain(std::string_view text) {
  Add({Severity::Plain, std::string(text), {}, {}, {}});
}

void MessageLog::AddError(std::string_view text) {
  Add({Severity::Error, std::string(text), std::string(text), {}, {}});
}

void MessageLog::ReportLastLines(std::size_t start) {
  const std::size_t first = position_ > kReportedLines ? position_ - kReportedLines : 0;
  const auto mark = [&](auto& entries) {
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
      if (entry->position < start || entry->position < first) return;
      if (entry->message.severity == Severity::Plain) entry->message.isReported = true;
    }
  };
  mark(entries_);
  mark(tail_);
}

ToolMessages MessageLog::Take() {
  ToolMessages taken;
  taken.reserve(entries_.size() + tail_.size() + 3);
  auto last = tail_.begin();
  if (last != tail_.end() && head_.dropped > 0) {
    // At the position of the lines that it replaces.
    Entry gap{{Severity::Plain, MoreOf(head_.dropped, "line") + ", omitted here", {}, {}, {}},
              last->position - 1};
    last = tail_.insert(last, std::move(gap));
  }
  for (Entry& entry : entries_) {
    for (; last != tail_.end() && last->position < entry.position; ++last) {
      taken.push_back(std::move(last->message));
    }
    taken.push_back(std::move(entry.message));
  }
  for (; last != tail_.end(); ++last) taken.push_back(std::move(last->message));
  AppendDropped(taken);
  *this = MessageLog(most_);
  return taken;
}

void MessageLog::AppendDropped(ToolMessages& messages) const {
  const std::pair<Severity, const Share*> shares[] = {{Severity::Error, &errors_},
                                                      {Severity::Warning, &warnings_}};
  for (const auto& [severity, share] : shares) {
    if (share->dropped == 0) continue;
    const char* noun = severity == Severity::Error ? "error" : "warning";
    const std::string text = MoreOf(share->dropped, noun) + ", omitted here";
    messages.push_back({severity, text, text, {}, {}, false, share->dropped});
  }
}

}  // namespace tarn::tools
