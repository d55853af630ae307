#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

using Json = nlohmann::json;

TEST(CliReport, ListsWhatTheLastBuildHasMarkedAndFailsOnWhatWasAskedFor) {
  CliProject project;
  project.ExpectRefusal({"report"}, 3, "has written a log yet");
  project.Write("demo.tlog",
                "<output><message Description='Building' Icon='5'/>"
                "<message Icon='1' ShowInReport='yes' Description='" +
                    project.PathOf("src/a.c") + ":3:1: warning: a &lt;b&gt; &#124;' File='" +
                    project.PathOf("src/a.c") +
                    "' Line='3'/>"
                    "<message Icon='0' ShowInReport='YES' Description='remark' Help='h.htm'/>"
                    "</output>");
  const std::string warning = "src/a.c:3:1: warning: a <b> |\n";
  const struct {
    std::vector<std::string> words;
    int code;
    std::string out;
  } rows[] = {
      {{"report"}, 0, warning + "remark\n"},
      {{"report", "--errors"}, 0, ""},
      {{"report", "--warnings"}, 1, warning},
      {{"report", "--errors", "--warnings"}, 1, warning},
  };
  for (const auto& row : rows) {
    const auto answer = project.Run(row.words);
    EXPECT_EQ(answer.out, row.out) << answer.err;
    EXPECT_EQ(answer.code, row.code) << row.words.back();
  }
  const Json report = Json::parse(project.Out({"report", "--json"}), nullptr, false);
  EXPECT_EQ(report, Json::parse(R"([{"severity": "warning", "line": 3, "help": "", "file": ")" +
                                project.PathOf("src/a.c") + R"(", "text": ")" +
                                project.PathOf("src/a.c") + R"(:3:1: warning: a <b> |"},
                                {"severity": "note", "line": 0, "help": "h.htm", "file": "",
                                 "text": "remark"}])"));
}

// Stored logs have special characters encoded, so that other tools can read them.
TEST(CliReport, TextsAndPathsReadAsTheToolMeantThem) {
  CliProject project;
  const std::string folder = project.PathOf("src") + "/R&amp;D &#228;/";
  project.Write("demo.tlog", "<output><message Icon='2' ShowInReport='yes' Description='" + folder +
                                 "a.c:3:1: error: &amp;lt; is &lt;' File='" + folder +
                                 "a.c' Line='3' Help='/&amp;.htm'/></output>");
  const std::string shown = "src/R&D \xC3\xA4/a.c:3:1: error: &lt; is <\n";
  EXPECT_EQ(project.Run({"report"}).out, shown);
  EXPECT_EQ(project.Run({"log"}).out, shown);
  const Json report = Json::parse(project.Run({"report", "--json"}).out, nullptr, false);
  EXPECT_EQ(report[0]["file"], project.PathOf("src") + "/R&D \xC3\xA4/a.c");
  EXPECT_EQ(report[0]["help"], "/&.htm");
}

TEST(CliReport, ABuildThatFailsIsInTheReport) {
  CliProject project;
  project.Write("src/c.c", "int c(void) { return 1 }\n");
  EXPECT_EQ(project.Run({"build"}).code, 1);
  const auto answer = project.Run({"report", "--errors"});
  EXPECT_EQ(answer.code, 1);
  EXPECT_TRUE(Has(answer.out, "src/c.c:1:")) << answer.out << answer.err;
}

// Replaces the compiler for src/c.c: `script` runs first.
void PlayCompiler(CliProject& project, const std::string& script) {
  project.AddProgram("gcc", "#!/bin/sh\ncase \"$*\" in *-c*src/c.c*)\n" + script +
                                "\n;; esac\nexec /usr/bin/gcc \"$@\"\n");
}

TEST(CliReport, WhatATalkativeToolReportsLateIsReportedAndCounted) {
  CliProject project;
  const std::string place = project.PathOf("src/c.c") + ":1:1: ";
  const struct {
    std::string script;
    int code;
    int errors, warnings;
    const char* summary;
  } rows[] = {
      {"seq 25000; echo '" + place + "warning: late'; seq 900", 0, 0, 1,
       "Built 4 files, 1 warning"},
      {"seq 21000; for i in $(seq 1200); do echo '" + place + "error: late'; done; exit 1", 1, 1200,
       0, "Failed: 1200 errors, 2 of 4 files built"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.script);
    PlayCompiler(project, row.script);
    const auto built = project.Run({"rebuild"});
    EXPECT_EQ(built.code, row.code);
    EXPECT_TRUE(Has(built.out, row.summary)) << built.out.substr(built.out.size() - 200);
    for (const auto& [word, count] :
         {std::pair("--errors", row.errors), {"--warnings", row.warnings}}) {
      const auto report = project.Run({"report", word});
      EXPECT_EQ(report.code, count > 0 ? 1 : 0) << word;
      const auto lines = std::count(report.out.begin(), report.out.end(), '\n');
      EXPECT_EQ(lines, count) << word;
    }
    const Json json = Json::parse(project.Run({"rebuild", "--json"}).out, nullptr, false);
    EXPECT_EQ(json["errors"], row.errors);
    EXPECT_EQ(json["warnings"], row.warnings);
  }
}

