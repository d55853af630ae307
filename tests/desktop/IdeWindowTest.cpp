// The main window with the real server, tools and compiler, on a copy of the installed example.
#include "hosts/desktop/IdeWindow.h"

#include <tarn/commands.h>

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QDockWidget>
#include <QHeaderView>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <filesystem>
#include <string>

#include "desktop/IdeFixture.h"
#include "hosts/desktop/Banner.h"
#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/EditorArea.h"
#include "hosts/desktop/OptionsGrid.h"
#include "hosts/desktop/OptionsWindow.h"
#include "hosts/desktop/RecentProjects.h"
#include "support/qt/WindowLoop.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {
namespace {

using testing::RunUntil;

using IdeWindowTest = testing::IdeFixture;

TEST_F(IdeWindowTest, AMenuBuildsTheProjectWhileTheLoopRunsAndStopIsOnlyThereMeanwhile) {
  EXPECT_FALSE(FindEntry("Stop")->isEnabled());
  int heartbeats = 0;
  QTimer heart;
  QObject::connect(&heart, &QTimer::timeout, &heart, [&] { ++heartbeats; });
  heart.start(5);
  ASSERT_TRUE(Choose("Build all"));
  EXPECT_TRUE(window->Commands().IsBuilding());
  EXPECT_TRUE(FindEntry("Stop")->isEnabled());
  EXPECT_FALSE(FindEntry("Build all")->isEnabled());
  ASSERT_TRUE(RunUntil([&] { return !window->Commands().IsBuilding(); }));
  EXPECT_TRUE(IsBuilt("blinky-avr.elf"));
  EXPECT_GT(heartbeats, 5);
  EXPECT_FALSE(FindEntry("Stop")->isEnabled());
}

TEST_F(IdeWindowTest, TheStatusBarFollowsABuildAndLeadsToItsLog) {
  window->statusBar()->showMessage("a message from before");
  ASSERT_TRUE(Choose("Build all"));
  auto* const stop = window->statusBar()->findChild<QToolButton*>("stopBuild");
  bool isSeenThroughout = true;
  ASSERT_TRUE(RunUntil([&] {
    if (!window->Commands().IsBuilding()) return true;
    isSeenThroughout = isSeenThroughout && stop->isVisible();
    return false;
  }));
  EXPECT_TRUE(isSeenThroughout);
  EXPECT_FALSE(stop->isVisible());
  const BuildProgress& progress = *window->Commands().GetProgress();
  EXPECT_EQ(progress.GetNumber(), 6);
  EXPECT_EQ(progress.GetTotal(), 6);
  auto* const outcome = window->statusBar()->findChild<QToolButton*>("buildOutcome");
  EXPECT_TRUE(outcome->text().startsWith("Build succeeded: 1 warning"))
      << outcome->text().toStdString();
  auto* const log = window->findChild<QDockWidget*>("dock4004");
  log->close();
  outcome->click();
  EXPECT_TRUE(log->isVisible());
  EXPECT_EQ(QApplication::focusWidget(), log->findChild<QPlainTextEdit*>());
  ASSERT_TRUE(Choose("Build all"));
  ASSERT_TRUE(RunUntil([&] { return !window->Commands().IsBuilding(); }));
  EXPECT_TRUE(outcome->text().startsWith("Nothing to do")) << outcome->text().toStdString();
}

TEST_F(IdeWindowTest, ClosingStopsABuildFirstAndThenCloses) {
  ASSERT_TRUE(Choose("Build all"));
  // The build must have started, which takes a while on a busy computer.
  ASSERT_TRUE(RunUntil([&] { return !window->Commands().IsWaiting(); }));
  window->close();
  EXPECT_TRUE(window->isVisible());
  EXPECT_TRUE(RunUntil([&] { return !window->isVisible(); }));
  EXPECT_FALSE(window->Commands().IsBuilding());
  EXPECT_FALSE(IsBuilt("blinky-avr.elf"));
}

TEST_F(IdeWindowTest, ClosingDuringABuildAsksOnceForEachText) {
  window->OpenPaths({folder / "blinky/src/main.c"});
  ASSERT_TRUE(Choose("Build all"));
  ASSERT_TRUE(RunUntil([&] { return !window->Commands().IsWaiting(); }));
  window->Editors().Current()->append("// more\n");
  int questions = 0;
  QTimer answer;
  QObject::connect(&answer, &QTimer::timeout, &answer, [&questions] {
    auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr) return;
    ++questions;
    box->button(QMessageBox::Discard)->click();
  });
  answer.start(20);
  window->close();
  EXPECT_TRUE(RunUntil([&] { return !window->isVisible(); }));
  EXPECT_EQ(questions, 1);
}

