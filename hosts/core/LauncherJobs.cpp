#include "hosts/core/LauncherJobs.h"

#include <algorithm>
#include <charconv>

#include "hosts/core/Jobs.h"
#include "platform/files/FileSystem.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

// Limits of distcc for a host without one.
constexpr int kSlotsOfHost = 4;
constexpr int kSlotsOfThisHost = 2;
// The scheduler of icecc decides during the build; twice as many keep a few machines busy.
constexpr int kIceccJobsPerProcessor = 2;

constexpr std::string_view kSpace = " \t\r\n";

std::string_view TakeWord(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(kSpace), text.size()));
  const std::size_t end = std::min(text.find_first_of(kSpace), text.size());
  const std::string_view word = text.substr(0, end);
  text.remove_prefix(end);
  return word;
}

bool Runs(std::string_view launcher, std::string_view program) {
  while (!launcher.empty()) {
    if (FileNameOf(std::string(TakeWord(launcher))) == program) return true;
  }
  return false;
}

int SlotsOf(std::string_view host) {
  const std::string_view address = host.substr(0, host.find(','));
  const std::size_t slash = address.find('/');
  if (slash == std::string_view::npos) {
    const std::string_view name = address.substr(0, address.find(':'));
    return name == "localhost" ? kSlotsOfThisHost : kSlotsOfHost;
  }
  const std::string_view limit = address.substr(slash + 1);
  int slots = 0;
  std::from_chars(limit.data(), limit.data() + limit.size(), slots);
  return std::clamp(slots, 0, kMaxJobs);
}

// Returns the list that distcc uses.
std::string DistccHosts(const EnvironmentReader& environment, FileSystem& files) {
  std::string hosts = environment("DISTCC_HOSTS");
  if (!hosts.empty()) return hosts;
  const std::string folder = environment("DISTCC_DIR");
  const std::string home = environment("HOME");
  std::string own = folder;
  if (own.empty() && !home.empty()) own = JoinPath(home, ".distcc");
  if (!own.empty()) {
    if (auto text = files.ReadWholeFile(JoinPath(own, "hosts"))) return std::move(*text);
  }
  auto text = files.ReadWholeFile("/etc/distcc/hosts");
  return text ? std::move(*text) : std::string();
}

}  // namespace

int CountHostSlots(std::string_view hosts) {
  int slots = 0;
  for (const std::string& line : SplitLines(hosts)) {
    std::string_view rest = std::string_view(line).substr(0, line.find('#'));
    for (std::string_view word = TakeWord(rest); !word.empty(); word = TakeWord(rest)) {
      // Options of the list, and hosts that are found during the build.
      const bool isHost = !word.starts_with("--") && !word.starts_with("+");
      if (isHost) slots = std::min(slots + SlotsOf(word), kMaxJobs);
    }
  }
  return slots;
}

std::optional<int> CountLauncherJobs(std::string_view launcher,
                                     const EnvironmentReader& environment, FileSystem& files,
                                     int processors) {
  std::string programs(launcher);
  if (Runs(launcher, "ccache")) programs += " " + environment("CCACHE_PREFIX");
  if (Runs(programs, "distcc")) {
    const int slots = CountHostSlots(DistccHosts(environment, files));
    if (slots > 0) return std::max(slots, processors);
  }
  if (Runs(programs, "icecc")) return std::min(processors * kIceccJobsPerProcessor, kMaxJobs);
  return std::nullopt;
}

}  // namespace tarn::host
