#pragma once

#include <string>
#include <vector>

#include "components/tools/GlobalSymbol.h"

namespace tarn::tools {

// Reads the functions, variables and types at file level from the DWARF debug information of a
// linked program, without duplicates and in no particular order. Omits everything that the linker
// discarded.
//
// `program` is the complete ELF file; it is not modified, but the reading library requires mutable
// bytes. Relative file names are resolved against `baseFolder`, or against that of `otherFolders`
// in which the sources of a linked library are; if several folders have a file of this name, the
// one whose lines mention the symbols. A program without debug information yields no symbols and no
// problem; if the debug information is damaged, returns the symbols before the damage.
GlobalSymbols ReadDebugSymbols(std::string& program, const std::string& baseFolder,
                               const std::vector<std::string>& otherFolders = {});

}  // namespace tarn::tools
