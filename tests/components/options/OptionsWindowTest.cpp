#include <tarn/methods.h>

#include <gtest/gtest.h>

#include "components/options/OptionsRig.h"
#include "components/options/PlainOptionsWindow.h"
#include "widgets/HostMessages.h"
#include "xml/XmlNode.h"

namespace tarn::options {
namespace {

class OptionsWindowTest : public ::testing::Test {
 protected:
  OptionsWindowTest() : rig(kSampleSets) { text = rig.Publish("C", "x.c", "", {}); }

  std::string State(const char* property, const char* attribute) {
    CXmlNode root;
    root.Load(rig.driver.InvokeText(TARN_OPT_LIST_PROPERTIES, {"C"}), g_xmlParseInfo);
    const CXmlNode* node = root.FindDescendantByAttr("Header", property);
    return node == nullptr ? "missing" : OrEmpty(node->GetAttrValue(attribute));
  }
  std::int32_t Change(const char* property, const char* value) {
    return rig.driver.InvokeLong(TARN_OPT_SET_CHANGED_PROPERTY, {"", "Compiler", property, value});
  }
  std::string Changed() { return rig.driver.InvokeText(TARN_OPT_GET_CHANGED_PROPERTY, {}); }

  OptionsRig rig;
  std::string text;
};

TEST_F(OptionsWindowTest, ListTellsWhatTheWindowNeeds) {
  EXPECT_EQ(State("Exclude", "Label"), "Leave out");
  EXPECT_EQ(State("Debug", "Command"), "33029");
  EXPECT_EQ(State("Level", "Command"), "33030");
  EXPECT_EQ(State("Debug", "Enabled") + State("Out", "Shown"), "YesNo");
  rig.Put("C", "Compiler", "Optimize", "2");
  rig.Put("C", "Compiler", "Level", "2");
  EXPECT_EQ(State("Debug", "Enabled") + State("Out", "Shown"), "NoYes");
  rig.driver.InvokeLong(TARN_OPT_HIDE_PROPERTY, {"c", "compiler", "level", 1});
  rig.driver.InvokeLong(TARN_OPT_ENABLE_PROPERTY, {"C", "Compiler", "Optimize", 0});
  EXPECT_EQ(State("Level", "Shown") + State("Optimize", "Enabled"), "NoNo");
  EXPECT_EQ(rig.driver.InvokeLong(TARN_OPT_GET_SWITCH_COUNT, {}), 2);
  rig.driver.InvokeLong(TARN_OPT_HIDE_PROPERTY, {"C", "Compiler", "Level", 1});
  EXPECT_EQ(rig.driver.InvokeLong(TARN_OPT_GET_SWITCH_COUNT, {}), 2) << "was hidden already";
  rig.driver.InvokeLong(TARN_OPT_HIDE_PROPERTY, {"C", "Compiler", "Level", 0});
  rig.driver.InvokeLong(TARN_OPT_ENABLE_PROPERTY, {"C", "Compiler", "Optimize", 1});
  rig.driver.InvokeLong(TARN_OPT_HIDE_SECTION, {"C", "Compiler", 1});
  EXPECT_EQ(State("Level", "Shown") + State("Exclude", "Shown"), "NoYes");
  rig.driver.InvokeLong(TARN_OPT_HIDE_SET, {"C", 1});
  EXPECT_EQ(State("Exclude", "Shown") + State("Optimize", "Enabled"), "NoYes");
}

TEST_F(OptionsWindowTest, ValuesAreCheckedAgainstTheirType) {
  const char* const rows[][3] = {
      {"Optimize", "S", ""},
      {"Optimize", "9", "Invalid value \"9\"; expected one of: s, 2."},
      {"Debug", "yes", ""},
      {"Debug", "1", "Invalid value \"1\"; expected Yes or No."},
      {"Level", "0x0F", ""},
      {"Level", "", ""},
      {"Level", "17",
       "Invalid value \"17\"; expected a whole number from 1 to 0x10, decimal or with the prefix "
       "0x."},
      {"Level", "0",
       "Invalid value \"0\"; expected a whole number from 1 to 0x10, decimal or with the prefix "
       "0x."},
      {"Level", "$(Compiler.Optimize)",
       "Invalid value \"s\"; expected a whole number from 1 to 0x10, decimal or with the prefix "
       "0x."},
      {"Count", "99999999999999999999",
       "Invalid value \"99999999999999999999\"; expected a whole number, decimal or with the "
       "prefix 0x."},
      {"Out", "a\nb", "A path must not contain a control character."},
      {"Unknown", "x", ""},
  };
  for (const auto& [property, value, wanted] : rows) {
    EXPECT_EQ(rig.Check(property, value), wanted) << value;
  }
  for (const char* value : {"0x", "0x-0", "-0x1", "1.5", "+1", "1 2", "0xG", "--1"}) {
    EXPECT_NE(rig.Check("Count", value), "") << value;
  }
  for (const char* value : {"0", "-1", "007", " 5 ", "0XFF", "9223372036854775807"}) {
    EXPECT_EQ(rig.Check("Count", value), "") << value;
  }
}

TEST_F(OptionsWindowTest, DisplayTextsAreThoseOfTheManual) {
  const char* const rows[][3] = {{"Debug", "yes", "Yes"},   {"Debug", "NO", "No"},
                                 {"Debug", "", "No"},       {"Level", "0x10", "0x10"},
                                 {"Include", "a;b", "a;b"}, {"Optimize", "s", "for size"}};
  for (const auto& [property, value, wanted] : rows) {
    rig.Put("C", "Compiler", property, value);
    EXPECT_EQ(rig.Display("", "Compiler", property), wanted) << value;
  }
  EXPECT_EQ(rig.Display("C", "General", "Header"), "x.c");
}

TEST_F(OptionsWindowTest, AChangeIsAnsweredUntilTheNextLoadAndNotMadeWhileHeld) {
  EXPECT_EQ(Change("Level", "3"), 1);
  EXPECT_EQ(Changed(), "C.Compiler.Level");
  EXPECT_EQ(Changed(), "C.Compiler.Level");
  rig.Publish("C", "x.c", "", {});
  EXPECT_EQ(Changed(), "");
  rig.driver.InvokeHelper(TARN_OPT_END_UPDATE, {});
  rig.driver.InvokeHelper(TARN_OPT_BEGIN_UPDATE, {});
  EXPECT_EQ(Change("Level", "4"), 0);
  rig.driver.InvokeHelper(TARN_OPT_END_UPDATE, {});
  EXPECT_EQ(Change("Level", "4"), 1);
  rig.driver.InvokeHelper(TARN_OPT_PROJECT_CLOSING, {});
  EXPECT_EQ(Changed() + rig.Get("C", "Compiler", "Level"), "");
}

TEST_F(OptionsWindowTest, UndoBelongsToTheNodeThatWasChanged) {
  Change("Level", "3");
  Change("Level", "4");
  rig.Publish("C", "other.c", "", {});
  EXPECT_EQ(rig.driver.InvokeText(TARN_OPT_UNDO, {}), "");
  rig.Publish("C", "x.c", "", {Stored("Debug", "C", "Compiler", "Level", "4")});
  EXPECT_EQ(rig.driver.InvokeText(TARN_OPT_UNDO, {}), "C.Compiler.Level");
  EXPECT_EQ(rig.Get("C", "Compiler", "Level") + Changed(), "3C.Compiler.Level");
  rig.driver.InvokeText(TARN_OPT_UNDO, {});
  EXPECT_EQ(rig.Origin("C", "Compiler", "Level"), "definition");
  EXPECT_EQ(rig.driver.InvokeText(TARN_OPT_UNDO, {}), "");
  rig.driver.InvokeText(TARN_OPT_REDO, {});
  EXPECT_EQ(rig.Get("C", "Compiler", "Level"), "3");
  Change("Level", "5");
  EXPECT_EQ(rig.driver.InvokeText(TARN_OPT_REDO, {}), "");
  rig.driver.InvokeHelper(TARN_OPT_PROJECT_CLOSING, {});
  EXPECT_EQ(rig.driver.InvokeText(TARN_OPT_UNDO, {}), "");
}

TEST_F(OptionsWindowTest, NodesOfOneNameInTwoPlacesAndConfigurationsHaveUndoOfTheirOwn) {
  const std::string one = rig.Publish("Application", "one", "", {});
  const std::string other = rig.Publish("Application", "other", "", {});
  const std::string drivers = rig.Publish("Group", "drivers", one, {});
  const std::string tests = rig.Publish("Group", "tests", one, {});
  const auto next = [this](const std::string& parent, const char* type, const char* config) {
    rig.Publish(type, "x.c", parent, {}, config);
    return rig.driver.InvokeText(TARN_OPT_GET_UNDO_PROPERTY, {});
  };
  next(one, "C", "Debug");
  Change("Level", "3");
  next(drivers, "Group", "Debug");
  rig.driver.InvokeLong(TARN_OPT_SET_CHANGED_PROPERTY, {"C", "Compiler", "Level", "4"});
  EXPECT_EQ(next(one, "C", "debug"), "C.Compiler.Level");
  EXPECT_EQ(next(one, "C", "Release"), "");
  EXPECT_EQ(next(other, "C", "Debug"), "");
  EXPECT_EQ(next(drivers, "Group", "Debug"), "C.Compiler.Level");
  EXPECT_EQ(next(tests, "Group", "Debug"), "");
  EXPECT_EQ(next(drivers, "C", "Debug"), "");
}

TEST_F(OptionsWindowTest, AResetIsAChangeThatCanBeUndone) {
  const auto next = [this] {
    return rig.driver.InvokeText(TARN_OPT_GET_UNDO_PROPERTY, {}) + "|" +
           rig.driver.InvokeText(TARN_OPT_GET_REDO_PROPERTY, {});
  };
  EXPECT_EQ(next(), "|");
  Change("Level", "3");
  EXPECT_EQ(rig.driver.InvokeLong(TARN_OPT_RESET_CHANGED_PROPERTY, {"", "Compiler", "Level"}), 1);
  EXPECT_EQ(rig.Origin("C", "Compiler", "Level") + Changed(), "definitionC.Compiler.Level");
  rig.driver.InvokeText(TARN_OPT_UNDO, {});
  EXPECT_EQ(rig.Get("C", "Compiler", "Level"), "3");
  EXPECT_EQ(next(), "C.Compiler.Level|C.Compiler.Level");
  rig.driver.InvokeText(TARN_OPT_REDO, {});
  EXPECT_EQ(rig.Origin("C", "Compiler", "Level"), "definition");
  EXPECT_EQ(next(), "C.Compiler.Level|");
  rig.driver.InvokeHelper(TARN_OPT_BEGIN_UPDATE, {});
  EXPECT_EQ(rig.driver.InvokeLong(TARN_OPT_RESET_CHANGED_PROPERTY, {"", "Compiler", "Level"}), 0);
}

TEST_F(OptionsWindowTest, ViewStateAndNewNameAreKeptOverALoad) {
  rig.driver.InvokeHelper(TARN_OPT_SET_PROP_STATE, {"open;<x> \xA7"});
  rig.driver.InvokeHelper(TARN_OPT_SET_NEW_CONFIG_NAME, {"Size"});
  rig.Publish("C", "y.c", "", {});
  EXPECT_EQ(rig.driver.InvokeText(TARN_OPT_GET_PROP_STATE, {}), "open;<x> \xA7");
  EXPECT_EQ(rig.driver.InvokeText(TARN_OPT_GET_NEW_CONFIG_NAME, {}) +
                rig.driver.InvokeText(TARN_OPT_GET_NEW_CONFIG_NAME, {}),
            "SizeSize");
}

TEST_F(OptionsWindowTest, TheWindowStandsOnceAHostHasAskedForIt) {
  EXPECT_EQ(rig.driver.InvokeLong(TARN_OPT_SHOW_OPTIONS, {0}), 0);
  const std::int32_t handle = rig.driver.InvokeLong(TARN_OPT_GET_PROPERTY_WINDOW, {});
  EXPECT_TRUE(IsWindow(handle));
  EXPECT_EQ(rig.driver.InvokeLong(TARN_OPT_GET_PROPERTY_WINDOW, {}), handle);
  EXPECT_EQ(rig.driver.InvokeLong(TARN_OPT_SHOW_OPTIONS, {0}), 1);
}

// The window as used by a toolkit, and the frame that receives its commands.
class PlainOptionsWindowTest : public OptionsWindowTest, private WindowTarget {
 protected:
  PlainOptionsWindowTest() : frame(RegisterWindow(*this)), window(rig.manager, frame) {
    window.Create(kStylePopup, {0, 0, 300, 400}, nullptr, 0);
  }
  ~PlainOptionsWindowTest() override { UnregisterWindow(frame); }

