#include "project/HostLink.h"

#include <utility>

#include "platform/text/Text.h"

namespace tarn {

std::intptr_t HostLink::SendHost(HostMessage message, std::intptr_t wParam, std::intptr_t lParam) {
  if (!IsWindow(services.mainframeHandle)) return 1;
  return SendWindowMessage(services.mainframeHandle, message, wParam, lParam);
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
  services.output->AddOutput(text);
  SendHost(kMsgLogLine, text, 0);
}

void HostLink::AddBuildNotice(LineKind kind, const std::string& text) {
  buildNotices.push_back({kind, text});
  if (kind == LineKind::Error) {
    services.output->AddError(text);
  } else {
    services.output->AddWarning(text);
  }
  SendHost(kMsgLogLine, text, 0);
}

std::vector<HostLink::BuildNotice> HostLink::TakeBuildNotices() {
  const Status written = services.output == nullptr ? Status() : services.output->GetLogStatus();
  if (!written) {
    const Error& error = written.GetError();
    buildNotices.push_back(
        {LineKind::Error, "The log can't be written to " + error.place + ": " + error.text});
  }
  return std::exchange(buildNotices, {});
}

void HostLink::AddLogError(const std::string& text) {
  services.output->AddError(text);
  SendHost(kMsgLogLine, text, 0);
}

void HostLink::PostHostCommand(std::int32_t command) {
  PostWindowMessage(services.mainframeHandle, kMsgCommand, command, 0);
}

void HostLink::ForgetHost() {
  services.mainframeHandle = 0;
  services.output->ForgetHost();
}

void HostLink::ReportMessage(const char* text) {
  services.output->AddOutput(TextOf(text));
  services.output->SaveLog();
  services.output->UpdateReport();
}

}  // namespace tarn
