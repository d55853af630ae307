#include "widgets/Wnd.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>

#include "support/ManualClock.h"
#include "support/RecordingToolkit.h"
#include "support/TinyBitmap.h"
#include "widgets/HostMessages.h"
#include "widgets/ImageList.h"

namespace tarn {
namespace {

using test::ManualClock;
using test::TinyBitmap;
using Lines = std::vector<std::string>;

// Records its events and runs a test's action for each.
class TalkingWindow : public CWnd {
 public:
  TalkingWindow(std::string windowName, Lines& windowLines)
      : name_(std::move(windowName)), lines_(windowLines) {}
  ~TalkingWindow() override { DestroyWindow(); }

  std::map<std::string, std::function<void()>> then;
  bool isWilling = true;
  int ownCommand = 0;

 protected:
  bool OnCreate() override {
    Say("create");
    return isWilling;
  }
  void OnDestroy() override { Say("destroy"); }
  void OnSize(Size size) override {
    Say("size " + std::to_string(size.width) + "x" + std::to_string(size.height));
  }
  void OnSetFocus() override { Say("focus"); }
  void OnKillFocus() override { Say("no focus"); }
  void OnTimer(int timerId) override { Say("timer " + std::to_string(timerId)); }
  void OnIdle() override { Say("idle"); }
  void OnDropFiles(const std::vector<std::string>& paths) override { Say("drop " + paths.at(0)); }
  bool OnContextMenu(Point screen) override {
    Say("menu " + std::to_string(screen.x) + "," + std::to_string(screen.y));
    return AcceptsDroppedFiles();
  }
  bool OnCommand(int command) override {
    Say("command " + std::to_string(command));
    return command == ownCommand;
  }
  std::intptr_t OnMessage(std::uint32_t message, std::intptr_t wParam, std::intptr_t) override {
    Say("message " + std::to_string(message));
    return wParam + 1;
  }

 private:
  void Say(const std::string& what) {
    lines_.push_back(name_ + " " + what);
    const auto action = then.find(what);
    if (action != then.end()) action->second();
  }

  std::string name_;
  Lines& lines_;
};

struct WndTest : ::testing::Test {
  Lines lines;
  TalkingWindow top{"top", lines};
  TalkingWindow child{"child", lines};

