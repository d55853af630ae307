// The options window with the real server and the installed example, tested through its widgets.
#include "hosts/desktop/OptionsWindow.h"

#include <tarn/commands.h>
#include <tarn/methods.h>

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <filesystem>
#include <optional>
#include <string>

#include "hosts/desktop/IdeWindow.h"
#include "hosts/desktop/OptionEditors.h"
#include "hosts/desktop/OptionsGrid.h"
#include "support/TestEnvironment.h"
#include "support/qt/WindowLoop.h"
#include "widgets/qt/QtToolkit.h"

namespace tarn::host {
namespace {

using testing::RunUntil;
using testing::ScratchFolder;

class IdeOptionsTest : public ::testing::Test {
 protected:
  IdeOptionsTest()
      : root("TARN_ROOT", testing::SourcePath("share").c_str()),
        settings("TARN_SETTINGS", (folder / "settings").c_str()) {
    std::filesystem::copy(testing::SourcePath("share/examples/blinky-avr"), folder / "blinky",
                          std::filesystem::copy_options::recursive);
    window.emplace(FileSystem::Native());
    EXPECT_TRUE(window->Start());
    window->show();
    window->OpenProject(folder / "blinky/blinky-avr.tprj");
    tester.emplace(&Grid().Model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(Select("led.c"), "led.c");
  }

  OptionsGrid& Grid() { return window->Options().Grid(); }
  template <class Widget>
  Widget* Find(const char* name) {
    return window->Options().findChild<Widget*>(name);
  }
  const OptionRow* Row(const std::string& key) {
    return Grid().Model().RowAt(Grid().Model().Find(key));
  }
  // Returns the displayed value and source.
  std::string Shown(const std::string& key) {
    const QModelIndex name = Grid().Model().Find(key);
    return (name.siblingAtColumn(1).data().toString() + "|" +
            name.siblingAtColumn(2).data().toString())
        .toStdString();
  }
  bool ComesToShow(const std::string& key, const std::string& text) {
    RunUntil([&] { return Shown(key) == text; });
    EXPECT_EQ(Shown(key), text) << key;
    return Shown(key) == text;
  }
  // Returns the label of the node that is shown after the selection.
  std::string Select(const std::string& node) {
    window->Session().Inspector().SelectNodeByKey(node);
    RunUntil([&] { return Label() == node; });
    return Label();
  }
  std::string Label() {
    const QModelIndex name = Grid().Model().Find(SetOf() + ".General.Header");
    return name.siblingAtColumn(1).data().toString().toStdString();
  }
  std::string SetOf() {
    const QModelIndex first = Grid().Model().index(0, 0, Grid().Model().index(0, 0));
    const OptionRow* const row = Grid().Model().RowAt(first);
    return row == nullptr ? std::string() : row->definition.set;
  }
  // Opens the editor of an option with the keyboard.
  template <class Editor>
  Editor* Edit(const std::string& key) {
    Grid().MakeCurrent(Grid().Model().Find(key));
    Grid().setFocus();
    QTest::keyClick(&Grid(), Qt::Key_F2);
    return Grid().viewport()->findChild<Editor*>();
  }
  void Write(const std::string& key, const QString& text) {
    QLineEdit* const line = Edit<QLineEdit>(key);
    ASSERT_NE(line, nullptr) << key;
    line->selectAll();
    QTest::keyClicks(line, text);
    QTest::keyClick(line, Qt::Key_Return);
  }
  void Choose(const std::string& key, const QString& label) {
    ChooseIn(Edit<QComboBox>(key), label);
  }
  void ChooseIn(QComboBox* combo, const QString& label) {
    ASSERT_NE(combo, nullptr);
    const int place = combo->findText(label);
    ASSERT_GE(place, 0) << label.toStdString();
    combo->setCurrentIndex(place);
    Q_EMIT combo->activated(place);
    Q_EMIT combo->textActivated(label);
  }
  void Press(const std::string& key, Qt::Key pressed) {
    Grid().MakeCurrent(Grid().Model().Find(key));
    QTest::keyClick(&Grid(), pressed);
  }
  bool IsStale(const std::string& node) {
    for (const ApplicationStatus& application : window->Session().GetStatus()) {
      for (const StaleNode& each : application.stale) {
        if (each.label == node) return true;
      }
    }
    return false;
  }
  void Build() {
    window->Commands().Run(TARN_CMD_BUILD_ALL);
    ASSERT_TRUE(RunUntil([&] { return !window->Commands().IsBuilding(); }));
  }

  ScratchFolder folder{"tarn-options-"};
  testing::ScopedVariable root;
  testing::ScopedVariable settings;
  QtToolkit toolkit;
  std::optional<IdeWindow> window;
  std::optional<QAbstractItemModelTester> tester;
};

TEST_F(IdeOptionsTest, AChangeMakesTheNodeStaleIsSavedAndCanBeTakenBack) {
  Build();
  EXPECT_FALSE(IsStale("led.c"));
  const std::string key = "C.Compiler.Optimize";
  EXPECT_EQ(Shown(key), "for size|blinky-avr");
  Choose(key, "for speed");
  ASSERT_TRUE(ComesToShow(key, "for speed|set here"));
  EXPECT_TRUE(IsStale("led.c"));
  EXPECT_FALSE(IsStale("main.c"));

  QAction* const undo = window->Options().UndoAction();
  EXPECT_EQ(undo->text(), "Undo: Optimization");
  // A menu may use the same shortcut for something else.
  QAction other;
  other.setShortcut(QKeySequence::Undo);
  QObject::connect(&other, &QAction::triggered, [] { ADD_FAILURE() << "not in the options"; });
  window->addAction(&other);
  QTest::keyClick(&Grid(), Qt::Key_Z, Qt::ControlModifier);
  ASSERT_TRUE(ComesToShow(key, "for size|blinky-avr"));
  EXPECT_FALSE(undo->isEnabled());
  // Redo from the window's menu while the focus is here.
  for (QAction* const top : window->menuBar()->actions()) {
    if (top->text() != "&Edit") continue;
    Q_EMIT top->menu()->aboutToShow();
    EXPECT_FALSE(top->menu()->actions().at(0)->isEnabled());
    EXPECT_EQ(top->menu()->actions().at(1)->text().remove('&'), "Redo: Optimization");
    top->menu()->actions().at(1)->trigger();
  }
  ASSERT_TRUE(ComesToShow(key, "for speed|set here"));
  Press(key, Qt::Key_Delete);
  ASSERT_TRUE(ComesToShow(key, "for size|blinky-avr"));
  undo->trigger();
  ASSERT_TRUE(ComesToShow(key, "for speed|set here"));

  window->Session().Manager().ProjectSave();
  EXPECT_NE(testing::ReadBytes(folder / "blinky/blinky-avr.tapp").find("Header=\"Optimize\""),
            std::string::npos);
}

TEST_F(IdeOptionsTest, AValueThatDoesNotFitStaysInItsFieldWithTheReason) {
  ASSERT_EQ(Select("blinky-avr"), "blinky-avr");
  const std::string key = "Application.Target.Clock";
  Write(key, "-5");
  const auto* const problem = Grid().viewport()->findChild<QLabel*>("problem");
  ASSERT_NE(problem, nullptr);
  EXPECT_TRUE(
      problem->text().startsWith("Invalid value \"-5\"; expected a whole number of at least 0"));
  QLineEdit* const line = Grid().viewport()->findChild<QLineEdit*>();
  ASSERT_NE(line, nullptr);
  EXPECT_EQ(line->text(), "-5");
  EXPECT_EQ(line->accessibleDescription(), problem->text());
  EXPECT_EQ(Shown(key), "16000000|set here");
  // Notifications about the same node don't discard the text either.
  window->Session().Manager().SavePropertyValue("Application", "Compiler", "Defines", "A=1");
  window->Session().Manager().Command(TARN_CMD_APPLY_OPTION_AND_REBUILD);
  ComesToShow("Application.Compiler.Defines", "A=1|set here");
  EXPECT_EQ(line->text(), "-5");
  line->selectAll();
  QTest::keyClicks(line, "8000000");
  EXPECT_EQ(Grid().viewport()->findChild<QLabel*>("problem"), nullptr);
  QTest::keyClick(line, Qt::Key_Return);
  ComesToShow(key, "8000000|set here");
}

TEST_F(IdeOptionsTest, EachConfigurationHasItsOwnValues) {
  const std::string key = "C.Compiler.Warnings";
  Choose(key, "all usual ones and more");
  ASSERT_TRUE(ComesToShow(key, "all usual ones and more|set here"));
  auto* const configurations = Find<QComboBox>("configurations");
  ChooseIn(configurations, "Debug");
  EXPECT_TRUE(RunUntil([&] { return configurations->currentText() == "Debug"; }));
  ComesToShow(key, "all usual ones|blinky-avr");
  ChooseIn(configurations, "Standard");
  ComesToShow(key, "all usual ones and more|set here");
}

TEST_F(IdeOptionsTest, ALevelFurtherOutSetsTheDefaultOfItsKindsOfFiles) {
  ASSERT_EQ(Select("Drivers"), "Drivers");
  auto* const sets = Find<QComboBox>("sets");
  ChooseIn(sets, "C source in Drivers");
  const std::string key = "C.Compiler.Extra";
  ASSERT_TRUE(RunUntil([&] { return Row(key) != nullptr; }));
  Write(key, "-fno-$(General.Header)");
  ASSERT_TRUE(ComesToShow(key, "-fno-$(General.Header)|set here"));
  ASSERT_EQ(Select("led.c"), "led.c");
  EXPECT_EQ(Shown(key), "-fno-led.c|Drivers");
  ASSERT_EQ(Select("main.c"), "main.c");
  EXPECT_EQ(Shown(key), "|");
}

TEST_F(IdeOptionsTest, KeysTurnAYesIntoANoAndAListStartsFromWhatIsInherited) {
  Press("C.Compiler.Debug", Qt::Key_Space);
  ASSERT_TRUE(ComesToShow("C.Compiler.Debug", "No|set here"));
  QLineEdit* const line = Edit<QLineEdit>("C.Directories.Include");
  ASSERT_NE(line, nullptr);
  EXPECT_EQ(line->text(), "$(Inherited)");
  // Opening the editor without a change sets nothing.
  QTest::keyClick(line, Qt::Key_Return);
  RunUntil([] { return false; }, 200);
  EXPECT_FALSE(Row("C.Directories.Include")->IsOwn());
}

TEST_F(IdeOptionsTest, WhileABuildRunsTheOptionsCanBeReadAndNotChanged) {
  // A value that is being edited is included.
  QTest::keyClicks(Edit<QLineEdit>("C.Compiler.Extra"), "-v");
  window->Commands().Run(TARN_CMD_REBUILD_ALL);
  ASSERT_TRUE(window->Commands().IsBuilding());
  EXPECT_TRUE(Find<QLabel>("notice")->isVisible());
  EXPECT_EQ(Edit<QComboBox>("C.Compiler.Optimize"), nullptr);
  Press("C.Compiler.Debug", Qt::Key_Space);
  EXPECT_EQ(Select("main.c"), "main.c");
  ASSERT_TRUE(RunUntil([&] { return !window->Commands().IsBuilding(); }));
  EXPECT_FALSE(Find<QLabel>("notice")->isVisible());
  EXPECT_EQ(Shown("C.Compiler.Debug"), "Yes|blinky-avr");
  EXPECT_NE(Edit<QComboBox>("C.Compiler.Optimize"), nullptr);
  EXPECT_EQ(Select("led.c"), "led.c");
  EXPECT_EQ(Shown("C.Compiler.Extra"), "-v|set here");
}

TEST_F(IdeOptionsTest, ABuildThatAnotherHasStartedKeepsItsNodesAsTheyAre) {
  auto& manager = window->Session().Manager();
  ASSERT_NE(manager.PrologCommand(TARN_CMD_REBUILD_ALL), 0);
  ASSERT_EQ(manager.Command(TARN_CMD_REBUILD_ALL), 2);
  Press("C.Compiler.Debug", Qt::Key_Space);
  EXPECT_EQ(window->Session().Options().GetUndoProperty(), "");
  ASSERT_TRUE(RunUntil([&] {
    return manager.EnableCommand(TARN_CMD_STOP) == 0 && !window->Commands().IsBuilding();
  }));
  ComesToShow("C.Compiler.Debug", "Yes|blinky-avr");
  Press("C.Compiler.Debug", Qt::Key_Space);
  ComesToShow("C.Compiler.Debug", "No|set here");
}

TEST_F(IdeOptionsTest, TheSearchFindsOptionsByLabelNameAndHelp) {
  const auto names = [&] {
    QStringList found;
    for (int i = 0; i < Grid().Model().rowCount(); ++i) {
      const QModelIndex section = Grid().Model().index(i, 0);
      EXPECT_TRUE(Grid().isExpanded(section));
      for (int k = 0; k < Grid().Model().rowCount(section); ++k) {
        found += Grid().Model().index(k, 0, section).data().toString();
      }
    }
    return found.join("|").toStdString();
  };
  struct Case {
    const char* words;
    const char* found;
  };
  for (const Case& each :
       {Case{"optimiz", "Optimization"}, Case{"compiler.EXTRA", "More arguments"},
        Case{"separated semicolons", "Symbols"},
        Case{"middle click", "Command for a middle double click"}, Case{"no such thing", ""}}) {
    Find<QLineEdit>("filter")->setText(each.words);
    EXPECT_EQ(names(), each.found);
  }
}

TEST_F(IdeOptionsTest, AnOptionThatAScriptHidesGoes) {
  const std::string key = "C.Compiler.Extra";
  ASSERT_NE(Row(key), nullptr);
  window->Session().Options().InvokeLong(TARN_OPT_HIDE_PROPERTY, {"C", "Compiler", "Extra", 1});
  EXPECT_TRUE(RunUntil([&] { return Row(key) == nullptr; }));
}

TEST_F(IdeOptionsTest, HowTheWindowLooksIsKeptForEachNode) {
  const auto section = [&](const char* key) { return Grid().Model().Find(key).parent(); };
  EXPECT_FALSE(Grid().isExpanded(section("C.Internal.Icon")));
  Grid().collapse(section("C.Build.OutputFile"));
  Grid().MakeCurrent(Grid().Model().Find("C.Compiler.Debug"));
  Select("main.c");
  Grid().expand(section("C.Build.OutputFile"));
  Grid().MakeCurrent(Grid().Model().Find("C.Compiler.Extra"));
  Select("led.c");
  EXPECT_FALSE(Grid().isExpanded(section("C.Build.OutputFile")));
  EXPECT_EQ(Grid().CurrentRow()->GetKey(), "C.Compiler.Debug");
}

TEST_F(IdeOptionsTest, ChangesAreTakenAlsoWhileTheOptionsOfAllNodesAreBeingRead) {
  NodeOptions options(window->Session());
  OptionsDriver& component = window->Session().Options();
  ASSERT_EQ(Select("main.c"), "main.c");
  const auto isFree = [&] { return component.ResetChangedProperty("C", "Compiler", "Extra") != 0; };
  ASSERT_TRUE(RunUntil(isFree));
  ASSERT_EQ(Select("led.c"), "led.c");
  component.BeginUpdate();
  const OptionDefinition option = Row("C.Compiler.Extra")->definition;
  EXPECT_TRUE(options.Set(option, "-v"));
  ComesToShow("C.Compiler.Extra", "-v|set here");
  EXPECT_EQ(component.SetChangedProperty("C", "Compiler", "Extra", "-w"), 0) << "is still held";
  component.EndUpdate();
  EXPECT_TRUE(options.Undo());
  EXPECT_FALSE(options.Undo());
  EXPECT_EQ(component.SetChangedProperty("C", "Compiler", "Extra", "-w"), 1) << "is not held";
}

TEST_F(IdeOptionsTest, WhatWasWrittenForOneNodeIsNotStoredAtTheNext) {
  Write("C.General.Type", "Nonsense");
  const auto* const problem = Grid().viewport()->findChild<QLabel*>("problem");
  ASSERT_NE(problem, nullptr);
  EXPECT_TRUE(problem->text().startsWith("Unknown node type \"Nonsense\"."));
  ASSERT_EQ(Select("main.c"), "main.c");
  RunUntil([] { return false; }, 10);
  EXPECT_EQ(Grid().viewport()->findChild<QLineEdit*>(), nullptr);
  QTest::keyClicks(Edit<QLineEdit>("C.Compiler.Extra"), "-v");
  tester.reset();
  window.reset();
}

TEST(OptionEditors, PathsBelowTheFolderAreWrittenRelativeToIt) {
  for (const auto& [path, written] : {std::pair{"/p/app/src", "src"},
                                      {"/p/app", "."},
                                      {"/p/application", "/p/application"},
                                      {"/q", "/q"}}) {
    EXPECT_EQ(WrittenPath(path, "/p/app/").toStdString(), written);
  }
}

TEST(OptionEditors, AListIsEditedLineByLine) {
  OptionRow row;
  row.kind = OptionKind::List;
  ListDialog dialog(row, "$(Inherited); A=1;;B", {}, nullptr);
  EXPECT_EQ(dialog.GetText(), "$(Inherited);A=1;B");
}

}  // namespace
}  // namespace tarn::host
