#include "project/HostLink.h"

#include <utility>

#include "platform/text/Text.h"

namespace tarn {

std::intptr_t HostLink::SendHost(HostMessage message, std::intptr_t wParam, std::intptr_t lParam) {
  if (!IsWindow(services_.mainframeHandle)) return 1;
  return SendWindowMessage(services_.mainframeHandle, message, wParam, lParam);
}

std::intptr_t HostLink::SendHost(HostMessage message, const std::string& wText,
                                 std::intptr_t lParam) {
  return SendHost(message, reinterpret_cast<std::intptr_t>(wText.c_str()), lParam);
}

std::intptr_t HostLink::SendHost(HostMessage message, const std::string& wText,
                                 const std::string& lText) {
  return SendHost(message, reinterpret_cast<std::intptr_t>(wText.c_str()),
                  reinterpret_cast<std::intptr_t>(lText.c_str()));
}

void HostLink::AddLogLine(const std::string& text) {
  services_.output->AddOutput(text);
  SendHost(kMsgLogLine, text, 0);
}

void HostLink::AddBuildNotice(LineKind kind, const std::string& text) {
  buildNotices_.push_back({kind, text});
  if (kind == LineKind::Error) {
    services_.output->AddError(text);
  } else {
    services_.output->AddWarning(text);
  }
  SendHost(kMsgLogLine, text, 0);
}

std::vector<HostLink::BuildNotice> HostLink::TakeBuildNotices() {
  const Status written = services_.output == nullptr ? Status() : services_.output->GetLogStatus();
  if (!written) {
    const Error& error = written.GetError();
    buildNotices_.push_back(
        {LineKind::Error, "The log can't be written to " + error.place + ": " + error.text});
  }
  return std::exchange(buildNotices_, {});
}

void HostLink::AddLogError(const std::string& text) {
  services_.output->AddError(text);
  SendHost(kMsgLogLine, text, 0);
}

void HostLink::PostHostCommand(std::int32_t command) {
  PostWindowMessage(services_.mainframeHandle, kMsgCommand, command, 0);
}

void HostLink::ClearHost() {
  services_.mainframeHandle = 0;
  services_.output->ClearHost();
}

void HostLink::ReportMessage(const char* text) {
  services_.output->AddOutput(OrEmpty(text));
  services_.output->SaveLog();
  services_.output->UpdateReport();
}

}  // namespace tarn
