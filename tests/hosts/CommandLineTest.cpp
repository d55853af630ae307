#include "hosts/cli/CommandLine.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "hosts/cli/CommandSpec.h"
#include "hosts/cli/OptionArguments.h"

namespace tarn::host {
namespace {

struct Answer {
  ParsedCommandLine parsed;
  std::string out, err;
};

Answer Parse(std::vector<const char*> words) {
  words.insert(words.begin(), "tarn");
  Answer run;
  ::testing::internal::CaptureStdout();
  ::testing::internal::CaptureStderr();
  Console console(std::cout, {});
  run.parsed = ParseCommandLine(static_cast<int>(words.size()), words.data(), console);
  run.out = ::testing::internal::GetCapturedStdout();
  run.err = ::testing::internal::GetCapturedStderr();
  return run;
}

TEST(CommandLine, ReadsCommandsWithTheirOptionsInAnyOrder) {
  const Answer build = Parse({"build", "--config", "Release", "demo", "-v", "--app=blinky"});
  ASSERT_TRUE(build.parsed.invocation) << build.err;
  const Invocation& asked = *build.parsed.invocation;
  EXPECT_STREQ(asked.command->name, "build");
  EXPECT_EQ(asked.project + "," + asked.configuration + "," + asked.application,
            "demo,Release,blinky");
  EXPECT_TRUE(asked.verbose);

  const Answer set = Parse({"options", "set", "Build.X", "-O2", "p.tprj", "--node", "src/a.c"});
  EXPECT_FALSE(set.parsed.invocation);  // a value that looks like an option requires "--"
  const Answer safe =
      Parse({"options", "set", "--node", "src/a.c", "--", "Build.X", "-O2", "p.tprj"});
  ASSERT_TRUE(safe.parsed.invocation) << safe.err;
  EXPECT_STREQ(safe.parsed.invocation->command->name, "options set");
  const auto& arguments = safe.parsed.invocation->Own<OptionArguments>();
  EXPECT_EQ(arguments.key + "," + arguments.value + "," + safe.parsed.invocation->project + "," +
                safe.parsed.invocation->node,
            "Build.X,-O2,p.tprj,src/a.c");
}

TEST(CommandLine, WrongUseIsTwoAndSaysWhatToDo) {
  const struct {
    std::vector<const char*> words;
    const char* said;
  } cases[] = {
      {{"biuld"}, "Unknown command \"biuld\". Did you mean \"build\"?"},
      {{"--json", "biuld"}, "Unknown command \"biuld\""},
      {{"options", "gte", "X.Y"},
       "Unknown command \"options gte\". Did you mean \"get\" or \"set\"?"},
      {{"options"}, "See `tarn options --help`."},
      {{"build", "--colour"}, "See `tarn build --help`."},
      {{"options", "get"}, "See `tarn options get --help`."},
      {{"trust", "--list", "--revoke"}, "--revoke excludes --list"},
      {{"trust", "--list", "demo"}, "PROJECT excludes --list"},
      {{"log", "--xml", "--json"}, "--json excludes --xml"},
      {{"build", "-q", "-v"}, "--quiet excludes --verbose"},
      {{}, "Usage: tarn"},
  };
  for (const auto& each : cases) {
    const Answer run = Parse(each.words);
    EXPECT_FALSE(run.parsed.invocation);
    EXPECT_EQ(run.parsed.exitCode, kExitUsage) << each.said;
    EXPECT_NE(run.err.find(each.said), std::string::npos) << run.err;
    EXPECT_EQ(run.out, "");
  }
}

TEST(CommandLine, HelpAndVersionGoToTheOutput) {
  for (const auto& words : {std::vector<const char*>{"--help"}, {"build", "-h"}, {"--version"}}) {
    const Answer run = Parse(words);
    EXPECT_FALSE(run.parsed.invocation);
    EXPECT_EQ(run.parsed.exitCode, kExitDone);
    EXPECT_NE(run.out, "");
    EXPECT_EQ(run.err, "");
  }
}

}  // namespace
}  // namespace tarn::host
