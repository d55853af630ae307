#include "platform/time/CivilTime.h"

#include <time.h>

namespace tarn {

std::optional<std::tm> ToLocalTime(std::int64_t seconds) {
  const auto time = static_cast<std::time_t>(seconds);
  std::tm parts{};
  if (localtime_r(&time, &parts) == nullptr) return std::nullopt;
  return parts;
}

std::optional<std::tm> ToUtcTime(std::int64_t seconds) {
  const auto time = static_cast<std::time_t>(seconds);
  std::tm parts{};
  if (gmtime_r(&time, &parts) == nullptr) return std::nullopt;
  return parts;
}

}  // namespace tarn
