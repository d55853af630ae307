#pragma once

#include <cstdint>
#include <ctime>
#include <optional>

namespace tarn {

// Conversions of a time in seconds since 1970 to date and time of day. Return nullopt if the time
// has no such form. Thread-safe. Supplied by the port.

// In the time zone of the process.
std::optional<std::tm> ToLocalTime(std::int64_t seconds);
std::optional<std::tm> ToUtcTime(std::int64_t seconds);

}  // namespace tarn
