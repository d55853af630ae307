#include "widgets/RichTextCtrl.h"

#include <gtest/gtest.h>

#include "support/RecordingToolkit.h"

namespace tarn {
namespace {

using Lines = std::vector<std::string>;

std::string ToString(TextRange range) {
  return std::to_string(range.start) + "-" + std::to_string(range.end);
}

class RichTextToolkit : public test::RecordingToolkit {
 public:
  using RecordingToolkit::MakePeer;
  std::unique_ptr<RichTextPeer> MakePeer(CRichTextCtrl& control) override {
    struct Peer : RichTextPeer {
      Peer(RichTextToolkit& owner, CRichTextCtrl& drawn) : toolkit(owner), control(drawn) {}
      void OnTextAppended(TextRange range) override {
        toolkit.lines.push_back("appended " + ToString(range));
      }
      void OnTextReplaced() override {
        toolkit.lines.push_back("replaced " + std::to_string(control.GetText().size()));
      }
      void OnSelectionChanged() override {
        toolkit.lines.push_back("selected " + ToString(control.GetSelection()));
      }
      bool HitTest(Point, std::optional<std::size_t>& position) override {
        position = toolkit.hit;
        return toolkit.hit.has_value();
      }
      RichTextToolkit& toolkit;
      CRichTextCtrl& control;
    };
    return std::make_unique<Peer>(*this, control);
  }
  std::optional<std::size_t> hit;
};

struct RichTextCtrlTest : ::testing::Test {
  RichTextToolkit toolkit;
  std::unique_ptr<CRichTextCtrl> control = std::make_unique<CRichTextCtrl>();

  RichTextCtrlTest() { control->Create(kStylePopup, {0, 0, 100, 100}, nullptr, 1); }
  void AddLine(const std::string& text) { control->AppendRichText("{\\rtf1 " + text + "\\par }"); }
  void AddLink(const std::string& target, const std::string& text) {
    AddLine("{\\field{\\*\\fldinst { HYPERLINK " + target + " }} {\\fldrslt " + text + "}}");
  }
};

TEST_F(RichTextCtrlTest, LinesStandOneBelowTheOther) {
  AddLine("ab");
  control->SetSelection({1, 2});
  AddLine("c");
  AddLine("");
  EXPECT_EQ(control->GetText(), "ab\nc\n\n\n");
  EXPECT_EQ(toolkit.TakeLines(),
            (Lines{"appended 0-3", "selected 3-3", "selected 1-2", "appended 3-5", "selected 5-5",
                   "appended 5-6", "selected 6-6"}));
  control->Clear();
  control->Clear();
  EXPECT_EQ(control->GetText(), "\n");
  EXPECT_TRUE(control->GetRuns().empty());
  AddLine("d");
  EXPECT_EQ(control->GetText(), "d\n\n");
  EXPECT_EQ(toolkit.TakeLines(), (Lines{"replaced 1", "appended 0-2", "selected 2-2"}));
}

TEST_F(RichTextCtrlTest, WhatIsSelectedIsCopiedAndCut) {
  AddLine("one");
  AddLink("t", "two");
  AddLine("\\b three");
  toolkit.TakeLines();
  control->Copy();
  control->Cut();
  control->NotifySelected({2, 11});
  control->Copy();
  control->Cut();
  control->Cut();
  EXPECT_EQ(toolkit.TakeLines(),
            (Lines{"clipboard e\ntwo\nthr", "clipboard e\ntwo\nthr", "replaced 6"}));
  EXPECT_EQ(control->GetText(), "onee\n\n");
  EXPECT_EQ(control->GetSelection(), (TextRange{2, 2}));
  ASSERT_EQ(control->GetRuns().size(), 2u);
  EXPECT_EQ(control->GetRuns()[1].range, (TextRange{2, 5}));
  EXPECT_TRUE(control->GetRuns()[1].isBold);
  control->SetSelection({0, 99});
  control->Cut();
  EXPECT_EQ(control->GetText(), "\n") << "the last character stays";
  AddLine("ab");
  AddLink("t", "xyz");
  control->SetSelection({1, 2});
  control->Cut();
  EXPECT_EQ(control->GetRuns()[1].range, (TextRange{2, 5}));
}

TEST_F(RichTextCtrlTest, MouseEventsOverALinkCarryItsTarget) {
  Lines events;
  control->SetLinkHandler([&events](const std::string& target, const MouseEvent& event) {
    events.push_back(target + " " + std::to_string(static_cast<int>(event.action)));
  });
  AddLine("ab");
  AddLink("t", "xyz");
  const auto release = [this](int x, int y) {
    control->NotifyMouse({MouseAction::Release, MouseButton::Left, {x, y}, false, false});
  };
  release(0, 20);
  release(23, 31);
  for (const Point& point : {Point{0, 15}, {24, 20}, {-1, 20}, {0, -1}, {0, 32}, {0, 900000}}) {
    release(point.x, point.y);
  }
  control->NotifyMouse({MouseAction::Press, MouseButton::Right, {8, 16}, false, false});
  EXPECT_EQ(events, (Lines{"t 1", "t 1", "t 0"}));
  toolkit.hit = 4;  // the peer overrides the control's own hit test
  release(0, 0);
  toolkit.hit = 99;
  release(0, 20);
  EXPECT_EQ(events.size(), 4u);
  control->NotifyLinkKey(3);
  control->NotifyLinkKey(2);
  EXPECT_EQ(events.size(), 5u);
  EXPECT_EQ(events.back(), "t 1");
}

TEST_F(RichTextCtrlTest, AClickMayEndTheControl) {
  AddLink("target", "x");
  std::string seen;
  control->SetLinkHandler([&](const std::string& target, const MouseEvent&) {
    control.reset();
    seen = target;
  });
  control->NotifyMouse({MouseAction::Release, MouseButton::Left, {0, 0}, false, false});
  EXPECT_EQ(seen, "target");
}

}  // namespace
}  // namespace tarn
