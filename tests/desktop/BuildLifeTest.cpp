// Builds in the main window, from the request to the stored results, with various events in
// between.
#include <tarn/commands.h>

#include <QLabel>
#include <QMessageBox>
#include <QStatusBar>
#include <algorithm>

#include "desktop/IdeFixture.h"
#include "hosts/core/ProjectFile.h"
#include "hosts/desktop/Banner.h"
#include "hosts/desktop/EditorArea.h"
#include "hosts/desktop/OptionsWindow.h"

namespace tarn::host {
namespace {

using testing::PressInNextBox;
using testing::RunUntil;

class BuildLifeTest : public testing::IdeFixture {
 protected:
  BuildLifeTest() {
    std::filesystem::copy(folder / "blinky", folder / "second",
                          std::filesystem::copy_options::recursive);
  }
  // Returns the number of tools that ran.
  int Build() {
    EXPECT_TRUE(Choose("Build all"));
    EXPECT_TRUE(AwaitBuild());
    return window->Commands().GetProgress()->GetNumber();
  }
  // Returns the last line printed by the script.
  std::string RunScript(const std::string& text) {
    std::string said;
    window->Session().Scripts().onLine = [&](const std::string& line) { said = line; };
    folder.Write("try.lua", text);
    EXPECT_NE(window->Session().Manager().ExecuteScript(folder / "try.lua"), 0);
    window->Session().Scripts().onLine = {};
    return said;
  }
  // Returns the PATH that contains it.
  std::string MakeSlowCompiler() {
    folder.Write("bin/avr-gcc", "#!/bin/sh\nsleep 60\n");
    std::filesystem::permissions(folder / "bin/avr-gcc", std::filesystem::perms::owner_all);
    return folder / "bin:" + std::getenv("PATH");
  }
  bool HasStatus(const QString& start) {
    const auto labels = window->statusBar()->findChildren<QLabel*>();
    return std::any_of(labels.begin(), labels.end(), [&start](const QLabel* each) {
      return each->isVisible() && each->text().startsWith(start);
    });
  }
  std::optional<BuildEnd> ended;
  void NoteEnd() {
    window->Commands().onEnded = [this, follow = window->Commands().onEnded](BuildEnd end) {
      ended = end;
      follow(end);
    };
  }

