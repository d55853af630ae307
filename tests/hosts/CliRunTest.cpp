#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

TEST(CliRun, AScriptChangesOptionsBuildsAndSavesWhatItWants) {
  CliProject project;
  project.Trust();
  project.Write("release.lua",
                "tarn.SavePropertyValue('Application', 'Compiler', 'Defines', 'RELEASE')\n"
                "tarn.Command(0x8106)\n"
                "print('ended:', host.build())\n"
                "print('again:', host.build('build', 'app'))\n"
                "print('after')\n");
  const auto run = project.Run({"run", "release.lua", "demo.tprj"});
  ASSERT_EQ(run.code, 0) << run.out << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_TRUE(Has(run.out, "[1/4] src/a.c\n")) << run.out;
  EXPECT_TRUE(Has(run.out, "\nended:\tsucceeded\t4\t0\n")) << run.out;
  EXPECT_TRUE(Has(run.out, "\nagain:\tsucceeded\t0\t0\nafter\n")) << run.out;
  EXPECT_FALSE(Has(project.Read("app.tapp"), "RELEASE"));
  project.Write("save.lua", project.Read("release.lua") + "tarn.ProjectSave()\n");
  ASSERT_EQ(project.Run({"run", "save.lua", "-q"}).code, 0);
  EXPECT_TRUE(Has(project.Read("app.tapp"), "RELEASE"));
  EXPECT_TRUE(Has(project.Run({"status"}).out, "up to date"));
}

TEST(CliRun, WhatAScriptPrintsAfterABuildIsInItsLog) {
  CliProject project;
  project.Trust();
  project.Write("r.lua", "print('early')\nhost.build()\nprint('late')\nerror('enough')\n");
  const auto run = project.Run({"run", "r.lua"});
  EXPECT_EQ(run.code, 1);
  EXPECT_TRUE(run.out.starts_with("early\n")) << run.out;
  EXPECT_EQ(run.err, "tarn: r.lua:4: enough\n");
  const std::string log = project.Run({"log"}).out;
  EXPECT_TRUE(Has(log, "\nlate\nr.lua:4: enough\n")) << log;
  EXPECT_FALSE(Has(log, "early")) << log;
}

TEST(CliRun, FailuresAreToldWithTheirPlace) {
  CliProject project;
  project.Trust();
  project.Write("inner.lua", "print('inner')\n\nlocal x = nil + 1\n");
  const struct {
    const char* script;
    int code;
    const char* out;
    const char* err;
  } cases[] = {
      {"tarn.ProjectOpen()", 1, "",
       "tarn: t.lua:1: ProjectOpen takes 1 argument (projectPath), not 0\n"},
      {"print(tarn.ExecuteScript('none.lua'))", 0, "0\n", ""},
      {"tarn.ExecuteScript('inner.lua')", 1, "inner\n",
       "tarn: t.lua:1: inner.lua:3: attempt to perform arithmetic on a nil value\n"},
      {"tarn.ExecuteScript('t.lua')", 1, "",
       "tarn: t.lua:1: t.lua:1: t.lua:1: t.lua:1: t.lua:1: t.lua:1: t.lua:1: t.lua:1: t.lua: "
       "scripts call each other more than 8 levels deep\n"},
      {"print(tarn.SelectNode('none.c'))\n"
       "tarn.SavePropertyValue('C', 'Compiler', 'Defines', 'X')",
       1, "1\n",
       "tarn: t.lua:2: SavePropertyValue: there is no node \"none.c\" to select, and a different "
       "one is still current. Select a node first.\n"},
      {"print(host.build('make'))", 1, "",
       "tarn: t.lua:1: bad argument #1 to 'build' (invalid option 'make')\n"},
      {"host.add_configuration('New', 'fast')", 0, "", ""},
      {"host.add_configuration('FAST')", 1, "",
       "tarn: t.lua:1: app already has a configuration \"FAST\".\n"},
      {"print('\\27[2J')", 0, "\\x1b[2J\n", ""},
  };
  for (const auto& each : cases) {
    project.Write("t.lua", each.script);
    const auto run = project.Run({"run", "t.lua"});
    EXPECT_EQ(run.code, each.code) << each.script;
    EXPECT_EQ(run.out, each.out) << each.script;
    EXPECT_EQ(run.err, each.err) << each.script;
  }
  EXPECT_EQ(project.Run({"run", "none.lua"}).code, 2);
  EXPECT_EQ(project.Run({"run", "t.lua", "none.tprj"}).code, 3);
  const auto json = project.Run({"run", "t.lua", "--json"});
  EXPECT_TRUE(Has(json.out, "\"result\": \"succeeded\"")) << json.out;
}