TEST_F(IdeWindowTest, ABuildThatStillWaitsForTheOptionsOfALargeProjectCanBeStoppedAndClosed) {
  std::vector<BuildEnd> ends;
  const auto follow = window->Commands().onEnded;
  window->Commands().onEnded = [&](BuildEnd how) {
    ends.push_back(how);
    follow(how);
  };
  ASSERT_NO_FATAL_FAILURE(MakeLarge());
  for (int round = 0; round < 2; ++round) {
    window->Commands().Run(TARN_CMD_BUILD_ALL);
    ASSERT_TRUE(window->Commands().IsBuilding());
    EXPECT_FALSE(window->Commands().IsStopping()) << round;
    if (round == 0) window->Commands().Stop();
  }
  window->close();
  EXPECT_FALSE(window->isVisible());
  EXPECT_FALSE(window->Commands().IsBuilding());
  EXPECT_EQ(ends, std::vector<BuildEnd>(2, BuildEnd::Stopped));
  EXPECT_FALSE(IsBuilt("blinky-avr.obj/src/main.c.o"));
}

TEST_F(IdeWindowTest, WhatWasBuiltInAnotherWindowIsNotBuiltAgain) {
  const auto build = [&] {
    EXPECT_TRUE(Choose("Build all"));
    EXPECT_TRUE(RunUntil([&] { return !window->Commands().IsBuilding(); }));
    return std::filesystem::last_write_time(folder / "blinky/build/Standard/blinky-avr.elf");
  };
  const auto reopen = [&] {
    window.reset();
    window.emplace(FileSystem::Native());
    EXPECT_TRUE(window->Start());
    window->OpenProject(folder / "blinky/blinky-avr.tprj");
  };
  const auto first = build();
  reopen();
  EXPECT_EQ(build(), first) << "built at once, before all options are known";
  reopen();
  RunUntil([] { return false; }, 500);
  EXPECT_EQ(build(), first) << "built when the options are known";
}

TEST_F(IdeWindowTest, AProjectThatTheServerOpensByItselfIsTheOneWhoseStateIsKept) {
  const std::string second = folder / "second/blinky-avr.tprj";
  std::filesystem::copy(folder / "blinky", folder / "second",
                        std::filesystem::copy_options::recursive);
  ASSERT_NE(window->Session().Manager().ProjectOpen(second), 0);
  EXPECT_TRUE(RunUntil([&] { return window->Session().GetProjectPath() == second; }));
}

TEST_F(IdeWindowTest, AScriptsBuildLeavesTheWindowAliveAndTellsTheScriptHowItEnded) {
  int heartbeats = 0;
  QTimer heart;
  QObject::connect(&heart, &QTimer::timeout, &heart, [&] { ++heartbeats; });
  heart.start(5);
  folder.Write("build.lua",
               "local how, good = host.build()\n"
               "tarn.ReportMessage('script: ' .. how .. ' ' .. good)\n");
  ASSERT_NE(window->Session().Manager().ExecuteScript(folder / "build.lua"), 0);
  EXPECT_TRUE(IsBuilt("blinky-avr.elf"));
  EXPECT_GT(heartbeats, 5);
  const auto* const log = window->findChild<QPlainTextEdit*>();
  EXPECT_TRUE(RunUntil([&] { return log->toPlainText().contains("script: succeeded 6"); }))
      << log->toPlainText().toStdString();
}

TEST_F(IdeWindowTest, AWindowThatAScriptAsksForStaysInItsDock) {
  const QWidget* const log = window->findChild<QDockWidget*>("dock4004")->widget();
  const auto docks = window->findChildren<QDockWidget*>().size();
  folder.Write("windows.lua", "tarn.GetProjectWindow()\ntarn.GetOutputWindow()\n");
  ASSERT_NE(window->Session().Manager().ExecuteScript(folder / "windows.lua"), 0);
  EXPECT_EQ(window->findChildren<QDockWidget*>().size(), docks);
  EXPECT_EQ(window->findChild<QDockWidget*>("dock4004")->widget(), log);
  EXPECT_NE(log, nullptr);
}

