#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

// A program that takes a while, and records how many of its kind run at the same time, without
// those that were killed.
constexpr const char* kCounted =
    "#!/bin/sh\ntouch \"$TMPDIR/run.$$\"; count=0\n"
    "for each in \"$TMPDIR\"/run.*; do kill -0 ${each##*.} && count=$((count + 1)); done "
    "2>/dev/null\n"
    "echo $count >> \"$TMPDIR/counts\"; sleep 0.2; rm \"$TMPDIR/run.$$\"\n";

// Six sources, whose compiler counts; that of a.c runs make for further counted programs.
class CliJobserver : public ::testing::Test {
 protected:
  CliJobserver() {
    project.WriteProject({{"app", {"a.c", "b.c", "c.c", "d.c", "e.c"}}});
    for (const char* name : {"d", "e"}) {
      project.Write("src/" + std::string(name) + ".c", "int " + std::string(name) + ";\n");
    }
    project.AddProgram("counted", kCounted);
    project.Write("sub.mk", "all: 1 2 3 4\n1 2 3 4:\n\tcounted\n.PHONY: all 1 2 3 4\n");
    UseCompiler("*src/a.c*) make -s -f sub.mk all >&2 ;;");
    project.environment.emplace_back("TARN", TARN_PROGRAM);
  }

  void UseCompiler(const std::string& cases) {
    project.AddProgram("gcc", "#!/bin/sh\ncase \"$*\" in\n" + cases +
                                  "\n*src/?.c*) counted ;;\nesac\nexec /usr/bin/gcc \"$@\"\n");
  }
  // Returns the largest number of counted programs at the same time since the last call.
  int TakePeak() {
    std::istringstream counts(project.Read("../counts"));
    int peak = 0;
    for (int count = 0; counts >> count;) peak = std::max(peak, count);
    std::filesystem::remove(project.PathOf("../counts"));
    return peak;
  }

  CliProject project;
};

// make complains at its end if tokens are missing.
TEST_F(CliJobserver, MakeLimitsTheJobsOfAllPrograms) {
  const struct {
    const char* name;
    const char* recipe;
    const char* compiler;
    int code;
  } rows[] = {
      {"built", "+$(TARN) rebuild", "*src/a.c*) make -s -f sub.mk all >&2 ;;", 0},
      {"killed tool", "+$(TARN) rebuild", "*src/d.c*) kill -9 $$ ;;", 2},
      {"stopped", "+$(TARN) rebuild & sleep 1; kill $$!; wait $$!; exit 0",
       "*src/[bcd].c*) sleep 9 ;;", 0},
  };
  int most = 0;  // on a slow machine, not in every build
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    UseCompiler(row.compiler);
    project.Write("Makefile", std::string("all: tarn x y z\ntarn:\n\t") + row.recipe +
                                  "\nx y z:\n\tcounted\n.PHONY: all tarn x y z\n");
    const auto made = project.RunProgram("make", {"-k", "-j3"});
    EXPECT_EQ(made.code, row.code) << made.out << made.err;
    EXPECT_FALSE(Has(made.err, "jobserver")) << made.err;
    const int peak = TakePeak();
    EXPECT_LE(peak, 3);
    most = std::max(most, peak);
  }
  EXPECT_GE(most, 2);
}

TEST_F(CliJobserver, ToolsTakePartInTheJobsOfABuild) {
  const std::string out = project.Out({"build", "-j3", "-v"});
  EXPECT_FALSE(Has(out, "jobserver")) << out;
  EXPECT_FALSE(Has(out, "MAKEFLAGS"));
  const int peak = TakePeak();
  EXPECT_TRUE(peak == 2 || peak == 3) << peak;
  EXPECT_TRUE(Has(project.Out({"build", "-j1"}), "Nothing to do"));
  project.Out({"rebuild", "-j1"});
  EXPECT_EQ(TakePeak(), 1);
}

