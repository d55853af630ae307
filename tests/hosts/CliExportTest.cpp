#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

using Json = nlohmann::json;

// Returns "c.c in Fast" for every entry, and checks the common fields.
std::vector<std::string> SourcesOf(const CliProject& project, const std::string& text) {
  std::vector<std::string> list;
  for (const Json& each : Json::parse(text, nullptr, false)) {
    EXPECT_EQ(each["directory"], project.PathOf("").substr(0, project.PathOf("").size() - 1));
    EXPECT_EQ(each["arguments"][0], FindProgram("gcc"));
    const std::string file = each["file"];
    const std::string output = each["output"];
    const std::string object = project.PathOf("build/");
    EXPECT_TRUE(output.starts_with(object)) << output;
    const std::string folder = output.substr(object.size());
    list.push_back(file.substr(project.PathOf("src/").size()) + " in " +
                   folder.substr(0, folder.find('/')));
  }
  return list;
}

TEST(CliExport, CompileCommandsNameEverySourceInEveryConfigurationAndRunNothing) {
  CliProject project;
  const std::vector<std::string> standard = {"a.c in Standard", "b.c in Standard",
                                             "c.c in Standard"};
  const std::vector<std::string> fast = {"a.c in Fast", "b.c in Fast", "c.c in Fast"};
  std::vector<std::string> all = standard;
  all.insert(all.end(), fast.begin(), fast.end());
  const std::string before = project.Read("app.tapp");

  const auto wrote = project.Run({"export", "compile-commands"});
  EXPECT_EQ(wrote.out, "wrote compile_commands.json  (6 commands)\n") << wrote.err;
  EXPECT_EQ(SourcesOf(project, project.Read("compile_commands.json")), all);
  EXPECT_FALSE(project.Exists("build"));
  EXPECT_EQ(project.Run({"export", "compile-commands"}).out,
            "unchanged compile_commands.json  (6 commands)\n");
  // A single configuration, in any letter case, written to the standard output.
  EXPECT_EQ(
      SourcesOf(project, project.Run({"export", "compile-commands", "-c", "fast", "-o", "-"}).out),
      fast);
  EXPECT_EQ(project.Read("app.tapp"), before);
  // The active configuration comes first, because editors use the first entry of a file.
  ASSERT_EQ(project.Run({"config", "select", "Fast"}).code, 0);
  std::vector<std::string> turned = fast;
  turned.insert(turned.end(), standard.begin(), standard.end());
  EXPECT_EQ(SourcesOf(project, project.Run({"export", "compile-commands", "-o", "-"}).out), turned);
  EXPECT_TRUE(Has(project.Run({"config", "list"}).out, "* Fast"));
}

TEST(CliExport, CompileCommandsAreWhatABuildRuns) {
  CliProject project;
  ASSERT_EQ(project.Run({"options", "set", "Compiler.Defines", "N=a b", "-n", "src/c.c"}).code, 0);
  project.AddProgram("launch", "#!/bin/sh\nexec \"$@\"\n");
  project.environment.emplace_back("TARN_LAUNCHER", "launch");
  const auto exported = project.Run({"export", "compile-commands", "-c", "Standard", "-o", "-"});
  const Json commands = Json::parse(exported.out, nullptr, false);
  ASSERT_EQ(commands.size(), 3u) << exported.out << exported.err;
  std::string words;
  for (const std::string each : commands[2]["arguments"]) {
    words += (words.empty() ? "" : " ") + (Has(each, " ") ? "'" + each + "'" : each);
  }
  EXPECT_TRUE(Has(words, "'-DN=a b'")) << words;
  const std::string build = project.Out({"build", "-v"});
  const std::string compiler = commands[2]["arguments"][0];
  const std::string said = "launch gcc" + words.substr(compiler.size());
  std::string plain = build;
  for (const char quote : {'\'', '"'}) std::erase(plain, quote);
  std::string wanted = said;
  std::erase(wanted, '\'');
  EXPECT_TRUE(Has(plain, wanted)) << build << "\nwanted: " << said;
}

