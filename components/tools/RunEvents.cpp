#include "components/tools/RunEvents.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "components/tools/XmlAttributes.h"

namespace tarn::tools {

namespace {

std::int64_t Now() {
  using std::chrono::microseconds;
  const auto time = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<microseconds>(time).count();
}

}  // namespace

void RunEvents::Watch(bool isWatched) {
  const std::lock_guard guard(lock_);
  isWatched_ = isWatched;
  journal_.clear();
}

bool RunEvents::IsWatched() {
  const std::lock_guard guard(lock_);
  return isWatched_;
}

std::string RunEvents::Take() {
  std::string taken;
  {
    const std::lock_guard guard(lock_);
    taken.swap(journal_);
  }
  return taken.empty() ? taken : "<Runs>" + taken + "</Runs>";
}

RunEvents::Run::Run(RunEvents& journal, std::string startElement)
    : events_(journal), start_(std::move(startElement)) {}

RunEvents::Run::~Run() {
  const std::lock_guard guard(events_.lock_);
  if (isRunning_) events_.lanes_[lane_] = false;
  if (number_ != 0 && !isRetired_) Add("Dropped", {}, {});
}

// The caller holds the lock.
void RunEvents::Run::Add(const char* name, const std::string& attributes,
                         const std::string& content) {
  if (!events_.isWatched_) return;
  std::string& text = events_.journal_;
  text.append("<").append(name).append(XmlAttribute("Run", std::to_string(number_)));
  text.append(XmlAttribute("Time", std::to_string(Now()))).append(attributes);
  text.append(">").append(content).append("</").append(name).append(">");
}

void RunEvents::Run::Start() {
  const std::lock_guard guard(events_.lock_);
  std::vector<bool>& lanes = events_.lanes_;
  const auto lane = std::find(lanes.begin(), lanes.end(), false);
  lane_ = static_cast<std::size_t>(lane - lanes.begin());
  if (lane == lanes.end()) lanes.push_back(false);
  lanes[lane_] = true;
  isRunning_ = true;
  number_ = ++events_.lastRun_;
  Add("Started", XmlAttribute("Lane", std::to_string(lane_)), std::exchange(start_, {}));
}

void RunEvents::Run::AddOutput(std::string_view text) {
  constexpr std::size_t kMostPending = 4 << 20;
  constexpr std::string_view kDigits = "0123456789abcdef";
  const std::lock_guard guard(events_.lock_);
  if (text.empty() || events_.journal_.size() > kMostPending) return;
  std::string bytes;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    bytes += kDigits[byte >> 4];
    bytes += kDigits[byte & 15];
  }
  Add("Output", XmlAttribute("Bytes", bytes), {});
}

void RunEvents::Run::End(bool isDone, int exitCode) {
  const std::lock_guard guard(events_.lock_);
  events_.lanes_[lane_] = false;
  isRunning_ = false;
  Add("Ended",
      XmlAttribute("Done", isDone ? "Yes" : "No") + XmlAttribute("Exit", std::to_string(exitCode)),
      {});
}

void RunEvents::Run::BeginRetiring() {
  const std::lock_guard guard(events_.lock_);
  if (std::exchange(isRetiring_, true) || number_ == 0) return;
  Add("Retiring", {}, {});
}

void RunEvents::Run::Retire() {
  const std::lock_guard guard(events_.lock_);
  isRetired_ = true;
  Add("Retired", {}, {});
}

}  // namespace tarn::tools
