#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "project/FileProtection.h"
#include "project/ProjectPaths.h"
#include "project/ProjectServices.h"
#include "project/ProjectState.h"
#include "project/RepeatedReads.h"
#include "project/ReplacedFiles.h"

namespace tarn {

// Reads the files of a project into its tree. Borrows everything; main thread only.
// Errors are reported to the log, and damage to the file protection. A handler of a log message may
// change the tree or open another project; the functions detect that and return 0.
class TreeLoader {
 public:
  TreeLoader(ProjectServices& projectServices, ProjectState& projectState,
             const ProjectPaths& projectPaths, FileProtection& fileProtection)
      : services(projectServices),
        files(projectServices.files),
        types(projectServices.types),
        state(projectState),
        paths(projectPaths),
        protection(fileProtection),
        guard(fileProtection.Guard()) {}

  // Reads the files of the project into the root. If `replacedFiles` is non-null, its contents are
  // read instead of the files. Returns like LoadTreeFile.
  std::int32_t LoadProjectFile(const ReplacedFiles* replacedFiles);
  // Reads a project or application file into `node`, and then the files of its parts. Returns 0 if
  // a file is missing or can't be opened, or if a handler changed the tree. A file with a read
  // error is treated as damaged.
  std::int32_t LoadTreeFile(CXmlNode& node, const std::string& fileName);
  // Projects are opened for reading only: no log lines are written about read-only files.
  void OpenForReading(bool isWanted) { onlyReads = isWanted; }

 private:
  std::int32_t LoadTreeText(CXmlNode& node, const std::string& absolute);
  void CheckActiveApplication();
  void SetReference(CXmlNode& node, const std::string& fileName);
  std::int32_t LoadExternChildren(CXmlNode& node, std::uint64_t epoch);

  ProjectServices& services;
  FileSystem& files;
  const NodeTypes& types;
  ProjectState& state;
  const ProjectPaths& paths;
  FileProtection& protection;
  FileGuard& guard;
  bool onlyReads = false;
  RepeatedReads repeatedReads;              // of the outermost file being loaded
  std::vector<std::string> loadingFiles;    // files being read, outermost first
  const ReplacedFiles* replaced = nullptr;  // of the project being read
};

}  // namespace tarn