  void CreateBoth() {
    top.Create(kStylePopup, {100, 50, 300, 250}, nullptr, 0);
    child.Create(kStyleChild | kStyleVisible, {10, 20, 60, 40}, &top, 7);
    lines.clear();
  }
};

TEST_F(WndTest, WhatOnCreateRefusesLeavesNothing) {
  top.isWilling = false;
  EXPECT_FALSE(top.Create(0, {0, 0, 10, 10}, nullptr, 0));
  EXPECT_EQ(lines, (Lines{"top create", "top destroy"}));
  EXPECT_FALSE(top.IsCreated());
  top.isWilling = true;
  EXPECT_TRUE(top.Create(0, {0, 0, 10, 10}, nullptr, 0));
  EXPECT_FALSE(top.Create(0, {0, 0, 10, 10}, nullptr, 0));
}

TEST_F(WndTest, ChildrenGoWithTheirParentsWindow) {
  CreateBoth();
  EXPECT_EQ(top.FindChild(7), &child);
  EXPECT_EQ(top.FindChild(8), nullptr);
  EXPECT_EQ(child.ClientToScreen({1, 2}), (Point{111, 72}));
  child.SetFocus();
  const WindowHandle handle = child.GetHandle();
  top.DestroyWindow();
  EXPECT_EQ(lines, (Lines{"child focus", "top destroy", "child no focus", "child destroy"}));
  EXPECT_EQ(SendWindowMessage(handle, 5, 6, 0), 0);
  EXPECT_EQ(child.GetParent(), nullptr);
}

TEST_F(WndTest, MessagesAndCommandsReachWhoMeansThem) {
  CreateBoth();
  EXPECT_EQ(SendWindowMessage(child.GetHandle(), 5, -12, 0), -11);
  top.ownCommand = 33;
  EXPECT_EQ(SendWindowMessage(child.GetHandle(), kMsgCommand, 33, 0), 1);
  EXPECT_EQ(SendWindowMessage(child.GetHandle(), kMsgCommand, 34, 0), 0);
  TalkingWindow other("other", lines);
  other.Create(0, {}, nullptr, 0);
  child.SetOwner(&other);
  EXPECT_EQ(child.SendOwner(9, 1, 0), 2);
  child.SetOwner(nullptr);
  top.AcceptDroppedFiles(true);
  child.NotifyDroppedFiles({"a.c"});
  child.NotifyContextMenu({3, 4});
  EXPECT_EQ(lines, (Lines{"child message 5", "child command 33", "top command 33",
                          "child command 34", "top command 34", "other create", "other size 0x0",
                          "other message 9", "top drop a.c", "child menu 3,4", "top menu 3,4"}));
}

TEST_F(WndTest, TheKeyboardIsInOnePlace) {
  CreateBoth();
  top.SetFocus();
  child.NotifyFocusTaken();
  child.NotifyFocusTaken();
  EXPECT_TRUE(child.HasFocus());
  // The window that loses the focus destroys the one that takes it.
  child.then["no focus"] = [&] { top.DestroyWindow(); };
  top.SetFocus();
  EXPECT_FALSE(top.HasFocus());
  EXPECT_EQ(lines, (Lines{"top focus", "top no focus", "child focus", "child no focus",
                          "top destroy", "child destroy"}));
}

TEST_F(WndTest, TimersGoByTheClockAndDieWithTheWindow) {
  ManualClock clock;
  CreateBoth();
  top.SetTimer(601, std::chrono::milliseconds(10));
  child.SetTimer(1, std::chrono::milliseconds(25));
  clock.Advance(std::chrono::milliseconds(9));
  EXPECT_EQ(lines, Lines{});
  clock.Advance(std::chrono::milliseconds(1));
  clock.Advance(std::chrono::milliseconds(35));
  EXPECT_EQ(lines, (Lines{"top timer 601", "top timer 601", "child timer 1"}));
  top.DestroyWindow();
  lines.clear();
  clock.Advance(std::chrono::milliseconds(100));
  EXPECT_EQ(lines, Lines{});
}

TEST_F(WndTest, AChildIsFreedAfterItsOwnEvent) {
  CreateBoth();
  bool isFreed = false;
  struct Freed : CWnd {
    explicit Freed(bool& mark) : isFreed(mark) {}
    ~Freed() override { isFreed = true; }
    bool& isFreed;
  };
  auto own = std::make_unique<Freed>(isFreed);
  own->Create(kStyleChild, {}, &top, 9);
  const WindowHandle handle = own->GetHandle();
  top.Retire(std::move(own));
  EXPECT_FALSE(IsWindow(handle));
  EXPECT_FALSE(isFreed);
  MessageLoop::ForCurrentThread()->Pump();
  EXPECT_TRUE(isFreed);
}

TEST_F(WndTest, IdleReachesWhatIsLeftOfTheTree) {
  CreateBoth();
  top.then["idle"] = [&] { child.DestroyWindow(); };
  RunIdle();
  RunIdle();
  EXPECT_EQ(lines, (Lines{"top idle", "child destroy", "top idle"}));
}

TEST_F(WndTest, SizeIsToldOnlyWhenItChanges) {
  CreateBoth();
  child.MoveWindow({0, 0, 50, 20});
  child.MoveWindow({0, 0, 51, 20});
  child.NotifyResized({5, 6});
  EXPECT_EQ(child.GetClientRect(), (Rect{0, 0, 5, 6}));
  EXPECT_EQ(lines, (Lines{"child size 51x20", "child size 5x6"}));
}

TEST(ImageListTest, OnlyBitmapsWithPixelsAreRead) {
  EXPECT_EQ(ReadBitmap(TinyBitmap(96, 16))->size, (Size{96, 16}));
  EXPECT_EQ(ReadBitmap(TinyBitmap(300, -20))->size, (Size{300, 20}));
  for (const std::string& bytes :
       {std::string(), std::string("BM"), TinyBitmap(0, 16), TinyBitmap(16, 0), TinyBitmap(-1, 16),
        TinyBitmap(1, std::int32_t(0x80000000)), TinyBitmap(16, 16).substr(0, 53),
        "GI" + TinyBitmap(16, 16).substr(2)}) {
    EXPECT_EQ(ReadBitmap(bytes), nullptr) << bytes.size();
  }
}

TEST(ImageListTest, StripsAreNumberedConsecutively) {
  CImageList images({16, 16});
  EXPECT_EQ(images.Add(ReadBitmap(TinyBitmap(96, 16))), 0);
  EXPECT_EQ(images.Add(ReadBitmap(TinyBitmap(15, 16))), -1);
  EXPECT_EQ(images.Add(nullptr), -1);
  EXPECT_EQ(images.Add(ReadBitmap(TinyBitmap(31, 18))), 6);
  EXPECT_EQ(images.GetCount(), 7);
}

}  // namespace
}  // namespace tarn
