#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

using Lines = std::vector<std::string>;

// Returns the lines that report started tools: "[1/2] src/a.c".
Lines Steps(const std::string& out) {
  Lines steps;
  for (std::size_t at = 0; at < out.size();) {
    const std::size_t end = std::min(out.find('\n', at), out.size());
    if (out[at] == '[') steps.push_back(out.substr(at, end - at));
    at = end + 1;
  }
  return steps;
}

// Returns the times of all files below the output folder.
std::map<std::string, std::filesystem::file_time_type> OutputTimes(const CliProject& project) {
  std::map<std::string, std::filesystem::file_time_type> times;
  for (const auto& each : std::filesystem::recursive_directory_iterator(project.PathOf("build"))) {
    if (each.is_regular_file()) times[each.path().string()] = each.last_write_time();
  }
  return times;
}

TEST(Cli, ALinkOfOneSourceIsShownByItsProgram) {
  CliProject project;
  project.WriteProject({{"app", {"b.c"}}});
  project.Write("src/b.c", "int main(void) { return 0; }\n");
  EXPECT_EQ(Built(project.Out({"build"})), "b.c app");
}

TEST(Cli, ASecondBuildInANewProcessRunsNoToolAndATouchedHeaderThoseOfItsDependants) {
  CliProject project;
  const auto first = project.Run({"build"});
  ASSERT_EQ(first.code, 0) << first.out << first.err;
  EXPECT_EQ(first.err, "");
  EXPECT_EQ(Steps(first.out),
            (Lines{"[1/4] src/a.c", "[2/4] src/b.c", "[3/4] src/c.c", "[4/4] build/Standard/app"}));
  EXPECT_TRUE(Has(first.out, "Built 4 files (")) << first.out;
  EXPECT_FALSE(Has(first.out, "\033")) << first.out;
  const auto times = OutputTimes(project);
  EXPECT_TRUE(project.Out({"build"}).starts_with("Nothing to do ("));
  EXPECT_EQ(OutputTimes(project), times);
  EXPECT_TRUE(Has(project.Out({"status"}), "app  [Standard]  up to date"));

  project.Touch("src/a.h");
  EXPECT_EQ(project.Out({"status"}),
            "app  [Standard]  3 out of date\n"
            "  src/a.c  its header src/a.h is newer than the object\n"
            "  src/b.c  its header src/a.h is newer than the object\n"
            "  app      its inputs will be rebuilt\n");
  EXPECT_EQ(Steps(project.Out({"build"})),
            (Lines{"[1/3] src/a.c", "[2/3] src/b.c", "[3/3] build/Standard/app"}));
  EXPECT_TRUE(Has(project.Out({"build"}), "Nothing to do"));
}

TEST(Cli, AnErrorEndsTheBuildWithItsPlaceAndWhatWasBuiltStaysBuilt) {
  CliProject project;
  project.Write("src/b.c", "#include \"a.h\"\nint main(void) { return missing; }\n");
  const auto failed = project.Run({"build"});
  EXPECT_EQ(failed.code, 1) << failed.out << failed.err;
  EXPECT_TRUE(Has(failed.out, "src/b.c:2:25: error: ")) << failed.out;
  EXPECT_TRUE(Has(failed.out, "Failed: 1 error, 1 of 4 files built (")) << failed.out;
  EXPECT_FALSE(Has(failed.out, "src/c.c")) << failed.out;
  EXPECT_TRUE(Has(project.Run({"log"}).out, "src/b.c:2:25: error: "));
  EXPECT_TRUE(Has(project.Run({"log", "--xml"}).out, "<?xml version=\"1.0\""));

  project.Write("src/b.c", "#include \"a.h\"\nint main(void) { return a() - 1; }\n");
  const std::string fixed = project.Out({"build"});
  EXPECT_FALSE(Has(fixed, "src/a.c")) << fixed;
  EXPECT_EQ(Steps(fixed).size(), 3u) << fixed;
}

