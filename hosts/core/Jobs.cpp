#include "hosts/core/Jobs.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
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

int ParseFailures(const std::string& text) {
  return text.empty() ? 1 : std::atoi(text.c_str());
}

int ParseLoad(std::string_view text) {
  constexpr double kMost = 1e6;
  double load = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), load);
  const bool isNumber = error == std::errc() && end == text.data() + text.size();
  return isNumber && load >= 0 && load <= kMost ? static_cast<int>(load * 100 + 0.5) : -1;
}

MemoryAmount ParseMemory(std::string_view text) {
  constexpr std::pair<char, std::int64_t> kUnits[] = {{'M', 1}, {'G', 1 << 10}, {'T', 1 << 20}};
  constexpr int kMost = 100'000;
  int count = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  const bool hasUnit = error == std::errc() && end + 1 == text.data() + text.size();
  if (!hasUnit || count < 0 || count > kMost) return {};
  if (*end == '%') return count <= 100 ? MemoryAmount{-1, count} : MemoryAmount();
  for (const auto& [unit, megabytes] : kUnits) {
    constexpr std::int64_t kMostMegabytes = 1'000'000'000;
    if (*end == unit) {
      return {static_cast<int>(std::min(count * megabytes, kMostMegabytes)), -1};
    }
  }
  return {};
}

bool IsMemory(std::string_view text) {
  const MemoryAmount amount = ParseMemory(text);
  return amount.megabytes >= 0 || amount.percent >= 0;
}

int ReadJobsSetting(std::string* problem) {
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
  return 0;
}

int CountMachineJobs(const std::string& launcher) {
  const auto environment = [](const char* name) { return OrEmpty(std::getenv(name)); };
  const int processors = CountUsableProcessors();
  return CountLauncherJobs(launcher.empty() ? environment("TARN_LAUNCHER") : launcher, environment,
                           FileSystem::Native(), processors)
      .value_or(processors);
}

int DefaultJobs(const std::string& launcher) {
  const int count = ReadJobsSetting();
  return count > 0 ? count : CountMachineJobs(launcher);
}

void AddLimitSettings(BuildLimits& limits, std::vector<std::string>& problems) {
  const Settings settings(FileSystem::Native(), SettingsFolders::FromEnvironment());
  const auto add = [&](const char* name, std::string& limit, auto isValid, const char* wanted) {
    const std::string text = limit.empty() ? settings.ReadProfile("Build", name, {}) : "";
    if (text.empty()) return;
    if (isValid(text)) {
      limit = text;
    } else {
      problems.push_back(std::string("The setting ") + name + " must be " + wanted + ", not " +
                         text + ".");
    }
  };
  add(
      "Load", limits.load, [](const std::string& text) { return ParseLoad(text) >= 0; }, kLoadText);
  add("MemFree", limits.memory, IsMemory, kMemoryText);
}

}  // namespace tarn::host
