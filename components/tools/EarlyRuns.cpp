#include "components/tools/EarlyRuns.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace tarn::tools {

namespace {

bool Overlap(const std::vector<std::string>& a, const std::vector<std::string>& b) {
  return std::find_first_of(a.begin(), a.end(), b.begin(), b.end()) != a.end();
}

}  // namespace

EarlyRuns::~EarlyRuns() {
  Drop();
  {
    const std::lock_guard guard(lock_);
    isEnding_ = true;
    Notify();
  }
  for (std::thread& thread : threads_) thread.join();
}

void EarlyRuns::SetJobs(int count) {
  const std::lock_guard guard(lock_);
  jobs_ = std::max(count, 1);
  permits_.SetJobs(jobs_);
  Notify();
}

int EarlyRuns::GetJobs() {
  const std::lock_guard guard(lock_);
  return jobs_;
}

bool EarlyRuns::Start(std::unique_ptr<EarlyRun> run) {
  const std::lock_guard guard(lock_);
  if (jobs_ < 2 || isStopping_ || isEnding_) return false;
  const bool isTaken = std::any_of(entries_.begin(), entries_.end(), [&](const Entry& each) {
    return Overlap(each.run->Claims(), run->Claims());
  });
  if (isTaken || !EnsureThread()) return false;
  entries_.push_back({std::move(run)});
  Notify();
  return true;
}

// Creates another thread unless there is one for each job. Returns false if there is none at all.
bool EarlyRuns::EnsureThread() {
  if (threads_.size() < static_cast<std::size_t>(jobs_)) {
    try {
      threads_.emplace_back([this] { RunQueued(); });
    } catch (const std::system_error&) {
      return !threads_.empty();
    }
  }
  return true;
}

bool EarlyRuns::MayStart() const {
  return !isStopping_ && waitingTurns_ == 0 && running_ + turns_ < jobs_;
}

EarlyRuns::Entries::iterator EarlyRuns::Find(const std::string& key) {
  return std::find_if(entries_.begin(), entries_.end(),
                      [&](const Entry& each) { return each.run->Key() == key; });
}

EarlyRuns::Entries::iterator EarlyRuns::FindQueued() {
  return std::find_if(entries_.begin(), entries_.end(),
                      [](const Entry& each) { return each.state == State::Queued; });
}

JobPermits::Answer EarlyRuns::AskToRun(const Entry& entry) {
  return permits_.Take(running_ + turns_, &entry == awaited_);
}

// Wakes the threads up that wait for a change.
void EarlyRuns::Notify() {
  changed_.notify_all();
  if (isPolling_) permits_.Wake();
}

// Waits for a change, which may be that of the jobserver or the load if that prevents a start. One
// thread watches the jobserver, and lets the others try when it has changed.
void EarlyRuns::AwaitChange(std::unique_lock<std::mutex>& hold, JobPermits::Answer answer) {
  constexpr std::chrono::milliseconds kBetweenLooks(200);
  if (answer == JobPermits::Answer::Loaded) {
    changed_.wait_for(hold, kBetweenLooks);
  } else if (answer == JobPermits::Answer::NoToken && !isPolling_) {
    isPolling_ = true;
    hold.unlock();
    permits_.Wait(kBetweenLooks);
    hold.lock();
    isPolling_ = false;
    changed_.notify_all();
  } else {
    changed_.wait(hold);
  }
}

// Main function of the threads.
void EarlyRuns::RunQueued() {
  std::unique_lock hold(lock_);
  while (!isEnding_) {
    const auto entry = FindQueued();
    const bool isPossible = MayStart() && entry != entries_.end();
    const JobPermits::Answer answer = isPossible ? AskToRun(*entry) : JobPermits::Answer::Yes;
    if (!isPossible || answer != JobPermits::Answer::Yes) {
      AwaitChange(hold, answer);
      continue;
    }
    entry->state = State::Running;
    ++running_;
    hold.unlock();
    entry->run->Execute();
    hold.lock();
    --running_;
    permits_.ReturnUnneeded(running_ + turns_);
    entry->state = State::Ended;
    Notify();
  }
}

const EarlyRun* EarlyRuns::Get(const std::string& key) {
  const std::lock_guard guard(lock_);
  const auto entry = Find(key);
  return entry == entries_.end() ? nullptr : entry->run.get();
}

bool EarlyRuns::IsValid(const std::string& key, std::size_t mostMessages) {
  std::unique_lock hold(lock_);
  const auto entry = Find(key);
  if (entry == entries_.end()) return false;
  awaited_ = &*entry;
  Notify();
  changed_.wait(hold, [&] { return entry->state == State::Ended || isStopping_; });
  awaited_ = nullptr;
  if (entry->state == State::Queued) {
    entries_.erase(entry);
    return false;
  }
  changed_.wait(hold, [&] { return entry->state == State::Ended; });
  hold.unlock();
  const bool isValid = entry->run->IsValid(mostMessages);
  if (!isValid) entry->run->RemoveResults();
  hold.lock();
  entry->isValid = isValid;
  if (!isValid) entries_.erase(entry);
  return isValid;
}

std::unique_ptr<EarlyRun> EarlyRuns::Take(const std::string& key) {
  const std::lock_guard guard(lock_);
  const auto entry = Find(key);
  if (entry == entries_.end() || !entry->isValid) return nullptr;
  std::unique_ptr<EarlyRun> run = std::move(entry->run);
  entries_.erase(entry);
  return run;
}

void EarlyRuns::Drop() {
  std::unique_lock hold(lock_);
  std::erase_if(entries_, [](const Entry& each) { return each.state == State::Queued; });
  for (Entry& each : entries_) {
    if (each.state == State::Running) each.run->Stop();
  }
  changed_.wait(hold, [this] { return running_ == 0; });
  for (Entry& each : entries_) each.run->RemoveResults();
  entries_.clear();
}

void EarlyRuns::Stop() {
  const std::lock_guard guard(lock_);
  isStopping_ = true;
  for (Entry& each : entries_) {
    if (each.state == State::Running) each.run->Stop();
  }
  Notify();
}

void EarlyRuns::Resume() {
  const std::lock_guard guard(lock_);
  isStopping_ = false;
  Notify();
}

EarlyRuns::Turn::Turn(EarlyRuns& list) : runs_(list) {
  std::unique_lock hold(runs_.lock_);
  ++runs_.waitingTurns_;
  // Doesn't wait for other turns: the thread of one may be waiting for this one.
  while (runs_.running_ > 0) {
    const int active = runs_.running_ + runs_.turns_;
    const bool isPossible = active < runs_.jobs_;
    const auto answer = isPossible ? runs_.permits_.Take(active, true) : JobPermits::Answer::Yes;
    if (isPossible && answer == JobPermits::Answer::Yes) break;
    runs_.AwaitChange(hold, answer);
  }
  --runs_.waitingTurns_;
  ++runs_.turns_;
  runs_.Notify();
}

EarlyRuns::Turn::~Turn() {
  const std::lock_guard guard(runs_.lock_);
  --runs_.turns_;
  runs_.permits_.ReturnUnneeded(runs_.running_ + runs_.turns_);
  runs_.Notify();
}

}  // namespace tarn::tools