// Returns the log as transformed by the installed style sheet; an empty string if a conforming
// parser rejects it.
std::string PageOf(const CliProject& project, const std::string& log) {
  std::ofstream(project.PathOf("log.xml"), std::ios::binary) << log;
  const std::string command = "xsltproc --nonet -o '" + project.PathOf("log.html") + "' '" +
                              std::getenv("TARN_SOURCE_DIR") + "/share/config/message.xslt' '" +
                              project.PathOf("log.xml") + "' 2>'" + project.PathOf("log.txt") + "'";
  EXPECT_EQ(std::system(command.c_str()), 0) << project.Read("log.txt") << log;
  return project.Read("log.html");
}

TEST(Cli, NamesAndErrorsFullOfMarkupAreReadableForPeopleAndForEveryReaderOfTheLog) {
  CliProject project;
  project.WriteProject({{"R&D \xC3\xA9", {"a&b.c", "b.c"}}});
  project.Write("src/a&b.c", "int a(void) { return 1; }\n");
  const std::string text = "expected '<' & \"foo\"|bar ]]> &lt;";
  // The compiler's echo of the line is complete.
  project.Write("src/b.c", "#include \"a.h\"\n#error " + text + " // \xC3\xA9\n");
  const auto failed = project.Run({"build"});
  EXPECT_EQ(failed.code, 1) << failed.out << failed.err;
  EXPECT_TRUE(Has(failed.out, "src/b.c:2:2: error: #error " + text + "\n")) << failed.out;
  EXPECT_TRUE(Has(failed.out, text + " // \xC3\xA9\n")) << failed.out;
  const std::string log = project.Out({"log"});
  EXPECT_TRUE(Has(log, "/src/a&b.c\n")) << log;
  EXPECT_TRUE(Has(log, "src/b.c:2:2: error: #error " + text + "\n")) << log;
  const std::string json = project.Out({"log", "--json"});
  EXPECT_TRUE(Has(json, "\"#error expected '<' & \\\"foo\\\"|bar ]]> &lt;\"")) << json;

  const std::string page = PageOf(project, project.Out({"log", "--xml"}));
  const std::string shown = "#error expected '&lt;' &amp; \"foo\"|bar ]]&gt; &amp;lt;";
  for (const std::string& part : std::vector<std::string>{
           "Build: R&amp;D \xC3\xA9 (Standard)</span>", "/src/a&amp;b.c</span>",
           "src/b.c:2:2: error: " + shown + "</span>", shown + " // \xC3\xA9</span>"}) {
    EXPECT_TRUE(Has(page, part)) << part << page;
  }
}

TEST(Cli, TheLogIsWellFormedWhateverAPathOrAScriptSays) {
  CliProject project;
  project.Trust();
  project.WriteProject({{"app", {"a<b>]]>'c.c"}}});
  project.Write("src/a<b>]]>'c.c", "#warning w\nint main(void) { return 0; }\n");
  const std::pair<const char*, const char*> rows[] = {
      {"<a href='x'>", "&lt;a href='x'&gt;"},
      {"</output>", "&lt;/output&gt;"},
      {"x\\\\<b", "x\\&lt;b"},
      {"]]> <![CDATA[", "]]&gt; &lt;![CDATA["},
      {"<!-- <?x", "&lt;!-- &lt;?x"},
      {"&bogus; &#0; &lt;", "&amp;bogus; &amp;#0; "},
      {"\\1\\27[31mred", "  [31mred"},
      {"\\xff\\xef\\xbf\\xbf", "\xC3\xBF\xC3\xAF\xC2\xBF\xC2\xBF"},
      {"C:\\\\dir\\\\", "C:\\dir\\"},
  };
  std::string script = "host.build()\n";
  for (const auto& [text, shown] : rows) script += "print(\"" + std::string(text) + "\")\n";
  project.Write("r.lua", script);
  ASSERT_EQ(project.Run({"run", "r.lua"}).code, 0);
  const std::string page = PageOf(project, project.Out({"log", "--xml"}));
  for (const auto& [text, shown] : rows) EXPECT_TRUE(Has(page, shown)) << shown << page;
  EXPECT_TRUE(Has(page, "a&lt;b&gt;]]&gt;'c.c:1:2: warning: #warning w")) << page;
  EXPECT_TRUE(Has(project.Out({"log"}), "\n<a href='x'>\n"));
}

