#include "hosts/core/BuildTiming.h"

#include <algorithm>
#include <map>
#include <set>

namespace tarn::host {

namespace {

using std::chrono::milliseconds;

struct Chain {
  std::vector<OutputTime> tools;
  milliseconds length{0};
};

}  // namespace

milliseconds BuildTiming::GetIdeal(int jobs) const {
  return std::max(length, work / std::max(jobs, 1));
}

// The applications are in build order, so each finds the chains of those that it uses: one pass.
BuildTiming ComputeTiming(const std::vector<ApplicationTimes>& times,
                          const std::vector<ApplicationStatus>& status,
                          const std::function<bool(const ApplicationStatus&)>& isWanted) {
  BuildTiming timing;
  std::set<std::string> labels;  // wanted, or used by one that is
  for (const ApplicationStatus& each : status) {
    if (!isWanted(each)) continue;
    labels.insert(each.label);
    labels.insert(each.uses.begin(), each.uses.end());
  }
  std::map<std::string, const ApplicationTimes*> timesOf;
  for (const ApplicationTimes& each : times) timesOf.emplace(each.application, &each);
  std::map<std::string, Chain> chains;
  for (const ApplicationStatus& each : status) {
    const auto entry = timesOf.find(each.path);
    if (entry == timesOf.end() || !labels.contains(each.label)) continue;
    Chain chain;
    const auto takeLonger = [&chain](const Chain& other) {
      if (other.length > chain.length) chain = other;
    };
    for (const std::string& used : each.uses) takeLonger(chains[used]);
    const OutputTime* own = nullptr;
    for (const OutputTime& tool : entry->second->tools) {
      if (tool.time.count() == 0) {
        ++timing.unknown;
        continue;
      }
      timing.tools.push_back(tool);
      timing.work += tool.time;
      if (tool.path == each.path) {
        own = &tool;
      } else {
        takeLonger({{tool}, tool.time});
      }
    }
    if (own != nullptr) {
      chain.tools.push_back(*own);
      chain.length += own->time;
    }
    if (chain.length > timing.length) {
      timing.chain = chain.tools;
      timing.length = chain.length;
    }
    chains[each.label] = std::move(chain);
  }
  std::ranges::stable_sort(timing.tools, std::ranges::greater(), &OutputTime::time);
  return timing;
}

}  // namespace tarn::host
