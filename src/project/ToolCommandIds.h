#pragma once

#include <cstdint>

namespace tarn {

// Ids of the commands that run a tool on the current node.
inline constexpr std::int32_t kFirstDynamicCommand = 0x8122;
inline constexpr std::int32_t kLastDynamicCommand = 0x8136;
inline constexpr std::int32_t kToolCommandBase = 0x8123;  // id of the first command in the list

}  // namespace tarn
