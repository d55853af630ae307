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

  // The folder of the open project, absolute; empty for the one that stands in for none, which has
  // no limit.
  void SetFolder(const std::string& folder);
  // Only projects in these folders are trusted from now on.
  void LimitTo(std::vector<std::string> folders);

  // The user has said so.
  bool IsGiven() const { return isGiven_; }
  // The host has stated which folders are trusted, and the project is in none of them.
  bool IsWithheld() const { return trusted_ && !folder_.empty() && !isGiven_; }
  // Returns whether trust is withheld and what is written to `path` ends up outside the folder.
  bool RefusesWrite(const std::string& path) const;
  // The same of running the program or script at `path`, which is inside.
  bool RefusesProgram(const std::string& path) const;

  // Records what the project wanted and was refused: "write /x/y".
  void Refuse(const std::string& wish);
  // What was refused since the last call, each wish once.
  std::vector<std::string> TakeRefused() { return std::exchange(refused_, {}); }

 private:
  void Judge();

  FileSystem& files_;
  std::string folder_;
  std::optional<std::vector<std::string>> trusted_;
  bool isGiven_ = false;
  std::vector<std::string> refused_;
};

}  // namespace tarn
