#include "hosts/cli/ProgramNotes.h"

namespace tarn::host {

const TextTable& ProgramExamples() {
  static const TextTable texts = {
      {"tarn new blinky --compiler avr-gcc", "create a project in the folder blinky"},
      {"tarn build blinky", "build it"},
      {"tarn status", "what is out of date and why"},
      {"tarn options set Compiler.Optimize s", "change an option and save the project"},
      {"tarn help options set", "help on a command"},
  };
  return texts;
}

const char* HeadingOf(CommandGroup group) {
  switch (group) {
    case CommandGroup::Building:
      return "Building";
    case CommandGroup::Files:
      return "Projects and files";
    case CommandGroup::Settings:
      return "Options and configurations";
    case CommandGroup::Integration:
      return "Integration";
    case CommandGroup::None:
    case CommandGroup::Hidden:
      break;
  }
  return "";
}

const TextTable& ExitCodeTexts() {
  static const TextTable texts = {
      {"0", "done"},
      {"1", "the build or the script failed, or the report or the check found something"},
      {"2", "usage error"},
      {"3",
       "the project can't be opened, converted or saved, was read only in part, or needs to be "
       "trusted, or settings can't be written"},
      {"4", "a program that a tool or the conversion needs is missing"},
      {"130", "interrupted, also because the reader of its output exited"},
      {"141", "the reader of the output exited before reading all of it"},
  };
  return texts;
}

}  // namespace tarn::host
