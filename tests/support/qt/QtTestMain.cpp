// Runs the tests of a program with widgets: with a screen that exists in memory alone.
#include <gtest/gtest.h>

#include <QApplication>
#include <clocale>

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  ::testing::InitGoogleTest(&argc, argv);
  QApplication::setDesktopSettingsAware(false);
  QApplication application(argc, argv);
  // The toolkit has set it to the user's.
  std::setlocale(LC_ALL, "C");
  return RUN_ALL_TESTS();
}
