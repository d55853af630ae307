// Cost of keeping the log file up to date: one save after each new message, in logs of growing
// length, compared with the minimum for any implementation: appending the same bytes to a file by
// name.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "bench/Ratios.h"
#include "output/BuildOutput.h"
#include "output/MessageTable.h"
#include "xml/XmlNode.h"

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

// Prepares a log with `count` messages.
void Prepare(CBuildOutput& hub, std::int64_t count) {
  hub.SetLogFile(LogPath(".xml"));
  SetMessageText(kRowTranslateStarts, "Compiling %s");
  AddMessages(hub, count);
  hub.SaveLog();
}

void SaveAfterEachMessage(benchmark::State& state) {
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

// Returns the bytes that one message adds to a log.
std::string OneMessage() {
  CBuildOutput hub(FileSystem::Native());
  SetMessageText(kRowTranslateStarts, "Compiling %s");
  AddMessages(hub, 1);
  std::string text;
  hub.GetRoot().GetChild(0)->AppendText(text, g_xmlDisplayOptions, 1);
  return text;
}

// Appends the bytes of one message.
class TailWriter {
 public:
  TailWriter() : path_(LogPath(".floor")), tail_(OneMessage() + closing_) {}
  ~TailWriter() { unlink(path_.c_str()); }

  bool Append() {
    const int file = open(path_.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    const ssize_t written = pwrite(file, tail_.data(), tail_.size(), keep_);
    close(file);
    keep_ += static_cast<off_t>(tail_.size() - closing_.size());
    return written == static_cast<ssize_t>(tail_.size());
  }

 private:
  const std::string closing_ = "\r\n</Messages>";
  const std::string path_;
  const std::string tail_;
  off_t keep_ = 0;
};

void FloorAppendByName(benchmark::State& state) {
  TailWriter writer;
  bool good = true;
  for (auto _ : state) good = writer.Append() && good;
  if (!good) state.SkipWithError("the floor could not write");
}

// The part of SaveAfterEachMessage without the save.
void MessageAlone(benchmark::State& state) {
  CBuildOutput hub(FileSystem::Native());
  SetMessageText(kRowTranslateStarts, "Compiling %s");
  for (auto _ : state) AddMessages(hub, 1);
}

BENCHMARK(FloorAppendByName)->Iterations(kSaves);
BENCHMARK(MessageAlone)->Iterations(kSaves);
BENCHMARK(SaveAfterEachMessage)->Arg(0)->Arg(1'000)->Arg(10'000)->Arg(50'000)->Iterations(kSaves);
BENCHMARK(SaveWithoutNews)->Arg(1'000)->Arg(50'000);

// --- The ratio ---

double SecondsOfSaves() {
  CBuildOutput hub(FileSystem::Native());
  Prepare(hub, 0);
  const double seconds = bench::SecondsOf([&] {
    for (int i = 0; i < kSaves; ++i) {
      AddMessages(hub, 1);
      hub.SaveLog();
    }
  });
  hub.DeleteLogFile();
  return seconds;
}

double SecondsOfAppends() {
  TailWriter writer;
  const double seconds = bench::SecondsOf([&] {
    for (int i = 0; i < kSaves; ++i) writer.Append();
  });
  return seconds;
}

void PrintRatios() {
  std::vector<double> ratios;
  for (int i = 0; i < 7; ++i) {
    const double own = SecondsOfSaves();
    ratios.push_back(own / SecondsOfAppends());
  }
  bench::PrintAtMost("10,000 messages each saved / the same bytes appended", bench::Median(ratios),
                     2.0);
}

}  // namespace
}  // namespace tarn

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  tarn::PrintRatios();
  return 0;
}