TEST_F(IdeWindowTest, ClosingEndsAScriptWithTheBuildThatItWaitsFor) {
  int starts = 0;
  const auto follow = window->Commands().onStarted;
  window->Commands().onStarted = [&] {
    follow();
    if (++starts == 1) QTimer::singleShot(0, [this] { window->close(); });
  };
  folder.Write("twice.lua", "host.build()\nhost.build()\n");
  ASSERT_NE(window->Session().Manager().ExecuteScript(folder / "twice.lua"), 0);
  EXPECT_EQ(starts, 1);
  EXPECT_FALSE(window->isVisible());
  EXPECT_FALSE(window->Session().Scripts().IsRunning());
}

TEST_F(IdeWindowTest, ABuildRefusedAfterItsPrologEndsImmediately) {
  std::optional<BuildEnd> ended;
  window->Commands().onEnded = [&](BuildEnd end) { ended = end; };
  // A different build is started in between, and the user agrees to stop it when the server asks.
  window->Frame().SetHandler(kMsgBuildStarting, [&](const HostMessageEvent&) {
    window->Frame().SetHandler(kMsgBuildStarting, {});
    window->Session().Manager().Command(TARN_CMD_BUILD_ALL);
    testing::PressInNextBox(QMessageBox::Ok);
    return std::intptr_t{1};
  });
  window->Commands().Run(TARN_CMD_REBUILD_ALL);
  ASSERT_TRUE(RunUntil([&] { return ended.has_value(); }));
  EXPECT_EQ(ended, BuildEnd::Refused);
  EXPECT_FALSE(window->Commands().IsBuilding());
  bool isOtherGone = false;
  window->Frame().SetHandler(kMsgWorkerEnded, [&](const HostMessageEvent&) {
    isOtherGone = true;
    return std::intptr_t{1};
  });
  ASSERT_TRUE(RunUntil([&] { return isOtherGone; }));
  ASSERT_TRUE(Choose("Build all"));
  EXPECT_TRUE(RunUntil([&] { return ended != BuildEnd::Refused; }));
  EXPECT_EQ(ended, BuildEnd::Succeeded);
}

TEST_F(IdeWindowTest, TheLayoutIsKeptUnlessItsFileIsDamagedAndCanBeResetTo) {
  const auto dock = [&] { return window->findChild<QDockWidget*>("dock4006"); };
  const auto reopen = [&] {
    window->close();
    window.emplace(FileSystem::Native());
    EXPECT_TRUE(window->Start());
    window->show();
    window->OpenProject(folder / "blinky/blinky-avr.tprj");
  };
  dock()->close();
  window->addDockWidget(Qt::RightDockWidgetArea, window->findChild<QDockWidget*>("dock4004"));
  const auto nameShare = [&] {
    OptionsGrid& grid = window->Options().Grid();
    return static_cast<double>(grid.columnWidth(0)) / grid.viewport()->width();
  };
  const auto helpShare = [&] {
    const QList<int> sizes = window->Options().findChild<QSplitter*>()->sizes();
    return static_cast<double>(sizes[1]) / (sizes[0] + sizes[1]);
  };
  OptionsGrid& grid = window->Options().Grid();
  grid.header()->resizeSection(0, grid.viewport()->width() / 5);
  window->Options().findChild<QSplitter*>()->setSizes({100, 100});
  reopen();
  EXPECT_NEAR(nameShare(), 0.2, 0.05);
  EXPECT_NEAR(helpShare(), 0.5, 0.05);
  EXPECT_TRUE(dock()->isHidden());
  EXPECT_EQ(window->dockWidgetArea(window->findChild<QDockWidget*>("dock4004")),
            Qt::RightDockWidgetArea);
  ASSERT_TRUE(Choose("Reset layout"));
  EXPECT_FALSE(dock()->isHidden());
  EXPECT_EQ(window->dockWidgetArea(window->findChild<QDockWidget*>("dock4004")),
            Qt::BottomDockWidgetArea);
  EXPECT_NEAR(nameShare(), 0.4, 0.05);
  EXPECT_LT(helpShare(), 0.4);
  dock()->close();
  window->close();
  folder.Write("settings/user/desktop.ini", "[window\nstate=@ByteArray(\\xff\\x0 damaged\n\0=");
  reopen();
  EXPECT_FALSE(dock()->isHidden());
  EXPECT_NEAR(nameShare(), 0.4, 0.05);
  EXPECT_LT(helpShare(), 0.4);
}

