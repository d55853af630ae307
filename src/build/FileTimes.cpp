#include "build/FileTimes.h"

#include "platform/text/Hash.h"

namespace tarn {

std::size_t FileTimes::TextHash::operator()(std::string_view text) const {
  return static_cast<std::size_t>(HashBytes(text));
}

std::optional<std::int64_t> FileTimes::Get(const char* path) {
  const auto known = times.find(std::string_view(path));
  if (known != times.end()) return known->second;
  std::string name(path);
  std::optional<std::int64_t> time;
  if (const std::optional<FileStatus> status = files.Examine(name)) time = status->modifiedSeconds;
  times.emplace(std::move(name), time);
  return time;
}

void FileTimes::Add(std::string path, std::optional<std::int64_t> time) {
  times.emplace(std::move(path), time);
}

void FileTimes::Forget() {
  ++epoch;
  if (!times.empty()) times.clear();
}

}  // namespace tarn
