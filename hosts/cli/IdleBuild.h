#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/files/RecordingFileSystem.h"

namespace tarn::host {

// Answers a build that has nothing to do without opening the project. A build that finds everything
// up to date keeps what it has asked the disk, and the answers. If the next one with the same
// command line, working folder and environment gets the same answers, nothing is out of date then
// either. Any difference leads to a normal build, which decides what it means.
class IdleBuild {
 public:
  // `words` is the command line.
  explicit IdleBuild(const std::vector<std::string>& words);

  // Returns true if an earlier build of this kind had nothing to do, and all answers are the same.
  // Takes the locks of the build meanwhile; returns false if another build has one.
  bool IsRepeated();
  // Makes a recording disk the native one. To be called before anything of the project is asked.
  void Record();
  // Keeps the answers of this process, which had nothing to do. No-op if they are not enough, or
  // can't be written.
  void Keep();

 private:
  FileSystem& disk_;
  const std::string key_;  // eight bytes: a hash of what the answers also depend on
  std::string path_;       // of the kept answers
  RecordingFileSystem* recorder_ = nullptr;
};

}  // namespace tarn::host