TEST(Cli, WhatAFailedToolLeftIsNotTakenForTheOutputThatItReportedBefore) {
  CliProject project;
  ASSERT_EQ(project.Run({"build"}).code, 0);
  const std::string object = "build/Standard/app.obj/src/c.c.o";
  ASSERT_TRUE(project.Exists(object));
  const auto time = std::filesystem::last_write_time(project.PathOf(object));
  // Fails and leaves a partial output with the same time as the up-to-date one.
  project.AddProgram("gcc", "#!/bin/sh\ncase \"$*\" in *c.c*) echo half > \"" +
                                project.PathOf(object) + "\"; exit 1 ;; esac\n" +
                                "exec /usr/bin/gcc \"$@\"\n");
  EXPECT_EQ(project.Run({"rebuild"}).code, 1);
  project.AddProgram("gcc", "#!/bin/sh\nexec /usr/bin/gcc \"$@\"\n");
  std::filesystem::last_write_time(project.PathOf(object), time);
  const std::string build = project.Out({"build"});
  EXPECT_TRUE(Has(build, "src/c.c")) << build;
}

TEST(Cli, QuietAndJsonSayOnlyWhatIsTheirs) {
  CliProject project;
  project.Write("src/c.c", "int c(void) { int unused; return 3; }\n");
  const std::string quiet = project.Out({"build", "-q"});
  EXPECT_TRUE(quiet.starts_with("src/c.c: In function ‘c’:\nsrc/c.c:1:19: warning: ")) << quiet;
  EXPECT_FALSE(Has(quiet, "Built"));
  EXPECT_EQ(project.Run({"build", "-q"}).out, "");
  project.Touch("src/c.c");
  const auto json = project.Run({"build", "--json"});
  for (const char* part : {"\"result\": \"succeeded\"", "\"toolsRun\": 2", "\"kind\": \"warning\"",
                           "\"line\": 1", "\"warnings\": 1"}) {
    EXPECT_TRUE(Has(json.out, part)) << part << json.out;
  }
  EXPECT_TRUE(json.out.starts_with("{") && json.out.ends_with("}\n")) << json.out;
  EXPECT_TRUE(Has(project.Out({"tree", "--json"}), "\"label\": \"b.c\""));
}

TEST(Cli, RebuildRunsEverythingAndCleanTakesItAway) {
  CliProject project;
  ASSERT_EQ(project.Run({"build"}).code, 0);
  ASSERT_TRUE(project.Exists("demo.tstate"));
  const std::string rebuilt = project.Out({"rebuild", "--verbose"});
  EXPECT_EQ(Steps(rebuilt).size(), 4u) << rebuilt;
  EXPECT_TRUE(Has(rebuilt, "gcc -c")) << rebuilt;
  project.Out({"clean"});
  for (const auto& [path, time] : OutputTimes(project)) EXPECT_FALSE(path.ends_with(".o")) << path;
  EXPECT_FALSE(project.Exists("demo.tstate"));
  EXPECT_TRUE(Has(project.Run({"build"}).out, "Built 4 files"));
}

