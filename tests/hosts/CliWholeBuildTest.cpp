// A successful build has built the whole project: missing parts of the installation or of the
// definitions, and files that a build skips, are reported and make it fail.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "hosts/CliProject.h"
#include "platform/text/Text.h"

namespace tarn::host {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

// An installation inside the project's folder: data in "share", libraries in "lib". Only the
// library from which the module folder is derived must be a copy.
class Installation {
 public:
  explicit Installation(CliProject& cliProject) : project_(cliProject) {
    fs::create_directories(project_.PathOf("share"));
    fs::create_directories(project_.PathOf("lib"));
    fs::copy(fs::path(std::getenv("TARN_SOURCE_DIR")) / "share/config",
             project_.PathOf("share/config"), fs::copy_options::recursive);
    const fs::path libraries = fs::path(TARN_PROGRAM).parent_path().parent_path() / "lib";
    for (const char* name : {"ProjectManager", "OptionsManager", "ToolManager", "Platform"}) {
      const std::string file = "libTarn" + std::string(name) + ".so";
      if (name == std::string("Platform")) {
        fs::copy_file(libraries / file, project_.PathOf("lib/" + file));
      } else {
        fs::create_symlink(libraries / file, project_.PathOf("lib/" + file));
      }
    }
    fs::create_symlink(libraries / "tarn-guard", project_.PathOf("lib/tarn-guard"));
    project_.Point("TARN_ROOT", "share/");
    project_.environment.emplace_back("LD_LIBRARY_PATH", project_.PathOf("lib"));
  }
  Installation(const Installation&) = delete;
  Installation& operator=(const Installation&) = delete;

  // Removes a file or folder, and writes a file with this content in its place unless it is null.
  void Replace(const std::string& name, const char* text) {
    fs::remove_all(project_.PathOf(name));
    if (text != nullptr) project_.Write(name, text);
  }

 private:
  CliProject& project_;
};

TEST(CliInstallation, WithAPartMissingEveryCommandFailsAndNamesIt) {
  CliProject project;
  ASSERT_EQ(project.Run({"build"}).code, 0);
  const char* const kOptions = "lib/libTarnOptionsManager.so";
  const char* const kConfig = "share/config/projectmanager.config";
  const char* const kCommon = "share/config/options/common.options";
  const struct {
    const char* file;
    const char* text;  // new content, or null
    const char* said;
  } rows[] = {
      {kOptions, nullptr, "complete: TarnOptionsManager.PropertyManager: "},
      {kOptions, "", "lib/libTarnOptionsManager.so: file too short"},
      {kOptions, "no library, but as long as the header of one: ..........................",
       "lib/libTarnOptionsManager.so: invalid ELF header"},
      {kOptions, "\177ELF\2\1 cut: the table of its sections would be behind the end .........",
       "lib/libTarnOptionsManager.so: the file is truncated"},
      {"lib/libTarnToolManager.so", nullptr, "complete: TarnToolManager.ToolManager: "},
      {"share/config/tools", nullptr, "share/config/tools: No such file"},
      {"share/config/options", nullptr, "common.options: can't be read"},
      {kCommon, nullptr, "common.options: can't be read"},
      {kCommon, "<OptionSets><Set Header='C'", "common.options:1: incomplete tag of <Set>"},
      {kConfig, nullptr, "projectmanager.config: the configuration file is missing"},
      {kConfig, "<P></P>", "no type of projects is defined"},
      {kConfig, "<P><Types><Project Project='Yes'/></Types></P>", "no type of applications"},
      {kConfig, "<P><Types><Project Project='Yes'/><A Application='Yes' Build='Yes'/></Types></P>",
       "no options are defined"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.file) + " " + row.said);
    fs::remove_all(project.PathOf("share"));
    fs::remove_all(project.PathOf("lib"));
    const auto before = project.environment;
    Installation installation(project);
    EXPECT_TRUE(Has(project.Out({"build"}), "Nothing to do ("));
    installation.Replace(row.file, row.text);
    const bool isFirst = row.file == kOptions && row.text == nullptr;
    const std::vector<std::string> all = {"build", "rebuild", "clean", "status", "tree", "report"};
    for (const std::string& command : isFirst ? all : std::vector<std::string>{"build"}) {
      project.ExpectRefusal({command}, 3, row.said);
    }
    project.environment = before;
  }
}

