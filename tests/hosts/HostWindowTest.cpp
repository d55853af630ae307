#include "hosts/core/HostWindow.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace tarn::host {
namespace {

std::intptr_t Send(const HostWindow& frame, std::uint32_t number, const char* first,
                   const char* second = nullptr) {
  return SendWindowMessage(frame.GetHandle(), number, reinterpret_cast<std::intptr_t>(first),
                           reinterpret_cast<std::intptr_t>(second));
}

TEST(HostWindow, MessagesWithoutAHandlerAreNeverRefused) {
  const HostWindow frame;
  for (const std::uint32_t number : {kMsgProjectClosing + 0u, kMsgBuildStarting + 0u, 0x9999u}) {
    EXPECT_EQ(SendWindowMessage(frame.GetHandle(), number, 0, 0), 1) << number;
  }
}

TEST(HostWindow, TextsAreCopiesAndNumbersAreLeftAlone) {
  HostWindow frame;
  HostMessageEvent seen;
  for (const std::uint32_t number : {kMsgApplicationActivated, kMsgOpenFileAtLine}) {
    frame.SetHandler(number, [&seen](const HostMessageEvent& event) {
      seen = event;
      return std::intptr_t{7};
    });
  }
  char path[] = "/p/app.tapp";
  EXPECT_EQ(Send(frame, kMsgApplicationActivated, path, "Debug"), 7);
  path[0] = '?';
  EXPECT_EQ(seen.text, "/p/app.tapp");
  EXPECT_EQ(seen.detail, "Debug");
  SendWindowMessage(frame.GetHandle(), kMsgOpenFileAtLine, reinterpret_cast<std::intptr_t>(path),
                    -12);
  EXPECT_EQ(seen.lParam, -12);
  EXPECT_EQ(seen.detail, "");
  EXPECT_EQ(Send(frame, kMsgApplicationActivated, nullptr, nullptr), 7);
  EXPECT_EQ(seen.text, "");
}

TEST(HostWindow, AHandlerMayRemoveItselfAndMayFail) {
  HostWindow frame;
  frame.SetHandler(kMsgProjectClosing, [&frame](const HostMessageEvent&) {
    frame.SetHandler(kMsgProjectClosing, {});
    return std::intptr_t{0};
  });
  EXPECT_EQ(Send(frame, kMsgProjectClosing, ""), 0);
  EXPECT_EQ(Send(frame, kMsgProjectClosing, ""), 1);
  frame.SetHandler(kMsgProjectClosing, [](const HostMessageEvent&) -> std::intptr_t {
    throw std::runtime_error("no");
  });
  EXPECT_EQ(Send(frame, kMsgProjectClosing, ""), 1);
}

TEST(HostWindow, AnObserverSeesEveryMessageBeforeItsHandler) {
  HostWindow frame;
  std::string received;
  frame.SetObserver([&received](const HostMessageEvent& event) {
    received += "watch " + event.text + (event.hasText ? " text" : " number");
    received += event.hasDetail ? " text; " : " number; ";
  });
  frame.SetHandler(kMsgProjectClosing, [&received](const HostMessageEvent& event) {
    received += "answer " + event.text + "; ";
    return std::intptr_t{0};
  });
  EXPECT_EQ(Send(frame, kMsgProjectClosing, "p.tprj"), 0);
  EXPECT_EQ(Send(frame, kMsgApplicationActivated, "", ""), 1);
  EXPECT_EQ(SendWindowMessage(frame.GetHandle(), 0x9999, 1, 2), 1);
  frame.SetObserver({});
  EXPECT_EQ(Send(frame, kMsgApplicationActivated, "p", "q"), 1);
  EXPECT_EQ(received,
            "watch p.tprj text number; answer p.tprj; watch  text text; watch  number number; ");
}

}  // namespace
}  // namespace tarn::host
