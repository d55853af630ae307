// The command line host: parses the command line, runs one command, and returns its exit code.

#include <cerrno>
#include <cstring>
#include <exception>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>

#include "hosts/cli/CommandLine.h"
#include "hosts/cli/Commands.h"
#include "hosts/core/Interrupts.h"
#include "hosts/core/LargePages.h"

namespace {

using tarn::host::CommandContext;
using tarn::host::Console;

const std::map<std::string, int (*)(CommandContext&)>& Commands() {
  static const std::map<std::string, int (*)(CommandContext&)> commands = {
      {"build", tarn::host::RunBuild},
      {"rebuild", tarn::host::RunBuild},
      {"clean", tarn::host::RunBuild},
      {"status", tarn::host::RunStatus},
      {"check", tarn::host::RunCheck},
      {"tree", tarn::host::RunTree},
      {"options get", tarn::host::RunOptions},
      {"options set", tarn::host::RunOptions},
      {"options reset", tarn::host::RunOptions},
      {"options explain", tarn::host::RunOptions},
      {"options list", tarn::host::RunOptions},
      {"config list", tarn::host::RunConfig},
      {"config add", tarn::host::RunConfig},
      {"config select", tarn::host::RunConfig},
      {"globals", tarn::host::RunGlobals},
      {"log", tarn::host::RunLog},
      {"report", tarn::host::RunReport},
      {"new", tarn::host::RunNew},
      {"import", tarn::host::RunImport},
      {"run", tarn::host::RunScript},
      {"targets", tarn::host::RunTargets},
      {"trust", tarn::host::RunTrust},
      {"serve", tarn::host::RunServe},
      {"register", tarn::host::RunRegister},
      {"unregister", tarn::host::RunRegister},
      {"add", tarn::host::RunEdit},
      {"remove", tarn::host::RunEdit},
      {"move", tarn::host::RunEdit},
      {"rename", tarn::host::RunEdit},
      {"select", tarn::host::RunEdit},
      {"undo", tarn::host::RunUndo},
      {"redo", tarn::host::RunUndo},
      {"relocate", tarn::host::RunRelocate},
      {"completion bash", tarn::host::RunCompletion},
      {"completion zsh", tarn::host::RunCompletion},
      {"completion fish", tarn::host::RunCompletion},
      {"man", tarn::host::RunMan},
      {"complete", tarn::host::RunComplete},
      {"export compile-commands", tarn::host::RunExport},
      {"export sarif", tarn::host::RunExport},
  };
  return commands;
}

// A command fails if its output couldn't be written. If the reader has closed the pipe, that is not
// reported as an error.
int JudgeOutput(Console& console, int code) {
  const int failure = console.GetFailure();
  if (failure == 0 || code != tarn::host::kExitDone) return code;
  if (failure == EPIPE) return tarn::host::kExitReaderGone;
  console.Complain(std::string("The output can't be written: ") + std::strerror(failure) + ".");
  return tarn::host::kExitCannotOpen;
}

int Run(int argc, char** argv, Console& console) {
  const auto parsed = tarn::host::ParseCommandLine(argc, argv);
  if (!parsed.invocation) return parsed.exitCode;
  console.SetStyle(tarn::host::ConsoleStyle::OfStandardOutput(parsed.invocation->noColor));
  CommandContext context(*parsed.invocation, console, tarn::FileSystem::Native());
  const int code = Commands().at(parsed.invocation->command)(context);
  // With --json a program gets a document even on failure.
  const bool isSilent = parsed.invocation->json && !console.HasPrinted();
  if (code == tarn::host::kExitCannotOpen && isSilent) {
    tarn::host::PrintJson(
        context,
        {{"result", "refused"}, {"exitCode", code}, {"error", context.GetLastComplaint()}});
  }
  return code;
}

}  // namespace

int main(int argc, char** argv) {
  tarn::host::PreferLargePages();
  tarn::host::KeepRunningOnFailedWrites();
  Console console(std::cout, {});
  try {
    return JudgeOutput(console, Run(argc, argv, console));
  } catch (const std::exception& failure) {
    console.Complain(failure.what());
    return tarn::host::kExitCannotOpen;
  }
}
