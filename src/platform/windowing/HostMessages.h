#pragma once

#include <cstdint>

namespace tarn {

// Messages to the host's main frame. All are sent, not posted, unless marked; texts in wParam and
// lParam are zero-terminated 8-bit texts, never null, and live only during the call.
enum HostMessage : std::uint32_t {
  kMsgShowTimeStamps = 0x2503,        // wParam TimeH, lParam TimeL of a clicked link
  kMsgAnnounceWindow = 0x8005,        // wParam window object, lParam text describing it
  kMsgCreationEnded = 0x8006,         // wParam the word for a project
  kMsgOpenFileAtLine = 0x8008,        // wParam file, lParam line
  kMsgRunScript = 0x8009,             // wParam script text
  kMsgCreateToolbar = 0x800B,         // wParam caption, lParam XML text
  kMsgBuildStarting = 0x800C,         // an answer of 0 refuses the build
  kMsgWorkerEnded = 0x800D,           // wParam 1 for success, lParam log file
  kMsgOpenFile = 0x800F,              // wParam file, lParam -1
  kMsgApplicationActivated = 0x8010,  // wParam application path, lParam configuration
  kMsgCurrentNodeChanged = 0x8011,    // wParam node path or ""
  kMsgShowPopupMenu = 0x8012,         // wParam point, lParam menu name
  kMsgAddMainMenu = 0x8013,           // wParam caption, lParam XML text
  kMsgProjectOpened = 0x8015,         // wParam project path, lParam default project flag
  kMsgProjectClosing = 0x8016,        // wParam project path; an answer of 0 refuses the close
  kMsgProjectCreated = 0x8017,        // wParam project path
  kMsgToolSucceeded = 0x8018,         // wParam output file
  kMsgPaneCaption = 0x8019,           // wParam caption, lParam pane (4005)
  kMsgLogLine = 0x801B,               // wParam text
  kMsgOutputInvalid = 0x8021,         // wParam output file, lParam -1
  kMsgApplicationKnown = 0x8023,      // wParam application path, lParam configuration
  kMsgShowHelp = 0x802D,              // wParam help file
  kMsgCommand = 273,                  // wParam command id; sent or posted
};

// The options pane that kMsgPaneCaption names.
inline constexpr std::intptr_t kOptionsPane = 4005;

}  // namespace tarn
