#include "hosts/core/MainFrame.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace tarn::host {
namespace {

std::intptr_t Send(const MainFrame& frame, std::uint32_t number, const char* first,
                   const char* second = nullptr) {
  return SendWindowMessage(frame.GetHandle(), number, reinterpret_cast<std::intptr_t>(first),
                           reinterpret_cast<std::intptr_t>(second));
}

TEST(MainFrame, WhatNobodyAnswersIsNeverRefused) {
  const MainFrame frame;
  for (const std::uint32_t number : {kMsgProjectClosing + 0u, kMsgBuildStarting + 0u, 0x9999u}) {
    EXPECT_EQ(SendWindowMessage(frame.GetHandle(), number, 0, 0), 1) << number;
  }
}

TEST(MainFrame, TextsAreCopiesAndNumbersAreLeftAlone) {
  MainFrame frame;
  HostEvent seen;
  for (const std::uint32_t number : {kMsgApplicationActivated, kMsgOpenFileAtLine}) {
    frame.Answer(number, [&seen](const HostEvent& event) {
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

TEST(MainFrame, AHandlerMayTakeItselfAwayAndMayFail) {
  MainFrame frame;
  frame.Answer(kMsgProjectClosing, [&frame](const HostEvent&) {
    frame.Answer(kMsgProjectClosing, {});
    return std::intptr_t{0};
  });
  EXPECT_EQ(Send(frame, kMsgProjectClosing, ""), 0);
  EXPECT_EQ(Send(frame, kMsgProjectClosing, ""), 1);
  frame.Answer(kMsgProjectClosing,
               [](const HostEvent&) -> std::intptr_t { throw std::runtime_error("no"); });
  EXPECT_EQ(Send(frame, kMsgProjectClosing, ""), 1);
}

TEST(MainFrame, AWatcherHearsOfEveryMessageAheadOfItsHandler) {
  MainFrame frame;
  std::string heard;
  frame.Watch([&heard](const HostEvent& event) {
    heard += "watch " + event.text + (event.hasText ? " text" : " number");
    heard += event.hasDetail ? " text; " : " number; ";
  });
  frame.Answer(kMsgProjectClosing, [&heard](const HostEvent& event) {
    heard += "answer " + event.text + "; ";
    return std::intptr_t{0};
  });
  EXPECT_EQ(Send(frame, kMsgProjectClosing, "p.tprj"), 0);
  EXPECT_EQ(Send(frame, kMsgApplicationActivated, "", ""), 1);
  EXPECT_EQ(SendWindowMessage(frame.GetHandle(), 0x9999, 1, 2), 1);
  frame.Watch({});
  EXPECT_EQ(Send(frame, kMsgApplicationActivated, "p", "q"), 1);
  EXPECT_EQ(heard,
            "watch p.tprj text number; answer p.tprj; watch  text text; watch  number number; ");
}

}  // namespace
}  // namespace tarn::host