TEST(CliExport, WrongUseLeavesTheOldFileAlone) {
  CliProject project;
  project.Write("compile_commands.json", "mine");
  const struct {
    std::vector<std::string> words;
    int code;
    const char* said;
  } cases[] = {
      {{"export", "compile-commands", "-c", "Fats"}, 2, "Did you mean \"Fast\""},
      {{"export", "compile-commands", "-a", "ap"}, 2, "There is no application \"ap\""},
      {{"export", "compile-commands", "-o", "no/folder/x.json"}, 3, "can't be written"},
      {{"export", "sarif"}, 3, "Run `tarn build` first."},
      {{"export", "ninja"}, 2, "Unknown command \"export ninja\""},
  };
  for (const auto& each : cases) project.ExpectRefusal(each.words, each.code, each.said);
  EXPECT_EQ(project.Read("compile_commands.json"), "mine");
}

TEST(CliExport, AMissingCompilerIsToldAndTheCommandsAreWrittenAllTheSame) {
  CliProject project;
  project.environment.back().second = project.PathOf("nothing");
  const auto wrote = project.Run({"export", "compile-commands"});
  EXPECT_EQ(wrote.code, 0);
  EXPECT_TRUE(Has(wrote.err, "The program gcc was not found")) << wrote.err;
  EXPECT_EQ(Json::parse(project.Read("compile_commands.json"))[0]["arguments"][0], "gcc");
}

TEST(CliExport, SarifTellsWhetherTheLastBuildWentWellAndWhatItFound) {
  CliProject project;
  project.Write("src/c.c", "int c(void) { int unused; return x; }\n");
  ASSERT_EQ(project.Run({"build"}).code, 1);
  EXPECT_TRUE(project.Run({"export", "sarif"}).out.starts_with("wrote demo.sarif  ("));
  const Json failed = Json::parse(project.Read("demo.sarif"), nullptr, false)["runs"][0];
  EXPECT_EQ(failed["invocations"][0]["executionSuccessful"], false);
  ASSERT_FALSE(failed["results"].empty());
  const Json& first = failed["results"][0];
  EXPECT_EQ(first["level"], "error");
  EXPECT_EQ(first["locations"][0]["physicalLocation"].dump(),
            R"({"artifactLocation":{"uri":"src/c.c","uriBaseId":"PROJECTROOT"},)"
            R"("region":{"startColumn":34,"startLine":1}})");

  project.Write("src/c.c", "int c(void) { int unused; return 1; }\n");
  ASSERT_EQ(project.Run({"build"}).code, 0);
  const auto good = project.Run({"export", "sarif", "-o", "-"});
  const Json run = Json::parse(good.out, nullptr, false)["runs"][0];
  EXPECT_EQ(run["invocations"][0]["executionSuccessful"], true);
  ASSERT_EQ(run["results"].size(), 1u) << good.out;
  EXPECT_EQ(run["results"][0]["ruleId"], "-Wunused-variable");
}

// A language server must find the example's own headers and those of the cross compiler through the
// exported commands.
TEST(CliExport, ALanguageServerReadsTheExampleThroughTheCommands) {
  for (const char* program : {"clangd", "avr-gcc"}) {
    if (FindProgram(program).empty()) GTEST_SKIP() << program << " isn't on this machine";
  }
  CliProject project;
  std::filesystem::copy(std::string(std::getenv("TARN_SOURCE_DIR")) + "/share/examples/blinky-avr",
                        project.PathOf("example"), std::filesystem::copy_options::recursive);
  ASSERT_EQ(project.Run({"export", "compile-commands", "example"}).code, 0);
  const std::string source = project.PathOf("example/src/drivers/led.c");
  const auto check = [&] {
    return project.RunProgram("clangd", {"--check=" + source, "--query-driver=/**/avr-*"});
  };
  const auto good = check();
  EXPECT_EQ(good.code, 0) << good.err;
  EXPECT_TRUE(Has(good.err, "All checks completed, 0 errors")) << good.err;
  EXPECT_TRUE(Has(good.err, "-DF_CPU=16000000UL")) << good.err;
  // Without them it fails, which shows that the check above is effective.
  std::filesystem::remove(project.PathOf("example/compile_commands.json"));
  EXPECT_TRUE(Has(check().err, "'drivers/led.h' file not found"));
}

}  // namespace
}  // namespace tarn::host
