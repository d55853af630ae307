#pragma once

#include <string>
#include <vector>

#include "hosts/core/ServerDrivers.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// Finds files that the tools of two applications would both make besides their outputs, such as one
// map: each build replaces the other's, so that neither application stays up to date. Returns a
// line for each, of the pairs that the application with this path is in if it isn't empty.
std::vector<std::string> FindSharedProducts(InspectorDriver& inspector, ToolManagerDriver& tools,
                                            FileSystem& files, const std::string& application);

}  // namespace tarn::host
