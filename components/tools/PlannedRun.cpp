#include "components/tools/PlannedRun.h"

#include <algorithm>
#include <utility>

namespace tarn::tools {

PlannedRun::PlannedRun(const ToolEnvironment& world, std::shared_ptr<const ToolSet> toolSet,
                       const char* tool, const char* files, const char* options)
    : key(KeyOf(tool, files, options)),
      tools(std::move(toolSet)),
      owned(world, tools->ConfigFolder(), files, options),
      world_(world) {}

const RunAccess& PlannedRun::FindAccess() {
  if (!access_) access_ = FindRunAccess(world_, *definition, plan, owned.job);
  return *access_;
}

const RunAccess& PlannedRun::FindFiles() {
  if (access_) return *access_;
  if (!files_) files_ = FindRunFiles(world_, *definition, plan, owned.job);
  return *files_;
}

std::string PlannedRun::KeyOf(const char* tool, const char* files, const char* options) {
  std::string key;
  for (const char* text : {tool, files, options}) {
    if (text != nullptr) key += text;
    key += '\0';
  }
  return key;
}

void PlannedRuns::Add(std::unique_ptr<PlannedRun> run) {
  std::erase_if(runs_, [&](const auto& each) { return each->key == run->key; });
  if (runs_.size() == kMost) runs_.pop_front();
  runs_.push_back(std::move(run));
}

std::unique_ptr<PlannedRun> PlannedRuns::Take(const std::string& key, const ToolSet& tools) {
  const auto found =
      std::ranges::find_if(runs_, [&](const auto& each) { return each->key == key; });
  if (found == runs_.end()) return nullptr;
  std::unique_ptr<PlannedRun> run = std::move(*found);
  runs_.erase(found);
  return run->tools.get() == &tools ? std::move(run) : nullptr;
}

}  // namespace tarn::tools
