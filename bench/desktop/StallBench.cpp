// Longest time for which the main window doesn't respond while a project of 10,000 files is opened,
// published, built, built again with nothing to do, and changed: a timer fires continuously in the
// window's event loop, and the longest pause between two events is measured.

#include <tarn/commands.h>

#include <time.h>

#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <clocale>
#include <filesystem>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <string>

#include "bench/BigProject.h"
#include "bench/Ratios.h"
#include "hosts/desktop/IdeWindow.h"
#include "widgets/qt/QtToolkit.h"

namespace {

namespace fs = std::filesystem;
using tarn::host::BuildEnd;
using tarn::host::IdeWindow;

constexpr double kLongestPauseMs = 100;

// Timer in the thread's event loop. A pause is measured in processor time of this thread, so that
// waiting for a busy processor doesn't count.
class Heart {
 public:
  Heart() {
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { Beat(); });
    timer_.start(0);
  }
  // Returns the longest pause since the last call.
  double TakeLongestMs() {
    Beat();
    const double result = longest_;
    longest_ = 0;
    return result;
  }

 private:
  static double NowMs() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
  }
  void Beat() {
    const double now = NowMs();
    longest_ = std::max(longest_, now - last_);
    last_ = now;
  }

  QTimer timer_;
  double last_ = NowMs();
  double longest_ = 0;
};

void RunUntil(const std::function<bool()>& done) {
  while (!done()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void Print(const char* step, Heart& heart) {
  const double pause = heart.TakeLongestMs();
  const std::string row = std::string("longest pause of the window, ") + step + " / 100 ms";
  tarn::bench::PrintAtMost(row.c_str(), pause / kLongestPauseMs, 1.0);
}

void Build(IdeWindow& window) {
  window.Commands().Run(TARN_CMD_BUILD_ALL);
  if (!window.Commands().IsBuilding()) throw std::runtime_error("the build doesn't start");
  RunUntil([&] { return !window.Commands().IsBuilding(); });
}

// Runs the event loop long enough for all delayed work.
void Settle(IdeWindow& window) {
  bool isQuiet = false;
  QTimer::singleShot(3000, &window, [&] { isQuiet = true; });
  RunUntil([&] { return isQuiet; });
}

void Measure(const fs::path& folder, int files) {
  const tarn::bench::BigProject project = tarn::bench::MakeBigProject(folder, files);
  setenv("TARN_SETTINGS", (folder / "settings").c_str(), 1);
  const tarn::QtToolkit toolkit;
  IdeWindow window(tarn::FileSystem::Native());
  if (!window.Start()) throw std::runtime_error("the installation isn't complete");
  window.show();
  Heart heart;
  window.OpenProject(project.GetProjectFile());
  Print("opening", heart);
  Settle(window);
  Print("making known", heart);
  Build(window);
  Print("building", heart);
  if (!fs::exists(folder / "build")) throw std::runtime_error("nothing was built");
  Build(window);
  Print("nothing to build", heart);
  window.Session().Manager().AddExistingItem((folder / "added.c").string());
  Settle(window);
  Print("changing", heart);
}

}  // namespace

// Argument: number of files.
int main(int argc, char** argv) {
  if (tarn::bench::ActsAsCompiler(argc, argv)) return 0;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  std::setlocale(LC_ALL, "C");
  const int files = argc > 1 ? std::atoi(argv[1]) : 10'000;
  const fs::path folder = tarn::bench::BenchFolder("stall");
  int code = 0;
  try {
    Measure(folder, files > 0 ? files : 10'000);
  } catch (const std::exception& failure) {
    std::cerr << "stall_bench: " << failure.what() << std::endl;
    code = 1;
  }
  fs::current_path("/");
  std::error_code ignored;
  fs::remove_all(folder, ignored);
  return code;
}
