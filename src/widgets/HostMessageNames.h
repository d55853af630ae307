#pragma once

#include <tarn/automation.h>

#include <cstdint>
#include <string_view>

namespace tarn {

struct HostMessageName {
  std::uint32_t number;
  std::string_view name;
};

// Names of all host messages, including those that the tool manager sends. Clients of `tarn serve`
// receive them, so they must not change.
inline constexpr HostMessageName kHostMessageNames[] = {
    {TARN_MSG_COMMAND, "Command"},
    {TARN_MSG_SHOW_TIME_STAMPS, "ShowTimeStamps"},
    {TARN_MSG_ANNOUNCE_WINDOW, "AnnounceWindow"},
    {TARN_MSG_CREATION_ENDED, "CreationEnded"},
    {TARN_MSG_OPEN_FILE_AT_LINE, "OpenFileAtLine"},
    {TARN_MSG_RUN_SCRIPT, "RunScript"},
    {TARN_MSG_CREATE_TOOLBAR, "CreateToolbar"},
    {TARN_MSG_BUILD_STARTING, "BuildStarting"},
    {TARN_MSG_WORKER_ENDED, "WorkerEnded"},
    {TARN_MSG_OPEN_FILE, "OpenFile"},
    {TARN_MSG_APPLICATION_ACTIVATED, "ApplicationActivated"},
    {TARN_MSG_CURRENT_NODE_CHANGED, "CurrentNodeChanged"},
    {TARN_MSG_SHOW_POPUP_MENU, "ShowPopupMenu"},
    {TARN_MSG_ADD_MAIN_MENU, "AddMainMenu"},
    {TARN_MSG_PROJECT_OPENED, "ProjectOpened"},
    {TARN_MSG_PROJECT_CLOSING, "ProjectClosing"},
    {TARN_MSG_PROJECT_CREATED, "ProjectCreated"},
    {TARN_MSG_TOOL_SUCCEEDED, "ToolSucceeded"},
    {TARN_MSG_PANE_CAPTION, "PaneCaption"},
    {TARN_MSG_LOG_LINE, "LogLine"},
    {TARN_MSG_OUTPUT_INVALID, "OutputInvalid"},
    {TARN_MSG_APPLICATION_KNOWN, "ApplicationKnown"},
    {TARN_MSG_SHOW_HELP, "ShowHelp"},
    {TARN_MSG_TOOL_STARTED, "ToolStarted"},
    {TARN_MSG_TOOL_ENDED, "ToolEnded"},
};

// Returns the name of a host message; empty for a number without a name. Linear search.
constexpr std::string_view NameOfHostMessage(std::uint32_t number) {
  for (const HostMessageName& each : kHostMessageNames) {
    if (each.number == number) return each.name;
  }
  return {};
}

}  // namespace tarn
