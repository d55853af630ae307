#include "support/RecordingHost.h"

#include <array>
#include <cstdio>
#include <utility>

namespace tarn::test {

namespace {

enum class Meaning { Number, Text, Address };

struct MessageMeaning {
  std::uint32_t number;
  Meaning wParam;
  Meaning lParam;
};

constexpr std::array kMeanings{
    MessageMeaning{kMsgAnnounceWindow, Meaning::Address, Meaning::Text},
    MessageMeaning{kMsgCreationEnded, Meaning::Text, Meaning::Number},
    MessageMeaning{kMsgOpenFileAtLine, Meaning::Text, Meaning::Number},
    MessageMeaning{kMsgRunScript, Meaning::Text, Meaning::Number},
    MessageMeaning{kMsgCreateToolbar, Meaning::Text, Meaning::Text},
    MessageMeaning{kMsgWorkerEnded, Meaning::Number, Meaning::Text},
    MessageMeaning{kMsgOpenFile, Meaning::Text, Meaning::Number},
    MessageMeaning{kMsgApplicationActivated, Meaning::Text, Meaning::Text},
    MessageMeaning{kMsgCurrentNodeChanged, Meaning::Text, Meaning::Number},
    MessageMeaning{kMsgShowPopupMenu, Meaning::Address, Meaning::Text},
    MessageMeaning{kMsgAddMainMenu, Meaning::Text, Meaning::Text},
    MessageMeaning{kMsgProjectOpened, Meaning::Text, Meaning::Number},
    MessageMeaning{kMsgProjectClosing, Meaning::Text, Meaning::Number},
    MessageMeaning{kMsgProjectCreated, Meaning::Text, Meaning::Number},
    MessageMeaning{kMsgToolSucceeded, Meaning::Text, Meaning::Number},
    MessageMeaning{kMsgPaneCaption, Meaning::Text, Meaning::Number},
    MessageMeaning{kMsgLogLine, Meaning::Text, Meaning::Number},
    MessageMeaning{kMsgOutputInvalid, Meaning::Text, Meaning::Number},
    MessageMeaning{kMsgApplicationKnown, Meaning::Text, Meaning::Text},
    MessageMeaning{kMsgShowHelp, Meaning::Text, Meaning::Number},
};

std::string Show(std::intptr_t value, Meaning meaning) {
  if (meaning == Meaning::Number) return std::to_string(value);
  if (meaning == Meaning::Address) return value == 0 ? "0" : "*";
  const char* text = reinterpret_cast<const char*>(value);
  if (text == nullptr) return "null";
  return *text == '\0' ? "\"\"" : text;
}

std::string LineOf(std::uint32_t message, std::intptr_t wParam, std::intptr_t lParam) {
  MessageMeaning meaning{message, Meaning::Number, Meaning::Number};
  for (const MessageMeaning& row : kMeanings) {
    if (row.number == message) meaning = row;
  }
  std::array<char, 16> number{};
  std::snprintf(number.data(), number.size(), message == kMsgCommand ? "%u" : "0x%04X", message);
  return std::string(number.data()) + " " + Show(wParam, meaning.wParam) + " " +
         Show(lParam, meaning.lParam);
}

}  // namespace

RecordingHost::RecordingHost() : handle(RegisterWindow(*this)) {}

RecordingHost::~RecordingHost() {
  UnregisterWindow(handle);
}

std::vector<std::string> RecordingHost::TakeLines() {
  return std::exchange(lines, {});
}

std::vector<std::string> RecordingHost::LinesOf(std::uint32_t message) const {
  const std::string start = LineOf(message, 0, 0).substr(0, message == kMsgCommand ? 4 : 7);
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
