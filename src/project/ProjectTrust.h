#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/files/FileSystem.h"

namespace tarn {

// Whether the user trusts a project to run programs and scripts of its own and to write outside its
// folder. A folder is trusted together with all below it. Until a host states which folders are,
// there is no limit, and what is outside is asked about as before. On the main thread.
class ProjectTrust {
 public:
  explicit ProjectTrust(FileSystem& fileSystem) : files_(fileSystem) {}

  // The open project's file, absolute; empty for the one that stands in for none, which has no
  // limit.
  void SetProject(const std::string& path);
  // Only projects in these folders are trusted from now on.
  void LimitTo(std::vector<std::string> folders);

  // The user has said so.
  bool IsGiven() const { return isGiven_; }
  // The host has stated which folders are trusted, and the project is in none of them.
  bool IsWithheld() const { return trusted_ && !project_.empty() && !isGiven_; }
  // The same of any project file, absolute.
  bool IsWithheldFrom(const std::string& project) const { return trusted_ && !Lists(project); }
  // Returns whether trust is withheld and what is written to `path` ends up outside the folder.
  bool RefusesWrite(const std::string& path) const;
  // The same of running the program or script at `path`, which is inside.
  bool RefusesProgram(const std::string& path) const;

  // The wish to write or delete a path: "write /x/y", with the link by which it leaves the folder.
  std::string WishFor(const char* verb, const std::string& path) const;

  // Records what the project wanted and was refused: "write /x/y".
  void Refuse(const std::string& text);
  // What was refused since the last call, each wish once.
  std::vector<std::string> TakeRefused() { return std::exchange(refused_, {}); }

 private:
  void Judge() { isGiven_ = trusted_ && !project_.empty() && Lists(project_); }
  bool Lists(const std::string& project) const;

  FileSystem& files_;
  std::string project_;
  std::optional<std::vector<std::string>> trusted_;
  bool isGiven_ = false;
  std::vector<std::string> refused_;
};

}  // namespace tarn
