#include "hosts/desktop/EditRight.h"

#include <QThread>
#include <vector>

namespace tarn::host {

EditRight::EditRight(BuildSession& session, const std::string& project)
    : inspector_(session.Inspector()) {
  constexpr int kMostTries = 40;
  constexpr unsigned long kBetweenTries = 50;  // milliseconds
  for (int i = 0; i < kMostTries && !isTaken_ && problem_.empty(); ++i) {
    if (i > 0) QThread::msleep(kBetweenTries);
    session.TakeLogLines();
    isTaken_ = inspector_.TryLockProject(project).empty();
    // Without a holder, waiting would not help.
    const std::vector<std::string> lines = session.TakeLogLines();
    if (!isTaken_ && !lines.empty()) problem_ = lines.front();
  }
}

}  // namespace tarn::host
