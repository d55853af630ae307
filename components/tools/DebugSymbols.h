#pragma once

#include <string>

#include "components/tools/GlobalSymbol.h"

namespace tarn::tools {

// The functions, variables and types at file level of a linked program, from its DWARF debug
// information: each once, in no particular order, and nothing that the linker left out of the
// program. `program` is the whole ELF file; it isn't changed, the reading library just wants its
// bytes so. Files that the program names relatively are taken relative to `baseFolder`. A program
// without debug information gives no symbols and no problem; of one whose debug information is
// damaged come the symbols up to the damage.
GlobalSymbols ReadDebugSymbols(std::string& program, const std::string& baseFolder);

}  // namespace tarn::tools
