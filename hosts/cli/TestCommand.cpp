#include <algorithm>
#include <nlohmann/json.hpp>

#include "hosts/cli/ActionRun.h"
#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/cli/JUnitReport.h"
#include "hosts/core/SignalHandler.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr const char* kTestAction = "simulate";
constexpr int kUsualLimit = 60;  // seconds

struct TestOptions {
  std::string junit;    // file; empty: none
  std::string timeout;  // seconds; empty: Test.Timeout
};

const char* ToString(TestResult::Verdict verdict) {
  if (verdict == TestResult::Verdict::Passed) return "passed";
  return verdict == TestResult::Verdict::Failed ? "failed" : "error";
}

// Builds and runs the tests of a project, and collects the results.
class TestRun {
 public:
  explicit TestRun(CommandContext& commandContext) : context_(commandContext) {}

  // Returns false if nothing more is to be run.
  bool Run(const ApplicationEntry& application) {
    application_ = &application;
    TestResult result;
    result.name = application.label;
    if (application.configuration != "Standard")
      result.name += " [" + application.configuration + "]";
    const bool goesOn = Fill(result);
    Show(result);
    results_.push_back(std::move(result));
    return goesOn;
  }

  const std::vector<TestResult>& GetResults() const { return results_; }
  bool WasRefused() const { return isRefused_; }
  bool WasInterrupted() const { return isInterrupted_; }

 private:
  std::string Option(const char* name) const {
    return context_.Session().Manager().GetPropertyValue("Application", "Test", name);
  }

  bool Fill(TestResult& result) {
    using Verdict = TestResult::Verdict;
    const int built = BuildForAction(context_, *application_);
    isRefused_ = isRefused_ || built == kExitCannotOpen;
    isInterrupted_ = built == kExitInterrupted;
    if (built != kExitDone) {
      result.verdict = Verdict::Broken;
      result.problem = "it couldn't be built";
      return !isInterrupted_;
    }
    ActionEntry action;
    if (FindAction(context_, *application_, kTestAction, action) != kExitDone) {
      result.verdict = Verdict::Broken;
      result.problem = context_.GetLastComplaint();
      return true;
    }
    context_.Session().Inspector().SelectApplication(application_->path);
    const std::string expected = Option("Expect");
    const std::string rejected = Option("Reject");
    ActionRequest request{*application_, action.name, GetLimit(), context_.Asked().verbose};
    const ActionResult ended = RunAction(context_, request);
    result.output = ended.output;
    result.time = ended.time;
    result.problem = ended.problem;
    if (!context_.ShowRefused().empty()) {
      isRefused_ = true;
      result.problem = "it was refused, because the project is not trusted";
    }
    isInterrupted_ = !ended.isLate && ended.code == kExitInterrupted;
    result.verdict = result.problem.empty() ? Verdict::Passed
                     : ended.isStarted      ? Verdict::Failed
                                            : Verdict::Broken;
    if (result.problem.empty() && !expected.empty() && !Contains(ended.output, expected)) {
      Fail(result, "its output lacks \"" + expected + "\"");
    }
    if (!rejected.empty() && Contains(ended.output, rejected)) {
      Fail(result, "its output contains \"" + rejected + "\"");
    }
    return !isInterrupted_;
  }

  static bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != text.npos;
  }
  static void Fail(TestResult& result, const std::string& problem) {
    result.verdict = TestResult::Verdict::Failed;
    if (result.problem.empty()) result.problem = problem;
  }

  std::chrono::seconds GetLimit() const {
    std::string seconds = context_.Own<TestOptions>().timeout;
    if (seconds.empty()) seconds = Option("Timeout");
    const auto number = ParseInt64(seconds);
    return std::chrono::seconds(number && *number > 0 ? *number : kUsualLimit);
  }

  void Show(const TestResult& result) {
    if (context_.Asked().json) return;
    Console& out = context_.Out();
    const bool isPassed = result.verdict == TestResult::Verdict::Passed;
    if (isPassed && context_.Asked().quiet) return;
    const ConsoleText word = isPassed ? out.Dye(Paint::Green, "PASS") : out.Dye(Paint::Red, "FAIL");
    out.PrintLine(word + ConsoleText("  " + result.name + " (" + DurationText(result.time) + ")" +
                                     (isPassed ? "" : ": " + result.problem)));
    if (isPassed || context_.Asked().verbose || result.output.empty()) return;
    out.PrintOutput(result.output);
    if (result.output.back() != '\n') out.PrintOutput("\n");
  }

  CommandContext& context_;
  const ApplicationEntry* application_ = nullptr;
  std::vector<TestResult> results_;
  bool isRefused_ = false;
  bool isInterrupted_ = false;
};

