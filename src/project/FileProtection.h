#pragma once

#include <string>
#include <vector>

#include "platform/files/FileTexts.h"
#include "project/BackupGuard.h"
#include "project/FileDamage.h"
#include "project/ProjectLock.h"
#include "project/ProjectPaths.h"
#include "project/ProjectServices.h"
#include "project/ProjectState.h"
#include "project/ProjectTrust.h"

namespace tarn {

// Everything that protects the files of a project, and the files of the user next to them: the
// record of what the files contained, the damage found in them, the lock against other processes,
// the trust in the project, and the user's consent to writing elsewhere.
//
// Calling sequence: BeginOpen before the files are read, Clear when the project is closed.
// Borrows everything; main thread only. Errors are reported to the log.
class FileProtection {
 public:
  FileProtection(ProjectServices& projectServices, const ProjectState& projectState,
                 const ProjectPaths& projectPaths);

  BackupGuard& Guard() { return guard_; }
  ProjectTrust& GetTrust() { return trust_; }
  // Records that the user agrees to writing files outside the project's folder.
  void AllowOutside(bool isAllowed) { writesOutside_ = isAllowed; }
  bool MayWriteOutside() const { return writesOutside_; }

  // Clears all records before the files of a project are read; `isOther` if it isn't the one that
  // was open before.
  void BeginOpen(bool isOther);
  // The project could not be opened: keeps its damage for GetFailedDamage.
  void KeepFailedDamage();
  // The project was closed.
  void Clear();

  // Content lost when the files of the open project were read.
  const std::vector<FileDamage>& GetDamage() const { return damage_; }
  // Same, for the last project that could not be opened; valid until the next open.
  const std::vector<FileDamage>& GetFailedDamage() const { return failedDamage_; }
  // Replaces the recorded damage of the file.
  void SetDamageOf(const std::string& absolute, std::vector<FileDamage> found);
  void AddDamage(FileDamage found);
  // Sets whether a damaged project is protected: nothing builds or cleans it, and no save or close
  // writes it. Off by default, so that only hosts able to ask their users turn it on.
  void SetDamageProtection(bool isProtected) { protectsDamage_ = isProtected; }
  bool IsDamageProtected() const { return protectsDamage_; }
  bool IsDamageHeld() const { return protectsDamage_ && !damage_.empty(); }

  // The right to change the files of a project. A host may acquire it before opening the project;
  // otherwise a save acquires it.
  ProjectLock& Lock() { return editLock_; }
  bool TryTakeEdits(const std::string& path) {
    return editLock_.TryTake(paths_.FullProjectPath(path));
  }
  void ReleaseEdits() { editLock_.Release(); }
  const std::string& GetEditor() const { return editLock_.GetHolder(); }
  const std::string& GetEditProblem() const { return editLock_.GetProblem(); }

  // Contents of the files when they were last read or written.
  std::vector<FileText> GetBaseTexts() const;
  // Asks the user whether the file may be overwritten.
  bool MayOverwrite(const std::string& path) const;
  // Backs up a file that is to be replaced unless it has the content written last. On error reports
  // a message and returns false, and the file must not be replaced.
  bool PutAsideReplaced(const std::string& path);

 private:
  ProjectServices& services_;
  FileSystem& files_;
  const ProjectState& state_;
  const ProjectPaths& paths_;
  BackupGuard guard_;
  ProjectTrust trust_;
  ProjectLock editLock_;
  std::vector<FileDamage> damage_;
  std::vector<FileDamage> failedDamage_;
  bool protectsDamage_ = false;
  bool writesOutside_ = false;
};

}  // namespace tarn
