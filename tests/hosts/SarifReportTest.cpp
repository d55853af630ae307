#include "hosts/cli/SarifReport.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace tarn::host {
namespace {

struct SarifCase {
  const char* name;
  LogEntry entry;
  const char* result;  // null: the line is not a diagnostic
};

TEST(SarifReport, AResultHasTheLevelPlaceAndTextOfItsLine) {
  const SarifCase cases[] = {
      {"error with column",
       {LogKind::Error, "/p/my app/src/a.c:20:9: error: no x", "no x", "/p/my app/src/a.c", 20},
       R"({"level":"error","message":{"text":"no x"},"locations":[{"physicalLocation":{
           "artifactLocation":{"uri":"src/a.c","uriBaseId":"PROJECTROOT"},
           "region":{"startLine":20,"startColumn":9}}}]})"},
      {"warning with its switch outside the project",
       {LogKind::Warning, "/usr/in c/%.h:3: warning: w [-Wcpp]", "w [-Wcpp]", "/usr/in c/%.h", 3},
       R"({"level":"warning","message":{"text":"w [-Wcpp]"},"ruleId":"-Wcpp",
           "ruleIndex":0,"locations":[{"physicalLocation":{
           "artifactLocation":{"uri":"file:///usr/in%20c/%25.h"},
           "region":{"startLine":3}}}]})"},
      {"note",
       {LogKind::Plain, "/p/my app/a.h:7:1: note: declared here",
        "/p/my app/a.h:7:1: note: declared here", "/p/my app/a.h", 7},
       R"({"level":"note","message":{"text":"declared here"},"locations":[
           {"physicalLocation":{
           "artifactLocation":{"uri":"a.h","uriBaseId":"PROJECTROOT"},
           "region":{"startLine":7,"startColumn":1}}}]})"},
      {"error without a place",
       {LogKind::Error, "cc: not found", "cc: not found", "", 0},
       R"({"level":"error","message":{"text":"cc: not found"}})"},
      {"file without a line",
       {LogKind::Error, "a.o: undefined reference", "undefined reference", "/p/my app/src/a.c", 0},
       R"({"level":"error","message":{"text":"undefined reference"},"locations":[
           {"physicalLocation":{"artifactLocation":
           {"uri":"src/a.c","uriBaseId":"PROJECTROOT"}}}]})"},
      // The number after the position belongs to the message; a position in a different file is
      // ignored.
      {"number that is no column",
       {LogKind::Error, "/p/my app/a.c:4: 12 errors", "12 errors", "/p/my app/a.c", 4},
       R"({"level":"error","message":{"text":"12 errors"},"locations":[
           {"physicalLocation":{"artifactLocation":
           {"uri":"a.c","uriBaseId":"PROJECTROOT"},"region":{"startLine":4}}}]})"},
      {"folder with the same beginning",
       {LogKind::Error, "x", "x", "/p/my apple/a.c", 0},
       R"({"level":"error","message":{"text":"x"},"locations":[{"physicalLocation":{
           "artifactLocation":{"uri":"file:///p/my%20apple/a.c"}}}]})"},
      {"place in a context line",
       {LogKind::Plain, "In file included from a.c:1:0:", "", "/p/my app/a.c", 1},
       nullptr},
      {"command line",
       {LogKind::Plain, "gcc -DX=': note: '", "gcc -DX=': note: '", "", 0},
       nullptr},
      {"heading", {LogKind::Heading, "Building a.c", "Building a.c", "", 0}, nullptr},
  };
  for (const SarifCase& each : cases) {
    const nlohmann::json results =
        MakeSarifReport({"/p/my app", {each.entry}, true, 0}, "1.2")["runs"][0]["results"];
    const std::string wanted =
        each.result == nullptr ? "" : nlohmann::json::parse(each.result).dump();
    EXPECT_EQ(results.dump(), "[" + wanted + "]") << each.name;
  }
}

TEST(SarifReport, HasWhatReadersRequireOfARun) {
  const LogEntry warning{LogKind::Warning, "w [-Wx]", "w [-Wx]", "", 0};
  const LogEntry other{LogKind::Warning, "v [-Wy]", "v [-Wy]", "", 0};
  const nlohmann::json report =
      MakeSarifReport({"/p", {warning, other, warning}, false, 1795528413}, "1.2");
  EXPECT_EQ(report["version"], "2.1.0");
  ASSERT_EQ(report["runs"].size(), 1u);
  const nlohmann::json run = report["runs"][0];
  EXPECT_EQ(run["tool"]["driver"].dump(),
            R"({"name":"tarn","rules":[{"id":"-Wx"},{"id":"-Wy"}],"version":"1.2"})");
  EXPECT_EQ(run["invocations"].dump(),
            R"([{"endTimeUtc":"2026-11-24T13:53:33Z","executionSuccessful":false,)"
            R"("workingDirectory":{"uri":"file:///p/"}}])");
  EXPECT_EQ(run["originalUriBaseIds"].dump(), R"({"PROJECTROOT":{"uri":"file:///p/"}})");
  std::vector<int> indexes;
  for (const auto& each : run["results"]) indexes.push_back(each["ruleIndex"]);
  EXPECT_EQ(indexes, (std::vector<int>{0, 1, 0}));
}

}  // namespace
}  // namespace tarn::host