  const std::string first = folder / "blinky/blinky-avr.tprj";
  const std::string second = folder / "second/blinky-avr.tprj";
};

TEST_F(BuildLifeTest, AScriptThatOpensAProjectAndBuildsAtOnceHasWhatIsKeptOfThatProject) {
  EXPECT_EQ(Build(), 6);
  window->OpenProject(second);
  EXPECT_EQ(Build(), 6);
  window->OpenProject(first);
  EXPECT_EQ(RunScript("tarn.ProjectOpen('" + second + "') print(host.build())"), "succeeded\t0\t0");
  EXPECT_EQ(window->Session().GetProjectPath(), second);
  window->OpenProject(first);
  EXPECT_EQ(Build(), 0);
}

TEST_F(BuildLifeTest, WhatEachConfigurationHasBuiltStaysBuiltAndItsSizesAreShown) {
  const auto choose = [this](const char* name) { window->Options().ChooseConfiguration(name); };
  EXPECT_EQ(Build(), 6);
  choose("Debug");
  EXPECT_EQ(Build(), 6);
  choose("Standard");
  EXPECT_EQ(Build(), 0);
  choose("Debug");
  EXPECT_EQ(Build(), 0);
  window->OpenProject(second);
  window->OpenProject(first);
  choose("Standard");
  EXPECT_EQ(Build(), 0);
}

TEST_F(BuildLifeTest, AScriptWaitsForItsCommandWhileTheUserGoesOn) {
  int heartbeats = 0;
  QTimer heart;
  QObject::connect(&heart, &QTimer::timeout, &heart, [&] { ++heartbeats; });
  heart.start(5);
  EXPECT_EQ(RunScript("print(host.wait())"), "refused");
  EXPECT_EQ(heartbeats, 0);
  NoteEnd();
  EXPECT_EQ(RunScript("tarn.Command(0x8112) print(host.wait())"), "succeeded");
  EXPECT_GT(heartbeats, 5);
  // A build that is finished when the call returns.
  EXPECT_EQ(RunScript("print(tarn.ProjectBuild())"), "1");
  EXPECT_FALSE(window->Commands().IsBuilding());
  EXPECT_EQ(ended, BuildEnd::Succeeded);
  EXPECT_EQ(Build(), 0);
}

TEST_F(BuildLifeTest, ABuildThatAScriptLeavesBehindIsFollowedToItsEnd) {
  NoteEnd();
  const auto start = [this] {
    ended.reset();
    RunScript("tarn.Command(0x8111)");
    EXPECT_TRUE(RunUntil([&] { return window->Commands().IsBuilding(); }));
    EXPECT_TRUE(window->findChild<QWidget*>("stopBuild")->isVisible());
  };
  start();
  ASSERT_TRUE(AwaitBuild());
  EXPECT_EQ(window->Commands().GetProgress()->GetNumber(), 6);
  window->OpenProject(second);
  window->OpenProject(first);
  EXPECT_EQ(Build(), 0);
  {
    const testing::ScopedVariable path("PATH", MakeSlowCompiler().c_str());
    start();
    window->Commands().Stop();
    ASSERT_TRUE(RunUntil([&] { return ended.has_value(); }));
    EXPECT_EQ(ended, BuildEnd::Stopped);
  }
  start();
  ASSERT_TRUE(AwaitBuild());
  EXPECT_EQ(ended, BuildEnd::Succeeded) << "the stop was meant for the other one";
}

TEST_F(BuildLifeTest, CtrlAndBreakStopABuild) {
  NoteEnd();
  const testing::ScopedVariable path("PATH", MakeSlowCompiler().c_str());
  ASSERT_TRUE(Choose("Build all"));
  ASSERT_TRUE(RunUntil([&] { return !window->Commands().IsWaiting(); }));
  QKeyEvent stop(QEvent::KeyPress, 0, Qt::ControlModifier, 127, 0xff6b, 0);
  QApplication::sendEvent(&Tree(), &stop);
  ASSERT_TRUE(RunUntil([&] { return ended.has_value(); }));
  EXPECT_EQ(ended, BuildEnd::Stopped);
}

TEST_F(BuildLifeTest, AProjectClosedAfterItsBuildKeepsWhatWasReported) {
  window->Frame().SetHandler(kMsgWorkerEnded, [&](const HostMessageEvent&) {
    QTimer::singleShot(0, &*window, [this] { window->Session().Manager().ProjectClose(); });
    return std::intptr_t{1};
  });
  EXPECT_EQ(Build(), 6);
  EXPECT_FALSE(window->Session().HasProject());
  window->Frame().SetHandler(kMsgWorkerEnded, {});
  window->OpenProject(first);
  EXPECT_EQ(Build(), 0);
}

// The server posts a command when all options are loaded. If it arrives after another project was
// opened, the records have to wait for the options of that one.
TEST_F(BuildLifeTest, ThePostedEndOfLoadingIsNotTakenForThatOfTheNextProject) {
  EXPECT_EQ(Build(), 6);
  // The message is sent when the project is opened, and again after the end was posted.
  int known = 0;
  window->Frame().SetHandler(kMsgApplicationKnown, [&](const HostMessageEvent&) {
    if (++known == 2) window->OpenProject(first);
    return std::intptr_t{1};
  });
  window->OpenProject(second);
  ASSERT_TRUE(RunUntil([&] { return known >= 2; }));
  QCoreApplication::processEvents();  // serves the message, but not yet enough ticks to publish all
  EXPECT_EQ(Build(), 0);
}

TEST_F(BuildLifeTest, ABuildThatWaitsSaysSoAndIsOfTheNodeItWasAskedFor) {
  ASSERT_NO_FATAL_FAILURE(MakeLarge());
  QCoreApplication::processEvents();
  NoteEnd();
  Select("led.c");
  window->Commands().Run(TARN_CMD_BUILD_NODE);
  ASSERT_TRUE(window->Commands().IsWaiting());
  EXPECT_TRUE(HasStatus("Waiting for the project's options"));
  Select("main.c");
  ASSERT_TRUE(window->Commands().IsWaiting());
  ASSERT_TRUE(AwaitBuild());
  EXPECT_EQ(ended, BuildEnd::Succeeded);
  EXPECT_TRUE(IsBuilt("blinky-avr.obj/src/drivers/led.c.o"));
  EXPECT_FALSE(IsBuilt("blinky-avr.obj/src/main.c.o"));
}

TEST_F(BuildLifeTest, ABuildThatWaitsForAnotherProcessSaysSo) {
  auto lock =
      FileSystem::Native().TryLock(WithExtension(first, kLockExtension), LockPurpose::Build);
  ASSERT_TRUE(lock) << lock.GetError().text;
  NoteEnd();
  window->Commands().Run(TARN_CMD_BUILD_ALL);
  EXPECT_TRUE(RunUntil([&] { return HasStatus("Waiting for another build"); }));
  EXPECT_TRUE(window->statusBar()->currentMessage().isEmpty()) << "it would cover the progress";
  lock->reset();
  ASSERT_TRUE(AwaitBuild());
  EXPECT_EQ(ended, BuildEnd::Succeeded);
}

TEST_F(BuildLifeTest, TheServersOwnQuestionStopsABuildWithItsTools) {
  const testing::ScopedVariable path("PATH", MakeSlowCompiler().c_str());
  NoteEnd();
  window->Commands().Run(TARN_CMD_BUILD_ALL);
  ASSERT_TRUE(RunUntil([&] { return window->Commands().GetProgress()->GetNumber() > 0; }));
  PressInNextBox(QMessageBox::Ok);
  EXPECT_EQ(window->Session().Manager().ProjectClose(), 0);
  ASSERT_TRUE(RunUntil([&] { return ended.has_value(); }));
  EXPECT_EQ(ended, BuildEnd::Stopped);
}

TEST_F(BuildLifeTest, FilesOfWhichOneCantBeWrittenAreAllAsTheyWere) {
  const std::string path = folder / "blinky/blinky-avr.tapp";
  const std::string before = testing::ReadBytes(path);
  EXPECT_FALSE(window->Commands().ReopenWith(
      {{path, before + "\n"}, {folder / "blinky/new.txt", "x"}, {first + "/none", "x"}}));
  EXPECT_EQ(testing::ReadBytes(path), before);
  EXPECT_FALSE(std::filesystem::exists(folder / "blinky/new.txt"));
  EXPECT_TRUE(window->Session().HasProject());
}

TEST_F(BuildLifeTest, AnApplicationThatHasJustBeenAddedIsWatched) {
  const std::string added = folder / "blinky/other.tapp";
  std::filesystem::copy(folder / "second/blinky-avr.tapp", added);
  window->Session().Inspector().SelectNodeByPlace("");
  ASSERT_NE(window->Session().Manager().AddExistingItem(added), 0);
  RunUntil([] { return false; }, 600);
  const Banner& banner = static_cast<EditorArea*>(window->centralWidget())->ProjectBanner();
  EXPECT_FALSE(banner.isVisible());
  folder.Write("blinky/other.tapp", testing::ReadBytes(added) + "\n");
  EXPECT_TRUE(RunUntil([&] { return banner.isVisible(); }));
}

}  // namespace
}  // namespace tarn::host
