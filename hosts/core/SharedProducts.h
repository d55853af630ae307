#pragma once

#include <string>
#include <vector>

#include "hosts/core/ServerDrivers.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// Finds additional products, such as a map file, that the tools of two applications would both
// write: each build replaces the other's file, so neither application stays up to date. Returns one
// line per file. If `application` (a path) isn't empty, only pairs that include it are reported.
std::vector<std::string> FindSharedProducts(InspectorDriver& inspector, ToolManagerDriver& tools,
                                            FileSystem& files, const std::string& application);

}  // namespace tarn::host
