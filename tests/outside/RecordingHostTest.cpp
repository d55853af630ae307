#include "support/RecordingHost.h"

#include <gtest/gtest.h>

namespace tarn::test {
namespace {

std::intptr_t Address(const char* text) {
  return reinterpret_cast<std::intptr_t>(text);
}

TEST(RecordingHost, KeepsLinesAnswersAndActsInsideAMessage) {
  RecordingHost host;
  const WindowHandle handle = host.Handle();
  host.answers[kMsgBuildStarting] = 0;
  host.actions[kMsgProjectOpened] = [&host, handle] {
    host.actions.clear();
    SendWindowMessage(handle, kMsgCurrentNodeChanged, Address(""), 0);
  };
  EXPECT_EQ(SendWindowMessage(handle, kMsgProjectOpened, Address("/p/demo.tprj"), 0), 1);
  EXPECT_EQ(SendWindowMessage(handle, kMsgBuildStarting, 0, 0), 0);
  SendWindowMessage(handle, kMsgOpenFileAtLine, Address("/p/a.c"), -12);
  SendWindowMessage(handle, kMsgApplicationKnown, 0, Address("Debug"));
  SendWindowMessage(handle, kMsgAnnounceWindow, Address("?"), Address("<Wnd />"));
  SendWindowMessage(handle, kMsgCommand, 0x8139, 0);
  EXPECT_EQ(host.LinesOf(kMsgCommand), std::vector<std::string>{"273 33081 0"});
  EXPECT_EQ(host.TakeLines(),
            (std::vector<std::string>{"0x8015 /p/demo.tprj 0", "0x8011 \"\" 0", "0x800C 0 0",
                                      "0x8008 /p/a.c -12", "0x8023 null Debug", "0x8005 * <Wnd />",
                                      "273 33081 0"}));
  EXPECT_TRUE(host.lines.empty());
}

}  // namespace
}  // namespace tarn::test
