#pragma once

#include <string>
#include <vector>

#include "components/tools/GlobalSymbol.h"
#include "components/tools/ToolMessage.h"
#include "platform/files/FileSystem.h"

namespace tarn::tools {

// Returns the content of a globals file: one element per symbol, sorted, so that equal programs
// yield equal files.
std::string GlobalsText(std::vector<GlobalSymbol> symbols);

// Reads the symbols of the linked program from its debug information; for relative names in it, see
// ReadDebugSymbols.
GlobalSymbols ReadProgramSymbols(FileSystem& files, const std::string& program,
                                 const std::string& folder,
                                 const std::vector<std::string>& otherFolders = {});

// Writes the symbols of a program to the file at `path`. Leaves the file alone if it is up to date,
// and removes it if there are no symbols, because the list of an earlier program would lead to
// wrong lines. Returns the problem found, a warning if the file can't be written; its text is empty
// on success.
ToolMessage UpdateGlobalsFile(FileSystem& files, const std::string& path, GlobalSymbols found);

// Returns lines "ADDRESS LINE FILE" for the functions and variables of the program, in no
// particular order; empty if it can't be read or has no debug information.
std::string SymbolPositionsText(FileSystem& files, const std::string& program,
                                const std::string& folder);

}  // namespace tarn::tools
