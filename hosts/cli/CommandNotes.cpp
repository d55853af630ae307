#include "hosts/cli/CommandNotes.h"

#include <algorithm>
#include <array>

namespace tarn::host {

namespace {

const char* const kBuilding = "Building";
const char* const kFiles = "Projects and files";
const char* const kSettings = "Options and configurations";
const char* const kPrograms = "Integration";

// Commands in display order; a command that isn't listed here comes last in the last group.
const std::vector<CommandNote>& Notes() {
  static const std::vector<CommandNote> notes = {
      {"tarn",
       "",
       {{"tarn new blinky --compiler avr-gcc", "create a project in the folder blinky"},
        {"tarn build blinky", "build it"},
        {"tarn status", "what is out of date and why"},
        {"tarn options set Compiler.Optimize s", "change an option and save the project"},
        {"tarn help options set", "help on a command"}}},
      {"tarn build",
       kBuilding,
       {{"tarn build", "the project in the current folder"},
        {"tarn build blinky --config Debug", "a different project and configuration"},
        {"tarn build --app boot -v", "one application, showing its commands"}}},
      {"tarn rebuild",
       kBuilding,
       {{"tarn rebuild --config Debug", "everything in a configuration"}}},
      {"tarn clean", kBuilding, {}},
      {"tarn status", kBuilding, {{"tarn status --json", "as JSON, for programs"}}},
      {"tarn check",
       kBuilding,
       {{"tarn check", "the project in the current folder"},
        {"tarn check --json", "as JSON, for programs"}}},
      {"tarn log",
       kBuilding,
       {{"tarn log", "messages with file and line"},
        {"tarn log --follow", "also those of builds elsewhere, as they arrive"},
        {"tarn log --xml", "the log file itself, for message.xslt for example"}}},
      {"tarn report",
       kBuilding,
       {{"tarn report --errors", "what prevents it from being built"},
        {"tarn report --warnings --json", "as JSON; exit code 1 if there are any"}}},
      {"tarn tree", kBuilding, {}},
      {"tarn globals",
       kBuilding,
       {{"tarn globals --name 'uart_*'", "matching symbols, with file and line"},
        {"tarn globals --file timer.c --sort file", "symbols of a source file"}}},
      {"tarn new",
       kFiles,
       {{"tarn new blinky", "a project in the folder blinky"},
        {"tarn new work/blinky --compiler sdcc-mcs51", "with a different compiler"},
        {"tarn new blinky --target ATmega328P", "for a microcontroller"}}},
      {"tarn import",
       kFiles,
       {{"tarn import blinky.prj", "create blinky.tprj from it"},
        {"tarn import --yes all.stw", "all projects of a workspace, again"}}},
      {"tarn add",
       kFiles,
       {{"tarn add blinky.tprj src/uart.c src/uart.h", "to the active application"},
        {"tarn add . src/*.c --to Sources", "to a group"}}},
      {"tarn remove", kFiles, {{"tarn remove . src/uart.c", "the file itself is kept"}}},
      {"tarn move", kFiles, {{"tarn move . src/uart.c Drivers", "to another group"}}},
      {"tarn rename", kFiles, {{"tarn rename . blinky flasher", "change the label of a node"}}},
      {"tarn select", kFiles, {{"tarn select . boot", "set the active application"}}},
      {"tarn undo", kFiles, {{"tarn undo", "the last add, options set or similar"}}},
      {"tarn redo", kFiles, {}},
      {"tarn relocate",
       kFiles,
       {{"tarn relocate --dry-run", "show where the missing files seem to be"},
        {"tarn relocate --below ..", "search for them below another folder"},
        {"tarn relocate src firmware/src", "a folder that was moved"}}},
      {"tarn options", kSettings, {}},
      {"tarn options list", "", {{"tarn options list -n src/uart.c", "options of one file"}}},
      {"tarn options get", "", {{"tarn options get Build.OutputFile", "path of the program"}}},
      {"tarn options set",
       "",
       {{"tarn options set Compiler.Defines 'FAST;LEVEL=2'", "for the application"},
        {"tarn options set -n src/uart.c -- Compiler.Extra -O3", "-- for a leading dash"}}},
      {"tarn options explain",
       "",
       {{"tarn options explain Compiler.Optimize -n src/uart.c", "each place that sets it"}}},
      {"tarn config", kSettings, {}},
      {"tarn config add",
       "",
       {{"tarn config add Debug", "with the current options"},
        {"tarn config add Debug --from Fast", "with the options of another one"}}},
      {"tarn config select", "", {{"tarn config select Debug", "until another one is selected"}}},
      {"tarn targets",
       kSettings,
       {{"tarn targets --family AVR", "all targets of a family"},
        {"tarn targets ATmega328P", "details of one target"},
        {"tarn targets usb", "targets that mention it"}}},
      {"tarn export", kPrograms, {}},
      {"tarn export compile-commands",
       "",
       {{"tarn export compile-commands", "in all configurations"},
        {"tarn export compile-commands -c Debug -o -", "only one, to standard output"}}},
      {"tarn export sarif", "", {{"tarn export sarif -o findings.sarif", "to this file"}}},
      {"tarn run", kPrograms, {{"tarn run release.lua", "on the project in the current folder"}}},
      {"tarn serve", kPrograms, {}},
      {"tarn trust",
       kPrograms,
       {{"tarn trust", "the current folder and everything below it"},
        {"tarn trust --list", "show what is trusted"},
        {"tarn trust --revoke vendor", "stop trusting this folder"}}},
      {"tarn register",
       kPrograms,
       {{"tarn register", "for this user"}, {"tarn register --system", "for all users; as root"}}},
      {"tarn unregister", kPrograms, {}},
      {"tarn completion", kPrograms, {}},
      {"tarn completion bash", "", {{". <(tarn completion bash)", "for this shell"}}},
      {"tarn completion zsh",
       "",
       {{"tarn completion zsh > ~/.zfunc/_tarn", "into a folder in fpath, before compinit"}}},
      {"tarn completion fish", "", {{"tarn completion fish | source", "for this shell"}}},
  };
  return notes;
}

}  // namespace

const CommandNote& NoteOf(const std::string& command) {
  static const CommandNote none = {"", kPrograms, {}};
  const auto found = std::find_if(Notes().begin(), Notes().end(),
                                  [&command](const auto& each) { return each.command == command; });
  return found == Notes().end() ? none : *found;
}

const std::vector<std::string>& CommandGroups() {
  static const std::vector<std::string> groups = {kBuilding, kFiles, kSettings, kPrograms};
  return groups;
}

bool IsCommonFlag(std::string_view name) {
  constexpr std::array<std::string_view, 4> kCommon = {"--quiet", "--json", "--no-color", "--help"};
  return std::find(kCommon.begin(), kCommon.end(), name) != kCommon.end();
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