TEST_F(IdeWindowTest, AKeyLeadsThroughAllPartsOfTheWindowThatAreSeen) {
  const auto pane = [&]() -> QString {
    for (QWidget* each = QApplication::focusWidget(); each != nullptr;
         each = each->parentWidget()) {
      if (qobject_cast<QDockWidget*>(each) != nullptr) return each->objectName();
      if (each == window->centralWidget()) return "editors";
    }
    return "nowhere";
  };
  const auto walk = [&](Qt::KeyboardModifiers keys) {
    QStringList visited;
    for (int i = 0; i < 4; ++i) {
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_F6, keys);
      visited += pane();
    }
    return FromQt(visited.join(' '));
  };
  window->findChild<QDockWidget*>("dock4004")->raise();
  QTest::qWait(20);
  Tree().setFocus();
  const std::string options = FromQt(window->Options().parentWidget()->objectName());
  EXPECT_EQ(walk({}), "dock4004 " + options + " editors dock4003");
  ASSERT_TRUE(window->Editors().OpenFile(folder / "blinky/src/main.c", 1));
  Tree().setFocus();
  EXPECT_EQ(walk(Qt::ShiftModifier), "editors " + options + " dock4004 dock4003");
  EXPECT_EQ(QApplication::focusWidget(), &Tree());
  window->Options().parentWidget()->hide();
  QTest::qWait(20);
  EXPECT_EQ(walk({}), "dock4004 editors dock4003 dock4004");
}

TEST_F(IdeWindowTest, AProjectComesBackWithItsEditorsAndOneThatIsGoneLeavesTheList) {
  const std::string first = folder / "blinky/blinky-avr.tprj";
  const std::string second = folder / "second/blinky-avr.tprj";
  std::filesystem::copy(folder / "blinky", folder / "second",
                        std::filesystem::copy_options::recursive);
  const auto listed = [&] {
    QTest::qWait(1);
    QStringList paths;
    for (const auto* const row :
         window->findChild<QWidget*>("welcomePage")->findChildren<QAbstractButton*>()) {
      if (!row->isHidden() && !row->toolTip().isEmpty()) paths += row->toolTip();
    }
    return paths;
  };
  EXPECT_EQ(listed(), QStringList(ToQt(first)));
  ASSERT_TRUE(window->Editors().OpenFile(folder / "blinky/src/main.c", 7));
  ASSERT_TRUE(window->Editors().OpenFile(folder / "blinky/src/board.h", 0));
  window->Editors().Current()->insertAt("x", 0, 0);
  window->Editors().setCurrentIndex(0);
  testing::PressInNextBox(QMessageBox::Discard);
  window->OpenProject(second);
  EXPECT_EQ(window->Editors().count(), 0);
  EXPECT_TRUE(window->findChild<QWidget*>("welcomePage")->isVisible());
  EXPECT_EQ(RecentProjects::List(), QStringList({ToQt(second), ToQt(first)}));
  window->OpenProject(first);
  ASSERT_EQ(window->Editors().count(), 2);
  int line = 0;
  int column = 0;
  window->Editors().Current()->getCursorPosition(&line, &column);
  EXPECT_EQ(line, 6);
  std::filesystem::remove_all(folder / "second");
  testing::PressInNextBox(QMessageBox::Ok);
  window->OpenProject(second);
  EXPECT_EQ(RecentProjects::List(), QStringList(ToQt(first)));
  EXPECT_EQ(listed(), QStringList(ToQt(first)));
}

TEST_F(IdeWindowTest, AProjectThatChangedOutsideIsTakenFromTheDiskWhenTheUserWantsIt) {
  const std::string path = folder / "blinky/blinky-avr.tapp";
  auto* const area = static_cast<EditorArea*>(window->centralWidget());
  std::string text = testing::ReadBytes(path);
  // An unsaved change conflicts with it.
  window->Session().Inspector().SelectNodeByKey("led.c");
  ASSERT_TRUE(Choose("Remove"));
  const auto at = text.find("led.h");
  ASSERT_NE(at, std::string::npos);
  folder.Write("blinky/blinky-avr.tapp", text.insert(at, "renamed-"));
  ASSERT_TRUE(RunUntil([&] { return area->ProjectBanner().isVisible(); }));
  auto* const reload = area->ProjectBanner().findChild<QPushButton*>();
  window->Commands().Run(TARN_CMD_BUILD_ALL);
  EXPECT_FALSE(reload->isEnabled());
  EXPECT_TRUE(area->ProjectBanner().isVisible());
  ASSERT_TRUE(AwaitBuild());
  ASSERT_TRUE(reload->isEnabled());
  testing::PressInNextBox(QMessageBox::Discard);
  reload->click();
  EXPECT_FALSE(area->ProjectBanner().isVisible());
  EXPECT_EQ(testing::ReadBytes(path), text);
  EXPECT_FALSE(std::filesystem::exists(path + ".orig"));
  const std::string tree = window->Session().Inspector().GetTree();
  EXPECT_NE(tree.find("renamed-led.h"), std::string::npos);
  EXPECT_NE(tree.find("led.c"), std::string::npos);
}

