#include "hosts/cli/CommandNotes.h"

#include <algorithm>
#include <array>

namespace tarn::host {

namespace {

const char* const kBuilding = "Build and look";
const char* const kFiles = "Projects and their files";
const char* const kSettings = "Options and configurations";
const char* const kPrograms = "Other programs";

// Commands in display order; a command that isn't listed here comes last in the last group.
const std::vector<CommandNote>& Notes() {
  static const std::vector<CommandNote> notes = {
      {"tarn",
       "",
       {{"tarn new blinky --compiler avr-gcc", "start a project in the folder blinky"},
        {"tarn build blinky", "build it"},
        {"tarn status", "what is out of date, and why"},
        {"tarn options set Compiler.Optimize s", "change an option and save the project"},
        {"tarn help options set", "all about a command"}}},
      {"tarn build",
       kBuilding,
       {{"tarn build", "the project in the current folder"},
        {"tarn build blinky --config Debug", "another one, in another configuration"},
        {"tarn build --app boot -v", "one application, with its commands"}}},
      {"tarn rebuild", kBuilding, {{"tarn rebuild --config Debug", "all of a configuration"}}},
      {"tarn clean", kBuilding, {}},
      {"tarn status", kBuilding, {{"tarn status --json", "for a program to read"}}},
      {"tarn check",
       kBuilding,
       {{"tarn check", "the project in the current folder"},
        {"tarn check --json", "for a program to read"}}},
      {"tarn log",
       kBuilding,
       {{"tarn log", "messages with their places"},
        {"tarn log --follow", "and those of builds elsewhere, as they come"},
        {"tarn log --xml", "the kept file, for message.xslt for example"}}},
      {"tarn report",
       kBuilding,
       {{"tarn report --errors", "what keeps it from being built"},
        {"tarn report --warnings --json", "for a program; exit code 1 when there are any"}}},
      {"tarn tree", kBuilding, {}},
      {"tarn globals",
       kBuilding,
       {{"tarn globals --name 'uart_*'", "some, with their places"},
        {"tarn globals --file timer.c --sort file", "those of a source"}}},
      {"tarn new",
       kFiles,
       {{"tarn new blinky", "a project in the folder blinky"},
        {"tarn new work/blinky --compiler sdcc-mcs51", "with another compiler"},
        {"tarn new blinky --target ATmega328P", "for a microcontroller"}}},
      {"tarn import",
       kFiles,
       {{"tarn import blinky.prj", "make blinky.tprj out of it"},
        {"tarn import --yes all.stw", "all projects of a workspace, anew"}}},
      {"tarn add",
       kFiles,
       {{"tarn add blinky.tprj src/uart.c src/uart.h", "into the active application"},
        {"tarn add . src/*.c --to Sources", "into a group"}}},
      {"tarn remove", kFiles, {{"tarn remove . src/uart.c", "the file itself stays"}}},
      {"tarn move", kFiles, {{"tarn move . src/uart.c Drivers", "into another group"}}},
      {"tarn rename", kFiles, {{"tarn rename . blinky flasher", "give a node another label"}}},
      {"tarn select", kFiles, {{"tarn select . boot", "make an application the active one"}}},
      {"tarn undo", kFiles, {{"tarn undo", "what the last add, options set or the like did"}}},
      {"tarn redo", kFiles, {}},
      {"tarn relocate",
       kFiles,
       {{"tarn relocate --dry-run", "show where the missing files seem to be"},
        {"tarn relocate --below ..", "look for them below another folder"},
        {"tarn relocate src firmware/src", "a folder that was moved"}}},
      {"tarn options", kSettings, {}},
      {"tarn options list", "", {{"tarn options list -n src/uart.c", "those of one file"}}},
      {"tarn options get", "", {{"tarn options get Build.OutputFile", "where the program goes"}}},
      {"tarn options set",
       "",
       {{"tarn options set Compiler.Defines 'FAST;LEVEL=2'", "for the application"},
        {"tarn options set -n src/uart.c -- Compiler.Extra -O3", "a dash stands behind --"}}},
      {"tarn options explain",
       "",
       {{"tarn options explain Compiler.Optimize -n src/uart.c", "each place that sets it"}}},
      {"tarn config", kSettings, {}},
      {"tarn config add",
       "",
       {{"tarn config add Debug", "with the current options"},
        {"tarn config add Debug --from Fast", "with those of another one"}}},
      {"tarn config select", "", {{"tarn config select Debug", "until another is chosen"}}},
      {"tarn targets",
       kSettings,
       {{"tarn targets --family AVR", "all of a family"},
        {"tarn targets ATmega328P", "all about one of them"},
        {"tarn targets usb", "those that have it"}}},
      {"tarn export", kPrograms, {}},
      {"tarn export compile-commands",
       "",
       {{"tarn export compile-commands", "in every configuration"},
        {"tarn export compile-commands -c Debug -o -", "one of them, to the output"}}},
      {"tarn export sarif", "", {{"tarn export sarif -o findings.sarif", "into this file"}}},
      {"tarn run", kPrograms, {{"tarn run release.lua", "on the project in the current folder"}}},
      {"tarn serve", kPrograms, {}},
      {"tarn trust",
       kPrograms,
       {{"tarn trust", "the current folder and all below it"},
        {"tarn trust --list", "what is trusted"},
        {"tarn trust --revoke vendor", "not this folder any more"}}},
      {"tarn register",
       kPrograms,
       {{"tarn register", "for the programs of this user"},
        {"tarn register --system", "for those of every user; as root"}}},
      {"tarn unregister", kPrograms, {}},
      {"tarn completion", kPrograms, {}},
      {"tarn completion bash", "", {{". <(tarn completion bash)", "for this shell"}}},
      {"tarn completion zsh",
       "",
       {{"tarn completion zsh > ~/.zfunc/_tarn", "a folder of fpath, before compinit"}}},
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
      {"2", "wrong use"},
      {"3",
       "the project can't be opened, converted or saved, was read only in part, or needs to be "
       "trusted; nor settings written"},
      {"4", "a program that a tool or the conversion needs is missing"},
      {"130", "interrupted, also by the end of the reader of its output"},
      {"141", "the reader of the output has ended before it had read all of it"},
  };
  return texts;
}

const TextTable& EnvironmentTexts() {
  static const TextTable texts = {
      {"TARN_ROOT", "Folder of the installed data, instead of ../share/tarn beside the program."},
      {"TARN_SETTINGS", "One folder for all settings and user data."},
      {"TARN_LAUNCHER", "Words to put in front of compilers, such as ccache."},
      {"XDG_CONFIG_HOME", "Where the user's settings lie; ~/.config without it."},
      {"XDG_DATA_HOME", "Where the user's data folder lies; ~/.local/share without it."},
      {"XDG_STATE_HOME", "Where tarn/trusted is, the trusted folders; ~/.local/state without it."},
      {"NO_COLOR", "No colours when it is set."},
      {"TERM", "No progress line on a terminal named dumb."},
  };
  return texts;
}

const TextTable& FileTexts() {
  static const TextTable texts = {
      {"NAME.tprj", "The project."},
      {"NAME.tapp", "One of its applications, with groups, files and options."},
      {"NAME.tstate", "What is known of the outputs; without it everything is built once more."},
      {"NAME.undo.tstate", "The last changes by commands, which `tarn undo` takes back."},
      {"NAME.tlog", "The log of the last build that ran a tool; it grows while that runs."},
  };
  return texts;
}

}  // namespace tarn::host
