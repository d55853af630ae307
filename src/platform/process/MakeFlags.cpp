#include "platform/process/MakeFlags.h"

#include <charconv>
#include <vector>

namespace tarn {

namespace {

// Splits at spaces without a backslash before them, and keeps the backslashes.
std::vector<std::string_view> SplitFlags(std::string_view flags) {
  std::vector<std::string_view> words;
  std::size_t start = 0;
  for (std::size_t i = 0; i <= flags.size(); ++i) {
    if (i < flags.size() && flags[i] == '\\') {
      ++i;
      continue;
    }
    if (i < flags.size() && flags[i] != ' ') continue;
    if (i > start) words.push_back(flags.substr(start, i - start));
    start = i + 1;
  }
  if (start < flags.size()) words.push_back(flags.substr(start));
  return words;
}

std::string WithoutBackslashes(std::string_view word) {
  std::string text;
  for (std::size_t i = 0; i < word.size(); ++i) {
    if (word[i] == '\\' && i + 1 < word.size()) ++i;
    text += word[i];
  }
  return text;
}

// Returns the value of a word that describes a jobserver; nullopt for other words.
std::optional<std::string_view> GetAddress(std::string_view word) {
  // The second name is that of make before version 4.2.
  for (const std::string_view name : {"--jobserver-auth=", "--jobserver-fds="}) {
    if (word.starts_with(name)) return word.substr(name.size());
  }
  return std::nullopt;
}

// Returns the number of an option -jN; 0 if it has none, nullopt for other words.
std::optional<int> GetJobs(std::string_view word) {
  if (!word.starts_with("-j")) return std::nullopt;
  int count = 0;
  const auto [end, error] = std::from_chars(word.data() + 2, word.data() + word.size(), count);
  const bool isNumber = error == std::errc() && end == word.data() + word.size() && count > 0;
  if (!isNumber && word.size() > 2) return std::nullopt;
  return count;
}

JobserverAddress ToAddress(std::string_view text) {
  constexpr std::string_view kNamedPipe = "fifo:";
  JobserverAddress address;
  if (text.starts_with(kNamedPipe)) {
    address.path = WithoutBackslashes(text.substr(kNamedPipe.size()));
    return address;
  }
  const char* const end = text.data() + text.size();
  const auto first = std::from_chars(text.data(), end, address.reader);
  const bool hasSecond = first.ec == std::errc() && first.ptr != end && *first.ptr == ',';
  if (hasSecond) std::from_chars(first.ptr + 1, end, address.writer);
  return address;
}

}  // namespace

std::optional<JobserverAddress> FindJobserver(std::string_view makeFlags) {
  std::optional<JobserverAddress> found;
  for (const std::string_view word : SplitFlags(makeFlags)) {
    if (word == "--") break;  // definitions of variables follow
    if (const auto address = GetAddress(word)) found = ToAddress(*address);
  }
  return found;
}

int FindMakeJobs(std::string_view makeFlags) {
  int found = 0;
  for (const std::string_view word : SplitFlags(makeFlags)) {
    if (word == "--") break;
    if (const auto jobs = GetJobs(word)) found = *jobs;
  }
  return found;
}

std::string ReplaceJobserver(std::string_view makeFlags, const JobserverAddress& address,
                             int jobs) {
  std::string before, after;
  bool isAfter = false;
  for (const std::string_view word : SplitFlags(makeFlags)) {
    isAfter = isAfter || word == "--";
    if (!isAfter && (GetAddress(word) || GetJobs(word))) continue;
    (isAfter ? after.append(" ") : before.append(before.empty() ? "" : " ")) += word;
  }
  const std::string text =
      address.path.empty() ? std::to_string(address.reader) + "," + std::to_string(address.writer)
                           : "fifo:" + address.path;
  // The first word would be read as single letters without a space or a hyphen before it.
  return before + (jobs > 0 ? " -j" + std::to_string(jobs) : "") + " --jobserver-auth=" + text +
         after;
}

}  // namespace tarn
