#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "project/FileProtection.h"
#include "project/HostLink.h"
#include "project/ProjectPaths.h"
#include "project/ProjectServices.h"
#include "project/ProjectState.h"

namespace tarn {

// File format that can be imported.
struct ImportFormat {
  const char* pattern;  // "*.prj"
  int messageRow;       // its description in the message table
};

// Returns all formats, in the order in which a user is offered them. The conversion script has to
// recognise each.
std::span<const ImportFormat> ImportFormats();

// Converts projects in older formats. A conversion script writes a project in the current
// format next to the old file. Borrows everything; main thread only. Errors are shown to the user.
class Importer {
 public:
  Importer(ProjectServices& projectServices, const ProjectState& projectState,
           const ProjectPaths& projectPaths, HostLink& hostLink, const FileProtection& protects)
      : services_(projectServices),
        files_(projectServices.files),
        state_(projectState),
        paths_(projectPaths),
        host_(hostLink),
        protection_(protects) {}

  // Converts the project at `path`, unless the user wants to keep an existing result, and stores
  // the path of the result in `newFile`. Returns false if the conversion failed, or if a handler
  // opened or closed a project in the meantime. Returns true also if nothing could be started.
  bool Convert(const std::string& path, std::string& newFile);
  // Returns the name of the program that importing an old project needs, or an empty string if it
  // is installed.
  std::string MissingImportProgram() const;

 private:
  std::int32_t RunConversion(const std::string& oldFile, std::string& blamed);
  std::string FindImportProgram() const;

  ProjectServices& services_;
  FileSystem& files_;
  const ProjectState& state_;
  const ProjectPaths& paths_;
  HostLink& host_;
  const FileProtection& protection_;
};

}  // namespace tarn
