// The command line host: reads the command line, carries out one command, ends with its exit code.

#include <cstdio>
#include <exception>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>

#include "hosts/cli/CommandLine.h"
#include "hosts/cli/Commands.h"
#include "platform/memory/LargePages.h"

namespace {

using tarn::host::CommandContext;

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

int Run(int argc, char** argv) {
  try {
    const auto parsed = tarn::host::ParseCommandLine(argc, argv);
    if (!parsed.invocation) return parsed.exitCode;
    tarn::host::Console console(
        std::cout, tarn::host::ConsoleStyle::OfStandardOutput(parsed.invocation->noColor));
    CommandContext context(*parsed.invocation, console, tarn::FileSystem::Native());
    const int code = Commands().at(parsed.invocation->command)(context);
    // Programs get a document also if there was nothing to make it from.
    const bool isSilent = parsed.invocation->json && !console.HasPrinted();
    if (code == tarn::host::kExitCannotOpen && isSilent) {
      tarn::host::PrintJson(
          context,
          {{"result", "refused"}, {"exitCode", code}, {"error", context.GetLastComplaint()}});
    }
    return code;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "tarn: %s\n", failure.what());
    return tarn::host::kExitCannotOpen;
  }
}

}  // namespace

int main(int argc, char** argv) {
  tarn::PreferLargePages();
  const int code = Run(argc, argv);
  // On a full disk, what was asked for is not there.
  if (std::cout.flush() || code != tarn::host::kExitDone) return code;
  std::fprintf(stderr, "tarn: The output can't be written.\n");
  return tarn::host::kExitCannotOpen;
}