// Each definition is complete before the damage, so that a build would appear to be correct.
TEST(CliInstallation, WithACutOrDamagedFileNothingIsBuilt) {
  CliProject project;
  Installation installation(project);
  const struct {
    const char* file;
    std::string last;   // the text is truncated after it
    std::string added;  // or this is inserted after it
    const char* said;
  } rows[] = {
      {"options/host-gcc.options", "<Default", "", ": incomplete tag of <Default>"},
      {"options/host-gcc.options", "/>\n", "", ": the file ends inside <"},
      {"options/host-gcc.options", "/>\n", "<<<<<<< HEAD\n", ": a merge conflict"},
      {"tools/messages.tools", "/>\n", "", ": the file ends inside <"},
      {"tools/host-gcc.tools", "</Tool>\n", "", ": the file ends inside <Tools>"},
      {"tools/host-gcc.tools", "</Tool>\n", std::string(1, '\0'), ": a zero byte"},
      {"projectmanager.config", "</Types>\n", "", ": the file ends inside <"},
      {"projectmanager.config", "</Types>\n", "=======\n", ": a merge conflict"},
  };
  for (const auto& row : rows) {
    const std::string name = std::string("share/config/") + row.file;
    const std::string whole = project.Read(name);
    const std::size_t end = whole.find(row.last) + row.last.size();
    const std::string rest = row.added.empty() ? "" : row.added + whole.substr(end);
    project.Write(name, whole.substr(0, end) + rest);
    const auto line = 1 + std::count(whole.begin(), whole.begin() + static_cast<long>(end), '\n');
    const std::string place = project.PathOf(name) + ":" + std::to_string(line);
    for (const char* command : {"build", "status", "new"}) {
      const auto answer = project.Run({command, "-q", std::string(command) == "new" ? "x" : "."});
      EXPECT_EQ(answer.code, 3) << command << " " << row.said;
      EXPECT_TRUE(Has(answer.err, "is incomplete: " + place + row.said)) << answer.err;
    }
    project.Write(name, whole);
  }
  project.Out({"build"});
}

TEST(CliInstallation, AnErrorOfADefinitionIsToldEvenToTheQuiet) {
  CliProject project;
  Installation installation(project);
  project.Write("share/config/tools/own.tools", "<Tools><Tool Name=\"a\"><Stop/></Tool></Tools>");
  const std::string error = "own.tools: a: unknown element Stop";
  EXPECT_TRUE(Has(project.Run({"build", "-q"}).err, "tarn: " + error));
  EXPECT_EQ(Json::parse(project.Out({"build", "--json"}))["definitionErrors"], Json({error}));
  EXPECT_EQ(Json::parse(project.Out({"log", "--json"}))[0]["definitionErrors"], Json({error}));
}

std::string OwnOptions(const std::string& set, const std::string& properties) {
  return "<Options><Config Header=\"Standard\" ><Set Header=\"" + set +
         "\" ><Section Header=\"Build\" >" + properties + "</Section></Set></Config></Options>";
}

