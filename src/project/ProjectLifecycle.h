#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/files/FileTexts.h"
#include "project/DefinitionFolders.h"
#include "project/DerivedData.h"
#include "project/FileProtection.h"
#include "project/HostLink.h"
#include "project/Importer.h"
#include "project/ProjectPaths.h"
#include "project/ProjectServices.h"
#include "project/ProjectState.h"
#include "project/Publisher.h"
#include "project/ReplacedFiles.h"
#include "project/TreeLoader.h"
#include "project/TreeSaver.h"

namespace tarn {

// The parts that opening and closing a project puts to work.
struct LifecycleParts {
  ProjectServices& services;
  ProjectState& state;
  const ProjectPaths& paths;
  HostLink& host;
  FileProtection& protection;
  DefinitionFolders& definitions;
  DerivedData& derived;
  TreeLoader& loader;
  TreeSaver& saver;
  Publisher& publisher;
  Importer& importer;
};

// Opens, closes, saves and creates projects. A save is a close followed by an open. Borrows
// everything; main thread only. Errors are reported to the log; a handler of a message may open or
// close a project in the meantime, and the operation then ends with 0.
class ProjectLifecycle {
 public:
  explicit ProjectLifecycle(const LifecycleParts& parts)
      : services_(parts.services),
        files_(parts.services.files),
        types_(parts.services.types),
        views_(parts.services.views),
        state_(parts.state),
        paths_(parts.paths),
        host_(parts.host),
        protection_(parts.protection),
        guard_(parts.protection.Guard()),
        definitions_(parts.definitions),
        derived_(parts.derived),
        loader_(parts.loader),
        saver_(parts.saver),
        publisher_(parts.publisher),
        importer_(parts.importer) {}

  // Opens a project after closing the current one. A null `path` asks the user; a file that is not
  // a *.tprj is imported. A nonzero `isDefault` opens the placeholder project. Returns 0 if a
  // close, a build or the user prevents the open, if the file can't be read, and if a handler
  // opened or closed a project in the meantime.
  std::int32_t OpenProject(const char* path, std::int32_t isDefault);
  // Asks the host, saves a modified project unless damage protects it, and frees the tree. Returns
  // 0 if the host refuses, if a build is running, and if not even a copy of a file could be
  // written, which reopens the project. Saved copies don't prevent the close; see
  // TreeSaver::GetSavedFiles.
  std::int32_t CloseProject();
  // Saves the project by closing and reopening it. If some files could not be written, reopens it
  // with their content as unsaved changes and returns 0.
  std::int32_t SaveProject();
  // Writes an empty project file without opening it. Backs up a file that it replaces.
  std::int32_t CreateProjectFile(const std::string& path, std::int32_t askOverwrite);

  // Applies a change of these files to the open project, in memory only (ApplyChange.cpp); see
  // ProjectInspector. Returns the reasons for a failure; empty on success.
  std::vector<std::string> ApplyChange(const std::vector<FileText>& before,
                                       const std::vector<FileText>& after);
  // The next project is opened from `texts` instead of its files, as unsaved changes: a later save
  // merges them with the files as they are by then. `bases` are the contents on which the changes
  // were made; a new file has none.
  void StageFiles(const std::vector<FileText>& texts, const std::vector<FileText>& bases);

 private:
  std::int32_t LoadProject(std::uint64_t opened);
  bool AnnounceApplications(std::uint64_t opened);
  bool MakeOptionsReady(std::uint64_t opened);
  void DiscardTree();
  void WriteAndEmpty();
  void ReportSave();
  std::string AskForProject();
  // Returns 1 even if the converted project could not be opened.
  std::int32_t ImportOldProject(const std::string& path);
  std::vector<std::string> MergeChange(const std::vector<FileText>& before,
                                       const std::vector<FileText>& after, ReplacedFiles& result);
  void FollowMove(FileText& text, std::vector<FileText>& bases, const ReplacedFiles& present) const;
  bool Reload(const std::string& path, const ReplacedFiles& texts);
  bool HoldsWhatIsSaved();

  ProjectServices& services_;
  FileSystem& files_;
  const NodeTypes& types_;
  const ProjectViews& views_;
  ProjectState& state_;
  const ProjectPaths& paths_;
  HostLink& host_;
  FileProtection& protection_;
  BackupGuard& guard_;
  DefinitionFolders& definitions_;
  DerivedData& derived_;
  TreeLoader& loader_;
  TreeSaver& saver_;
  Publisher& publisher_;
  Importer& importer_;
  std::unique_ptr<ReplacedFiles> staged_;  // for the next open
};

}  // namespace tarn
