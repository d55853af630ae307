#include <gtest/gtest.h>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

TEST(CliOptions, AnOptionThatChangesACommandMakesItsNodesStaleUntilItIsBackAgain) {
  CliProject project;
  ASSERT_EQ(project.Run({"build"}).code, 0);
  ASSERT_EQ(project.Run({"options", "set", "Compiler.Defines", "X=1", "-n", "src/c.c"}).code, 0);
  EXPECT_EQ(project.Run({"options", "get", "Compiler.Defines", "-n", "src/c.c"}).out, "X=1\n");
  EXPECT_EQ(project.Run({"status"}).out,
            "app  [Standard]  2 out of date\n"
            "  src/c.c  its command line changed since it was built\n"
            "  app      its inputs will be rebuilt\n");
  ASSERT_EQ(project.Run({"options", "reset", "Compiler.Defines", "-n", "c.c"}).code, 0);
  project.Out({"options", "set", "Load.LoadExclude", "Yes", "-n", "src/c.c"});
  EXPECT_TRUE(Has(project.Run({"build"}).out, "Nothing to do")) << "no command is another";

  ASSERT_EQ(project.Run({"options", "set", "Compiler.Warnings", "none"}).code, 0);
  EXPECT_TRUE(Has(project.Run({"build"}).out, "Built 4 files"));
  EXPECT_TRUE(Has(project.Run({"build"}).out, "Nothing to do"));
}

TEST(CliOptions, WrongValuesAndNamesAreRefusedWithAHint) {
  CliProject project;
  const std::string before = project.Read("app.tapp");
  const struct {
    std::vector<std::string> words;
    const char* said;
  } cases[] = {
      {{"options", "set", "Compiler.Warnings", "many"}, "Compiler.Warnings: "},
      {{"options", "set", "Compiler.Warning", "all"}, "Did you mean \"Compiler.Warnings\""},
      {{"options", "get", "Warnings"}, "Use SECTION.NAME"},
      {{"options", "get", "Compiler.Warnings", "-n", "src/d.c"}, "No file, group or application"},
      {{"options", "list", "--config", "Fats"}, "Did you mean \"Fast\""},
  };
  for (const auto& each : cases) project.ExpectRefusal(each.words, 2, each.said);
  EXPECT_EQ(project.Read("app.tapp"), before);
}

TEST(CliOptions, ExplainNamesEveryLevelAndTheOneThatCounts) {
  CliProject project;
  ASSERT_EQ(project.Run({"options", "set", "Compiler.Defines", "A"}).code, 0);
  ASSERT_EQ(
      project.Run({"options", "set", "Compiler.Defines", "B", "-n", "src/c.c", "-c", "fast"}).code,
      0);
  EXPECT_TRUE(Has(project.Run({"config", "list"}).out, "* Standard"));
  const std::string standard =
      project.Run({"options", "explain", "Compiler.Defines", "-n", "c.c"}).out;
  EXPECT_TRUE(Has(standard, "Compiler.Defines = A\n")) << standard;
  EXPECT_TRUE(Has(standard, "  set at the node c.c for Fast: B\n")) << standard;
  const std::string fast =
      project.Run({"options", "explain", "Compiler.Defines", "-n", "c.c", "-c", "Fast"}).out;
  EXPECT_TRUE(Has(fast, "Compiler.Defines = B\n")) << fast;
  EXPECT_TRUE(Has(fast, "  set at the node c.c for Fast: B  <- effective\n")) << fast;
  const std::string app = project.Run({"options", "explain", "Compiler.Defines"}).out;
  EXPECT_TRUE(Has(app, "  set at the application app for Standard: A  <- effective\n")) << app;
}

TEST(CliOptions, ListShowsWhereValuesCount) {
  CliProject project;
  const std::string list = project.Run({"options", "list"}).out;
  EXPECT_TRUE(Has(list, "Target.Toolchain            host-gcc  (set here)\n")) << list;
  EXPECT_TRUE(Has(project.Run({"options", "list", "--json", "-n", "src/a.c"}).out,
                  "\"option\": \"Compiler.Standard\""));
}

TEST(CliConfig, EveryConfigurationKeepsItsOwnOutputsAndRecords) {
  CliProject project;
  ASSERT_EQ(project.Run({"build"}).code, 0);
  const std::string fast = project.Out({"build", "--config", "fast"});
  EXPECT_TRUE(Has(fast, "Built 4 files")) << fast;
  // Using a configuration for one build doesn't change the project.
  EXPECT_TRUE(Has(project.Run({"config", "list"}).out, "* Standard"));
  EXPECT_TRUE(Has(project.Run({"build"}).out, "Nothing to do"));
  EXPECT_TRUE(Has(project.Run({"build", "--config", "Fast"}).out, "Nothing to do"));

  EXPECT_EQ(project.Run({"config", "add", "Slow"}).code, 0);
  EXPECT_EQ(project.Run({"config", "add", "SLOW"}).code, 2);
  // Outputs are stored in a folder of that name.
  project.ExpectRefusal({"config", "add", "../x"}, 2, "A configuration's name can't contain /");
  EXPECT_EQ(project.Run({"config", "select", "Fast"}).code, 0);
  EXPECT_EQ(project.Run({"config", "select", "Other"}).code, 2);
  EXPECT_EQ(project.Run({"config", "list"}).out, "app\n  Standard\n* Fast\n  Slow\n");
  EXPECT_TRUE(Has(project.Run({"build"}).out, "Nothing to do"));
}

