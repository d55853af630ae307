#pragma once

#include <string>

#include "hosts/core/BuildSession.h"
#include "platform/Result.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// Adds a group with a first source file, src/main.c next to the application, which is created
// unless it exists. No-op for an application that has files already, or that isn't built from
// sources. The application is the one with this path in the open project.
Status AddFirstSource(BuildSession& session, FileSystem& files, const std::string& application);

}  // namespace tarn::host