TEST_F(IdeWindowTest, ChangesOfTheProjectAreTakenBackAndMadeAgain) {
  InspectorDriver& inspector = window->Session().Inspector();
  const auto has = [&](const char* node) {
    return inspector.GetTree().find("Header=\"" + std::string(node)) != std::string::npos;
  };
  const auto is = [&](const char* when, bool hasLed, bool hasUart) {
    EXPECT_EQ(has("led.c"), hasLed) << when;
    EXPECT_EQ(has("uart.c"), hasUart) << when;
  };
  const auto remove = [&](const char* node) {
    ASSERT_EQ(inspector.SelectNodeByKey(node), 1);
    ASSERT_TRUE(Choose("Remove"));
    RunUntil([] { return false; }, 300);
  };
  EXPECT_FALSE(FindEntry("undoProject")->isEnabled());
  remove("led.c");
  remove("uart.c");
  is("removed", false, false);
  EXPECT_TRUE(window->isWindowModified());
  ASSERT_TRUE(Choose("Save all"));
  EXPECT_TRUE(RunUntil([&] { return !window->isWindowModified(); }));
  const std::string saved = testing::ReadBytes(folder / "blinky/blinky-avr.tapp");
  EXPECT_EQ(saved.find("led.c"), std::string::npos);
  ASSERT_EQ(inspector.SelectNodeByKey("ticks.c"), 1);
  EXPECT_EQ(FindEntry("undoProject")->text().remove('&'), "Undo: Remove uart.c");
  ASSERT_TRUE(Choose("undoProject"));
  EXPECT_EQ(FindEntry("redoProject")->text().remove('&'), "Redo: Remove uart.c");
  is("one back", false, true);
  EXPECT_TRUE(Tree().currentIndex().data().toString() == "ticks.c") << "it stays selected";
  ASSERT_TRUE(Choose("undoProject"));
  is("all back", true, true);
  EXPECT_EQ(testing::ReadBytes(folder / "blinky/blinky-avr.tapp"), saved) << "nothing is written";
  EXPECT_TRUE(RunUntil([&] { return window->isWindowModified(); }));
  EXPECT_FALSE(FindEntry("undoProject")->isEnabled());
  ASSERT_TRUE(Choose("redoProject"));
  is("one again", false, true);
  ASSERT_TRUE(Choose("redoProject"));
  EXPECT_TRUE(RunUntil([&] { return !window->isWindowModified(); })) << "as it was saved";
  ASSERT_TRUE(Choose("undoProject"));
  remove("uart.c");
  EXPECT_FALSE(FindEntry("redoProject")->isEnabled());
  ASSERT_TRUE(Choose("undoProject"));
  is("the new one back", false, true);
  ASSERT_TRUE(Choose("Build all"));
  EXPECT_FALSE(FindEntry("undoProject")->isEnabled());
}

TEST_F(IdeWindowTest, TheServersButtonsStandInTheToolBar) {
  QToolBar* const bar = window->findChild<QToolBar*>("serverBar");
  ASSERT_NE(bar, nullptr);
  QStringList names;
  for (const QAction* action : bar->actions()) {
    names += action->text();
    EXPECT_EQ(action->icon().isNull(), action->isSeparator()) << action->text().toStdString();
  }
  EXPECT_EQ(names.join("|").toStdString(),
            "Add files|New folder||Build all|Build the active application|Rebuild all|Stop||"
            "Options");
  // Its menus have keyboard mnemonics.
  names.clear();
  for (const QAction* action : window->menuBar()->actions()) names += action->text();
  EXPECT_EQ(names.join("|").toStdString(), "&File|&Edit|&View|&Project|B&uild|&Navigate");
}

}  // namespace
}  // namespace tarn::host
