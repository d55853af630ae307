#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/process/RunAndWait.h"
#include "project/ProjectFixture.h"
#include "support/AnsweringUser.h"

namespace tarn::test {
namespace {

using ::testing::ElementsAre;

// Simulates the conversion script: records its arguments, prints something, and ends with the given
// exit code.
class ScriptLauncher final : public ProcessLauncher {
 public:
  int exitCode = 0;
  bool canStart = true;
  std::function<void()> onRun;
  std::vector<std::string> calls;

  Result<std::unique_ptr<Process>> Start(const ProcessRequest& request) override {
    std::string call = request.program;
    for (const std::string& argument : request.arguments) call += " <" + argument + ">";
    calls.push_back(call);
    if (!canStart) return Error{ErrorCode::NotFound, "no such program", request.program};
    if (onRun) onRun();
    return std::unique_ptr<Process>(std::make_unique<Script>(exitCode));
  }

 private:
  class Script final : public Process {
   public:
    explicit Script(int code) : exitCode_(code) {}
    ProcessExit WaitWithOutput(const OutputHandler& onOutput) override {
      onOutput("line 7: no equal\n", false);
      return {exitCode_, false};
    }
    void Stop(std::chrono::milliseconds) override {}

   private:
    int exitCode_;
  };
};

class Import : public ::testing::Test {
 protected:
  Import() {
    world.model->Services().applicationPath = "/app dir/";
    world.model->Services().launcher = &launcher;
    world.disk.AddFile("/app dir/bin/k418/perl.exe", "");
    world.disk.AddFile("/app dir/bin/k418/k418.pl", "");
    world.AddDemo("");
  }
  std::int32_t OpenOld(const char* path = "/p/old.PRJ") {
    return world.model->OpenProject(path, 0);
  }
  void MakeProject() { world.AddFile("/p/old.tprj", "\n<Project Header=\"Old\" />"); }

