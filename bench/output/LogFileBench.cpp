// What it costs to keep the log file current: one save behind each new message, in logs of growing
// length, against the least that any way of doing it must do: put the same bytes at the end of a
// file by name.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <string>

#include "output/BuildOutput.h"
#include "output/MessageTable.h"

namespace tarn {
namespace {

constexpr int kSaves = 10'000;
const std::string kPath = "src/drivers/serial/ring_buffer.c";

std::string LogPath(const char* name) {
  FileSystem& disk = FileSystem::Native();
  return disk.TemporaryFolder() + "/tarn-bench-" + std::to_string(getpid()) + name;
}

void AddMessages(CBuildOutput& hub, std::int64_t count) {
  for (std::int64_t i = 0; i < count; ++i) hub.WriteMessage(kRowTranslateStarts, {kPath});
}

// Leaves a hub whose log holds `count` messages.
void Prepare(CBuildOutput& hub, std::int64_t count) {
  hub.SetLogFile(LogPath(".xml"));
  SetMessageText(kRowTranslateStarts, "Compiling %s");
  AddMessages(hub, count);
  hub.SaveLog();
}

void SaveBehindEachMessage(benchmark::State& state) {
  CBuildOutput hub(FileSystem::Native());
  Prepare(hub, state.range(0));
  for (auto _ : state) {
    AddMessages(hub, 1);
    hub.SaveLog();
  }
  hub.DeleteLogFile();
}

void SaveWithoutNews(benchmark::State& state) {
  CBuildOutput hub(FileSystem::Native());
  Prepare(hub, state.range(0));
  for (auto _ : state) hub.SaveLog();
  hub.DeleteLogFile();
}

// The bytes that one message adds to a log.
std::string OneMessage() {
  CBuildOutput hub(FileSystem::Native());
  SetMessageText(kRowTranslateStarts, "Compiling %s");
  AddMessages(hub, 1);
  std::string text;
  hub.GetRoot().GetChild(0)->AppendText(text, g_xmlDisplayOptions, 1);
  return text;
}

void FloorAppendByName(benchmark::State& state) {
  const std::string path = LogPath(".floor");
  const std::string closing = "\r\n</Messages>";
  const std::string tail = OneMessage() + closing;
  off_t keep = 0;
  bool good = true;
  for (auto _ : state) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    good =
        good && pwrite(file, tail.data(), tail.size(), keep) == static_cast<ssize_t>(tail.size());
    close(file);
    keep += static_cast<off_t>(tail.size() - closing.size());
  }
  if (!good) state.SkipWithError("the floor could not write");
  unlink(path.c_str());
}

// The part of SaveBehindEachMessage that is not the save.
void MessageAlone(benchmark::State& state) {
  CBuildOutput hub(FileSystem::Native());
  SetMessageText(kRowTranslateStarts, "Compiling %s");
  for (auto _ : state) AddMessages(hub, 1);
}

BENCHMARK(FloorAppendByName)->Iterations(kSaves);
BENCHMARK(MessageAlone)->Iterations(kSaves);
BENCHMARK(SaveBehindEachMessage)->Arg(0)->Arg(1'000)->Arg(10'000)->Arg(50'000)->Iterations(kSaves);
BENCHMARK(SaveWithoutNews)->Arg(1'000)->Arg(50'000);

}  // namespace
}  // namespace tarn
