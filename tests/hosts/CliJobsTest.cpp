#include <gtest/gtest.h>

#include <regex>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

// A compiler that waits, at most about five seconds, for a file that another compiler creates.
std::string CompilerThat(const std::string& cases) {
  return "#!/bin/sh\nawait() { for i in $(seq 500); do [ -e \"$TMPDIR/$1\" ] && break; sleep 0.01; "
         "done; [ -e \"$TMPDIR/$1\" ]; }\ncase \"$*\" in\n" +
         cases + "esac\nexec /usr/bin/gcc \"$@\"\n";
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
    const char* before;  // the header that is there at first, and its content
    const char* change;
  } rows[] = {
      {"header changes", "src/g.h", "printf '#define G 4711\\n' > src/g.h"},
      {"header is shadowed", "inc/g.h", "printf '#define G 4711\\n' > src/g.h"},
      {"header is created", nullptr, "printf '#define G 4711\\n' > src/g.h"},
  };
  project.Out({"options", "set", "Directories.Include", "inc"});
  std::filesystem::create_directory(project.PathOf("inc"));
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    project.Out({"clean"});
    std::filesystem::remove(project.PathOf("src/g.h"));
    std::filesystem::remove(project.PathOf("inc/g.h"));
    if (row.before != nullptr) project.Write(row.before, "#define G 1\n");
    project.Write("src/c.c", "#include \"g.h\"\nint c(void) { return G; }\n");
    std::filesystem::remove(project.PathOf("../c"));
    project.AddProgram(
        "gcc", CompilerThat(std::string("*src/a.c*) await c; ") + row.change +
                            " ;;\n*src/c.c*) /usr/bin/gcc \"$@\"; code=$?; touch \"$TMPDIR/c\"; "
                            "exit $code ;;\n"));
    const std::string out = project.Out({"build", "-j3"});
    EXPECT_EQ(Built(out), "a.c b.c c.c app") << out;
    EXPECT_FALSE(Has(out, "No such file")) << out;
    EXPECT_TRUE(Has(ObjectOf("c"), "\x67\x12")) << "the old header is in the object";
    EXPECT_TRUE(Has(project.Out({"status"}), "up to date")) << project.Out({"status"});
    EXPECT_TRUE(Has(project.Out({"build"}), "Nothing to do"));
  }
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
