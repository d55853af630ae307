#pragma once

#include <functional>
#include <string>
#include <vector>

#include "project/NewApplication.h"

namespace tarn::test {

// A wizard that fills itself in, and records the values it was opened with as a line.
class AnsweringWizard final : public IProjectWizard {
 public:
  // Returns false to cancel.
  std::function<bool(NewApplication& application)> fill;
  std::vector<std::string> lines;

  bool AskNewApplication(NewApplication& application) override {
    lines.push_back(application.location + " " + application.applicationName + " '" +
                    application.typeHeader + "' " +
                    (application.createNewProject ? "new project" : "this project"));
    return fill && fill(application);
  }
};

}  // namespace tarn::test
