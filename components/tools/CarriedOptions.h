#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "components/tools/CommandBuilder.h"

namespace tarn::tools {

// Options with which a linker has the code of a file compiled: compilers store them in the object
// files of link-time optimization.
struct CarriedOptions {
  std::string path;  // of the object or archive
  std::vector<std::string> words;
  bool isReadable = true;  // false: the file has a form in which they can't be found
};

// Returns an entry for each file that a link may read and that carries such options. Errs on the
// side of too many files, since a linker script may name any: takes each word of the arguments and
// of a script for a file, a folder to search and a library. Reads all of these files.
std::vector<CarriedOptions> FindCarriedOptions(const ToolDefinition& tool, const ToolPlan& plan,
                                               FileSystem& disk);

// Reads the options from the sections of an object, or of all members of an archive. Returns false
// if the file carries none.
bool ReadCarriedOptions(const std::vector<CarrierRule>& rules, std::string_view bytes,
                        CarriedOptions& carried);

}  // namespace tarn::tools
