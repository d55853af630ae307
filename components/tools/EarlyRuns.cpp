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
  }
  changed_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

void EarlyRuns::SetJobs(int count) {
  const std::lock_guard guard(lock_);
  jobs_ = std::max(count, 1);
  changed_.notify_all();
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
  changed_.notify_all();
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

// Main function of the threads.
void EarlyRuns::RunQueued() {
  std::unique_lock hold(lock_);
  for (;;) {
    changed_.wait(hold,
                  [this] { return isEnding_ || (MayStart() && FindQueued() != entries_.end()); });
    if (isEnding_) return;
    const auto entry = FindQueued();
    entry->state = State::Running;
    ++running_;
    hold.unlock();
    entry->run->Execute();
    hold.lock();
    --running_;
    entry->state = State::Ended;
    changed_.notify_all();
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
  changed_.wait(hold, [&] { return entry->state == State::Ended || isStopping_; });
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
  changed_.notify_all();
}

void EarlyRuns::Resume() {
  const std::lock_guard guard(lock_);
  isStopping_ = false;
  changed_.notify_all();
}

EarlyRuns::Turn::Turn(EarlyRuns& list) : runs_(list) {
  std::unique_lock hold(runs_.lock_);
  ++runs_.waitingTurns_;
  // Doesn't wait for other turns: the thread of one may be waiting for this one.
  runs_.changed_.wait(
      hold, [this] { return runs_.running_ == 0 || runs_.running_ + runs_.turns_ < runs_.jobs_; });
  --runs_.waitingTurns_;
  ++runs_.turns_;
  runs_.changed_.notify_all();
}

EarlyRuns::Turn::~Turn() {
  const std::lock_guard guard(runs_.lock_);
  --runs_.turns_;
  runs_.changed_.notify_all();
}

}  // namespace tarn::tools
