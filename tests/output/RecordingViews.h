#pragma once

#include <string>
#include <utility>
#include <vector>

#include "output/OutputViews.h"
#include "widgets/HostMessages.h"
#include "widgets/MessageLoop.h"
#include "xml/XmlDump.h"

namespace tarn::test {

// Both views and the host's window in one object, so that a test sees their notifications in order.
struct RecordingViews : ILogView, IReportView, WindowTarget {
  RecordingViews() : window(RegisterWindow(*this)) {}
  ~RecordingViews() { UnregisterWindow(window); }

  void AddMessage(const CXmlNode& node) override { events.push_back("log " + Flat(node)); }
  void Clear() override { events.emplace_back("clear"); }
  void Update(const CXmlNode& root, std::uint64_t /*generation*/) override {
    events.push_back("report of " + std::to_string(root.GetChildCount()));
  }
  std::intptr_t OnWindowMessage(std::uint32_t message, std::intptr_t wParam,
                                std::intptr_t lParam) override {
    if (message == kMsgLogLine && lParam == 0) {
      events.push_back("host " + std::string(reinterpret_cast<const char*>(wParam)));
    }
    return 0;
  }

  std::vector<std::string> Take() { return std::exchange(events, {}); }

  const WindowHandle window;
  std::vector<std::string> events;
};

}  // namespace tarn::test