TEST(CliConfig, ANewConfigurationHasTheOptionsOfOneThatIsThere) {
  CliProject project;
  project.Out({"options", "set", "Compiler.Defines", "NODE", "-n", "src/c.c"});
  project.Out({"options", "set", "Compiler.Warnings", "none", "-c", "Fast"});
  const struct {
    std::vector<std::string> words;
    const char* compiler;
    const char* defines;
    const char* warnings;
  } rows[] = {
      {{"config", "add", "Copy"}, "host-gcc", "NODE", "all"},
      {{"config", "add", "Copy", "--from", "fast"}, "host-gcc", "", "none"},
      {{"config", "add", "Copy", "--empty"}, "avr-gcc", "", "all"},
  };
  const std::string before = project.Read("app.tapp");
  for (const auto& row : rows) {
    project.Write("app.tapp", before);
    project.Out(row.words);
    const auto get = [&](const char* option, const char* node) {
      return project.Out({"options", "get", option, "-c", "Copy", "-n", node});
    };
    EXPECT_EQ(get("Target.Toolchain", "app"), std::string(row.compiler) + "\n");
    EXPECT_EQ(get("Compiler.Defines", "src/c.c"), std::string(row.defines) + "\n");
    EXPECT_EQ(get("Compiler.Warnings", "app"), std::string(row.warnings) + "\n");
    EXPECT_EQ(project.Out({"config", "list"}), "app\n* Standard\n  Fast\n  Copy\n");
  }
  // A configuration that was removed but still has stored options.
  project.Write("app.tapp", before);
  project.Out({"options", "set", "Compiler.Defines", "OLD", "-c", "Fast"});
  std::string orphaned = project.Read("app.tapp");
  const std::size_t list = orphaned.find("<Configs");
  orphaned.erase(list, orphaned.find("</Configs>") + 10 - list);
  project.Write("app.tapp", orphaned);
  project.Out({"config", "add", "Fast"});
  EXPECT_EQ(project.Out({"options", "get", "Compiler.Defines", "-c", "Fast"}), "\n");

  const std::string whole = project.Read("app.tapp");
  project.ExpectRefusal({"config", "add", "X", "--from", "Fats"}, 2, "Did you mean \"Fast\"");
  project.ExpectRefusal({"config", "add", "X", "--from", "Fast", "--empty"}, 2, "--empty");
  EXPECT_EQ(project.Read("app.tapp"), whole);
}

TEST(CliConfig, ADeviceThatIsNotSetIsAnErrorOfTheBuildThatNamesTheOption) {
  CliProject project;
  project.Out({"config", "add", "Bare", "--empty"});
  const std::string said =
      "the option Target.Device is not set in the configuration Bare, and it has no default; "
      "`tarn options set Target.Device VALUE -c Bare` sets it";
  auto build = project.Run({"build", "-c", "Bare"});
  EXPECT_EQ(build.code, 1) << build.out;
  EXPECT_TRUE(Has(build.out, said)) << build.out;
  for (const char* command : {"status", "check"}) {
    const auto reported = project.Run({command, "-c", "Bare"});
    EXPECT_EQ(reported.code, 1) << command;
    EXPECT_TRUE(Has(reported.out + reported.err, said)) << command << reported.out << reported.err;
  }
  EXPECT_TRUE(Has(project.Out({"options", "list", "-c", "Bare"}), "(needs a value)"));
  project.ExpectRefusal({"options", "set", "Target.Device", "", "-c", "Bare"}, 2,
                        "A value is required");
  // Edited by hand: a space is not a device either.
  project.Out({"options", "set", "Target.Device", "atmega88", "-c", "Bare"});
  std::string text = project.Read("app.tapp");
  text.replace(text.find("atmega88"), 8, " ");
  project.Write("app.tapp", text);
  build = project.Run({"build", "-c", "Bare"});
  EXPECT_EQ(build.code, 1) << build.out;
  EXPECT_TRUE(Has(build.out, said)) << build.out;
  // A new project specifies its device.
  project.Out({"new", "fresh"});
  EXPECT_TRUE(Has(project.Read("fresh/fresh.tapp"), "\"atmega328p\""));
}

}  // namespace
}  // namespace tarn::host
