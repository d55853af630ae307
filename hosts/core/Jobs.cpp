#include "hosts/core/Jobs.h"

#include <charconv>
#include <cstdlib>

#include "hosts/core/LauncherJobs.h"
#include "platform/files/FileSystem.h"
#include "platform/process/Processors.h"
#include "platform/settings/Settings.h"
#include "platform/text/Text.h"

namespace tarn::host {

int ParseJobs(std::string_view text) {
  int count = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  const bool isNumber = error == std::errc() && end == text.data() + text.size();
  return isNumber && count >= 1 && count <= kMaxJobs ? count : 0;
}

int DefaultJobs(std::string* problem, const std::string& launcher) {
  const Settings settings(FileSystem::Native(), SettingsFolders::FromEnvironment());
  const std::pair<const char*, std::string> given[] = {
      {"TARN_JOBS", OrEmpty(std::getenv("TARN_JOBS"))},
      {"The setting Jobs", settings.ReadProfile("Build", "Jobs", {})}};
  for (const auto& [name, text] : given) {
    if (text.empty()) continue;
    if (const int count = ParseJobs(text); count > 0) return count;
    if (problem != nullptr) {
      *problem = std::string(name) + " must be a number from 1 to " + std::to_string(kMaxJobs) +
                 ", not " + text + ".";
    }
  }
  const auto environment = [](const char* name) { return OrEmpty(std::getenv(name)); };
  const int processors = CountUsableProcessors();
  return CountLauncherJobs(launcher.empty() ? environment("TARN_LAUNCHER") : launcher, environment,
                           FileSystem::Native(), processors)
      .value_or(processors);
}

}  // namespace tarn::host
