#include "hosts/cli/BuildReporter.h"

#include <gtest/gtest.h>

#include <regex>
#include <sstream>

namespace tarn::host {
namespace {

const std::vector<LogEntry> kWarned = {
    {LogKind::Plain, "gcc -c /p/a.c", "gcc -c /p/a.c", "", 0},
    {LogKind::Warning, "/p/a.c:2:1: warning: odd", "odd", "/p/a.c", 2},
    {LogKind::Plain, "    2 | x", "", "", 0},
    {LogKind::Plain, "chatter", "", "", 0},
};
const std::vector<LogEntry> kFailed = {
    {LogKind::Plain, "gcc -c /p/b.c", "", "", 0},
    {LogKind::Error, "/p/b.c:1:1: error: bad", "bad", "/p/b.c", 1},
    {LogKind::Plain, "chatter", "", "", 0},
};

// Replaces "(0.1 s)" by "(T)".
std::string WithoutTimes(std::string text) {
  for (std::size_t end = text.find(" s)"); end != std::string::npos; end = text.find(" s)")) {
    const std::size_t start = text.rfind('(', end) + 1;
    text.replace(start, end + 2 - start, "T");
  }
  return text;
}

// Returns the console output for two of three tools; times are replaced.
std::string Tell(bool redraws, ReportDetail detail, const BuildOutcome& outcome) {
  std::ostringstream out;
  ConsoleStyle style;
  style.redraws = redraws;
  style.width = [] { return 20; };
  Console console(out, style);
  BuildReporter reporter(console, "/p", detail, [] { return 3; });
  reporter.OnToolStarted({"cc", {"/p/a.c"}, "/p/a.o", "gcc"});
  reporter.OnToolEnded(true, kWarned);
  reporter.OnToolStarted({"link", {"/p/a.o", "/p/b.o"}, "/p/app.elf", "gcc"});
  reporter.OnToolEnded(outcome.toolsFailed == 0, outcome.toolsFailed == 0 ? kWarned : kFailed);
  reporter.Finish(outcome, BuildWork::Build, {{"app", "12 bytes"}, {"lib", ""}});
  return WithoutTimes(out.str());
}

const BuildOutcome kGood{BuildEnd::Succeeded, 2, 0};
const BuildOutcome kBad{BuildEnd::Failed, 1, 1};

TEST(BuildReporter, PipedOutputHasALineForEachToolAndNoControlCharacters) {
  EXPECT_EQ(Tell(false, ReportDetail::Progress, kGood),
            "[1/3] a.c\n"
            "a.c:2:1: warning: odd\n"
            "    2 | x\n"
            "[2/3] app.elf\n"
            "a.c:2:1: warning: odd\n"
            "    2 | x\n"
            "app  12 bytes\n"
            "Built 2 files, 2 warnings (T)\n");
}

TEST(BuildReporter, OfAToolThatFailedEverythingButItsCommandIsShown) {
  EXPECT_EQ(Tell(false, ReportDetail::Diagnostics, kBad),
            "a.c:2:1: warning: odd\n"
            "    2 | x\n"
            "b.c:1:1: error: bad\n"
            "chatter\n");
  const std::string full = Tell(false, ReportDetail::Progress, kBad);
  EXPECT_NE(full.find("Failed: 1 error, 1 warning, 1 of 3 files built (T)\n"), std::string::npos)
      << full;
}

TEST(BuildReporter, OnATerminalDiagnosticsStandAboveTheProgressLine) {
  const std::string erase = "\r\033[K";
  const std::string first = erase + "[0/3] a.c";
  const std::string second = erase + "[1/3] app.elf";
  const auto above = [&](const std::string& line, const std::string& progress) {
    return erase + line + "\n" + progress;
  };
  EXPECT_EQ(Tell(true, ReportDetail::Progress, kGood),
            first + above("a.c:2:1: warning: odd", first) + above("    2 | x", first) + second +
                above("a.c:2:1: warning: odd", second) + above("    2 | x", second) + erase +
                "app  12 bytes\nBuilt 2 files, 2 warnings (T)\n");
}

TEST(BuildReporter, TheProgressLineHasTheLongestRunningFileAndTheRemainingTimeIfItIsKnown) {
  using std::chrono::seconds;
  const auto now = std::chrono::steady_clock::now();
  WorkEstimate known(3);
  known.jobs = 2;
  known.durations = {{"/p/a.o", {seconds(60), false}},
                     {"/p/b.o", {seconds(40), false}},
                     {"/p/app.elf", {seconds(20), true}}};
  const auto started = [](int run, const char* file, const char* output,
                          RunEvent::Time time) -> RunEvent {
    return {RunEvent::Kind::Started, run, time, 0, {"cc", {file}, output, "gcc"}};
  };
  const RunEvent a = started(1, "/p/a.c", "/p/a.o", now - seconds(30));
  const RunEvent b = started(2, "/p/b.c", "/p/b.o", now - seconds(5));
  const RunEvent ended{RunEvent::Kind::Ended, 1, now, 0, {}, true};
  const struct {
    const char* name;
    WorkEstimate work;
    std::vector<RunEvent> events;
    int width;
    const char* line;  // T: the seconds of the file
  } rows[] = {
      {"two running", known, {a, b}, 80, "[0/3] 2 running  a.c T  0:55 left"},
      {"one has ended", known, {a, b, ended}, 80, "[0/3] 1 running  b.c T  0:55 left"},
      {"unknown durations", WorkEstimate(3), {a, b}, 80, "[0/3] 2 running  a.c T"},
      {"narrow", known, {a, b}, 14, "[0/3] 2 runni"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    std::ostringstream out;
    ConsoleStyle style;
    style.redraws = true;
    style.width = [&row] { return row.width; };
    Console console(out, style);
    BuildReporter reporter(console, "/p", ReportDetail::Progress, [&row] { return row.work; });
    for (const RunEvent& event : row.events) reporter.OnRunEvent(event);
    reporter.OnToolStarted(a.start);
    const std::string line = out.str().substr(out.str().rfind("\033[K") + 3);
    EXPECT_EQ(std::regex_replace(line, std::regex("\\d+\\.\\ds"), "T"), row.line);
  }
}

TEST(BuildReporter, VerboseShowsCommandsAndNothingShowsNothing) {
  const std::string verbose = Tell(false, ReportDetail::Everything, kGood);
  EXPECT_NE(verbose.find("gcc -c /p/a.c\n"), std::string::npos);
  EXPECT_NE(verbose.find("chatter\n"), std::string::npos);
  EXPECT_EQ(Tell(true, ReportDetail::Nothing, kBad), "");
}

TEST(BuildReporter, OfAToolThatSaysTooMuchTheEndIsShownAndEverythingCounted) {
  std::string messages = "<m><message Icon='0' Description='gcc'/>";
  for (int i = 0; i < 300; ++i) messages += "<message Icon='0' Description='talk'/>";
  messages +=
      "<message Icon='1' ShowInReport='yes' Description='6 more' Count='6'/>"
      "<message Icon='0' ShowInReport='yes' Description='why'/>"
      "<message Icon='2' ShowInReport='yes' Description='gcc ended'/></m>";
  std::ostringstream out;
  Console console(out, {});
  BuildReporter reporter(console, "/p", ReportDetail::Progress, [] { return 1; });
  reporter.OnToolEnded(false, ReadLogEntries(messages));
  EXPECT_TRUE(out.str().starts_with("(203 lines omitted, see `tarn log`)\ntalk\n")) << out.str();
  EXPECT_TRUE(out.str().ends_with("talk\nwarning: 6 more\nwhy\nerror: gcc ended\n")) << out.str();
  EXPECT_EQ(reporter.GetErrors(), 1);
  EXPECT_EQ(reporter.GetWarnings(), 6);
  EXPECT_EQ(reporter.GetDiagnostics().back().lastLines, std::vector<std::string>{"why"});
}

TEST(BuildReporter, EveryEndHasItsWord) {
  const struct {
    BuildOutcome outcome;
    BuildWork work;
    const char* text;
  } cases[] = {
      {{BuildEnd::Succeeded, 0, 0, {1, {}}}, BuildWork::Build, "Nothing to do (T)\n"},
      {{BuildEnd::Succeeded, 0, 0},
       BuildWork::Build,
       "Nothing to do: no application to build (T)\n"},
      {{BuildEnd::Succeeded, 0, 0}, BuildWork::Clean, "Cleaned (T)\n"},
      {{BuildEnd::Failed, 0, 0}, BuildWork::Clean, "Failed (T)\n"},
      {{BuildEnd::Stopped, 0, 0}, BuildWork::Build, "Interrupted (T)\n"},
      {{BuildEnd::Refused, 0, 0}, BuildWork::Build, "The build was refused (T)\n"},
  };
  for (const auto& each : cases) {
    std::ostringstream out;
    Console console(out, {});
    BuildReporter reporter(console, "/p", ReportDetail::Progress, [] { return 0; });
    reporter.Finish(each.outcome, each.work, {});
    EXPECT_EQ(WithoutTimes(out.str()), each.text);
  }
}

}  // namespace
}  // namespace tarn::host
