#pragma once

#include <string>
#include <vector>

#include "components/tools/GlobalSymbol.h"
#include "platform/files/FileSystem.h"

namespace tarn::tools {

// Reads the functions, variables and types at file level from the debug information of sdcc: the
// file `cdb`, which the linker writes. It has neither folders nor the lines of variables, so the
// definitions are looked up in the sources: those that the dependency file (.d) next to each of the
// `objects` lists, if a module of the program has the name in the object's own debug information
// (.adb). Relative names are resolved against `baseFolder`.
//
// Omits what the sources don't define literally, such as variables that a macro declares, and
// functions of the compiler's library. No symbols and no problem if `cdb` doesn't exist.
GlobalSymbols ReadCdbSymbols(FileSystem& files, const std::string& cdb,
                             const std::vector<std::string>& objects,
                             const std::string& baseFolder);

}  // namespace tarn::tools
