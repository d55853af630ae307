#pragma once

#include <string>
#include <vector>

#include "hosts/core/Interrupts.h"

namespace tarn::host {

// How the program ends.
enum ExitCode : int {
  kExitDone = 0,
  kExitBuildFailed = 1,
  kExitUsage = 2,
  kExitCannotOpen = 3,
  kExitToolMissing = 4,
  kExitInterrupted = Interrupts::kExitCode,
  kExitReaderGone = 141,
};

struct CommandSpec;

// The parsed command line.
struct Invocation {
  const CommandSpec* command = nullptr;  // not null after parsing
  std::string project;                   // file or folder; empty: the current folder

  std::string application;    // --app
  std::string configuration;  // --config
  bool json = false;
  bool quiet = false;
  bool verbose = false;
  bool noWait = false;     // --no-wait of commands that build or edit
  bool outsideOk = false;  // --outside-ok of commands that edit
  bool trust = false;      // --trust of commands that run or write something
  bool list = false;       // trust --list
  bool revoke = false;     // trust --revoke
  bool noColor = false;

  std::string node;    // --node: path or label
  std::string key;     // option, e.g. Build.Defines
  std::string value;   // of an option
  std::string name;    // of a new project or configuration; NEW of relocate
  std::string from;    // config add --from
  bool empty = false;  // config add --empty
  std::string compiler;
  std::string text;                         // targets: text to search for
  std::string family;                       // targets --family
  std::string older;                        // file converted by import; OLD of relocate
  std::string below;                        // relocate --below
  bool dryRun = false;                      // relocate --dry-run
  bool yes = false;                         // import --yes
  std::string script;                       // file
  bool xml = false;                         // log --xml
  bool follow = false;                      // log --follow
  bool untilEnd = false;                    // log --until-end
  bool errors = false;                      // report --errors
  bool warnings = false;                    // report --warnings
  std::string namePattern;                  // globals --name
  std::string filePattern;                  // globals --file
  std::string sortColumn = "name";          // globals --sort
  std::vector<std::string> words;           // files or nodes of add, remove, move, rename, select
  std::string target;                       // add --to; microcontroller for new
  std::string type;                         // of an application, new --type
  bool create = false;                      // add --create
  bool git = false;                         // new --git
  bool damagedOk = false;                   // --damaged-ok
  std::string output;                       // export --output; "-" for the standard output
  bool forAll = false;                      // register, unregister --system
  std::vector<std::string> configurations;  // export --config, may be repeated
};

}  // namespace tarn::host
