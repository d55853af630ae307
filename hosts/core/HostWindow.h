#pragma once

#include <tarn/automation.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "widgets/HostMessages.h"
#include "widgets/MessageLoop.h"

namespace tarn::host {

// Messages of the tool manager to the frame, in addition to those of the project manager.
enum ToolMessage : std::uint32_t {
  kMsgToolStarted = TARN_MSG_TOOL_STARTED,
  kMsgToolEnded = TARN_MSG_TOOL_ENDED,
};

// A message as received by a handler. Strings are copies and may be stored.
struct HostMessageEvent {
  std::uint32_t number = 0;
  std::intptr_t wParam = 0;
  std::intptr_t lParam = 0;
  std::string text;    // wParam if it is a string in this message
  std::string detail;  // lParam if it is a string in this message
  bool hasText = false;
  bool hasDetail = false;
};

// A host's main window as seen by the server: a message target that replies to every message.
// Messages without a handler return 1, so that nothing is refused by mistake. Belongs to the thread
// that created it.
class HostWindow : private WindowTarget {
 public:
  using Handler = std::function<std::intptr_t(const HostMessageEvent&)>;

  HostWindow();
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;
  ~HostWindow();

  WindowHandle GetHandle() const { return handle_; }

  // Sets the handler of a message; an empty handler removes it. A handler may call the server again
  // and may set handlers.
  void SetHandler(std::uint32_t number, Handler handler);
  // Sets the observer that sees every message before its handler. There is at most one; an empty
  // function removes it.
  void SetObserver(std::function<void(const HostMessageEvent&)> onMessage);

 private:
  std::intptr_t OnWindowMessage(std::uint32_t message, std::intptr_t wParam,
                                std::intptr_t lParam) override;

  WindowHandle handle_ = 0;
  std::map<std::uint32_t, Handler> handlers_;
  std::function<void(const HostMessageEvent&)> observer_;
};

}  // namespace tarn::host
