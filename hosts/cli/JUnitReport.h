#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace tarn::host {

struct TestResult {
  enum class Verdict { Passed, Failed, Broken };  // Broken: not run, because it couldn't be built

  std::string name;
  Verdict verdict = Verdict::Passed;
  std::string problem;  // empty if it passed
  std::string output;
  std::chrono::milliseconds time{0};
};

// Returns the results in the XML format of JUnit that build servers read.
std::string MakeJUnitReport(const std::string& suite, const std::vector<TestResult>& results);

}  // namespace tarn::host