  std::intptr_t OnWindowMessage(std::uint32_t message, std::intptr_t wParam,
                                std::intptr_t) override {
    if (message == kMsgCommand) commands += std::to_string(wParam) + " ";
    return 1;
  }
  int RowOf(const std::string& label) {
    const int count = window.GetReport().GetRows().GetCount();
    for (int row = 0; row < count; ++row) {
      if (window.GetReport().GetItemAt(row, 0)->GetCaption() == label) return row;
    }
    return -1;
  }
  std::string Shown(const std::string& label) {
    const CReportControl& report = window.GetReport();
    return report.GetItemAt(RowOf(label), 1)->GetCaption() + "|" +
           report.GetItemAt(RowOf(label), 2)->GetCaption();
  }
  void Type(const std::string& label, const std::string& value) {
    window.GetReport().NotifyEdited(RowOf(label), 1, value);
    MessageLoop::ForCurrentThread()->Pump();
  }

  WindowHandle frame;
  PlainOptionsWindow window;
  std::string commands;
};

TEST_F(PlainOptionsWindowTest, ValuesAreTypedAndTakenAwayByTheCommandsOfTheirOptions) {
  EXPECT_EQ(Shown("Optimize"), "for size|default");
  EXPECT_EQ(RowOf("Out"), -1) << "is hidden";
  Type("Level", "$(Compiler.Optimize)");
  EXPECT_EQ(window.GetNote(),
            "Invalid value \"s\"; expected a whole number from 1 to 0x10, decimal or with the "
            "prefix 0x.");
  EXPECT_EQ(Shown("Level") + commands, "|default");
  Type("Level", "2");
  Type("Debug", "Yes");
  Type("Optimize", "for speed");
  EXPECT_EQ(commands, "33030 33029 33030 ");
  EXPECT_EQ(rig.Get("C", "Compiler", "Optimize"), "2");
  window.Refill();
  EXPECT_EQ(Shown("Optimize") + Shown("Level"), "for speed|set here2|set here");
  EXPECT_NE(RowOf("Out"), -1) << "shows with Level=2";
  commands.clear();
  window.GetReport().SelectRow(RowOf("Optimize"));
  window.GetReport().NotifyKey({kKeyDelete});
  window.GetReport().SelectRow(RowOf("Level"));
  window.GetReport().NotifyKey({kKeyDelete});
  MessageLoop::ForCurrentThread()->Pump();
  EXPECT_EQ(commands, "33050 ") << "one of them can't be taken away";
  rig.driver.InvokeHelper(TARN_OPT_BEGIN_UPDATE, {});
  rig.Put("C", "Compiler", "Count", "7");
  window.Refill();
  Type("Count", "1");
  EXPECT_EQ(Shown("Count"), "|default");
  EXPECT_EQ(window.GetNote(), "Options can't be changed now.");
  rig.driver.InvokeHelper(TARN_OPT_END_UPDATE, {});
  window.Refill();
  EXPECT_EQ(Shown("Count"), "7|set here");
}

}  // namespace
}  // namespace tarn::options
