#pragma once

#include <string>

#include "platform/files/FileSystem.h"

namespace tarn {

// Returns whether what is written to `path`, and the folders that it needs, end up in `folder` or
// below it, wherever symbolic links on the way lead. What a link to nothing leads to is not inside.
// Both paths are absolute; nothing needs to be at `path` yet.
bool LeadsInto(FileSystem& files, const std::string& folder, const std::string& path);

// The folder of a project, in which it may write without the user's consent. Borrows the file
// system, and asks it anew each time. Any thread.
class ProjectFolder {
 public:
  // `projectPath` is the absolute path of the project file.
  ProjectFolder(FileSystem& fileSystem, const std::string& projectPath);

  // Returns whether `path`, which is absolute, leads into it.
  bool Holds(const std::string& path) const { return LeadsInto(files_, folder_, path); }
  // The link inside the folder by which `path` leaves it: "the link /p/build leads to /x". Empty if
  // there is none.
  std::string DescribeWayOut(const std::string& path) const;
  // Why `path` is not inside, in words that follow its name and "since": "it is outside the folder
  // of the project", or with the link. Empty if it is inside.
  std::string WhyOutside(const std::string& path) const;

 private:
  FileSystem& files_;
  std::string folder_;
};

}  // namespace tarn
