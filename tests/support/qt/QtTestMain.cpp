// Main function of tests with widgets: runs them on an offscreen display.
#include <gtest/gtest.h>

#include <QApplication>
#include <chrono>
#include <clocale>
#include <filesystem>
#include <iterator>
#include <thread>

namespace {

int Run(int argc, char** argv) {
  QApplication::setDesktopSettingsAware(false);
  QApplication application(argc, argv);
  // The toolkit has set it to the user's locale.
  std::setlocale(LC_ALL, "C");
  return RUN_ALL_TESTS();
}

// The toolkit's helper threads for painting are still terminating when it reports that they have
// ended, and the memory that they hold until then would be reported as a leak.
void AwaitThreads() {
  using Folder = std::filesystem::directory_iterator;
  const auto count = [] {
    std::error_code failure;
    return std::distance(Folder("/proc/self/task", failure), Folder());
  };
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(1);
  while (count() > 1 && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  ::testing::InitGoogleTest(&argc, argv);
  const int result = Run(argc, argv);
  AwaitThreads();
  return result;
}
