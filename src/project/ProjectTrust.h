#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/files/FileSystem.h"
#include "platform/files/TrustRequest.h"

namespace tarn {

// Decides if a project may run its own programs and scripts and write outside its folder. Trusting
// a folder includes everything below it. Until a host sets the trusted folders, projects are not
// restricted, and writes outside the folder need the user's consent as before. Main thread only.
class ProjectTrust {
 public:
  explicit ProjectTrust(FileSystem& fileSystem) : files_(fileSystem) {}

  // Sets the open project's file, as an absolute path. Empty for the placeholder that is open when
  // no project is; it is unrestricted.
  void SetProject(const std::string& path);
  // Restricts trust to projects in these folders.
  void LimitTo(std::vector<std::string> folders);

  // Returns true if the project is in one of the trusted folders.
  bool IsGiven() const { return isGiven_; }
  // Returns true if trusted folders have been set and the project is in none of them.
  bool IsWithheld() const { return trusted_ && !project_.empty() && !isGiven_; }
  // Same for any project file, given by its absolute path.
  bool IsWithheldFrom(const std::string& project) const { return trusted_ && !Lists(project); }
  // Returns true if trust is withheld and writing to `path` would end up outside the folder.
  bool RefusesWrite(const std::string& path) const;
  // Returns true if trust is withheld and the program or script at `path` is inside the folder.
  bool RefusesProgram(const std::string& path) const;
  // Return the first of the files that is refused; nullptr if there is none. Each path is exactly
  // the name that would be written, and each folder of these is examined once.
  const std::string* FindRefusedWrite(const std::vector<std::string>& paths) const;
  const std::string* FindRefusedProgram(const std::vector<std::string>& paths) const;

  // Returns the request to write or delete a path. Its subject includes the link through which the
  // path leaves the folder.
  TrustRequest RequestFor(TrustRequestKind kind, const std::string& path) const;

  // Records a refused request of the project.
  void Refuse(const TrustRequest& request);
  // Returns and clears the refused requests, without duplicates.
  std::vector<TrustRequest> TakeRefused() { return std::exchange(refused_, {}); }

 private:
  // Caches whether the project is trusted, after a change of either.
  void Judge() { isGiven_ = trusted_ && !project_.empty() && Lists(project_); }
  bool Lists(const std::string& project) const;

  FileSystem& files_;
  std::string project_;
  std::optional<std::vector<std::string>> trusted_;
  bool isGiven_ = false;
  std::vector<TrustRequest> refused_;
};

}  // namespace tarn
