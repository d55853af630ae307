#pragma once

#include <string>

#include "hosts/core/BuildSession.h"

namespace tarn::host {

// Holds the edit lock of a project during its lifetime, so that the files found stay unchanged
// until they are written. The constructor waits up to two seconds for another process.
class EditRight {
 public:
  EditRight(BuildSession& session, const std::string& project);
  ~EditRight() { inspector_.UnlockProject(); }
  EditRight(const EditRight&) = delete;
  EditRight& operator=(const EditRight&) = delete;

  bool IsTaken() const { return isTaken_; }
  // Returns why the lock can't be taken by any process, or an empty string.
  const std::string& GetProblem() const { return problem_; }

 private:
  InspectorDriver& inspector_;
  bool isTaken_ = false;
  std::string problem_;
};

}  // namespace tarn::host
