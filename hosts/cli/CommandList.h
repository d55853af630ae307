#pragma once

#include <string>
#include <vector>

#include "hosts/cli/CommandSpec.h"

namespace tarn::host {

// The commands in display order. Each line is the name of the function in the command's file that
// returns its CommandSpec. A command is listed before its subcommands.
#define TARN_COMMANDS(COMMAND)          \
  COMMAND(BuildCommand)                 \
  COMMAND(RebuildCommand)               \
  COMMAND(CleanCommand)                 \
  COMMAND(ActionsCommand)               \
  COMMAND(RunToolCommand)               \
  COMMAND(TestCommand)                  \
  COMMAND(DebugCommand)                 \
  COMMAND(MonitorCommand)               \
  COMMAND(StatusCommand)                \
  COMMAND(CheckCommand)                 \
  COMMAND(TreeCommand)                  \
  COMMAND(LogCommand)                   \
  COMMAND(ReportCommand)                \
  COMMAND(GlobalsCommand)               \
  COMMAND(OptionsCommand)               \
  COMMAND(OptionsListCommand)           \
  COMMAND(OptionsGetCommand)            \
  COMMAND(OptionsSetCommand)            \
  COMMAND(OptionsResetCommand)          \
  COMMAND(OptionsExplainCommand)        \
  COMMAND(ConfigCommand)                \
  COMMAND(ConfigListCommand)            \
  COMMAND(ConfigAddCommand)             \
  COMMAND(ConfigSelectCommand)          \
  COMMAND(NewCommand)                   \
  COMMAND(ImportCommand)                \
  COMMAND(TargetsCommand)               \
  COMMAND(ToolchainsCommand)            \
  COMMAND(RunCommand)                   \
  COMMAND(ServeCommand)                 \
  COMMAND(TrustCommand)                 \
  COMMAND(RegisterCommand)              \
  COMMAND(UnregisterCommand)            \
  COMMAND(AddCommand)                   \
  COMMAND(RemoveCommand)                \
  COMMAND(MoveCommand)                  \
  COMMAND(RenameCommand)                \
  COMMAND(SelectCommand)                \
  COMMAND(UndoCommand)                  \
  COMMAND(RedoCommand)                  \
  COMMAND(RelocateCommand)              \
  COMMAND(MergeFileCommand)             \
  COMMAND(ExportCommand)                \
  COMMAND(ExportCompileCommandsCommand) \
  COMMAND(ExportSarifCommand)           \
  COMMAND(CompletionCommand)            \
  COMMAND(CompletionBashCommand)        \
  COMMAND(CompletionZshCommand)         \
  COMMAND(CompletionFishCommand)        \
  COMMAND(CompleteCommand)

#define TARN_DECLARE_COMMAND(name) CommandSpec name();
TARN_COMMANDS(TARN_DECLARE_COMMAND)
#undef TARN_DECLARE_COMMAND

// Returns the specs of all commands, in display order. They live until the program ends.
const std::vector<CommandSpec>& Commands();
// Returns the spec of the command with this name, e.g. "options set"; nullptr if there is none.
const CommandSpec* FindCommand(const std::string& name);

}  // namespace tarn::host
