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

const TextTable& EnvironmentTexts() {
  static const TextTable texts = {
      {"TARN_ROOT",
       "Folder of the installed data, instead of ../share/tarn relative to the program."},
      {"TARN_SETTINGS", "One folder for all settings and user data."},
      {"TARN_JOBS", "Number of tools to run at the same time; default: one for each processor."},
      {"TARN_LAUNCHER", "Command to prefix to compilers, such as ccache."},
      {"XDG_CONFIG_HOME", "Location of the user's settings; default: ~/.config."},
      {"XDG_DATA_HOME", "Location of the user's data folder; default: ~/.local/share."},
      {"XDG_STATE_HOME",
       "Location of tarn/trusted, the list of trusted folders; default: ~/.local/state."},
      {"NO_COLOR", "Disables colours if set."},
      {"TERM", "No progress line if set to dumb."},
  };
  return texts;
}

const TextTable& FileTexts() {
  static const TextTable texts = {
      {"NAME.tprj", "The project."},
      {"NAME.tapp", "One of its applications, with groups, files and options."},
      {"NAME.tstate", "Build state of the outputs; without it everything is rebuilt."},
      {"NAME.undo.tstate", "The last changes made by commands, for `tarn undo`."},
      {"NAME.tlog", "The log of the last build that ran a tool; it grows during the build."},
  };
  return texts;
}

}  // namespace tarn::host
