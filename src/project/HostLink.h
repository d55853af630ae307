#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "output/BuildOutput.h"
#include "project/ProjectServices.h"
#include "widgets/HostMessages.h"

namespace tarn {

// Messages to the host and lines of the log that the host is notified of. Messages are synchronous,
// and a handler may call any operation: a caller must not use a node after sending one unless the
// epochs of ProjectState show that the tree has not changed in the meantime. Borrows the services;
// main thread only. Nothing here fails.
class HostLink {
 public:
  struct BuildNotice {
    LineKind kind;
    std::string text;
  };

  explicit HostLink(ProjectServices& projectServices) : services_(projectServices) {}

  // Sends a message to the host and returns its reply; 1, which means agreement, if there is no
  // host.
  std::intptr_t SendHost(HostMessage message, std::intptr_t wParam, std::intptr_t lParam);
  std::intptr_t SendHost(HostMessage message, const std::string& wText, std::intptr_t lParam);
  std::intptr_t SendHost(HostMessage message, const std::string& wText, const std::string& lText);
  // Posts a command to the host without waiting for it.
  void PostHostCommand(std::int32_t command);
  // Sends no more messages to the host.
  void ClearHost();

  // Adds a line that is not in the message table to the log and reports it to the host.
  void AddLogLine(const std::string& text);
  // Same for an error, which also appears in the build report.
  void AddLogError(const std::string& text);
  // Adds a line of the host to the log.
  void ReportMessage(const char* text);

  // Adds a finding of a build about the project itself to the log and the report, and queues it for
  // hosts that show a build's progress.
  void AddBuildNotice(LineKind kind, const std::string& text);
  // Returns and clears the queued notices. One of them may say why the log file is not written.
  std::vector<BuildNotice> TakeBuildNotices();

 private:
  ProjectServices& services_;
  std::vector<BuildNotice> buildNotices_;
};

}  // namespace tarn
