#include "widgets/ToolBar.h"

#include <gtest/gtest.h>

#include "support/RecordingToolkit.h"
#include "widgets/HostMessages.h"

namespace tarn {
namespace {

using Lines = std::vector<std::string>;

// Records the commands that it receives, and optionally runs a test's action for each.
class Owner : public CWnd {
 public:
  ~Owner() override { DestroyWindow(); }
  std::vector<int> commands;
  std::function<void()> then;

 protected:
  bool OnCommand(int command) override {
    commands.push_back(command);
    if (then) then();
    return true;
  }
};

// A toolkit that records the notifications of its peers and draws nothing.
class ToolBarToolkit : public test::RecordingToolkit {
 public:
  using RecordingToolkit::MakePeer;
  std::unique_ptr<ToolBarPeer> MakePeer(CToolBar& /*bar*/) override {
    struct Peer : ToolBarPeer {
      explicit Peer(ToolBarToolkit& owner) : toolkit(owner) {}
      void OnButtonsChanged() override { toolkit.lines.push_back("buttons"); }
      void OnButtonChanged(std::size_t index) override {
        toolkit.lines.push_back("button " + std::to_string(index));
      }
      std::optional<Rect> ButtonRect(std::size_t index) override {
        if (!toolkit.knowsPlaces) return std::nullopt;
        return Rect{int(index) * 100, 0, int(index) * 100 + 90, 50};
      }
      ToolBarToolkit& toolkit;
    };
    return std::make_unique<Peer>(*this);
  }
  bool knowsPlaces = false;
};

struct ToolBarTest : ::testing::Test {
  ToolBarToolkit toolkit;
  Owner owner;
  std::unique_ptr<CToolBar> bar = std::make_unique<CToolBar>();
  bool isShowing = false;

  ToolBarTest() {
    owner.Create(kStylePopup, {10, 20, 310, 220}, nullptr, 0);
    bar->Create(kStyleChild | kStyleVisible, {5, 5, 205, 30}, &owner, 59392);
    bar->AddButton(32776, "Properties", 0);
    bar->AddSeparator();
    bar->AddDropDown(32772, "Show", 2, [this] {
      auto menu = std::make_unique<CMenu>();
      menu->AppendCommand(32773, "Build information").isChecked = isShowing;
      return menu;
    });
    bar->AddDropDown(1, "Nothing", 3, [] { return std::unique_ptr<CMenu>(); });
    toolkit.TakeLines();
  }
};

TEST_F(ToolBarTest, ButtonsAndMenusSendTheirCommands) {
  toolkit.menuAnswers = {32773, 0};
  isShowing = true;
  bar->NotifyButton(32776);
  bar->NotifyButton(5);
  bar->NotifyButton(0);  // the separator has no number
  bar->NotifyDropDown(32772);
  bar->NotifyDropDown(32772);
  bar->NotifyDropDown(32776);
  bar->NotifyDropDown(1);
  EXPECT_EQ(owner.commands, (std::vector<int>{32776, 32773}));
  const std::string shown = "menu at 47,49: [x] Build information 32773";
  EXPECT_EQ(toolkit.TakeLines(), (Lines{shown, shown}));
  toolkit.knowsPlaces = true;
  bar->NotifyDropDown(32772);
  EXPECT_EQ(toolkit.TakeLines(), Lines{"menu at 215,75: [x] Build information 32773"});
}

TEST_F(ToolBarTest, StatesAreRefreshedAtIdleAndOnlyChangesAreNotified) {
  bool isPossible = false;
  bar->SetUpdater([&](CToolBar::Button& button) {
    button.isEnabled = button.id != 32776 || isPossible;
    button.isChecked = button.isRadio = button.id == 1;
    button.id = 99;
  });
  RunIdle();
  RunIdle();
  EXPECT_EQ(toolkit.TakeLines(), (Lines{"button 0", "button 3"}));
  bar->NotifyButton(32776);
  EXPECT_TRUE(owner.commands.empty());
  isPossible = true;
  RunIdle();
  bar->NotifyButton(32776);
  EXPECT_EQ(owner.commands, std::vector<int>{32776});
  EXPECT_EQ(toolkit.TakeLines(), Lines{"button 0"});
  EXPECT_TRUE(bar->GetButtons()[3].isRadio);
}

TEST_F(ToolBarTest, TheBarMayGoInTheMiddleOfWhatItAsksFor) {
  owner.then = [this] { bar.reset(); };
  bar->NotifyButton(32776);
  EXPECT_EQ(bar, nullptr);
  bar = std::make_unique<CToolBar>();
  bar->Create(kStyleChild, {}, &owner, 1);
  bar->AddDropDown(7, "", 0, [this] {
    bar.reset();
    return std::make_unique<CMenu>();
  });
  bar->NotifyDropDown(7);
  EXPECT_EQ(toolkit.TakeLines(), Lines{"buttons"});
  bar = std::make_unique<CToolBar>();
  bar->Create(kStyleChild, {}, &owner, 1);
  bar->AddButton(7, "", 0);
  bar->AddButton(8, "", 0);
  bar->SetUpdater([this](CToolBar::Button&) { bar.reset(); });
  RunIdle();
  EXPECT_EQ(bar, nullptr);
}

TEST_F(ToolBarTest, ButtonsBreakIntoRowsAtTheirWidth) {
  struct Row {
    int width;
    int height;
  };
  // 24 + 8 + 36 + 36 pixels
  for (const Row& row : {Row{1000, 24}, Row{104, 24}, Row{103, 48}, Row{67, 72}, Row{0, 96}}) {
    EXPECT_EQ(bar->GetHeightFor(row.width), row.height) << row.width;
  }
  bar->SetImages(CImageList({32, 32}));
  EXPECT_EQ(bar->GetHeightFor(1000), 40);
  EXPECT_EQ(CToolBar().GetHeightFor(100), 0);
  EXPECT_EQ(bar->GetButtonRect(9), Rect());
}

}  // namespace
}  // namespace tarn
