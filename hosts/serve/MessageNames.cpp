#include "hosts/serve/MessageNames.h"

#include "hosts/core/MainFrame.h"

namespace tarn::host {

namespace {

struct MessageName {
  std::uint32_t number;
  std::string_view name;
};

constexpr MessageName kNames[] = {
    {kMsgCommand, "Command"},
    {kMsgShowTimeStamps, "ShowTimeStamps"},
    {kMsgAnnounceWindow, "AnnounceWindow"},
    {kMsgCreationEnded, "CreationEnded"},
    {kMsgOpenFileAtLine, "OpenFileAtLine"},
    {kMsgRunScript, "RunScript"},
    {kMsgCreateToolbar, "CreateToolbar"},
    {kMsgBuildStarting, "BuildStarting"},
    {kMsgWorkerEnded, "WorkerEnded"},
    {kMsgOpenFile, "OpenFile"},
    {kMsgApplicationActivated, "ApplicationActivated"},
    {kMsgCurrentNodeChanged, "CurrentNodeChanged"},
    {kMsgShowPopupMenu, "ShowPopupMenu"},
    {kMsgAddMainMenu, "AddMainMenu"},
    {kMsgProjectOpened, "ProjectOpened"},
    {kMsgProjectClosing, "ProjectClosing"},
    {kMsgProjectCreated, "ProjectCreated"},
    {kMsgToolSucceeded, "ToolSucceeded"},
    {kMsgPaneCaption, "PaneCaption"},
    {kMsgLogLine, "LogLine"},
    {kMsgOutputInvalid, "OutputInvalid"},
    {kMsgApplicationKnown, "ApplicationKnown"},
    {kMsgShowHelp, "ShowHelp"},
    {kMsgToolStarted, "ToolStarted"},
    {kMsgToolEnded, "ToolEnded"},
};

}  // namespace

std::string_view NameOfHostMessage(std::uint32_t number) {
  for (const MessageName& each : kNames) {
    if (each.number == number) return each.name;
  }
  return {};
}

}  // namespace tarn::host
