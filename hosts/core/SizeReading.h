#pragma once

#include <optional>
#include <string>

#include "hosts/core/ProjectTree.h"
#include "hosts/core/ServerConnection.h"
#include "sizes/ProgramSizes.h"

namespace tarn::host {

// A program whose sizes are read, and what the project's options say about it.
struct SizeSource {
  std::string output;  // the linked program
  std::string map;     // the linker's map file; empty if there is none
  std::string folder;  // the application's, to which names in the map are relative
  sizes::DeviceMemory device;
  bool isPacked = false;  // commands of the project make the output
};

// Returns the source for an application, from its published options; nullopt if it has no tool.
std::optional<SizeSource> FindSizeSource(InspectorDriver& inspector,
                                         const ApplicationEntry& application);

struct SizeReading {
  sizes::ProgramSizes sizes;
  std::string problem;       // "PATH: reason" if there are no sizes; else empty
  std::string remark;        // why parts are missing; else empty
  bool isNoProgram = false;  // has no sizes of its own, which is the problem
};

// Reads program, map and the stack usage next to the object files. Files larger than `most` bytes
// are treated as unreadable.
SizeReading ReadSizes(FileSystem& files, const SizeSource& source, std::uint64_t most);

// Adds the positions of the symbols in the sources, as far as the program has debug information.
void AddPositions(ToolManagerDriver& tools, const SizeSource& source, sizes::ProgramSizes& sizes);

}  // namespace tarn::host
