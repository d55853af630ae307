#include <gtest/gtest.h>

#include <functional>

#include "support/RecordingToolkit.h"
#include "widgets/Button.h"
#include "widgets/ComboBox.h"
#include "widgets/HyperlinkCtrl.h"

namespace tarn {
namespace {

using Lines = std::vector<std::string>;

// Records the notifications of its controls, with their state at that moment.
class Panel : public CWnd {
 public:
  explicit Panel(Lines& panelLines) : lines_(panelLines) {}
  ~Panel() override { DestroyWindow(); }
  std::function<void()> then;

 protected:
  std::intptr_t OnMessage(std::uint32_t message, std::intptr_t wParam,
                          std::intptr_t lParam) override {
    EXPECT_EQ(message, kMsgControlUsed);
    EXPECT_EQ(lParam, FindChild(static_cast<int>(wParam))->GetHandle());
    lines_.push_back("used " + std::to_string(wParam));
    if (then) then();
    return 0;
  }

 private:
  Lines& lines_;
};

// A toolkit whose peers record the changes of each control.
class ControlToolkit : public test::RecordingToolkit {
 public:
  using RecordingToolkit::MakePeer;
  std::unique_ptr<ButtonPeer> MakePeer(CButton& button) override {
    struct Peer : ButtonPeer {
      Peer(CButton& peerButton, Lines& peerLines) : button(peerButton), lines(peerLines) {}
      void OnCheckChanged() override {
        lines.push_back("check " + std::to_string(button.GetId()) +
                        (button.IsChecked() ? " on" : " off"));
      }
      CButton& button;
      Lines& lines;
    };
    return std::make_unique<Peer>(button, lines);
  }
  std::unique_ptr<ComboBoxPeer> MakePeer(CComboBox&) override {
    struct Peer : ComboBoxPeer {
      explicit Peer(Lines& peerLines) : lines(peerLines) {}
      void OnEntriesChanged() override { lines.push_back("entries"); }
      void OnSelectionChanged() override { lines.push_back("selection"); }
      Lines& lines;
    };
    return std::make_unique<Peer>(lines);
  }
};

struct Controls : ::testing::Test {
  ControlToolkit toolkit;
  Panel panel{toolkit.lines};
  CButton push{ButtonKind::Push};
  CButton box{ButtonKind::CheckBox};
  CButton stray{ButtonKind::Radio};
  CButton first{ButtonKind::Radio, true};
  CButton second{ButtonKind::Radio};
  CButton other{ButtonKind::Radio, true};
  CComboBox list;
  CHyperlinkCtrl link;

