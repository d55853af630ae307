#pragma once

#include <cstdint>
#include <string>

#include "platform/automation/ClassStore.h"

namespace tarn {

// Puts the server into the store, as the one in `libraryPath` (absolute), or takes it away: first
// its type library, then its class. 0, or the number of the step that failed; `store` tells why,
// and what an earlier step has done stays.
std::int32_t RegisterServer(ClassStore& store, const std::string& libraryPath);
std::int32_t UnregisterServer(ClassStore& store);

inline constexpr auto kTypeLibraryFailed = static_cast<std::int32_t>(0x80040200u);
inline constexpr auto kClassFailed = static_cast<std::int32_t>(0x80040201u);

// What the server tells of itself to programs that don't call it: its identifiers and the methods
// of its interface with their numbers, arguments and results, as XML text. Made from the dispatch
// table, so it can't tell of others than there are. Lives as long as the library.
const std::string& TypeLibraryText();

}  // namespace tarn
