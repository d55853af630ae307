#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/files/FileTexts.h"
#include "project/DerivedData.h"
#include "project/FileProtection.h"
#include "project/FileSaver.h"
#include "project/ProjectPaths.h"
#include "project/ProjectServices.h"
#include "project/ProjectState.h"
#include "project/ReplacedFiles.h"

namespace tarn {

// Writes the tree to the files of the project: as many as possible, or all or none
// (WholeSave.cpp). Follows files that another program moved (FollowParts.cpp). FileSaver prepares
// and writes the single file.
//
// Nothing is lost: content that can't be written to its file is saved elsewhere, or kept in memory
// if the project stays open. Borrows everything; main thread only. Failures are recorded per file.
class TreeSaver {
 public:
  TreeSaver(ProjectServices& projectServices, ProjectState& projectState,
            const ProjectPaths& projectPaths, FileProtection& fileProtection,
            DerivedData& derivedData)
      : services_(projectServices),
        files_(projectServices.files),
        types_(projectServices.types),
        state_(projectState),
        paths_(projectPaths),
        protection_(fileProtection),
        guard_(fileProtection.Guard()),
        derived_(derivedData) {}

  // Writes the file of `node` and those of its parts. Returns 0 if some were not written; see
  // GetSavedFiles.
  std::int32_t SaveTreeFile(CXmlNode& node, const std::string& fileName);
  // Returns the files, by absolute path, exactly as a save would write them now. Changes nothing.
  std::vector<FileText> RenderFiles();
  // Makes saves atomic: all files of the project are written, or none. By default a save writes as
  // many as it can.
  void SaveAllOrNone(bool isWanted) { savesWhole_ = isWanted; }

  // Reports of the last save or close. Only files with something to report are listed.
  const std::vector<SavedFile>& GetSavedFiles() const { return savedFiles_; }
  void ClearSavedFiles() { savedFiles_.clear(); }
  // Sets whether the project stays open after the save: content that can't be written is then kept
  // for TakeUnsaved.
  void SetSaving(bool staysOpen) { isSaving_ = staysOpen; }
  // Returns the contents of a project of which some could not be written, or nullptr, and clears
  // them.
  std::unique_ptr<ReplacedFiles> TakeUnsaved() { return std::exchange(unsaved_, nullptr); }

 private:
  // A file that a save is about to write.
  struct PendingFile {
    std::string absolute;                  // as the tree names it
    std::string text;                      // as it would be stored
    std::vector<std::size_t> parts;        // indices of the files of its children
    std::vector<PartChange> changedParts;  // see FileSaver::Prepare
    SavePlan plan;                         // for a different path if the file was moved
    bool isPlanned = false;                // `plan` follows from the file that references this one
    bool isOutside = false;                // outside the folder, and the user did not agree
    bool isSaved = true;
  };
  static constexpr const char* kSharedFile = "it is the file of two applications";

  std::size_t CollectTreeFiles(CXmlNode& node, const std::string& absolute,
                               std::vector<PendingFile>& pending);
  void FollowParts(std::vector<PendingFile>& pending);
  std::string FindRenamedPart(const std::string& absolute, std::vector<std::string>& added);
  void FollowPart(PendingFile& owner, PendingFile& part, const PartChange& change,
                  const std::string& target);
  void SaveAllPending(std::vector<PendingFile>& pending);
  void SavePendingFile(PendingFile& file, const std::vector<PendingFile>& pending);
  std::string PlanFiles(std::vector<PendingFile>& pending);
  void PrepareFiles(std::vector<PendingFile>& pending);
  std::string DescribeOutside(const SavePlan& plan) const;
  Status WriteTreeFile(const SavePlan& plan);
  void MarkSaved(const SavePlan& plan);
  void ReportUnneeded(const SavePlan& plan, std::vector<SavedFile>& reports);
  void SaveElsewhere(PendingFile& file, const std::string& reason);
  void SaveElsewhereAndLog(PendingFile& file, const std::string& reason);
  void KeepUnsaved(const std::vector<PendingFile>& pending);
  // `place` is the file that caused the refusal; empty if none did.
  void RefuseFiles(std::vector<PendingFile>& pending, const std::string& reason,
                   const std::string& place = {});

  ProjectServices& services_;
  FileSystem& files_;
  const NodeTypes& types_;
  ProjectState& state_;
  const ProjectPaths& paths_;
  FileProtection& protection_;
  BackupGuard& guard_;
  DerivedData& derived_;
  bool savesWhole_ = false;
  std::vector<SavedFile> savedFiles_;       // of the last save or close
  std::set<std::string> mayWriteOutside_;   // files outside the project's folder
  bool isSaving_ = false;                   // the close is part of a save; the project stays open
  std::unique_ptr<ReplacedFiles> unsaved_;  // set by such a close if something was not saved
};

}  // namespace tarn
