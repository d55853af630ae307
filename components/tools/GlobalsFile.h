#pragma once

#include <string>
#include <vector>

#include "components/tools/GlobalSymbol.h"
#include "components/tools/ToolMessage.h"
#include "platform/files/FileSystem.h"

namespace tarn::tools {

// The text of a globals file: one element for each symbol, sorted, so that equal programs give
// equal files.
std::string GlobalsText(std::vector<GlobalSymbol> symbols);

// Makes the file at `path` the list of the symbols of the linked `program`, from its debug
// information. It is left alone when it is that already, and removed when there are no symbols: one
// of an earlier program would lead to wrong lines. Relative names in the debug information
// are taken relative to `folder`. Returns what went wrong, a warning if the file can't be written;
// its text is empty if nothing did.
ToolMessage UpdateGlobalsFile(FileSystem& files, const std::string& path,
                              const std::string& program, const std::string& folder);

}  // namespace tarn::tools
