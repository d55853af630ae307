#pragma once

#include <string>
#include <vector>

namespace tarn::host {

class CommandContext;

// The values that only `tarn import` has.
struct ImportOptions {
  std::string older;  // the file to import
  std::string format;
  std::string folder;
  std::string board;
  bool runMake = false;
  bool yes = false;
};

enum class ForeignFormat { Old, CompileCommands, PlatformIo, Sketch, CProject, Make };

// Values of --from, in the order of the enumeration.
std::vector<std::string> FormatNames();

// Finds out the format of the file on the command line. Returns 0, or an exit code after printing
// the error.
int ChooseFormat(CommandContext& context, ForeignFormat& format);

// Imports the file on the command line. Returns the exit code.
int ImportForeign(CommandContext& context, ForeignFormat format);

}  // namespace tarn::host
