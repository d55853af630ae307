#pragma once

#include <map>
#include <string>

#include "project/FileGuard.h"

namespace tarn {

// Texts that a project is read from in place of its files, by their absolute paths.
struct ReplacedFiles {
  std::map<std::string, std::string> texts;
  FileGuard former;  // knows what of the files is on the disk

  // Returns nullptr for a file that is read from the disk.
  const std::string* Find(const std::string& path) const {
    const auto found = texts.find(path);
    return found == texts.end() ? nullptr : &found->second;
  }
};

}  // namespace tarn
