#pragma once

#include <chrono>
#include <string>

#include "hosts/cli/OpenedProject.h"
#include "hosts/core/Actions.h"

namespace tarn::host {

struct ActionRequest {
  ApplicationEntry application;
  std::string action;
  std::chrono::milliseconds limit{0};  // 0: none
  bool echoes = true;                  // prints the output as it arrives
};

struct ActionResult {
  int code = 0;            // exit code for this program; 0 if the action succeeded
  int programCode = 0;     // exit code of the last program that was run
  bool isLate = false;     // it was ended by the time limit
  bool isStarted = false;  // a program was run
  std::string problem;     // why it failed; empty if it succeeded
  std::string output;
  std::chrono::milliseconds time{0};
};

// Exit code of an action that was ended by its time limit.
inline constexpr int kExitLate = 124;

// Prepares the session, and finds the application of --app, else the active one. Returns 0, or an
// exit code after printing the error.
int ChooseOneApplication(CommandContext& context, ApplicationEntry& chosen);
// Builds the application and shows this as `tarn build` does. Returns the exit code.
int BuildForAction(CommandContext& context, const ApplicationEntry& application);
// Finds an action that can be carried out. Returns 0, or an exit code after printing the error.
int FindAction(CommandContext& context, const ApplicationEntry& application,
               const std::string& name, ActionEntry& found);
// Returns 0 if the action can be carried out, or an exit code after printing the error.
int CheckPossible(CommandContext& context, const ApplicationEntry& application,
                  const ActionEntry& action);
// Prints the commands as lines for a shell, or as JSON if that was requested.
void PrintCommands(CommandContext& context, const std::vector<ToolCommand>& commands);
// Carries out an action, and waits for its end. The project must be prepared for a build.
ActionResult RunAction(CommandContext& context, const ActionRequest& request);

}  // namespace tarn::host
