#include "support/RecordingHost.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <span>
#include <utility>

#include "widgets/HostMessageNames.h"

namespace tarn::test {

namespace {

// Messages whose first or second parameter is a string; other addresses are not resolved.
constexpr std::array kTextFirst{
    kMsgCreationEnded,  kMsgOpenFileAtLine, kMsgRunScript,     kMsgCreateToolbar,
    kMsgOpenFile,       kMsgAddMainMenu,    kMsgProjectOpened, kMsgApplicationActivated,
    kMsgProjectClosing, kMsgProjectCreated, kMsgToolSucceeded, kMsgCurrentNodeChanged,
    kMsgPaneCaption,    kMsgLogLine,        kMsgOutputInvalid, kMsgApplicationKnown,
    kMsgShowHelp};
constexpr std::array kTextSecond{kMsgAnnounceWindow,       kMsgCreateToolbar, kMsgWorkerEnded,
                                 kMsgApplicationActivated, kMsgShowPopupMenu, kMsgAddMainMenu,
                                 kMsgApplicationKnown};
constexpr std::array kAddressFirst{kMsgAnnounceWindow, kMsgShowPopupMenu};

std::string NameOf(std::uint32_t message) {
  const std::string_view name = NameOfHostMessage(message);
  return name.empty() ? std::to_string(message) : std::string(name);
}

bool IsAmong(std::span<const HostMessage> messages, std::uint32_t message) {
  return std::find(messages.begin(), messages.end(), message) != messages.end();
}

std::string ShowText(std::intptr_t value) {
  const char* text = reinterpret_cast<const char*>(value);
  if (text == nullptr) return "null";
  return *text == '\0' ? "\"\"" : text;
}

std::string LineOf(std::uint32_t message, std::intptr_t wParam, std::intptr_t lParam) {
  std::string first = std::to_string(wParam);
  if (IsAmong(kTextFirst, message)) first = ShowText(wParam);
  if (IsAmong(kAddressFirst, message) && wParam != 0) first = "*";
  return NameOf(message) + " " + first + " " +
         (IsAmong(kTextSecond, message) ? ShowText(lParam) : std::to_string(lParam));
}

}  // namespace

RecordingHost::RecordingHost() : handle_(RegisterWindow(*this)) {}

RecordingHost::~RecordingHost() {
  UnregisterWindow(handle_);
}

std::vector<std::string> RecordingHost::TakeLines() {
  return std::exchange(lines, {});
}

std::vector<std::string> RecordingHost::LinesOf(std::uint32_t message) const {
  const std::string start = NameOf(message) + " ";
  std::vector<std::string> found;
  for (const std::string& line : lines) {
    if (line.starts_with(start)) found.push_back(line);
  }
  return found;
}

std::intptr_t RecordingHost::OnWindowMessage(std::uint32_t message, std::intptr_t wParam,
                                             std::intptr_t lParam) {
  lines.push_back(LineOf(message, wParam, lParam));
  if (const auto found = actions.find(message); found != actions.end() && found->second) {
    const auto action = found->second;  // a copy: it may replace itself
    action();
  }
  const auto answer = answers.find(message);
  return answer == answers.end() ? 1 : answer->second;
}

}  // namespace tarn::test
