#include "components/tools/JobPermits.h"

#include <algorithm>
#include <thread>

#include "platform/process/MachineLoad.h"
#include "platform/process/MakeFlags.h"

namespace tarn::tools {

namespace {

bool IsExceeded(const StartLimits& limits) {
  if (limits.load >= 0 && GetLoadAverage() >= limits.load) return true;
  if (limits.memory < 0 && limits.percentFree < 0) return false;
  const MachineMemory memory = GetMachineMemory();
  if (memory.available < 0) return false;
  // In floating point, since the product of bytes and a percentage may overflow.
  const double share =
      static_cast<double>(memory.total) * static_cast<double>(limits.percentFree) / 100;
  return memory.available < limits.memory || static_cast<double>(memory.available) < share;
}

}  // namespace

Result<int> JobPermits::Join() {
  const auto address = FindJobserver(flags_);
  if (!address) return FindMakeJobs(flags_);
  auto joined = Jobserver::Join(*address);
  if (!joined) return joined.GetError();
  const std::lock_guard guard(lock_);
  jobserver_ = std::move(*joined);
  hasJoined_ = true;
  return FindMakeJobs(flags_);
}

void JobPermits::SetJobs(int count) {
  const std::lock_guard guard(lock_);
  if (!hasJoined_ && count != jobs_) jobserver_.reset();
  jobs_ = count;
}

void JobPermits::SetLimits(const StartLimits& limits) {
  const std::lock_guard guard(lock_);
  limits_ = limits;
}

// Creates the jobserver when it is needed for the first time. Without one, tools take no part.
// Requires the lock.
std::shared_ptr<Jobserver> JobPermits::GetJobserver() {
  if (jobserver_ == nullptr && jobs_ > 1) {
    if (auto created = Jobserver::Create(jobs_ - 1)) jobserver_ = std::move(*created);
  }
  return jobserver_;
}

JobPermits::Answer JobPermits::Take(int active, bool isNeeded) {
  if (active == 0) return Answer::Yes;
  const std::lock_guard guard(lock_);
  if (!isNeeded && IsExceeded(limits_)) return Answer::Loaded;
  const std::shared_ptr<Jobserver> server = GetJobserver();
  return server == nullptr || server->Take() ? Answer::Yes : Answer::NoToken;
}

void JobPermits::ReturnUnneeded(int active) {
  const std::lock_guard guard(lock_);
  if (jobserver_ == nullptr) return;
  while (jobserver_->GetHeld() > std::max(active - 1, 0)) jobserver_->Return();
  if (active == 0) jobserver_->Refill();
}

void JobPermits::Wait(std::chrono::milliseconds most) {
  std::unique_lock hold(lock_);
  const std::shared_ptr<Jobserver> server = jobserver_;
  hold.unlock();
  if (server != nullptr) server->Wait(most);
}

void JobPermits::Wake() {
  const std::lock_guard guard(lock_);
  if (jobserver_ != nullptr) jobserver_->Wake();
}

void JobPermits::Describe(ProcessRequest& request) {
  const std::lock_guard guard(lock_);
  const std::shared_ptr<Jobserver> server = GetJobserver();
  const bool isOwn = std::any_of(request.environment.begin(), request.environment.end(),
                                 [](const auto& each) { return each.first == "MAKEFLAGS"; });
  if (server == nullptr || isOwn) return;
  const JobserverAddress address = server->GetAddress();
  const int jobs = hasJoined_ ? FindMakeJobs(flags_) : jobs_;
  request.environment.emplace_back("MAKEFLAGS", ReplaceJobserver(flags_, address, jobs));
  if (address.path.empty()) request.passed = {address.reader, address.writer};
}

Result<std::unique_ptr<Process>> JobserverLauncher::Start(const ProcessRequest& request) {
  ProcessRequest described = request;
  permits_.Describe(described);
  return inner_->Start(described);
}

}  // namespace tarn::tools
