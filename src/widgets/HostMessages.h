#pragma once

#include <tarn/automation.h>

#include <cstdint>

namespace tarn {

// Messages to the host's main window. Their numbers and parameters are a public interface for hosts
// in any language; see tarn/automation.h. All are sent; only kMsgCommand may be posted as well.
// Strings in wParam and lParam are zero-terminated 8-bit strings, never null, and valid only during
// the call.
enum HostMessage : std::uint32_t {
  kMsgShowTimeStamps = TARN_MSG_SHOW_TIME_STAMPS,
  kMsgAnnounceWindow = TARN_MSG_ANNOUNCE_WINDOW,
  kMsgCreationEnded = TARN_MSG_CREATION_ENDED,
  kMsgOpenFileAtLine = TARN_MSG_OPEN_FILE_AT_LINE,
  kMsgRunScript = TARN_MSG_RUN_SCRIPT,
  kMsgCreateToolbar = TARN_MSG_CREATE_TOOLBAR,
  kMsgBuildStarting = TARN_MSG_BUILD_STARTING,
  kMsgWorkerEnded = TARN_MSG_WORKER_ENDED,
  kMsgOpenFile = TARN_MSG_OPEN_FILE,
  kMsgApplicationActivated = TARN_MSG_APPLICATION_ACTIVATED,
  kMsgCurrentNodeChanged = TARN_MSG_CURRENT_NODE_CHANGED,
  kMsgShowPopupMenu = TARN_MSG_SHOW_POPUP_MENU,
  kMsgAddMainMenu = TARN_MSG_ADD_MAIN_MENU,
  kMsgProjectOpened = TARN_MSG_PROJECT_OPENED,
  kMsgProjectClosing = TARN_MSG_PROJECT_CLOSING,
  kMsgProjectCreated = TARN_MSG_PROJECT_CREATED,
  kMsgToolSucceeded = TARN_MSG_TOOL_SUCCEEDED,
  kMsgPaneCaption = TARN_MSG_PANE_CAPTION,
  kMsgLogLine = TARN_MSG_LOG_LINE,
  kMsgOutputInvalid = TARN_MSG_OUTPUT_INVALID,
  kMsgApplicationKnown = TARN_MSG_APPLICATION_KNOWN,
  kMsgShowHelp = TARN_MSG_SHOW_HELP,
  kMsgCommand = TARN_MSG_COMMAND,
};

// Number of the options pane in kMsgPaneCaption.
inline constexpr std::intptr_t kOptionsPane = 4005;

}  // namespace tarn