TEST(CliBuildGaps, WhatABuildPassesOverIsNamedAndAMissingApplicationIsAFailure) {
  const std::string noTool = OwnOptions("C",
                                        "<Property Header=\"TranslateTool\" Value=\"\" />"
                                        "<Property Header=\"OutputFile\" Value=\"\" />");
  const struct {
    const char* name;
    const char* file;
    std::string from;  // a substring of the file
    std::string to;
    int code;
    std::string said;     // on the error stream
    const char* printed;  // on the standard output
    const char* status;
  } rows[] = {
      {"nothing", "app.tapp", "", "", 0, "", "Nothing to do (", "up to date"},
      {"no toolchain", "app.tapp", "host-gcc", "", 1, "tarn: app can't be built: it has no tool. ",
       "Failed", "1 out of date\n  app  has no tool;"},
      {"an unknown tool", "app.tapp", "host-gcc", "gone", 1,
       "its tool gone.c has no valid definition", "error: unknown tool gone.c in ", "command line"},
      {"a type that is not defined", "app.tapp", "<Group ",
       "<Rust Header=\"x.rs\" Path=\".\\src\\x.rs\" /><Group ", 0,
       "tarn: warning: src/x.rs is not built: its type Rust is not defined", "Nothing to do (",
       "src/x.rs  is of a type"},
      {"a source of such a type", "app.tapp", "<Group ",
       "<Foo Header=\"q\" ><X><C Header=\"a.c\" Path=\".\\src\\a.c\" /></X></Foo><Group ", 1,
       "tarn: q can't be built: its type Foo is not defined", "Failed", "q  is of a type"},
      {"a source in no application", "demo.tprj", "</Project>",
       "<Group Header=\"g\" ><C Header=\"a.c\" Path=\".\\src\\a.c\" /></Group></Project>", 1,
       "tarn: g can't be built: it is in no application. ", "Failed", "up to date"},
      {"unknown data", "app.tapp", "<Group ", "<Note Header=\"x\" /><Group ", 0, "",
       "Nothing to do (", "up to date"},
      {"a source without a tool", "app.tapp", "\\c.c\" />", "\\c.c\" >" + noTool + "</C>", 0,
       "tarn: warning: src/c.c is not built: it has no tool", "Built 1 file",
       "src/c.c  has no tool"},
      {"an excluded source without a tool", "app.tapp", "\\c.c\" />",
       "\\c.c\" >" +
           OwnOptions("C",
                      "<Property Header=\"TranslateTool\" Value=\"\" />"
                      "<Property Header=\"Exclude\" Value=\"Yes\" />") +
           "</C>",
       0, "", "Built 1 file", "up to date"},
      {"an application of an unknown type", "demo.tprj", "</Project>",
       "<Firmware Header=\"two\" Path=\".\\two.tapp\" /></Project>", 1,
       "tarn: two can't be built: its type Firmware is not defined", "Failed", "up to date"},
      {"a source without a path", "app.tapp", "<Group ", "<C Header=\"z\" /><Group ", 1,
       "tarn: z can't be built: it names no file", "Failed", "z    its output"},
      {"no application", "demo.tprj",
       " ActiveApp=\"app\" ><Application Header=\"app\" Extern=\".\\app.tapp\" "
       "Path=\".\\app.tapp\" />",
       ">", 0, "", "Nothing to do: no application to build (", "no application"},
      {"an excluded application", "app.tapp", "<Section Header=\"Target\" >",
       "<Section Header=\"Build\" ><Property Header=\"Exclude\" Value=\"Yes\" /></Section>"
       "<Section Header=\"Target\" >",
       0, "", "Nothing to do: no application to build (", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    CliProject project;
    ASSERT_EQ(project.Run({"build"}).code, 0);
    project.Write(row.file, ReplaceAll(project.Read(row.file), row.from, row.to));
    const auto built = project.Run({"build"});
    EXPECT_EQ(built.code, row.code) << built.out << built.err;
    EXPECT_TRUE(row.said.empty() ? built.err.empty() : Has(built.err, row.said)) << built.err;
    EXPECT_TRUE(Has(built.out, row.printed)) << built.out;
    const std::string status = project.Out({"status"});
    EXPECT_TRUE(Has(status, row.status)) << status;
    const Json json = Json::parse(project.Run({"build", "--json"}).out, nullptr, false);
    ASSERT_FALSE(json.is_discarded());
    EXPECT_EQ(json["exitCode"], row.code);
    EXPECT_EQ(json["toolsRun"], 0) << json;
    EXPECT_TRUE(Has(project.Run({"build", "-q"}).err, row.said));
    EXPECT_EQ(json["notBuilt"].empty(), row.said.empty()) << json;
    for (const Json& gap : json["notBuilt"]) {
      EXPECT_EQ(gap["severity"], row.code == 0 ? "warning" : "error") << gap;
    }
  }
}

}  // namespace
}  // namespace tarn::host
