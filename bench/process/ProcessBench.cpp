// Total time of the command-line program, from process start to exit, for a project of 10,000 files
// with nothing to build. Compared with ninja, which determines the same for the same files from its
// logs.

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "bench/BigProject.h"
#include "bench/Ratios.h"

namespace {

namespace fs = std::filesystem;

constexpr int kRuns = 15;

double Seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

// Runs a program with its output redirected to the file `out`, and reports an error if it fails.
// Returns the processor time in seconds, since neither program waits or runs in parallel if there
// is nothing to build, and the system may be busy.
double Run(std::vector<std::string> command, const std::string& out) {
  std::vector<char*> arguments;
  for (std::string& each : command) arguments.push_back(each.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  pid_t child = 0;
  int state = -1;
  rusage used{};
  const int failure =
      posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (failure != 0 || wait4(child, &state, 0, &used) != child || state != 0) {
    throw std::runtime_error(command[0] + " failed");
  }
  return Seconds(used.ru_utime) + Seconds(used.ru_stime);
}

void ExpectText(const fs::path& file, const char* wanted) {
  std::ifstream stream(file);
  const std::string text((std::istreambuf_iterator<char>(stream)), {});
  if (text.find(wanted) == text.npos) throw std::runtime_error("not up to date: " + text);
}

void Measure(const fs::path& folder, int files) {
  tarn::bench::MakeBigProject(folder, files);
  fs::current_path(folder);
  const std::vector<std::string> tarn{TARN_PROGRAM, "build", "big.tprj"};
  const std::vector<std::string> ninja{"ninja"};
  Run(tarn, "tarn.out");
  Run(ninja, "ninja.out");

  std::vector<double> tarnTimes;
  std::vector<double> ninjaTimes;
  for (int i = 0; i < kRuns; ++i) {
    tarnTimes.push_back(Run(tarn, "tarn.out"));
    ninjaTimes.push_back(Run(ninja, "ninja.out"));
  }
  ExpectText("tarn.out", "Nothing to do");
  ExpectText("ninja.out", "no work to do");
  const double own = tarn::bench::Median(tarnTimes);
  const double peer = tarn::bench::Median(ninjaTimes);
  std::printf("nothing to build in %d files: tarn %.0f ms, ninja %.0f ms\n", files, own * 1000,
              peer * 1000);
  tarn::bench::PrintAtMost("build with nothing to do, processor time / ninja's", own / peer, 2.0);
}

}  // namespace

// Arguments: number of files, and --keep to keep the project.
int main(int argc, char** argv) {
  if (tarn::bench::ActsAsCompiler(argc, argv)) return 0;
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  const int files = argc > 1 ? std::atoi(argv[1]) : 10'000;
  const fs::path folder = tarn::bench::BenchFolder("process");
  int code = 0;
  try {
    Measure(folder, files > 0 ? files : 10'000);
  } catch (const std::exception& failure) {
    std::cerr << "process_bench: " << failure.what() << std::endl;
    code = 1;
  }
  fs::current_path("/");
  if (argc > 2 && arguments[1] == "--keep") {
    std::cout << "kept: " << folder.string() << std::endl;
  } else {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
  }
  return code;
}
