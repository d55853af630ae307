// The command line host: parses the command line, runs one command, and returns its exit code.

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>
#include <new>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "hosts/cli/BuildReporter.h"
#include "hosts/cli/CommandLine.h"
#include "hosts/cli/Commands.h"
#include "hosts/cli/IdleBuild.h"
#include "hosts/core/LargePages.h"
#include "hosts/core/SignalHandler.h"
#include "hosts/core/Terminal.h"

namespace {

using tarn::host::CommandContext;
using tarn::host::Console;
using tarn::host::IdleBuild;
using tarn::host::Invocation;

constexpr const char* kNoMemory = "There is not enough memory.";

const std::terminate_handler g_abort = std::get_terminate();

// Ends the program if a thread has run out of memory, as if it was killed: what was recorded until
// then is kept, and running tools end with it.
void EndWithoutMemory() {
  try {
    if (const auto failure = std::current_exception()) std::rethrow_exception(failure);
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "tarn: %s\n", kNoMemory);
    std::_Exit(tarn::host::kExitCannotOpen);
  } catch (...) {
  }
  g_abort();
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

// Runs the command, unless it is a build that is known to have nothing to do.
int RunCommand(const Invocation& asked, const std::vector<std::string>& words, Console& console) {
  const auto start = std::chrono::steady_clock::now();
  std::optional<IdleBuild> idle;
  if (asked.command->mayBeIdle != nullptr && asked.command->mayBeIdle(asked)) {
    idle.emplace(words);
    if (idle->IsRepeated()) {
      const auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(
          std::chrono::steady_clock::now() - start);
      if (!asked.quiet) tarn::host::PrintSuccess(console, tarn::host::kNothingToDo, elapsed);
      return tarn::host::kExitDone;
    }
    idle->Record();
  }
  CommandContext context(asked, console, tarn::FileSystem::Native());
  const int code = asked.command->run(context);
  if (idle && context.IsIdle() && !console.HasComplained()) idle->Keep();
  // With --json a program gets a document even on failure.
  if (code == tarn::host::kExitCannotOpen && asked.json && !console.HasPrinted()) {
    tarn::host::PrintJson(
        context,
        {{"result", "refused"}, {"exitCode", code}, {"error", context.GetLastComplaint()}});
  }
  return code;
}

int Run(int argc, char** argv, Console& console) {
  const std::vector<std::string> words = tarn::host::ProgramArguments(argc, argv);
  std::vector<const char*> arguments;
  for (const std::string& word : words) arguments.push_back(word.c_str());
  const auto parsed = tarn::host::ParseCommandLine(argc, arguments.data(), console);
  if (!parsed.invocation) return parsed.exitCode;
  console.SetStyle(tarn::host::ConsoleStyle::OfStandardOutput(parsed.invocation->noColor));
  return RunCommand(*parsed.invocation, words, console);
}

}  // namespace

int main(int argc, char** argv) {
  tarn::host::ReserveStandardStreams();
  std::set_terminate(EndWithoutMemory);
  tarn::host::PreferLargePages();
  tarn::host::IgnoreFailedWriteSignals();
  Console console(std::cout, {});
  try {
    return JudgeOutput(console, Run(argc, argv, console));
  } catch (const std::bad_alloc&) {
    console.Complain(kNoMemory);
    return tarn::host::kExitCannotOpen;
  } catch (const std::exception& failure) {
    console.Complain(failure.what());
    return tarn::host::kExitCannotOpen;
  }
}
