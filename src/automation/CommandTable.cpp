// Table of all commands, one row per id. Dispatch, enabling and the page docs/commands.md are all
// based on it.

#include "automation/CommandTable.h"

#include <algorithm>
#include <array>

#include "automation/ProjectManager.h"

namespace tarn {

template <void (CProjectManager::*Member)()>
std::int32_t CommandRow::Do(CProjectManager& manager, std::uint32_t) {
  (manager.*Member)();
  return 1;
}

template <std::int32_t Work>
std::int32_t CommandRow::StartBuild(CProjectManager& manager, std::uint32_t) {
  return manager.StartWorker(Work);
}

template <bool KeepsOutputs>
std::int32_t CommandRow::Apply(CProjectManager& manager, std::uint32_t) {
  manager.ApplyOptionChange(KeepsOutputs);
  return 1;
}

std::span<const CommandRow> CommandRow::Table() {
  using M = CProjectManager;
  using Id = std::uint32_t;
  using enum EnableRule;
  using enum CommandKind;
  static const std::array rows = {
      CommandRow{
          0x8105, Always, Plain, "Apply an option",
          "Stores the option that the options window has changed. What was built stays good.",
          Apply<true>},
      CommandRow{0x8106, Always, Plain, "Apply an option and build anew",
                 "Stores the option that the options window has changed. The current node and all "
                 "below it are out of date.",
                 Apply<false>},
      CommandRow{0x8108, Always, Plain, "Add files",
                 "Asks for files and adds them at the current node.",
                 [](M& manager, Id) {
                   return manager.model->Items().AddExistingItem(nullptr, nullptr), 1;
                 }},
      CommandRow{
          0x8109, UserProject, Plain, "New application",
          "Asks what the new application is to be and adds it.",
          [](M& manager, Id) { return manager.model->Items().AddNewItem(nullptr, nullptr), 1; }},
      CommandRow{0x810B, UserProject, Plain, "Options", "Shows the options of the current node.",
                 Do<&M::ShowNodeOptions>},
      CommandRow{
          0x810C, UserProject, Plain, "New folder", "Adds a folder at the current node.",
          [](M& manager, Id) { return manager.model->Items().AddNewItem(nullptr, "Group"), 1; }},
      CommandRow{0x810D, Always, Plain, "Listing",
                 "Has the host open the listing file of the current node.",
                 [](M& manager, Id) { return manager.OpenListing(nullptr), 1; }},
      CommandRow{0x810E, Always, Plain, "Open as its type says",
                 "Sends the host the command that the option `Internal.Open` of the node's type "
                 "names.",
                 Do<&M::RunOpenCommand>},
      CommandRow{0x810F, Always, Plain, "Open the file",
                 "Has the host open the file of the current node in an editor.",
                 Do<&M::OpenCurrentFile>},
      CommandRow{0x8110, Always, Plain, "Show the file",
                 "Has the host show the file of the current node.", Do<&M::ShowCurrentFile>},
      CommandRow{0x8111, UserProject, Build, "Rebuild all", "Builds the whole project anew.",
                 StartBuild<kWorkerRebuildAll>},
      CommandRow{0x8112, UserProject, Build, "Build all",
                 "Builds what is out of date in the project.", StartBuild<kWorkerBuildAll>},
      CommandRow{0x8113, UserProject, Build, "Clean all", "Deletes what was built of the project.",
                 StartBuild<kWorkerCleanAll>},
      CommandRow{0x8114, Always, Build, "Rebuild the selection",
                 "Builds the current node and all below it anew.", StartBuild<ModeRebuild>},
      CommandRow{0x8115, Always, Build, "Build the selection",
                 "Builds what is out of date at the current node and below it.",
                 StartBuild<ModeBuild>},
      CommandRow{0x8116, Always, Build, "Clean the selection",
                 "Deletes what was built of the current node and all below it.",
                 StartBuild<ModeClean>},
      CommandRow{0x8117, Always, Build, "Translate the file",
                 "Runs the tool of the current node, and no other.", StartBuild<kWorkerTranslate>},
      CommandRow{0x8118, UserProject, Plain, "Make the active application",
                 "Makes the current node the active application, if it is an application.",
                 [](M& manager, Id) {
                   manager.model->Publishing().SetActiveApplication(
                       manager.model->GetCurrentNode());
                   return 1;
                 }},
      CommandRow{
          0x8119, Always, Plain, "Select the configuration",
          "Puts the configuration in force that the options window names.",
          [](M& manager, Id) { return manager.model->Options().SelectConfiguration(""), 1; }},
      CommandRow{0x811A, Always, Plain, "Reset an option",
                 "Takes away the stored value of the option that the options window has changed.",
                 Do<&M::ResetProperty>},
      CommandRow{
          0x811B, Always, Plain, "Options back to the defaults",
          "Takes away all options that are stored at the current node.",
          [](M& manager, Id) { return manager.model->Options().ResetNodeOptions(nullptr), 1; }},
      CommandRow{0x811C, WhileBuilding, Plain, "Stop",
                 "Asks the build to stop behind the tool that runs.",
                 [](M& manager, Id) { return manager.builder->RequestStop(), 1; }},
      CommandRow{0x811E, Always, Plain, "Announce the active application",
                 "Tells the host the path and the configuration of the active application.",
                 Do<&M::AnnounceActiveApplication>},
      CommandRow{0x811F, Always, Build, "Build the active application",
                 "Selects the active application and builds what is out of date in it.",
                 [](M& manager, Id) {
                   if (!manager.builder->CanStartOperation()) return 2;
                   manager.model->SetCurrentNode(manager.model->GetActiveApplication());
                   return manager.StartWorker(ModeBuild);
                 }},
      CommandRow{0x8120, Always, Plain, "Listing of the active application",
                 "Has the host open the listing file of the active application.",
                 [](M& manager, Id) {
                   return manager.OpenListing(manager.model->GetActiveApplication()), 1;
                 }},
      CommandRow{0x8121, Always, Plain, "Options of the active application",
                 "Shows the options of the active application.", Do<&M::ShowApplicationOptions>},
      CommandRow{kFirstDynamicCommand, Always, Tool, "Run a tool",
                 "Runs a tool that fits the current node; `GetDynamicCommands` tells the tools and "
                 "their numbers. Gives 1 when there is none; a number that no tool has gives 2, "
                 "and no end is told.",
                 [](M& manager, Id number) { return manager.RunNodeTool(number); },
                 kLastDynamicCommand},
      CommandRow{0x8137, Always, Plain, "Stop publishing",
                 "Stops reading the options of nodes in the background.", Do<&M::StopPublishing>},
      CommandRow{0x8138, Always, Plain, "Add a configuration",
                 "Adds the configuration that the options window names.",
                 [](M& manager, Id) { return manager.model->Options().AddConfiguration(), 1; }},
      CommandRow{0x8139, Always, Plain, "Build once more",
                 "Has all built anew behind the build that runs. Gives 0.",
                 [](M& manager, Id) { return manager.rerunAfterBuild = true, 0; }},
      CommandRow{
          0x813A, Always, Plain, "Empty the default project",
          "Takes out all that was added to the default project.",
          [](M& manager, Id) { return manager.model->Editor().ClearDefaultApplicationItems(), 1; }},
      CommandRow{0xE120, UserProject, Plain, "Remove",
                 "Takes the current node out of the project; its file stays.",
                 [](M& manager, Id) { return manager.model->Editor().RemoveItem(nullptr), 1; }},
      CommandRow{0xE122, UserProject, Plain, "Copy", "Copies the current node with all below it.",
                 [](M& manager, Id) { return manager.model->Editor().CopyNode(nullptr), 1; }},
      CommandRow{0xE125, UserProject, Plain, "Paste",
                 "Puts what was copied in at the current node.",
                 [](M& manager, Id) { return manager.model->Editor().PasteNode(nullptr), 1; }},
  };
  return rows;
}

const CommandRow* CommandRow::Find(std::uint32_t id) {
  const std::span<const CommandRow> rows = Table();
  const auto found = std::find_if(rows.begin(), rows.end(), [id](const CommandRow& row) {
    return row.id <= id && id <= row.LastId();
  });
  return found == rows.end() ? nullptr : &*found;
}

}  // namespace tarn
