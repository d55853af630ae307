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
      : services_(projectServices),
        files_(projectServices.files),
        types_(projectServices.types),
        state_(projectState),
        paths_(projectPaths),
        protection_(fileProtection),
        guard_(fileProtection.Guard()) {}

  // Reads the files of the project into the root. If `replacedFiles` is non-null, its contents are
  // read instead of the files. Returns like LoadTreeFile.
  std::int32_t LoadProjectFile(const ReplacedFiles* replacedFiles);
  // Reads a project or application file into `node`, and then the files of its parts. Returns 0 if
  // a file is missing or can't be opened, or if a handler changed the tree. A file with a read
  // error is treated as damaged.
  std::int32_t LoadTreeFile(CXmlNode& node, const std::string& fileName);
  // Projects are opened for reading only: no log lines are written about read-only files.
  void OpenForReading(bool isWanted) { onlyReads_ = isWanted; }

 private:
  std::int32_t LoadTreeText(CXmlNode& node, const std::string& absolute);
  void CheckActiveApplication();
  void SetReference(CXmlNode& node, const std::string& fileName);
  std::int32_t LoadExternChildren(CXmlNode& node, std::uint64_t epoch);

  ProjectServices& services_;
  FileSystem& files_;
  const NodeTypes& types_;
  ProjectState& state_;
  const ProjectPaths& paths_;
  FileProtection& protection_;
  BackupGuard& guard_;
  bool onlyReads_ = false;
  RepeatedReads repeatedReads_;              // of the outermost file being loaded
  std::vector<std::string> loadingFiles_;    // files being read, outermost first
  const ReplacedFiles* replaced_ = nullptr;  // of the project being read
};

}  // namespace tarn
