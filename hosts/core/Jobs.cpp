#include "hosts/core/Jobs.h"

#include <charconv>
#include <cstdlib>

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

int ParseFailures(const std::string& text) {
  return text.empty() ? 1 : std::atoi(text.c_str());
}

int DefaultJobs(std::string* problem) {
  const Settings settings(FileSystem::Native(), SettingsFolders::FromEnvironment());
  const std::pair<const char*, std::string> given[] = {
      {"TARN_JOBS", TextOf(std::getenv("TARN_JOBS"))},
      {"The setting Jobs", settings.ReadProfile("Build", "Jobs", {})}};
  for (const auto& [name, text] : given) {
    if (text.empty()) continue;
    if (const int count = ParseJobs(text); count > 0) return count;
    if (problem != nullptr) {
      *problem = std::string(name) + " must be a number from 1 to " + std::to_string(kMaxJobs) +
                 ", not " + text + ".";
    }
  }
  return CountUsableProcessors();
}

}  // namespace tarn::host
