#pragma once

#include <string>
#include <vector>

#include "hosts/core/BuildSession.h"
#include "platform/Result.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// Adds a group with a first source file, src/main.c next to the application, which is created
// unless it exists. No-op for an application that has files already, or that isn't built from
// sources. The application is the one with this path in the open project. Returns the path of the
// source, which is then the current node; an empty string if none was added.
Result<std::string> AddFirstSource(BuildSession& session, FileSystem& files,
                                   const std::string& application);

// Options of the section Target that name files of the installation of which a program has a copy.
inline constexpr const char* kTemplateOptions[] = {"StartUp", "SystemCalls", "BootStage"};

// Copies the start-up files that the application's options name (kTemplateOptions) to the folder
// src in `folder`, and adds the copies at the current node. An existing file with different content
// stays as it is, and the copy gets another name. An error names the file. Files that were written
// are appended to `written`, also on error.
Status AddTemplateSources(BuildSession& session, FileSystem& files, const std::string& folder,
                          std::vector<std::string>& written);

}  // namespace tarn::host