TEST(CliRun, AFailedSaveIsAnErrorWithACopyOfWhatWasNotSaved) {
  CliProject project;
  project.Trust();
  ASSERT_EQ(chmod(project.PathOf("app.tapp").c_str(), 0444), 0);
  for (const char* const more : {"", "tarn.ProjectClose()\n", "error('enough')\n"}) {
    project.Write("t.lua",
                  "tarn.SavePropertyValue('Application', 'Compiler', 'Defines', 'LATE')\n"
                  "tarn.ProjectSave()\n" +
                      std::string(more));
    const auto run = project.Run({"run", "t.lua"});
    EXPECT_EQ(run.code, 3) << more << run.err;
    EXPECT_TRUE(Has(run.err,
                    "app.tapp can't be saved: the file is read-only; the unsaved content"
                    " is in "))
        << more << run.err;
    const std::size_t place = run.err.rfind(" is in ") + 7;
    const std::string copy = run.err.substr(place, run.err.find('\n', place) - place);
    std::ifstream file(copy);
    EXPECT_TRUE(Has(std::string(std::istreambuf_iterator<char>(file), {}), "LATE")) << copy;
  }
}

TEST(CliRun, RelativePathsAreRelativeToTheProjectsFolder) {
  CliProject project;
  project.Trust();
  std::filesystem::create_directory(project.PathOf("sub"));
  project.Write("sub/other.tapp", "<Application Header=\"other\" />");
  ASSERT_EQ(project.Run({"add", "sub/other.tapp"}).code, 0);
  project.Write("t.lua",
                "tarn.SelectApplication('other')\n"
                "print(tarn.AddExistingItem('src/c.c', nil))\n"
                "tarn.SelectNode('src/c.c')\n"
                "tarn.SavePropertyValue('C', 'Compiler', 'Defines', 'HERE')\n"
                "tarn.ProjectSave()\n");
  EXPECT_EQ(project.Out({"run", "t.lua"}), "1\n");
  EXPECT_TRUE(Has(project.Read("sub/other.tapp"), "Path=\"..\\src\\c.c\""));
  EXPECT_TRUE(Has(project.Read("sub/other.tapp") + project.Read("app.tapp"), "HERE"));
  EXPECT_FALSE(project.Exists("sub/src/c.c"));
}

// A script may close and replace the project of the host that runs it.
TEST(CliRun, AScriptMayCloseTheProjectAndOpenAnother) {
  CliProject project;
  project.Trust();
  project.Write("t.lua", "local path = '" + project.PathOf("demo.tprj") +
                             "'\n"
                             "print(tarn.ProjectClose(), host.build())\n"
                             "print(tarn.ProjectOpen(path), host.build())\n"
                             "print(tarn.ProjectOpen(path), host.build())\n"
                             "tarn.ProjectClose()\n"
                             "tarn.ProjectSave()\n"
                             "tarn.Clean()\n"
                             "print(tarn.GetSelectedApplication():match('[^/]*$'), "
                             "(pcall(host.size, 'app')), "
                             "host.wait())\n");
  const std::string run = project.Out({"run", "t.lua", "-q"});
  EXPECT_EQ(run,
            "1\trefused\t0\t0\n"
            "1\tsucceeded\t4\t0\n"
            "0\tsucceeded\t0\t0\n"  // already open
            "data.tapp\tfalse\trefused\n");
  EXPECT_TRUE(Has(project.Run({"status"}).out, "up to date"));
}

TEST(CliRun, ABuildThatIsLeftBehindIsAwaitedAndKept) {
  CliProject project;
  project.Trust();
  project.Write("t.lua", "print(tarn.PrologCommand(0x8111), tarn.Command(0x8111))\n");
  const auto run = project.Run({"run", "t.lua"});
  EXPECT_EQ(run.code, 0);
  EXPECT_EQ(run.out, "1\t2\n");
  EXPECT_EQ(run.err, "");
  EXPECT_TRUE(Has(project.Run({"status"}).out, "up to date"));
  project.Write("t.lua", "tarn.Command(0x8111)\nprint(host.wait(), host.wait())\n");
  EXPECT_EQ(project.Run({"run", "t.lua"}).out, "succeeded\trefused\n");
}

TEST(CliRun, AnInterruptEndsAScriptAndItsBuild) {
  CliProject project;
  project.Trust();
  project.AddProgram(
      "gcc", "#!/bin/sh\ncase \"$*\" in *b.c*) sleep 30 ;; esac\nexec /usr/bin/gcc \"$@\"\n");
  const struct {
    const char* script;
    const char* sign;
  } cases[] = {
      {"print('ready')\nwhile true do pcall(function() while true do end end) end", "ready"},
      {"pcall(host.build)\nprint('not reached')", "src/b.c"},
  };
  for (const auto& each : cases) {
    project.Write("t.lua", each.script);
    bool isAsked = false;
    const auto run = project.Run({"run", "t.lua"}, [&](Process& process, const std::string& out) {
      if (isAsked || !Has(out, each.sign)) return;
      isAsked = true;
      process.Stop(std::chrono::milliseconds(10'000));
    });
    EXPECT_TRUE(isAsked);
    EXPECT_EQ(run.code, 130) << run.out << run.err;
    EXPECT_TRUE(Has(run.err, ": interrupted\n")) << run.err;
    EXPECT_FALSE(Has(run.out, "not reached")) << run.out;
    EXPECT_LT(run.time, std::chrono::milliseconds(20'000));
  }
}

}  // namespace
}  // namespace tarn::host
