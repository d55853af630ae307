#pragma once

#include <cstdint>
#include <string>

#include "platform/automation/ClassStore.h"

namespace tarn {

// Register the server in the store with its library path (absolute), and unregister it: first its
// type library, then its class. Return 0, or the code of the step that failed; `store` has the
// reason, and the effect of an earlier step stays.
std::int32_t RegisterServer(ClassStore& store, const std::string& libraryPath);
std::int32_t UnregisterServer(ClassStore& store);

inline constexpr auto kTypeLibraryFailed = static_cast<std::int32_t>(0x80040200u);
inline constexpr auto kClassFailed = static_cast<std::int32_t>(0x80040201u);

// Returns the description of the server for programs that don't call it: its identifiers and the
// methods of its interface with ids, arguments and results, as XML. Generated from the dispatch
// table, so the two can't differ. Valid as long as the library is loaded.
const std::string& TypeLibraryText();

}  // namespace tarn
