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
    const std::lock_guard guard(lock);
    isEnding = true;
  }
  changed.notify_all();
  for (std::thread& thread : threads) thread.join();
}

void EarlyRuns::SetJobs(int count) {
  const std::lock_guard guard(lock);
  jobs = std::max(count, 1);
  changed.notify_all();
}

int EarlyRuns::GetJobs() {
  const std::lock_guard guard(lock);
  return jobs;
}

bool EarlyRuns::Start(std::unique_ptr<EarlyRun> run) {
  const std::lock_guard guard(lock);
  if (jobs < 2 || isStopping || isEnding) return false;
  const bool isTaken = std::any_of(entries.begin(), entries.end(), [&](const Entry& each) {
    return Overlap(each.run->Claims(), run->Claims());
  });
  if (isTaken || !EnsureThread()) return false;
  entries.push_back({std::move(run)});
  changed.notify_all();
  return true;
}

// Creates another thread unless there is one for each job. Returns false if there is none at all.
bool EarlyRuns::EnsureThread() {
  if (threads.size() < static_cast<std::size_t>(jobs)) {
    try {
      threads.emplace_back([this] { RunQueued(); });
    } catch (const std::system_error&) {
      return !threads.empty();
    }
  }
  return true;
}

bool EarlyRuns::MayStart() const {
  return !isStopping && waitingTurns == 0 && running + turns < jobs;
}

EarlyRuns::Entries::iterator EarlyRuns::Find(const std::string& key) {
  return std::find_if(entries.begin(), entries.end(),
                      [&](const Entry& each) { return each.run->Key() == key; });
}

EarlyRuns::Entries::iterator EarlyRuns::FindQueued() {
  return std::find_if(entries.begin(), entries.end(),
                      [](const Entry& each) { return each.state == State::Queued; });
}

// Main function of the threads.
void EarlyRuns::RunQueued() {
  std::unique_lock hold(lock);
  for (;;) {
    changed.wait(hold,
                 [this] { return isEnding || (MayStart() && FindQueued() != entries.end()); });
    if (isEnding) return;
    const auto entry = FindQueued();
    entry->state = State::Running;
    ++running;
    hold.unlock();
    entry->run->Execute();
    hold.lock();
    --running;
    entry->state = State::Ended;
    changed.notify_all();
  }
}

const EarlyRun* EarlyRuns::Get(const std::string& key) {
  const std::lock_guard guard(lock);
  const auto entry = Find(key);
  return entry == entries.end() ? nullptr : entry->run.get();
}

bool EarlyRuns::IsGood(const std::string& key, std::size_t mostMessages) {
  std::unique_lock hold(lock);
  const auto entry = Find(key);
  if (entry == entries.end()) return false;
  changed.wait(hold, [&] { return entry->state == State::Ended || isStopping; });
  if (entry->state == State::Queued) {
    entries.erase(entry);
    return false;
  }
  changed.wait(hold, [&] { return entry->state == State::Ended; });
  hold.unlock();
  const bool isGood = entry->run->IsGood(mostMessages);
  if (!isGood) entry->run->RemoveResults();
  hold.lock();
  entry->isGood = isGood;
  if (!isGood) entries.erase(entry);
  return isGood;
}

std::unique_ptr<EarlyRun> EarlyRuns::Take(const std::string& key) {
  const std::lock_guard guard(lock);
  const auto entry = Find(key);
  if (entry == entries.end() || !entry->isGood) return nullptr;
  std::unique_ptr<EarlyRun> run = std::move(entry->run);
  entries.erase(entry);
  return run;
}

void EarlyRuns::Drop() {
  std::unique_lock hold(lock);
  std::erase_if(entries, [](const Entry& each) { return each.state == State::Queued; });
  for (Entry& each : entries) {
    if (each.state == State::Running) each.run->Stop();
  }
  changed.wait(hold, [this] { return running == 0; });
  for (Entry& each : entries) each.run->RemoveResults();
  entries.clear();
}

void EarlyRuns::Stop() {
  const std::lock_guard guard(lock);
  isStopping = true;
  for (Entry& each : entries) {
    if (each.state == State::Running) each.run->Stop();
  }
  changed.notify_all();
}

void EarlyRuns::Resume() {
  const std::lock_guard guard(lock);
  isStopping = false;
  changed.notify_all();
}

EarlyRuns::Turn::Turn(EarlyRuns& list) : runs(list) {
  std::unique_lock hold(runs.lock);
  ++runs.waitingTurns;
  // Doesn't wait for other turns: the thread of one may be waiting for this one.
  runs.changed.wait(hold,
                    [this] { return runs.running == 0 || runs.running + runs.turns < runs.jobs; });
  --runs.waitingTurns;
  ++runs.turns;
  runs.changed.notify_all();
}

EarlyRuns::Turn::~Turn() {
  const std::lock_guard guard(runs.lock);
  --runs.turns;
  runs.changed.notify_all();
}

}  // namespace tarn::tools
