#include "widgets/PropertySheet.h"

#include <gtest/gtest.h>

#include <functional>

#include "support/AnsweringUser.h"
#include "widgets/Button.h"
#include "widgets/ComboBox.h"
#include "widgets/Edit.h"
#include "widgets/HyperlinkCtrl.h"
#include "widgets/Static.h"

namespace tarn {
namespace {

using Lines = std::vector<std::string>;

constexpr ControlRow kRows[] = {
    {1, ControlKind::Label, "Name:", {0, 0, 50, 20}},
    {2, ControlKind::Edit, "", {50, 0, 100, 20}, kEditAutoScroll},
    {3, ControlKind::RadioButton, "a", {0, 20, 50, 40}, 0, true},
    {4, ControlKind::RadioButton, "b", {50, 20, 100, 40}},
    {5, ControlKind::RadioButton, "c", {0, 40, 50, 60}, 0, true},
    {6, ControlKind::CheckBox, "d", {0, 60, 50, 80}},
    {7, ControlKind::PushButton, "...", {0, 60, 50, 80}},
    {8, ControlKind::DropDownList, "", {0, 60, 50, 80}},
    {9, ControlKind::Link, "Sheet", {0, 60, 50, 80}},
    {10, ControlKind::Frame, "", {0, 60, 50, 80}},
};
constexpr PageTemplate kTemplate = {107, {200, 100}, kRows};

class Page : public CPropertyPage {
 public:
  explicit Page(Lines& pageLines) : CPropertyPage(kTemplate), lines_(pageLines) {}
  bool offersFinish = true;

 protected:
  void OnInitDialog() override {
    lines_.push_back("init");
    FindControl<CEdit>(2)->SetControlText("proposed");
    SetHeader("Title", "Subtitle");
  }
  void OnSetActive() override {
    lines_.push_back("active");
    GetSheet()->EnableFinish(offersFinish);
  }
  void OnControl(int controlId) override { lines_.push_back("used " + std::to_string(controlId)); }
  void OnWizardFinish() override {
    lines_.push_back("finish " + FindControl<CEdit>(2)->GetControlText());
  }

 private:
  Lines& lines_;
};

struct Window : WindowTarget {
  std::intptr_t OnWindowMessage(std::uint32_t, std::intptr_t, std::intptr_t) override { return 0; }
};

struct PropertySheet : ::testing::Test {
  Window target;
  const WindowHandle window = RegisterWindow(target);
  test::AnsweringUser user{window};
  Lines lines;
  Page page{lines};
  CPropertySheet sheet{"New", window};

  void SetUp() override { sheet.SetPage(page); }
  void TearDown() override { UnregisterWindow(window); }
};

TEST_F(PropertySheet, OnlyAnEnabledFinishTakesTheDataOver) {
  const auto type = [](CPropertySheet& shown) {
    shown.GetPage()->FindControl<CEdit>(2)->NotifyTextEdited("typed", {});
  };
  const struct {
    const char* name;
    std::function<int(CPropertySheet&)> use;
    bool offersFinish;
    int result;
    Lines lines;
  } rows[] = {
      {"finish",
       [&](CPropertySheet& shown) { return type(shown), kSheetFinish; },
       true,
       kSheetFinish,
       {"init", "active", "finish typed"}},
      {"cancel",
       [&](CPropertySheet& shown) { return type(shown), kSheetCancel; },
       true,
       kSheetCancel,
       {"init", "active"}},
      {"a button that there isn't",
       [](CPropertySheet&) { return 1; },
       true,
       kSheetCancel,
       {"init", "active"}},
      {"finish that is disabled",
       [](CPropertySheet&) { return kSheetFinish; },
       false,
       kSheetCancel,
       {"init", "active"}},
      {"the windows are gone",
       [](CPropertySheet& shown) { return shown.DestroyWindow(), kSheetFinish; },
       true,
       kSheetCancel,
       {"init", "active"}},
      {"while it runs",
       [](CPropertySheet& shown) { return shown.DoModal(); },
       true,
       kSheetCancel,
       {"init", "active"}},
  };
  for (const auto& row : rows) {
    user.useSheet = row.use;
    page.offersFinish = row.offersFinish;
    lines.clear();
    EXPECT_EQ(sheet.DoModal(), row.result) << row.name;
    EXPECT_EQ(lines, row.lines) << row.name;
    EXPECT_FALSE(sheet.IsCreated()) << row.name;
    EXPECT_FALSE(page.IsCreated()) << row.name;
  }
  SetDialogResponder(window, nullptr);
  EXPECT_EQ(sheet.DoModal(), kSheetCancel) << "nobody to ask";
}

// Kind of a control, as text.
std::string KindOf(const CWnd& control) {
  if (const auto* text = dynamic_cast<const CStatic*>(&control)) {
    return text->GetKind() == StaticKind::Label ? "label" : "frame";
  }
  if (const auto* button = dynamic_cast<const CButton*>(&control)) {
    static constexpr const char* kNames[] = {"push", "check", "radio"};
    return kNames[static_cast<int>(button->GetKind())] +
           std::string(button->StartsGroup() ? "+" : "");
  }
  if (dynamic_cast<const CEdit*>(&control) != nullptr) return "edit";
  return dynamic_cast<const CComboBox*>(&control) != nullptr ? "list" : "link";
}

TEST_F(PropertySheet, ItsControlsAreThoseOfTheTableEachTime) {
  std::string seen;
  user.useSheet = [&](CPropertySheet& shown) {
    const CPropertyPage& body = *shown.GetPage();
    seen = shown.GetControlText() + "/" + body.GetHeaderTitle() + "/" + body.GetHeaderSubtitle();
    for (const CWnd* control : body.GetChildren()) {
      seen += " " + std::to_string(control->GetId()) + KindOf(*control) + ":" +
              control->GetControlText();
      EXPECT_EQ(control->GetRect(), kRows[control->GetId() - 1].rect);
      EXPECT_TRUE(control->IsVisible());
    }
    EXPECT_NE(body.FindControl<CEdit>(2)->GetStyle() & kEditAutoScroll, 0u);
    EXPECT_EQ(body.FindControl<CEdit>(3), nullptr) << "of another kind";
    body.FindControl<CEdit>(2)->NotifyTextEdited("typed", {});
    body.FindControl<CButton>(4)->NotifyClicked();
    body.FindControl<CButton>(3)->NotifyClicked();
    body.FindControl<CButton>(5)->NotifyClicked();
    EXPECT_FALSE(body.FindControl<CButton>(4)->IsChecked());
    EXPECT_TRUE(body.FindControl<CButton>(3)->IsChecked());
    return kSheetCancel;
  };
  for (int round = 0; round < 2; ++round) {
    lines.clear();
    sheet.DoModal();
    EXPECT_EQ(seen,
              "New/Title/Subtitle 1label:Name: 2edit:proposed 3radio+:a 4radio:b 5radio+:c "
              "6check:d 7push:... 8list: 9link:Sheet 10frame:");
    EXPECT_EQ(lines, (Lines{"init", "active", "used 4", "used 3", "used 5"}));
  }
}

}  // namespace
}  // namespace tarn
