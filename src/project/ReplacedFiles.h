#pragma once

#include <map>
#include <string>

#include "project/BackupGuard.h"

namespace tarn {

// Contents from which a project is read instead of its files, by absolute path.
struct ReplacedFiles {
  std::map<std::string, std::string> texts;
  BackupGuard former;  // knows the contents on disk

  // Returns nullptr if the file is to be read from disk.
  const std::string* Find(const std::string& path) const {
    const auto found = texts.find(path);
    return found == texts.end() ? nullptr : &found->second;
  }
};

}  // namespace tarn