// Returns the applications that are tests.
std::vector<ApplicationEntry> FindTests(CommandContext& context,
                                        const std::vector<ApplicationEntry>& applications) {
  BuildSession& session = context.Session();
  std::vector<ApplicationEntry> tests;
  for (const ApplicationEntry& each : applications) {
    if (!session.Inspector().SelectApplication(each.path)) continue;
    if (session.Manager().GetPropertyValue("Application", "Test", "Run") == "Yes") {
      tests.push_back(each);
    }
  }
  return tests;
}

std::string JUnitPath(CommandContext& context) {
  const std::string& path = context.Own<TestOptions>().junit;
  return path.empty() || !IsRelativePath(path) ? path : JoinPath(context.StartFolder(), path);
}

// Returns false after printing the error if the option names a file that holds something else.
bool MayWriteJUnit(CommandContext& context) {
  const std::string path = JUnitPath(context);
  const auto present = path.empty() ? Result<std::string>("") : context.Files().ReadWholeFile(path);
  if (!present || present->empty() || present->find("<testsuite") != std::string::npos) return true;
  context.Complain("--junit would replace " + context.Show(path) +
                   ", which is not a report of tests.");
  return false;
}

int WriteJUnit(CommandContext& context, const std::vector<TestResult>& results) {
  const std::string path = JUnitPath(context);
  if (path.empty()) return kExitDone;
  const std::string suite = FileNameOf(WithoutExtension(context.Session().GetProjectPath()));
  const Status written = context.Files().WriteWholeFile(path, MakeJUnitReport(suite, results));
  if (written) return kExitDone;
  context.Complain(context.ShowFailure(path, "written", written.GetError().text));
  return kExitCannotOpen;
}

void ShowSummary(CommandContext& context, const std::vector<TestResult>& results, int failed,
                 int code) {
  if (!context.Asked().json) {
    if (results.empty()) {
      context.Remark("No application is marked as a test: its option Test.Run is not Yes.");
    } else if (!context.Asked().quiet || failed > 0) {
      context.Out().PrintLine(CountText(static_cast<int>(results.size()), "test") + ", " +
                              std::to_string(failed) + " failed");
    }
    return;
  }
  nlohmann::json list = nlohmann::json::array();
  for (const TestResult& each : results) {
    list.push_back({{"name", each.name},
                    {"result", ToString(each.verdict)},
                    {"problem", each.problem},
                    {"milliseconds", each.time.count()},
                    {"output", each.output}});
  }
  PrintJson(context, {{"exitCode", code}, {"tests", list}});
}

int RunTests(CommandContext& context) {
  BuildSession& session = context.Session();
  const SignalHandler interrupts([&session] { session.RequestStop(); }, WatchedOutput::Standard);
  if (!MayWriteJUnit(context)) return kExitUsage;
  if (const int code = context.OpenProject(); code != kExitDone) return code;
  std::vector<ApplicationEntry> applications;
  if (const int code = context.ChoosePreparedApplications(applications); code != kExitDone) {
    return code;
  }
  TestRun run(context);
  for (const ApplicationEntry& each : FindTests(context, applications)) {
    if (!run.Run(each)) break;
  }
  const std::vector<TestResult>& results = run.GetResults();
  const auto failed = static_cast<int>(std::ranges::count_if(
      results, [](const TestResult& each) { return each.verdict != TestResult::Verdict::Passed; }));
  int code = run.WasInterrupted() ? int{kExitInterrupted}
             : run.WasRefused()   ? int{kExitCannotOpen}
             : failed > 0         ? int{kExitBuildFailed}
                                  : int{kExitDone};
  ShowSummary(context, results, failed, code);
  const int written = WriteJUnit(context, results);
  return code == kExitDone ? written : code;
}

void DeclareTest(CommandArguments& arguments) {
  auto& own = arguments.Own<TestOptions>();
  arguments.AddProjectAndApp();
  arguments.AddConfiguration();
  arguments.Option("--junit", own.junit, "FILE", "Write the results as JUnit XML").NotEmpty();
  arguments
      .Option("--timeout", own.timeout, "SECONDS", "Time limit of each test; default: Test.Timeout")
      .Between(1, 1'000'000);
  arguments.AddVerbose("Show every command, and the output of the tests");
  arguments.AddDamagedOk();
  arguments.AddTrust();
}

}  // namespace

CommandSpec TestCommand() {
  return {
      .name = "test",
      .group = CommandGroup::Building,
      .help = "Build and run the applications that are tests",
      .examples = {{"tarn test --junit results.xml", "with results for a build server"}},
      .access = ProjectAccess::Build,
      .declare = DeclareTest,
      .run = RunTests,
  };
}

}  // namespace tarn::host
