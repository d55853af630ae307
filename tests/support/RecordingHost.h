#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "widgets/HostMessages.h"
#include "widgets/MessageLoop.h"

namespace tarn::test {

// A main frame that keeps every message as one line: number, wParam and lParam, the latter two as
// text or number by what the message means.
//
//   0x8015 /p/demo.tprj 0
//   0x8011 "" 0
//
// An empty text shows as "", a null one as null, and an address that means nothing here (a window
// object, a mouse position) as * or 0. Lives on the thread that made it.
class RecordingHost : public WindowTarget {
 public:
  RecordingHost();
  ~RecordingHost();
  RecordingHost(const RecordingHost&) = delete;
  RecordingHost& operator=(const RecordingHost&) = delete;

  WindowHandle Handle() const { return handle; }

  // What each message is answered with; 1 where nothing stands.
  std::map<std::uint32_t, std::intptr_t> answers;
  // Run inside the message of that number, after its line was kept and before it is answered. The
  // action may call whatever a real main frame would, and may replace itself.
  std::map<std::uint32_t, std::function<void()>> actions;
  std::vector<std::string> lines;

  // The lines so far, which are then forgotten.
  std::vector<std::string> TakeLines();
  // Only the lines of one message.
  std::vector<std::string> LinesOf(std::uint32_t message) const;

  std::intptr_t OnWindowMessage(std::uint32_t message, std::intptr_t wParam,
                                std::intptr_t lParam) override;

 private:
  WindowHandle handle = 0;
};

}  // namespace tarn::test
