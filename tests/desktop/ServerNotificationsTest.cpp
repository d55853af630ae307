// Notifications of the server in the window's status bar.
#include "hosts/desktop/ServerNotifications.h"

#include <QLabel>
#include <QStatusBar>

#include "desktop/IdeFixture.h"
#include "hosts/desktop/CodeEditor.h"

namespace tarn::host {
namespace {

using testing::RunUntil;

class ServerNotificationsTest : public testing::IdeFixture {
 protected:
  // Waits until a label of the status bar has this text.
  bool Shows(const QString& text) {
    return RunUntil(
        [&] {
          for (const QLabel* label : window->statusBar()->findChildren<QLabel*>()) {
            if (label->text() == text) return true;
          }
          return false;
        },
        3000);
  }
  void Send(std::uint32_t message, std::intptr_t wParam, std::intptr_t lParam) {
    SendWindowMessage(window->Frame().GetHandle(), message, wParam, lParam);
  }
  static std::intptr_t Text(const std::string& text) {
    return reinterpret_cast<std::intptr_t>(text.c_str());
  }
};

TEST_F(ServerNotificationsTest, TheStatusBarNamesWhatCommandsWorkOn) {
  Select("main.c");
  EXPECT_TRUE(Shows("main.c  \u2022  blinky-avr (Standard)"));
  Select("Drivers");
  EXPECT_TRUE(Shows("Drivers  \u2022  blinky-avr (Standard)"));
  EXPECT_EQ(window->windowTitle(), "blinky-avr[*] - Tarn");
  ASSERT_NE(window->Session().Manager().ProjectClose(), 0);
  EXPECT_TRUE(RunUntil([&] { return window->windowTitle() == "Tarn"; }));
}

TEST_F(ServerNotificationsTest, HelpAndTimeStampsOfAMessageAreShown) {
  Send(kMsgShowTimeStamps, 1, 2);
  EXPECT_TRUE(window->statusBar()->currentMessage().contains("4294967298"));
  Send(kMsgShowHelp, Text(folder / "blinky/README.md"), 0);
  ASSERT_TRUE(RunUntil([&] { return window->Editors().count() == 1; }));
  Send(kMsgShowHelp, Text(folder / "blinky/none.html"), 0);
  EXPECT_TRUE(
      RunUntil([&] { return window->statusBar()->currentMessage().contains("none.html"); }));
}

TEST_F(ServerNotificationsTest, TheFileOfANodeIsShownWhereItWasLeft) {
  const std::string path = folder / "blinky/src/main.c";
  Send(kMsgOpenFileAtLine, Text(path), -7);
  ASSERT_TRUE(RunUntil([&] { return window->Editors().count() == 1; }));
  Send(kMsgOpenFile, Text(path), -1);
  RunUntil([] { return false; }, 50);
  int line = 0;
  int column = 0;
  window->Editors().Current()->getCursorPosition(&line, &column);
  EXPECT_EQ(line + 1, 7);
}

}  // namespace
}  // namespace tarn::host