TEST_F(CliJobserver, ANamedPipeGetsItsTokensBack) {
  const auto made =
      project.RunProgram("sh", {"-c",
                                "mkfifo p && exec 9<>p && printf ab >&9 && "
                                "MAKEFLAGS=\" -j3 --jobserver-auth=fifo:$PWD/p\" $TARN build -q && "
                                "dd bs=1 count=2 <&9 2>/dev/null | fold -w1 | sort | tr -d '\\n'"});
  EXPECT_EQ(made.out, "ab") << made.err;
  EXPECT_LE(TakePeak(), 3);
}

TEST_F(CliJobserver, AJobserverThatCannotBeUsedIsIgnoredAloud) {
  for (const char* flags :
       {"--jobserver-auth=97,98", "--jobserver-auth=fifo:missing", "k --jobserver-fds=-2,-2",
        "--jobserver-auth=0,1", "--jobserver-auth=fifo:sub.mk", "--jobserver-auth="}) {
    SCOPED_TRACE(flags);
    for (auto& [name, value] : project.environment) {
      if (name == "MAKEFLAGS") value = flags;
    }
    const auto built = project.Run({"build"});
    EXPECT_EQ(built.code, 0) << built.err;
    EXPECT_TRUE(built.err.starts_with("tarn: The jobserver of make is not used: ")) << built.err;
    EXPECT_LE(TakePeak(), 1);
    EXPECT_EQ(std::count(built.err.begin(), built.err.end(), '\n'), 1) << built.err;
    EXPECT_EQ(project.Run({"build", "-q"}).err, built.err);
    EXPECT_EQ(project.Run({"build", "-j2"}).err, "");
  }
}

// A launcher of the project has no say in it.
TEST_F(CliJobserver, WithoutAJobserverTheJobsOfMakeAreALimit) {
  UseCompiler("none) ;;");
  project.AddProgram("ccache", "#!/bin/sh\nexec \"$@\"\n");
  const struct {
    const char* flags;
    const char* jobs;  // TARN_JOBS
    int most;
  } rows[] = {
      {" -j1", "", 1},
      {" -j1", "4", 1},
      {" -j2", "4", 2},
      {" -j3 --jobserver-auth=97,98", "", 1},
      {" -j3 --jobserver-auth=97,98", "2", 2},
  };
  const auto inherited = project.environment;
  for (const char* launcher : {"", "ccache"}) {
    if (*launcher != 0) project.Out({"options", "set", "Build.Launcher", launcher});
    for (const auto& row : rows) {
      SCOPED_TRACE(std::string(launcher) + row.flags + " TARN_JOBS=" + row.jobs);
      project.environment = inherited;
      std::erase_if(project.environment, [](const auto& each) {
        return each.first == "MAKEFLAGS" || each.first == "TARN_JOBS";
      });
      project.environment.insert(project.environment.begin(),
                                 {{"MAKEFLAGS", row.flags}, {"TARN_JOBS", row.jobs}});
      project.Out({"rebuild", "-q"});
      const int peak = TakePeak();
      EXPECT_GE(peak, 1);
      EXPECT_LE(peak, row.most);
    }
  }
}

TEST_F(CliJobserver, LoadAndMemoryLimitEarlyRuns) {
  UseCompiler("none) ;;");
  const struct {
    std::vector<std::string> limit;
    bool isParallel;
  } rows[] = {
      {{"-l", "0"}, false},
      {{"--memfree", "100%"}, false},
      {{"-l", "100000", "--memfree", "1M"}, true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.limit.front());
    std::vector<std::string> words = {"rebuild", "-j3"};
    words.insert(words.end(), row.limit.begin(), row.limit.end());
    EXPECT_EQ(Built(project.Out(words)), "a.c b.c c.c d.c e.c app");
    const int peak = TakePeak();
    EXPECT_EQ(peak > 1, row.isParallel) << peak;
  }
  for (const auto& [option, value] : {std::pair("-l", "-1"),
                                      {"-l", "x"},
                                      {"--memfree", "5"},
                                      {"--memfree", "101%"},
                                      {"-k", "x"},
                                      {"-k", "0x5"},
                                      {"-j", "0"},
                                      {"-j", "0x1"},
                                      {"-j", "+1"},
                                      {"-j", " 1"}}) {
    SCOPED_TRACE(value);
    EXPECT_EQ(project.Run({"build", option, value}).code, 2);
  }
}

}  // namespace
}  // namespace tarn::host
