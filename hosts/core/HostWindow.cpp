#include "hosts/core/HostWindow.h"

#include <algorithm>
#include <exception>
#include <iterator>

namespace tarn::host {

namespace {

// Names which arguments of a message are strings; all others are plain numbers.
struct MessageForm {
  std::uint32_t number;
  bool wParamIsText;
  bool lParamIsText;
};

constexpr MessageForm kForms[] = {
    {kMsgAnnounceWindow, false, true},
    {kMsgCreationEnded, true, false},
    {kMsgOpenFileAtLine, true, false},
    {kMsgRunScript, true, false},
    {kMsgCreateToolbar, true, true},
    {kMsgWorkerEnded, false, true},
    {kMsgOpenFile, true, false},
    {kMsgApplicationActivated, true, true},
    {kMsgCurrentNodeChanged, true, false},
    {kMsgShowPopupMenu, false, true},
    {kMsgAddMainMenu, true, true},
    {kMsgProjectOpened, true, false},
    {kMsgProjectClosing, true, false},
    {kMsgProjectCreated, true, false},
    {kMsgToolSucceeded, true, false},
    {kMsgPaneCaption, true, false},
    {kMsgLogLine, true, false},
    {kMsgOutputInvalid, true, false},
    {kMsgApplicationKnown, true, true},
    {kMsgShowHelp, true, false},
    {kMsgToolStarted, true, false},
    {kMsgToolEnded, true, false},
};

std::string CopyText(std::intptr_t parameter) {
  const auto* text = reinterpret_cast<const char*>(parameter);
  return text == nullptr ? std::string() : std::string(text);
}

HostMessageEvent MakeEvent(std::uint32_t message, std::intptr_t wParam, std::intptr_t lParam) {
  HostMessageEvent event{message, wParam, lParam, {}, {}, false, false};
  const auto* form = std::find_if(std::begin(kForms), std::end(kForms),
                                  [message](const MessageForm& f) { return f.number == message; });
  if (form == std::end(kForms)) return event;
  event.hasText = form->wParamIsText;
  event.hasDetail = form->lParamIsText;
  if (event.hasText) event.text = CopyText(wParam);
  if (event.hasDetail) event.detail = CopyText(lParam);
  return event;
}

}  // namespace

HostWindow::HostWindow() : handle_(RegisterWindow(*this)) {}

HostWindow::~HostWindow() {
  UnregisterWindow(handle_);
}

void HostWindow::SetHandler(std::uint32_t number, Handler handler) {
  if (handler) {
    handlers_[number] = std::move(handler);
  } else {
    handlers_.erase(number);
  }
}

void HostWindow::SetObserver(std::function<void(const HostMessageEvent&)> onMessage) {
  observer_ = std::move(onMessage);
}

std::intptr_t HostWindow::OnWindowMessage(std::uint32_t message, std::intptr_t wParam,
                                          std::intptr_t lParam) {
  try {
    if (!observer_ && !handlers_.contains(message)) return 1;
    const HostMessageEvent event = MakeEvent(message, wParam, lParam);
    if (const auto watch = observer_) watch(event);
    const auto found = handlers_.find(message);
    if (found == handlers_.end()) return 1;
    const Handler handler = found->second;  // copied, because it may replace itself while it runs
    return handler(event);
  } catch (const std::exception&) {
    return 1;  // the sender can't handle an error
  }
}

}  // namespace tarn::host
