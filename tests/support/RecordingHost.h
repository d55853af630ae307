#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "widgets/HostMessages.h"
#include "widgets/MessageLoop.h"

namespace tarn::test {

// A host window that records every message as one line: name, wParam and lParam, the latter two
// as string or number depending on the message.
//
//   kMsgProjectOpened /p/demo.tprj 0
//   kMsgCurrentNodeChanged "" 0
//
// An empty string is shown as "", a null one as null, and a meaningless address (a window object, a
// mouse position) as * or 0. Belongs to the thread that created it.
class RecordingHost : public WindowTarget {
 public:
  RecordingHost();
  ~RecordingHost();
  RecordingHost(const RecordingHost&) = delete;
  RecordingHost& operator=(const RecordingHost&) = delete;

  WindowHandle Handle() const { return handle_; }

  // Reply to each message; 1 by default.
  std::map<std::uint32_t, std::intptr_t> answers;
  // Actions run inside the message of that number, after it is recorded and before the reply. An
  // action may do everything that a real host window would, and may replace itself.
  std::map<std::uint32_t, std::function<void()>> actions;
  std::vector<std::string> lines;

  // Returns the lines so far and clears them.
  std::vector<std::string> TakeLines();
  // Only the lines of one message.
  std::vector<std::string> LinesOf(std::uint32_t message) const;

  std::intptr_t OnWindowMessage(std::uint32_t message, std::intptr_t wParam,
                                std::intptr_t lParam) override;

 private:
  WindowHandle handle_ = 0;
};

}  // namespace tarn::test
