// Table of all commands, one row per id. Dispatch, enabling and the page docs/commands.md are all
// based on it.

#include "automation/CommandTable.h"

#include <tarn/commands.h>

#include <algorithm>

#include "automation/CommandActions.h"

namespace tarn {

namespace {

using A = CommandActions;
using Id = std::uint32_t;
using enum EnableRule;
using enum CommandKind;

template <void (A::*Member)()>
std::int32_t Do(A& actions, Id) {
  (actions.*Member)();
  return 1;
}

template <std::int32_t Work>
std::int32_t StartBuild(A& actions, Id) {
  return actions.StartWorker(Work);
}

template <bool KeepsOutputs>
std::int32_t Apply(A& actions, Id) {
  actions.ApplyOptionChange(KeepsOutputs);
  return 1;
}

constexpr CommandRow kRows[] = {
    CommandRow{TARN_CMD_APPLY_OPTION, Always, Plain, "Apply an option",
               "Stores the option that was changed in the options window. Outputs stay up to date.",
               Apply<true>},
    CommandRow{TARN_CMD_APPLY_OPTION_AND_REBUILD, Always, Plain, "Apply an option and rebuild",
               "Stores the option that was changed in the options window. The current node and "
               "everything below it are then out of date.",
               Apply<false>},
    CommandRow{TARN_CMD_ADD_FILES, Always, Plain, "Add files",
               "Prompts for files and adds them to the current node.",
               [](A& actions, Id) {
                 return actions.Model().Items().AddExistingItem(nullptr, nullptr), 1;
               }},
    CommandRow{
        TARN_CMD_NEW_APPLICATION, UserProject, Plain, "New application",
        "Prompts for the settings of a new application and adds it.",
        [](A& actions, Id) { return actions.Model().Items().AddNewItem(nullptr, nullptr), 1; }},
    CommandRow{TARN_CMD_NODE_OPTIONS, UserProject, Plain, "Options",
               "Shows the options of the current node.", Do<&A::ShowNodeOptions>},
    CommandRow{
        TARN_CMD_NEW_GROUP, UserProject, Plain, "New folder", "Adds a folder to the current node.",
        [](A& actions, Id) { return actions.Model().Items().AddNewItem(nullptr, "Group"), 1; }},
    CommandRow{TARN_CMD_OPEN_LISTING, Always, Plain, "Listing",
               "Opens the listing file of the current node in the host.",
               [](A& actions, Id) { return actions.OpenListing(nullptr), 1; }},
    CommandRow{TARN_CMD_OPEN_BY_TYPE, Always, Plain, "Open with the command of its type",
               "Sends the host the command that is specified by the option `Internal.Open` of "
               "the node's type.",
               Do<&A::RunOpenCommand>},
    CommandRow{TARN_CMD_OPEN_FILE, Always, Plain, "Open the file",
               "Opens the file of the current node in an editor of the host.",
               Do<&A::OpenCurrentFile>},
    CommandRow{TARN_CMD_SHOW_FILE, Always, Plain, "Show the file",
               "Shows the file of the current node in the host.", Do<&A::ShowCurrentFile>},
    CommandRow{TARN_CMD_REBUILD_ALL, UserProject, Build, "Rebuild all",
               "Rebuilds the whole project.", StartBuild<kWorkerRebuildAll>},
    CommandRow{TARN_CMD_BUILD_ALL, UserProject, Build, "Build all",
               "Builds what is out of date in the project.", StartBuild<kWorkerBuildAll>},
    CommandRow{TARN_CMD_CLEAN_ALL, UserProject, Build, "Clean all",
               "Deletes the outputs of the project.", StartBuild<kWorkerCleanAll>},
    CommandRow{TARN_CMD_REBUILD_NODE, Always, Build, "Rebuild the selection",
               "Rebuilds the current node and everything below it.", StartBuild<ModeRebuild>},
    CommandRow{TARN_CMD_BUILD_NODE, Always, Build, "Build the selection",
               "Builds what is out of date in the current node and below it.",
               StartBuild<ModeBuild>},
    CommandRow{TARN_CMD_CLEAN_NODE, Always, Build, "Clean the selection",
               "Deletes the outputs of the current node and everything below it.",
               StartBuild<ModeClean>},
    CommandRow{TARN_CMD_TRANSLATE_NODE, Always, Build, "Translate the file",
               "Runs only the tool of the current node.", StartBuild<kWorkerTranslate>},
    CommandRow{TARN_CMD_SET_ACTIVE_APPLICATION, UserProject, Plain, "Set as active application",
               "Makes the current node the active application, if it is an application.",
               [](A& actions, Id) {
                 actions.Model().Publishing().SetActiveApplication(
                     actions.Model().GetCurrentNode());
                 return 1;
               }},
    CommandRow{TARN_CMD_SELECT_CONFIGURATION, Always, Plain, "Select the configuration",
               "Activates the configuration that is specified in the options window.",
               [](A& actions, Id) { return actions.Model().Options().SelectConfiguration(""), 1; }},
    CommandRow{TARN_CMD_RESET_OPTION, Always, Plain, "Reset an option",
               "Removes the stored value of the option that was changed in the options window.",
               Do<&A::ResetProperty>},
    CommandRow{
        TARN_CMD_RESET_NODE_OPTIONS, Always, Plain, "Reset to defaults",
        "Removes all options that are stored at the current node.",
        [](A& actions, Id) { return actions.Model().Options().ResetNodeOptions(nullptr), 1; }},
    CommandRow{TARN_CMD_STOP, WhileBuilding, Plain, "Stop",
               "Requests that the build stop after the running tool.",
               [](A& actions, Id) { return actions.GetBuilder().RequestStop(), 1; }},
    CommandRow{TARN_CMD_OPTIONS_LOADED, Always, Plain, "Announce the active application",
               "Notifies the host of the path and the configuration of the active application.",
               Do<&A::AnnounceActiveApplication>},
    CommandRow{TARN_CMD_BUILD_APPLICATION, Always, Build, "Build the active application",
               "Selects the active application and builds what is out of date in it.",
               [](A& actions, Id) { return actions.BuildApplication(); }},
    CommandRow{TARN_CMD_APPLICATION_LISTING, Always, Plain, "Listing of the active application",
               "Opens the listing file of the active application in the host.",
               [](A& actions, Id) {
                 return actions.OpenListing(actions.Model().GetActiveApplication()), 1;
               }},
    CommandRow{TARN_CMD_APPLICATION_OPTIONS, Always, Plain, "Options of the active application",
               "Shows the options of the active application.", Do<&A::ShowApplicationOptions>},
    CommandRow{TARN_CMD_LIST_TOOLS, Always, Tool, "Run a tool",
               "Runs a tool that applies to the current node; `GetDynamicCommands` returns the "
               "tools and their numbers. Returns 1 if there is none. A number without a tool "
               "returns 2, and its end is not reported.",
               [](A& actions, Id number) { return actions.RunNodeTool(number); },
               TARN_CMD_LAST_TOOL},
    CommandRow{TARN_CMD_STOP_PUBLISHING, Always, Plain, "Stop publishing",
               "Stops reading the options of nodes in the background.", Do<&A::StopPublishing>},
    CommandRow{TARN_CMD_ADD_CONFIGURATION, Always, Plain, "Add a configuration",
               "Adds the configuration that is specified in the options window.",
               [](A& actions, Id) { return actions.Model().Options().AddConfiguration(), 1; }},
    CommandRow{TARN_CMD_REBUILD_AFTERWARDS, Always, Plain, "Build once more",
               "Rebuilds everything after the running build. Returns 0.",
               [](A& actions, Id) { return actions.RequestRebuild(), 0; }},
    CommandRow{
        TARN_CMD_CLEAR_DEFAULT_PROJECT, Always, Plain, "Empty the default project",
        "Removes everything that was added to the default project.",
        [](A& actions, Id) { return actions.Model().Editor().ClearDefaultApplicationItems(), 1; }},
    CommandRow{TARN_CMD_REMOVE_NODE, UserProject, Plain, "Remove",
               "Removes the current node from the project; its file is kept.",
               [](A& actions, Id) { return actions.Model().Editor().RemoveItem(nullptr), 1; }},
    CommandRow{TARN_CMD_COPY, UserProject, Plain, "Copy",
               "Copies the current node with everything below it.",
               [](A& actions, Id) { return actions.Model().Editor().CopyNode(nullptr), 1; }},
    CommandRow{TARN_CMD_PASTE, UserProject, Plain, "Paste",
               "Inserts the copied node at the current node.",
               [](A& actions, Id) { return actions.Model().Editor().PasteNode(nullptr), 1; }},
};

}  // namespace

std::span<const CommandRow> CommandRow::Table() {
  return kRows;
}

const CommandRow* CommandRow::Find(std::uint32_t id) {
  const std::span<const CommandRow> rows = Table();
  const auto found = std::find_if(rows.begin(), rows.end(), [id](const CommandRow& row) {
    return row.id <= id && id <= row.LastId();
  });
  return found == rows.end() ? nullptr : &*found;
}

}  // namespace tarn
