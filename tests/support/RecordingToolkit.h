#pragma once

#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "widgets/Menu.h"
#include "widgets/Toolkit.h"

namespace tarn::test {

// Formats a menu as text: entries separated by " | ", a separator as "-", [x] before a checked
// entry, "(off)" after a disabled one, submenu entries in braces.
inline std::string MenuText(const CMenu& menu) {
  std::string text;
  for (const CMenu::Entry& entry : menu.GetEntries()) {
    if (!text.empty()) text += " | ";
    if (entry.kind == CMenu::Kind::Separator) {
      text += "-";
      continue;
    }
    if (entry.isChecked) text += "[x] ";
    text += entry.text;
    if (entry.kind == CMenu::Kind::Submenu) {
      text += " {" + MenuText(*entry.submenu) + "}";
    } else {
      text += " " + std::to_string(entry.id);
    }
    if (!entry.isEnabled) text += " (off)";
  }
  return text;
}

// Current toolkit of this thread during its lifetime: draws nothing, records its calls as lines,
// and takes menu choices from a list.
class RecordingToolkit : public WindowToolkit {
 public:
  RecordingToolkit() { SetCurrent(this); }
  ~RecordingToolkit() override { SetCurrent(nullptr); }
  RecordingToolkit(const RecordingToolkit&) = delete;
  RecordingToolkit& operator=(const RecordingToolkit&) = delete;

  std::vector<std::string> lines;
  std::deque<int> menuAnswers;

  // Returns the lines so far and clears them.
  std::vector<std::string> TakeLines() { return std::exchange(lines, {}); }

  void SetCursor(CursorShape shape) override {
    static constexpr const char* kNames[] = {"arrow", "wait", "help", "hand"};
    lines.push_back(std::string("cursor ") + kNames[static_cast<int>(shape)]);
  }
  int TrackMenu(const CMenu& menu, Point screen, CWnd& /*owner*/) override {
    lines.push_back("menu at " + std::to_string(screen.x) + "," + std::to_string(screen.y) + ": " +
                    MenuText(menu));
    if (menuAnswers.empty()) return 0;
    const int answer = menuAnswers.front();
    menuAnswers.pop_front();
    return answer;
  }
  void SetClipboardText(const std::string& text) override { lines.push_back("clipboard " + text); }
  void DragText(CWnd& /*source*/, const std::string& text) override {
    lines.push_back("drag " + text);
  }
  void OpenAddress(const std::string& address) override { lines.push_back("open " + address); }
};

}  // namespace tarn::test
