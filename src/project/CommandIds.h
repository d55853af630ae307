#pragma once

#include <cstdint>

namespace tarn {

// Ids of the commands that run a tool on the current node.
inline constexpr std::int32_t kFirstDynamicCommand = 0x8122;
inline constexpr std::int32_t kLastDynamicCommand = 0x8136;
inline constexpr std::int32_t kToolCommandBase = 0x8123;  // id of the first command in the list

// Commands that the project posts to the host: all options are loaded; a debugged application has
// changed.
inline constexpr std::int32_t kCommandOptionsLoaded = 0x811E;
inline constexpr std::int32_t kCommandAutoDebug = 0x82C3;

}  // namespace tarn