TEST(CliReport, AToolThatFailsWithoutAReasonShowsItsLastLines) {
  CliProject project;
  const struct {
    const char* script;
    const char* reason;
  } rows[] = {
      {"seq 5000; printf 'last words'; exit 3", "gcc ended with exit code 3"},
      {"seq 5000 >&2; printf 'last words'; kill -9 $$", "gcc was ended by signal 9"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.script);
    PlayCompiler(project, row.script);
    const std::string end = "5000\nlast words\nerror: " + std::string(row.reason) + "\n";
    const auto built = project.Run({"build"});
    EXPECT_EQ(built.code, 1);
    EXPECT_TRUE(Has(built.out, " lines omitted, see `tarn log`)\n") && Has(built.out, end));
    EXPECT_FALSE(Has(built.out, "\n4000\n"));
    EXPECT_TRUE(Has(project.Out({"log"}), "\n4000\n"));
    for (const char* filter : {"", "--errors"}) {
      std::vector<std::string> words = {"report"};
      if (*filter != '\0') words.emplace_back(filter);
      const auto report = project.Run(words);
      EXPECT_EQ(report.code, 1);
      EXPECT_TRUE(report.out.starts_with("4982\n") && report.out.ends_with(end)) << report.out;
    }
    const Json json =
        Json::parse(project.Run({"report", "--errors", "--json"}).out, nullptr, false);
    ASSERT_EQ(json.size(), 1u);
    EXPECT_EQ(json[0]["lastLines"].size(), 20u);
    EXPECT_EQ(json[0]["lastLines"].back(), "last words");
    const Json build = Json::parse(project.Run({"build", "--json"}).out, nullptr, false);
    EXPECT_EQ(build["diagnostics"][0]["lastLines"], json[0]["lastLines"]);
  }
}

TEST(CliGlobals, ListsTheSymbolsOfTheConfigurationInForce) {
  CliProject project;
  project.ExpectRefusal({"globals"}, 3, "app-Globals.Standard.xml is missing");
  project.ExpectRefusal({"globals", "--config", "Fast"}, 3, "app-Globals.Fast.xml is missing");
  project.ExpectRefusal({"globals", "--sort", "size"}, 2, "name,definition,file");
  project.Write("app-Globals.Standard.xml",
                "<g><s Header='zeta' Desc='int' DeclFile='" + project.PathOf("src/a.c") +
                    "' DeclLine='4'><part/></s><s Header='ZETA' DeclFile='" +
                    project.PathOf("src/A.c") +
                    "' DeclLine='4'/><s Header='Alpha' Desc='void(void)' DeclFile='/~/b.c'/>"
                    "<def/><s Header='beta'/></g>");
  const std::string alpha = "Alpha  /~/b.c     void(void)\n";
  const std::string beta = "beta\n";
  const std::string zeta = "zeta   src/a.c:4  int\n";
  const struct {
    std::vector<std::string> words;
    std::string out;
  } rows[] = {
      {{"globals"}, alpha + beta + zeta},
      {{"globals", "--sort", "file"}, beta + zeta + alpha},
      {{"globals", "--sort", "definition"}, beta + zeta + alpha},
      {{"globals", "--name", "*ETA", "--sort", "file"}, "beta\nzeta  src/a.c:4  int\n"},
      {{"globals", "--file", "src/*.c"}, "zeta  src/a.c:4  int\n"},
      {{"globals", "--file", "none"}, ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(project.Out(row.words), row.out) << row.words.back();
  }
  const Json json =
      Json::parse(project.Out({"globals", "--json", "--name", "zeta"}), nullptr, false);
  EXPECT_EQ(json["application"], "app");
  EXPECT_EQ(json["file"], project.PathOf("app-Globals.Standard.xml"));
  EXPECT_EQ(json["symbols"].dump(), R"([{"definition":"int","file":")" + project.PathOf("src/a.c") +
                                        R"(","line":4,"name":"zeta"}])");
}

}  // namespace
}  // namespace tarn::host