  ProjectFixture world;
  AnsweringUser user{world.host.Handle()};
  ScriptLauncher launcher;
};

TEST_F(Import, EachExitCodeHasItsAnswer) {
  const struct {
    int exitCode;
    const char* shown;
  } rows[] = {{1, ""},
              {2, "row 6 /p/old.PRJ"},
              {3, "row 34 /p/old.PRJ"},
              {4, "row 23 /p/old.PRJ"},
              {5, "row 35 /p/old.PRJ"},
              {6, "row 36 /p/old.PRJ"},
              {7, "row 38 /p/old.PRJ"},
              {8, "Unknown error"},
              {139, "Unknown error"},
              {-1, "Unknown error"}};
  ASSERT_EQ(world.OpenDemo(), 1);
  for (const auto& row : rows) {
    user.lines.clear();
    launcher.exitCode = row.exitCode;
    EXPECT_EQ(OpenOld(), 0) << row.exitCode;
    ASSERT_EQ(user.lines.size(), 1u) << row.exitCode;
    EXPECT_EQ(user.lines.front().substr(0, 6 + std::string(row.shown).size()),
              std::string("show: ") + row.shown);
    EXPECT_THAT(user.lines.front(), ::testing::EndsWith(" [Tarn Project]"));
    EXPECT_FALSE(world.model->IsOpen());
    EXPECT_EQ(world.model->GetProjectPath(), "/p/demo.tprj") << "as it was";
  }
}

TEST_F(Import, TheScriptIsRunWithoutAShellAndItsResultOpened) {
  launcher.onRun = [this] { MakeProject(); };
  EXPECT_EQ(OpenOld("/p/my \"old\".stw"), 1);
  EXPECT_THAT(launcher.calls, ElementsAre("/app dir/bin/k418/perl.exe <-I/app dir/bin/k418> <-w> "
                                          "</app dir/bin/k418/k418.pl> </p/my \"old\".stw>"));
  EXPECT_FALSE(world.model->IsOpen()) << "the script left nothing of that name";
  EXPECT_EQ(OpenOld(), 1);
  EXPECT_EQ(world.model->GetProjectPath(), "/p/old.tprj");
  EXPECT_TRUE(world.model->IsOpen());
  EXPECT_THAT(world.LogText(), ::testing::HasSubstr("line 7: no equal\n"));
}

TEST_F(Import, AProjectThatIsThereIsConvertedAgainOnlyWithConsent) {
  MakeProject();
  EXPECT_EQ(OpenOld(), 1);
  EXPECT_THAT(launcher.calls, ElementsAre());
  EXPECT_TRUE(world.model->IsOpen());
  user.okCancel = {true};
  EXPECT_EQ(OpenOld(), 1);
  EXPECT_EQ(launcher.calls.size(), 1u);
  EXPECT_EQ(user.lines.front(), "ask: row 25 /p/old.tprj   [Tarn Project]");
}

TEST_F(Import, WhatCannotStartCountsAsDone) {
  launcher.canStart = false;
  EXPECT_EQ(OpenOld(), 1);
  EXPECT_EQ(world.LogText(), "row 6 /p/old.tprj\n");
  EXPECT_FALSE(world.model->IsOpen());
}

TEST_F(Import, WithoutAnInterpreterOrAScriptTheUserHearsWhatIsMissing) {
  world.model->Services().importProgram = "/no/such/perl";
  EXPECT_EQ(world.model->Import().MissingImportProgram(), "/no/such/perl");
  EXPECT_EQ(OpenOld(), 1);
  EXPECT_EQ(
      world.LogText(),
      "Old projects are converted by a script that needs /no/such/perl, which was not found.\n"
      "row 6 /p/old.tprj\n");
  EXPECT_THAT(user.lines, ElementsAre());
  world.model->Services().importProgram.clear();
  EXPECT_EQ(world.model->Import().MissingImportProgram(), "");
  world.disk.Erase("/app dir/bin/k418/k418.pl");
  EXPECT_EQ(OpenOld(), 0);
  EXPECT_THAT(user.lines, ElementsAre("show: row 6 /app dir/bin/k418/k418.pl   [Tarn Project]"));
  EXPECT_THAT(launcher.calls, ElementsAre());
}

TEST_F(Import, AnotherInterpreterIsTakenIfTheUserWantsOne) {
  world.model->Services().importProgram = "sh";
  EXPECT_EQ(OpenOld(), 1);
  ASSERT_EQ(launcher.calls.size(), 1u);
  EXPECT_THAT(launcher.calls.front(), ::testing::HasSubstr("/sh <-I/app dir/bin/k418>"));
}

TEST_F(Import, TheHostHearsWhatTheScriptSaysAndMayOpenAnotherProjectMeanwhile) {
  launcher.onRun = [this] { MakeProject(); };
  world.host.actions[kMsgLogLine] = [this] {
    world.host.actions.clear();
    EXPECT_EQ(world.OpenDemo(), 1);
  };
  EXPECT_EQ(OpenOld(), 0);
  EXPECT_THAT(world.host.lines, ::testing::Contains("LogLine line 7: no equal 0"));
  EXPECT_EQ(world.model->GetProjectPath(), "/p/demo.tprj");
  EXPECT_TRUE(world.model->IsOpen());
}

TEST(RunAndWait, QuotesKeepBlanksAndMayBeProtected) {
  EXPECT_THAT(SplitCommandLine(R"("/a b/perl" -I"/x y"  -w "" "c\"d" e\f)"),
              ElementsAre("/a b/perl", "-I/x y", "-w", "", "c\"d", "e\\f"));
  EXPECT_THAT(SplitCommandLine("  "), ElementsAre());
  std::string written;
  EXPECT_EQ(RunAndWait(ProcessLauncher::Native(), "sh -c \"echo out; echo err >&2; exit 7\"", 60,
                       written),
            7);
  EXPECT_EQ(written, "out\nerr\n");
  EXPECT_EQ(RunAndWait(ProcessLauncher::Native(), "/no/such/program", 60, written), 0);
}

}  // namespace
}  // namespace tarn::test
