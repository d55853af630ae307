#pragma once

#include <string>
#include <vector>

#include "hosts/core/ProjectTree.h"
#include "hosts/core/ToolCommand.h"

namespace tarn::host {

class BuildSession;
class ProjectManagerDriver;

// What can be done with an application after it was built, such as running it in a simulator.
struct ActionEntry {
  std::string name;
  std::string title;
  std::string tool;     // performs it with the application's options; empty: none is chosen
  std::string problem;  // why it would start nothing; empty: no reason is known
  std::string missing;  // a program that isn't installed; empty: none
  std::string install;  // how to install it
};

std::vector<ActionEntry> ParseActions(const std::string& xml);
// Returns the actions of the application with its current options.
std::vector<ActionEntry> ListActions(BuildSession& session, const ApplicationEntry& application);
// Like ListActions(), those that menus and `tarn run-tool` don't offer, such as "debug".
std::vector<ActionEntry> ListUnofferedActions(BuildSession& session,
                                              const ApplicationEntry& application);

// What an action would start.
struct ActionCommands {
  std::vector<ToolCommand> commands;
  std::vector<std::string> problems;
};
ActionCommands GetActionCommands(BuildSession& session, const ApplicationEntry& application,
                                 const std::string& action);
// Returns why the action is not trusted; an empty string if it may be carried out.
std::string CheckAction(BuildSession& session, const ApplicationEntry& application,
                        const std::string& action);

// Returns the number of the current node's command for the action; 0 if there is none.
std::uint32_t FindActionCommand(ProjectManagerDriver& manager, const std::string& action);

}  // namespace tarn::host
