#pragma once

#include <any>
#include <memory>
#include <string>

#include "hosts/core/Jobs.h"
#include "hosts/core/SignalHandler.h"

namespace tarn::host {

// How the program ends.
enum ExitCode : int {
  kExitDone = 0,
  kExitBuildFailed = 1,
  kExitUsage = 2,
  kExitCannotOpen = 3,
  kExitToolMissing = 4,
  kExitInterrupted = SignalHandler::kExitCode,
  kExitReaderGone = 141,
};

struct CommandSpec;

// The parsed command line.
struct Invocation {
  const CommandSpec* command = nullptr;  // not null after parsing

  // Values that several commands have.
  std::string project;        // file or folder; empty: the current folder
  std::string application;    // --app
  std::string configuration;  // --config
  std::string node;           // --node: path or label
  BuildLimits limits;         // --jobs, --keep-going, --load, --memfree
  bool json = false;
  bool quiet = false;
  bool verbose = false;
  bool noColor = false;
  bool noWait = false;     // of commands that build or edit
  bool damagedOk = false;  // of commands that build, edit or export
  bool outsideOk = false;  // of commands that edit
  bool trust = false;      // of commands that run or write something

  // Values that only this command has, in a struct of the command's file; see
  // CommandArguments::Own().
  std::shared_ptr<const std::any> own;

  template <class Options>
  const Options& Own() const {
    return std::any_cast<const Options&>(*own);
  }
};

}  // namespace tarn::host
