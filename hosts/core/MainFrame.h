#pragma once

#include <tarn/automation.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "widgets/HostMessages.h"
#include "widgets/MessageLoop.h"

namespace tarn::host {

// Messages of the tool manager to the frame, beside those of the project manager.
enum ToolMessage : std::uint32_t {
  kMsgToolStarted = TARN_MSG_TOOL_STARTED,
  kMsgToolEnded = TARN_MSG_TOOL_ENDED,
};

// A message as its receiver sees it: texts are copies, so they may be kept.
struct HostEvent {
  std::uint32_t number = 0;
  std::intptr_t wParam = 0;
  std::intptr_t lParam = 0;
  std::string text;    // wParam, where the message carries a text there
  std::string detail;  // lParam, where the message carries a text there
  bool hasText = false;
  bool hasDetail = false;
};

// The main frame of a host as the system sees it: a window that answers every message. What has no
// handler is answered with 1, so that nothing is ever refused by mistake. Belongs to the thread
// that made it.
class MainFrame : private WindowTarget {
 public:
  using Handler = std::function<std::intptr_t(const HostEvent&)>;

  MainFrame();
  MainFrame(const MainFrame&) = delete;
  MainFrame& operator=(const MainFrame&) = delete;
  ~MainFrame();

  WindowHandle GetHandle() const { return handle; }

  // Who answers a message from now on; an empty handler takes it back. A handler may call the
  // system again, and may set handlers.
  void Answer(std::uint32_t number, Handler handler);
  // Who hears of every message ahead of its handler from now on; at most one, an empty one ends it.
  void Watch(std::function<void(const HostEvent&)> onMessage);

 private:
  std::intptr_t OnWindowMessage(std::uint32_t message, std::intptr_t wParam,
                                std::intptr_t lParam) override;

  WindowHandle handle = 0;
  std::map<std::uint32_t, Handler> handlers;
  std::function<void(const HostEvent&)> watcher;
};

}  // namespace tarn::host