  void SetUp() override {
    panel.Create(kStylePopup | kStyleVisible, {0, 0, 100, 100}, nullptr, 0);
    int id = 0;
    for (CWnd* each :
         std::initializer_list<CWnd*>{&push, &box, &stray, &first, &second, &other, &list, &link}) {
      each->Create(kStyleChild | kStyleVisible, {}, &panel, ++id);
    }
  }
};

TEST_F(Controls, WhatTheUserDoesIsToldOnceAndWhatTheProgramDoesNotAtAll) {
  list.AddString("Atmel AVR");
  list.AddString("ATmega");
  other.SetCheck(true);
  stray.SetCheck(true);
  toolkit.TakeLines();
  const struct {
    const char* name;
    std::function<void()> act;
    Lines reported;
  } rows[] = {
      {"push", [&] { push.NotifyClicked(); }, {"used 1"}},
      {"a button to push has no mark", [&] { push.SetCheck(true); }, {}},
      {"tick", [&] { box.NotifyClicked(); }, {"check 2 on", "used 2"}},
      {"tick again", [&] { box.NotifyClicked(); }, {"check 2 off", "used 2"}},
      {"the program ticks", [&] { box.SetCheck(true); }, {"check 2 on"}},
      {"... what is ticked", [&] { box.SetCheck(true); }, {}},
      {"first of a group", [&] { first.NotifyClicked(); }, {"check 4 on", "used 4"}},
      {"the other one", [&] { second.NotifyClicked(); }, {"check 4 off", "check 5 on", "used 5"}},
      {"the same", [&] { second.NotifyClicked(); }, {"used 5"}},
      {"the program chooses", [&] { first.SetCheck(true); }, {"check 5 off", "check 4 on"}},
      {"choose an entry", [&] { list.NotifySelected(1); }, {"selection", "used 7"}},
      {"choose it again", [&] { list.NotifySelected(1); }, {}},
      {"no entry", [&] { list.NotifySelected(2); }, {}},
      {"no entry either", [&] { list.NotifySelected(-1); }, {}},
      {"the program selects none", [&] { list.SetCurSel(7); }, {"selection"}},
      {"a link to nowhere", [&] { link.NotifyClicked(); }, {}},
      {"a link",
       [&] {
         link.SetAddress("https://a/b c;d");
         link.NotifyClicked();
       },
       {"open https://a/b c;d"}},
  };
  for (const auto& row : rows) {
    row.act();
    EXPECT_EQ(toolkit.TakeLines(), row.reported) << row.name;
  }
  EXPECT_TRUE(stray.IsChecked());
  EXPECT_TRUE(other.IsChecked());
}

TEST_F(Controls, WhatIsDisabledOrOutOfSightCanNotBeUsed) {
  list.AddString("a");
  link.SetAddress("https://a");
  const auto useAll = [&] {
    push.NotifyClicked();
    box.NotifyClicked();
    first.NotifyClicked();
    list.NotifySelected(0);
    link.NotifyClicked();
  };
  const auto each = [&](const std::function<void(CWnd&)>& act) {
    for (CWnd* control : std::initializer_list<CWnd*>{&push, &box, &first, &list, &link}) {
      act(*control);
    }
  };
  toolkit.TakeLines();
  each([](CWnd& control) { control.EnableWindow(false); });
  useAll();
  each([](CWnd& control) { control.EnableWindow(true); });
  each([](CWnd& control) { control.ShowWindow(false); });
  useAll();
  panel.DestroyWindow();
  each([](CWnd& control) { control.ShowWindow(true); });
  useAll();
  EXPECT_EQ(toolkit.TakeLines(), Lines{});
}

TEST_F(Controls, ABeginningSelectsTheFirstThatHasItWhateverItsCase) {
  for (const char* entry : {"Library", "Application 8051", "application", "App"}) {
    list.AddString(entry, entry);
  }
  const struct {
    const char* beginning;
    int answer;
    int selected;
  } rows[] = {{"APP", 1, 1}, {"Application", 1, 1},     {"application x", -1, 1},
              {"lib", 0, 0}, {"Applicationx", -1, 0},   {"app", 1, 1},
              {"", 0, 0},    {"application 8051", 1, 1}};
  for (const auto& row : rows) {
    EXPECT_EQ(list.SelectString(row.beginning), row.answer) << row.beginning;
    EXPECT_EQ(list.GetCurSel(), row.selected) << row.beginning;
  }
  EXPECT_STREQ(static_cast<const char*>(list.GetItemData(3)), "App");
  EXPECT_EQ(list.GetItemData(4), nullptr);
  EXPECT_EQ(list.GetText(-1), "");
  list.ResetContent();
  EXPECT_EQ(list.GetCurSel(), -1);
  EXPECT_EQ(list.SelectString(""), -1);
}

TEST_F(Controls, AnOwnerMayDestroyTheWindowsWhenNotified) {
  panel.then = [&] { panel.DestroyWindow(); };
  second.NotifyClicked();
  EXPECT_FALSE(second.IsCreated());
  EXPECT_EQ(toolkit.TakeLines(), (Lines{"check 5 on", "used 5"}));
}

}  // namespace
}  // namespace tarn
