#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <thread>

#include "hosts/CliProject.h"
#include "platform/text/Text.h"

namespace tarn::host {
namespace {

// A compiler that waits, at most about five seconds, for a file that another compiler creates.
std::string CompilerThat(const std::string& cases) {
  return "#!/bin/sh\nawait() { for i in $(seq 500); do [ -e \"$TMPDIR/$1\" ] && break; sleep 0.01; "
         "done; [ -e \"$TMPDIR/$1\" ]; }\ncase \"$*\" in\n" +
         cases + "esac\nexec /usr/bin/gcc \"$@\"\n";
}

// Sorts the words of a list.
std::string Sorted(const std::string& list) {
  const std::vector<std::string> words = Words(list);
  std::string sorted;
  for (const std::string& word : std::set<std::string>(words.begin(), words.end())) {
    sorted += (sorted.empty() ? "" : " ") + word;
  }
  return sorted;
}

class CliJobs : public ::testing::Test {
 protected:
  std::string ObjectOf(const std::string& source) {
    const std::string path = "build/Standard/app.obj/src/" + source + ".c.o";
    return project.Exists(path) ? project.Read(path) : std::string();
  }

  CliProject project;
};

TEST_F(CliJobs, CompilersRunAtTheSameTimeAndTheirResultsComeInOrder) {
  // The first compiler ends after the others, which end in reverse order.
  project.AddProgram("gcc", CompilerThat("*src/a.c*) await c || exit 9; await b || exit 9 ;;\n"
                                         "*src/b.c*) await c || exit 9; touch \"$TMPDIR/b\" ;;\n"
                                         "*src/c.c*) touch \"$TMPDIR/c\" ;;\n"));
  const std::string out = project.Out({"build", "-j3"});
  EXPECT_EQ(Built(out), "a.c b.c c.c app") << out;
  EXPECT_TRUE(Has(project.Out({"build", "-j3"}), "Nothing to do"));
  EXPECT_EQ(project.Run({"rebuild", "-j1"}).out.find("error"), std::string::npos);
}

TEST_F(CliJobs, NothingIsLeftOfRunsThatTheBuildDoesNotReach) {
  project.Out({"build"});
  const std::string later = ObjectOf("b");
  ASSERT_FALSE(later.empty());
  project.Edit("src/a.c", "#error broken\n");
  project.Edit("src/b.c", "int main(void) { return 7; }\n");
  project.Edit("src/c.c", "int c(void) { return 8; }\n");
  project.AddProgram("gcc", CompilerThat("*src/a.c*) await c; sleep 0.1 ;;\n"
                                         "*src/c.c*) /usr/bin/gcc \"$@\"; touch \"$TMPDIR/c\"; "
                                         "sleep 9; exit 0 ;;\n"));
  const auto failed = project.Run({"build", "-j3", "-v"});
  EXPECT_EQ(failed.code, 1);
  EXPECT_FALSE(Has(failed.out, "b.c")) << failed.out;
  EXPECT_LT(failed.time, std::chrono::seconds(8));  // it doesn't wait for the others
  EXPECT_EQ(ObjectOf("c"), "");
  project.Edit("src/a.c", "int a(void) { return 1; }\n");
  project.AddProgram("gcc", "#!/bin/sh\nexec /usr/bin/gcc \"$@\"\n");
  EXPECT_EQ(Built(project.Out({"build", "-j3"})), "a.c b.c c.c app");
}

// What a serial build does if the compiler of a source also changes what later ones read.
TEST_F(CliJobs, ARunIsRepeatedIfAnEarlierOneHasChangedWhatItRead) {
  const struct {
    const char* name;
    const char* before;  // the header that is there at first
    const char* content = "#define G 1\n";
  } rows[] = {
      {"header changes", "src/g.h"},
      {"header is shadowed", "inc/g.h"},
      {"header is created", nullptr},
      {"header is mended", "src/g.h", "#error broken\n"},
      {"broken header is shadowed", "inc/g.h", "#error broken\n"},
  };
  project.Out({"options", "set", "Directories.Include", "inc"});
  std::filesystem::create_directory(project.PathOf("inc"));
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    project.Out({"clean"});
    std::filesystem::remove(project.PathOf("src/g.h"));
    std::filesystem::remove(project.PathOf("inc/g.h"));
    if (row.before != nullptr) project.Write(row.before, row.content);
    project.Write("src/c.c", "#include \"g.h\"\nint c(void) { return G; }\n");
    std::filesystem::remove(project.PathOf("../c"));
    project.AddProgram("gcc",
                       CompilerThat("*src/a.c*) await c; printf '#define G 4711\\n' > src/g.h ;;\n"
                                    "*src/c.c*) /usr/bin/gcc \"$@\"; code=$?; touch \"$TMPDIR/c\"; "
                                    "exit $code ;;\n"));
    const std::string out = project.Out({"build", "-j3"});
    EXPECT_EQ(Built(out), "a.c b.c c.c app") << out;
    EXPECT_FALSE(Has(out, "error: ")) << out;
    EXPECT_TRUE(Has(ObjectOf("c"), "\x67\x12")) << "the old header is in the object";
    EXPECT_TRUE(Has(project.Out({"status"}), "up to date")) << project.Out({"status"});
    EXPECT_TRUE(Has(project.Out({"build"}), "Nothing to do"));
  }
}

TEST_F(CliJobs, EventsHaveEachToolOnceAndRetireInOrder) {
  project.AddProgram("gcc", CompilerThat("*src/a.c*) await c || exit 9 ;;\n"
                                         "*src/c.c*) touch \"$TMPDIR/c\" ;;\n"));
  const std::string out = project.Out({"rebuild", "-j3", "--json", "--events"});
  std::map<std::string, std::string> files;
  nlohmann::json last;
  for (const std::string& line : SplitLines(out)) {
    last = nlohmann::json::parse(line);
    if (!last.contains("event")) continue;
    const std::string path = last["file"];
    std::string& names = files[last["event"]];
    names += (names.empty() ? "" : " ") + path.substr(path.rfind('/') + 1);
    if (last["event"] != "retired") continue;
    EXPECT_EQ(last["exitCode"], 0) << line;
    EXPECT_GE(last["duration"], 0) << line;
    EXPECT_EQ(last["total"], 4) << line;
    EXPECT_EQ(last["remaining"] == 0, last["retired"] == 4) << line;
  }
  EXPECT_EQ(files["retired"], "a.c b.c c.c app") << out;
  EXPECT_EQ(Sorted(files["started"]), "a.c app b.c c.c") << out;
  EXPECT_EQ(last["result"], "succeeded") << out;
}

// "a.c b.c": the files with an event of this state.
std::string FilesOf(const nlohmann::json& trace, const std::string& state) {
  std::string names;
  for (const auto& event : trace["traceEvents"]) {
    if (event["ph"] != "X" || event["cat"] != state) continue;
    EXPECT_GE(event["dur"], 0) << event;
    EXPECT_EQ(event["args"]["state"], state);
    const std::string path = event["args"]["file"];
    names += (names.empty() ? "" : " ") + path.substr(path.rfind('/') + 1);
  }
  return Sorted(names);
}

TEST_F(CliJobs, TheTraceIsValidHoweverTheBuildEnds) {
  const struct {
    const char* result;
    int code;
    const char* compiler;  // what it does for b.c, which ends after c.c
    const char* running;
    const char* retiring;
  } rows[] = {
      {"succeeded", 0, "", "a.c app b.c c.c", "a.c app b.c c.c"},
      {"failed", 1, "exit 7", "a.c b.c c.c", "a.c b.c"},
      {"interrupted", 130, "touch \"$TMPDIR/b\"; sleep 30", "a.c b.c c.c", "a.c b.c"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.result);
    project.Out({"clean"});
    std::filesystem::remove(project.PathOf("../c"));
    // The tool of c.c leaves its mark shortly before it ends.
    project.AddProgram(
        "gcc",
        CompilerThat(std::string("*src/b.c*) await c || exit 9; sleep 0.3; ") + row.compiler +
                     " ;;\n*src/c.c*) /usr/bin/gcc \"$@\"; "
                     "touch \"$TMPDIR/c\"; exit 0 ;;\n"));
    bool isStopped = row.code != 130;
    const auto answer =
        project.Run({"build", "-j3", "--trace", "t.json"}, [&](Process& process, const auto& out) {
          if (isStopped || !Has(out, "src/b.c")) return;
          isStopped = true;
          while (!project.Exists("../b")) std::this_thread::yield();
          process.Stop(std::chrono::seconds(10));
        });
    EXPECT_EQ(answer.code, row.code) << answer.out << answer.err;
    const auto trace = nlohmann::json::parse(project.Read("t.json"), nullptr, false);
    ASSERT_FALSE(trace.is_discarded()) << project.Read("t.json");
    EXPECT_EQ(trace["otherData"]["result"], row.result);
    EXPECT_TRUE(Has(FilesOf(trace, "waiting"), "c.c")) << trace.dump(1);
    EXPECT_EQ(FilesOf(trace, "running"), row.running) << trace.dump(1);
    if (row.code != 130) {
      EXPECT_EQ(FilesOf(trace, "retiring"), row.retiring) << trace.dump(1);
    }
    if (row.code == 1) {
      EXPECT_TRUE(Has(trace.dump(), "\"exit\":7")) << trace.dump(1);
    }
  }
}

TEST_F(CliJobs, ATraceReplacesOnlyATrace) {
  project.Write("notes.txt", "mine");
  const struct {
    const char* file;
    int code;
    const char* said;
  } rows[] = {
      {"src/a.c", 2, "is not a trace"},     {"demo.tprj", 2, "is not a trace"},
      {"notes.txt", 2, "is not a trace"},   {"build/Standard/app", 2, "is not a trace"},
      {"no/t.json", 3, "can't be written"}, {"src", 2, "is not a trace"},
  };
  for (const auto& row : rows) {
    project.ExpectRefusal({"build", "--trace", row.file}, row.code, row.said);
  }
  EXPECT_FALSE(project.Exists("build/Standard/app"));
  EXPECT_EQ(project.Read("notes.txt"), "mine");
}

TEST_F(CliJobs, TheTimingHasTheSlowestSourceAndTheLink) {
  const auto timing = [this] {
    return nlohmann::json::parse(project.Out({"status", "--timing", "--json", "-j2"}))["timing"];
  };
  EXPECT_EQ(timing()["unknown"], 4);
  project.AddProgram("gcc", CompilerThat("*src/b.c*) sleep 0.5 ;;\n"));
  project.Out({"build", "-j1"});
  const auto known = timing();
  ASSERT_EQ(known["chain"].size(), 2u) << known;
  EXPECT_TRUE(Has(known["chain"][0]["path"], "src/b.c")) << known;
  EXPECT_TRUE(Has(known["chain"][1]["path"], "app.tapp")) << known;
  EXPECT_EQ(known["unknown"], 0) << known;
  const int length = known["criticalPath"], work = known["work"];
  EXPECT_GE(length, 500);
  EXPECT_EQ(known["ideal"], std::max(length, work / 2)) << known;
  EXPECT_TRUE(Has(project.Out({"status", "--timing"}), "Critical path: "));
}

TEST_F(CliJobs, TheRestIsBuiltAfterFailuresAndReportedAlike) {
  const struct {
    const char* failures;
    std::vector<std::string> broken;
    const char* tried;
    const char* then;  // built without the errors
  } rows[] = {
      {"1", {"a"}, "a.c", "a.c b.c app c.c other"},
      {"2", {"a", "c"}, "a.c b.c c.c", "a.c app c.c other"},
      {"0", {"a"}, "a.c b.c c.c other", "a.c app"},
  };
  project.WriteProject({{"app", {"a.c", "b.c"}}, {"other", {"c.c"}}});
  project.Write("src/c.c", "int main(void) { return 0; }\n");
  for (const auto& row : rows) {
    SCOPED_TRACE(row.failures);
    std::vector<std::string> before;
    for (const std::string& name : row.broken) {
      before.push_back(project.Read("src/" + name + ".c"));
      project.Edit("src/" + name + ".c", "#error broken\n");
    }
    std::string outs[2];
    for (const char* jobs : {"-j1", "-j3"}) {
      const auto answer = project.Run({"rebuild", jobs, "-v", "-k", row.failures});
      EXPECT_EQ(answer.code, 1);
      EXPECT_EQ(Built(answer.out), row.tried) << answer.out;
      outs[jobs[2] == '3'] =
          std::regex_replace(answer.out + answer.err, std::regex("[0-9.]+ s|/cc\\w{6}"), "T");
    }
    EXPECT_EQ(outs[0], outs[1]);
    for (std::size_t i = 0; i < row.broken.size(); ++i) {
      project.Edit("src/" + row.broken[i] + ".c", before[i]);
    }
    EXPECT_EQ(Built(project.Out({"build"})), row.then);
  }
}

// Builds three sources with a header on which their compiler fails.
class CliFailures : public CliJobs {
 protected:
  void ExpectRuns(const std::string& compiler, const std::string& header, std::size_t early) {
    SCOPED_TRACE(compiler + ": " + header);
    project.AddProgram(compiler,
                       "#!/bin/sh\ncase \"$*\" in *src/?.c*) echo x >> \"$TMPDIR/log\" ;; "
                       "esac\nexec /usr/bin/" +
                           compiler + " \"$@\"\n");
    for (const char* name : {"a", "b", "c"}) {
      project.Write("src/" + std::string(name) + ".c", "#include \"a.h\"\n");
    }
    project.Write("src/a.h", header);
    project.Out({"options", "set", "Target.Toolchain", "host-" + compiler});
    std::string outs[2];
    for (const char* jobs : {"-j1", "-j3"}) {
      std::filesystem::remove(project.PathOf("../log"));
      const auto answer = project.Run({"build", jobs, "-v", "-k", "0"});
      EXPECT_EQ(answer.code, 1);
      const bool isEarly = jobs[2] == '3';
      EXPECT_EQ(SplitLines(project.Read("../log")).size(), isEarly ? early : 3) << jobs;
      outs[isEarly] = std::regex_replace(answer.out, std::regex("[0-9.]+ s\\)|/cc\\w{6}"), "T");
    }
    EXPECT_EQ(outs[0], outs[1]);
  }
};

constexpr const char* kTwoErrors = "int f(void) { return g; }\nint f = 2;\n";

TEST_F(CliFailures, EarlyRunsOfGccAreRepeatedOnlyIfAFileIsMissing) {
  ExpectRuns("gcc", kTwoErrors, 3);
  ExpectRuns("gcc", "#include \"missing.h\"\n", 6);
  ExpectRuns("gcc", "__asm__(\".incbin \\\"missing\\\"\");\n", 6);
}

TEST_F(CliFailures, EarlyRunsOfClangAreRepeatedOnlyIfAFileIsMissing) {
  if (!std::filesystem::exists("/usr/bin/clang")) GTEST_SKIP() << "clang is not installed";
  ExpectRuns("clang", kTwoErrors, 3);
  ExpectRuns("clang", "#include \"missing.h\"\n", 6);
  ExpectRuns("clang", "__asm__(\".incbin \\\"missing\\\"\");\n", 6);
}

TEST_F(CliJobs, TheNumberOfJobsIsChecked) {
  for (const char* number : {"0", "-1", "1025", "x", ""}) {
    SCOPED_TRACE(number);
    EXPECT_EQ(project.Run({"build", "--jobs", number}).code, 2);
  }
  project.environment.emplace_back("TARN_JOBS", "many");
  const auto answer = project.Run({"build"});
  EXPECT_EQ(answer.code, 0);
  EXPECT_TRUE(Has(answer.err, "TARN_JOBS must be a number from 1 to 1024, not many."))
      << answer.err;
}

}  // namespace
}  // namespace tarn::host