TEST(Cli, AProjectOnAMappedDriveIsBuiltOnce) {
  CliProject project;
  project.Edit(
      "settings/user/registry.ini",
      "[Drives]\nQ=" + std::filesystem::path(project.PathOf("src")).parent_path().string());
  project.Point("TARN_SETTINGS", "settings");
  const std::string built = project.Out({"build", "Q:\\demo.tprj"});
  EXPECT_TRUE(built.starts_with("[1/4]")) << built;
  EXPECT_FALSE(Has(project.Read("demo.tlog"), "No such file")) << project.Read("demo.tlog");
  const std::string again = project.Out({"build", "Q:\\demo.tprj"});
  EXPECT_TRUE(again.starts_with("Nothing to do (")) << again;
}

TEST(Cli, ADamagedStateCostsARebuildAndNothingElse) {
  CliProject project;
  ASSERT_EQ(project.Run({"build"}).code, 0);
  const std::string good = project.Read("demo.tstate");
  ASSERT_GT(good.size(), 200u);
  std::string flipped = good;
  const std::size_t second = good.find("b.c.o");  // inside the record of the second file
  ASSERT_NE(second, good.npos);
  flipped[second] = static_cast<char>(flipped[second] ^ 4);
  std::string foreign = good;
  foreign.replace(foreign.find("demo.tprj"), 9, "else.tprj");
  const struct {
    const char* name;
    std::string bytes;
    const char* said;
    const char* built;
  } cases[] = {
      {"one bit", flipped, "is damaged; what follows", "Built 3 files"},
      {"other project", foreign, "belongs to another project", "Built 4 files"},
      {"later version", "tarn-state 3 demo.tprj\n", "another version", "Built 4 files"},
      {"noise", std::string("\0\xff<a>\n\n", 8), "is damaged, so everything", "Built 4 files"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    project.Write("demo.tstate", each.bytes);
    EXPECT_TRUE(Has(project.Run({"status"}).err, each.said));
    const std::string build = project.Out({"build"});
    EXPECT_TRUE(Has(build, each.built)) << build;
    EXPECT_TRUE(Has(project.Run({"build"}).out, "Nothing to do"));
  }
}

TEST(Cli, WhatCanNotBeOpenedIsThreeAndWhatIsUnclearIsTwo) {
  CliProject project;
  EXPECT_EQ(project.Run({"build", "gone"}).code, 3);
  EXPECT_EQ(project.Run({"build", "src"}).code, 3);
  project.Write("broken.tprj", "\r\n<Project><Application Extern=\".\\no.tapp\" /></Project>");
  project.ExpectRefusal({"build", "broken.tprj"}, 3, "no.tapp");
  const auto unclear = project.Run({"build"});
  EXPECT_EQ(unclear.code, 2);
  EXPECT_TRUE(Has(unclear.err, "broken.tprj") && Has(unclear.err, "demo.tprj")) << unclear.err;
  EXPECT_EQ(project.Run({"build", "demo.tprj", "--app", "ap"}).code, 2);
  EXPECT_EQ(project.Run({"build", "demo.tprj", "--app", "APP"}).code, 0);
}

TEST(Cli, EachApplicationHasItsOwnRecords) {
  CliProject project;
  project.WriteProject({{"app", {"a.c", "b.c", "c.c"}}, {"second", {"a.c", "b.c"}}});
  EXPECT_TRUE(Has(project.Run({"build"}).out, "Built 7 files"));
  EXPECT_TRUE(Has(project.Run({"build"}).out, "Nothing to do"));
  project.Touch("src/a.h");
  const std::string one = project.Out({"build", "--app", "Second"});
  EXPECT_EQ(Steps(one), (Lines{"[1/3] src/a.c", "[2/3] src/b.c", "[3/3] build/Standard/second"}));
  const std::string status = project.Run({"status"}).out;
  EXPECT_TRUE(Has(status, "app  [Standard]  3 out of date\n")) << status;
  EXPECT_TRUE(Has(status, "second  [Standard]  up to date\n")) << status;
  EXPECT_EQ(project.Run({"clean", "--app", "app"}).code, 0);
  EXPECT_TRUE(Has(project.Run({"status", "--app", "second"}).out, "up to date"));
  EXPECT_TRUE(Has(project.Run({"build"}).out, "Built 4 files"));
}

TEST(Cli, AMissingCompilerIsFourAndNamed) {
  CliProject project;
  project.environment.back().second = project.PathOf("nothing");
  const auto build = project.Run({"build"});
  EXPECT_EQ(build.code, 4) << build.out << build.err;
  EXPECT_TRUE(Has(build.err, "The program gcc was not found.")) << build.err;
}

TEST(Cli, AnswersThatAreLostAreAFailure) {
  CliProject project;
  project.Trust();
  project.Write("say.lua", "print('said')\n");
  project.Write("src/new.c", "int n;\n");
  // Those that print something, in an order in which each has something to do.
  const char* const commands[] = {"--help",
                                  "--version",
                                  "help",
                                  "build --help",
                                  "help options set",
                                  "targets",
                                  "targets --json",
                                  "toolchains",
                                  "completion bash",
                                  "completion zsh",
                                  "completion fish",
                                  "trust",
                                  "trust --list",
                                  "new fresh --compiler host-gcc",
                                  "status",
                                  "status --json",
                                  "status --timing",
                                  "tree",
                                  "tree --json",
                                  "check",
                                  "check --json",
                                  "options list",
                                  "options list --json",
                                  "options get Compiler.Optimize",
                                  "options explain Compiler.Defines",
                                  "config list",
                                  "actions",
                                  "actions --json",
                                  "run say.lua",
                                  "add src/new.c",
                                  "rename src/new.c other.c",
                                  "undo",
                                  "redo",
                                  "remove other.c",
                                  "relocate",
                                  "export compile-commands -o -",
                                  "build",
                                  "build --json",
                                  "build -v",
                                  "rebuild",
                                  "rebuild --json --events",
                                  "log",
                                  "log --xml",
                                  "report --json",
                                  "size",
                                  "size --json",
                                  "globals",
                                  "globals --json",
                                  "export sarif -o -",
                                  "clean"};
  for (const char* command : commands) {
    SCOPED_TRACE(command);
    const auto answer = project.RunProgram(
        "/bin/sh", {"-c", std::string("exec \"$0\" ") + command + " >/dev/full", TARN_PROGRAM});
    EXPECT_EQ(answer.code, 3) << answer.err;
    EXPECT_EQ(answer.err, "tarn: The output can't be written: No space left on device.\n");
  }
}

// No pipe or file of the program takes the place of a stream.
TEST(Cli, ClosedStreamsDontDisturbABuild) {
  for (const char* streams : {"<&-", "2>&-", "<&- 2>&-", "<&- >&- 2>&-"}) {
    SCOPED_TRACE(streams);
    CliProject project;
    const auto built = project.RunProgram(
        "/bin/sh", {"-c", std::string("exec \"$0\" build ") + streams, TARN_PROGRAM});
    EXPECT_EQ(built.code, Has(streams, " >&-") ? 3 : 0) << built.out << built.err;
    EXPECT_TRUE(Has(project.Out({"status"}), "up to date"));
    const auto serve = project.RunProgram(
        "/bin/sh", {"-c", std::string("exec \"$0\" serve ") + streams, TARN_PROGRAM});
    EXPECT_EQ(serve.code, Has(streams, "<") ? 2 : 1) << serve.err;
  }
}

TEST(Cli, ANewProjectBuilds) {
  CliProject project;
  project.Out({"new", "fresh/first", "--compiler", "host-gcc"});
  EXPECT_TRUE(project.Exists("fresh/first/first.tprj"));
  const std::string build = project.Out({"build", "fresh/first"});
  EXPECT_TRUE(Has(build, "fresh/first/src/main.c")) << build;
  EXPECT_EQ(project.Run({"new", "fresh/first"}).code, 2);
  EXPECT_EQ(project.Run({"new", "a*b"}).code, 2);
}

}  // namespace
}  // namespace tarn::host
