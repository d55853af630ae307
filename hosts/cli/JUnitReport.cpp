#include "hosts/cli/JUnitReport.h"

#include <algorithm>

#include "hosts/core/Printable.h"

namespace tarn::host {

namespace {

std::string Escape(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '&') {
      escaped += "&amp;";
    } else if (c == '<') {
      escaped += "&lt;";
    } else if (c == '>') {
      escaped += "&gt;";
    } else if (c == '"') {
      escaped += "&quot;";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

std::string Seconds(std::chrono::milliseconds time) {
  std::string digits = std::to_string(time.count() % 1000);
  digits.insert(0, 3 - digits.size(), '0');
  return std::to_string(time.count() / 1000) + "." + digits;
}

std::string CaseElement(const std::string& suite, const TestResult& result) {
  std::string text = "    <testcase classname=\"" + Escape(suite) + "\" name=\"" +
                     Escape(result.name) + "\" time=\"" + Seconds(result.time) + "\">\n";
  if (result.verdict != TestResult::Verdict::Passed) {
    const char* const kind = result.verdict == TestResult::Verdict::Failed ? "failure" : "error";
    text += std::string("      <") + kind + " message=\"" + Escape(result.problem) + "\"/>\n";
  }
  if (!result.output.empty()) {
    text += "      <system-out>" + Escape(result.output) + "</system-out>\n";
  }
  return text + "    </testcase>\n";
}

}  // namespace

std::string MakeJUnitReport(const std::string& suite, const std::vector<TestResult>& results) {
  const auto count = [&](TestResult::Verdict verdict) {
    return std::to_string(std::ranges::count(results, verdict, &TestResult::verdict));
  };
  std::chrono::milliseconds time{0};
  std::string cases;
  for (const TestResult& each : results) {
    time += each.time;
    cases += CaseElement(suite, each);
  }
  const std::string counts = " tests=\"" + std::to_string(results.size()) + "\" failures=\"" +
                             count(TestResult::Verdict::Failed) + "\" errors=\"" +
                             count(TestResult::Verdict::Broken) + "\" time=\"" + Seconds(time) +
                             "\"";
  // The output of a program may be anything.
  return ValidXml("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites" + counts +
                  ">\n  <testsuite name=\"" + Escape(suite) + "\"" + counts + ">\n" + cases +
                  "  </testsuite>\n</testsuites>\n");
}

}  // namespace tarn::host
