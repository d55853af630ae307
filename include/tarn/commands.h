// Numbers of the project manager's commands: what a user selects in a menu or a tool bar reaches
// it as `Command(id)`. docs/commands.md describes each.

#ifndef TARN_COMMANDS_H
#define TARN_COMMANDS_H

enum TarnCommand {
  TARN_CMD_APPLY_OPTION = 0x8105,  // stores the option that the options window has changed
  // The same; the current node and everything below it become stale.
  TARN_CMD_APPLY_OPTION_AND_REBUILD = 0x8106,
  TARN_CMD_ADD_FILES = 0x8108,        // asks the user for files and adds them at the current node
  TARN_CMD_NEW_APPLICATION = 0x8109,  // opens the wizard for a new application
  TARN_CMD_NODE_OPTIONS = 0x810B,     // shows the options of the current node
  TARN_CMD_NEW_GROUP = 0x810C,        // adds a folder at the current node
  TARN_CMD_OPEN_LISTING = 0x810D,     // the host opens the listing file of the current node
  // The host gets the command that the node type's option Internal.Open names.
  TARN_CMD_OPEN_BY_TYPE = 0x810E,
  TARN_CMD_OPEN_FILE = 0x810F,     // the host opens the file of the current node in an editor
  TARN_CMD_SHOW_FILE = 0x8110,     // the host shows the file of the current node
  TARN_CMD_REBUILD_ALL = 0x8111,   // rebuilds the whole project
  TARN_CMD_BUILD_ALL = 0x8112,     // builds what is out of date in the project
  TARN_CMD_CLEAN_ALL = 0x8113,     // deletes the outputs of the project
  TARN_CMD_REBUILD_NODE = 0x8114,  // rebuilds the current node and everything below it
  TARN_CMD_BUILD_NODE = 0x8115,    // builds what is out of date at the current node and below it
  TARN_CMD_CLEAN_NODE = 0x8116,  // deletes the outputs of the current node and everything below it
  TARN_CMD_TRANSLATE_NODE = 0x8117,  // runs the tool of the current node and no other
  // Makes the current node the active application if it is one.
  TARN_CMD_SET_ACTIVE_APPLICATION = 0x8118,
  // Activates the configuration that the options window names.
  TARN_CMD_SELECT_CONFIGURATION = 0x8119,
  TARN_CMD_RESET_OPTION = 0x811A,        // resets the option that the options window has changed
  TARN_CMD_RESET_NODE_OPTIONS = 0x811B,  // resets all options that are stored at the current node
  TARN_CMD_STOP = 0x811C,                // stops the build after the tool that runs
  // To the host: all options are known; as a command: announces the active application.
  TARN_CMD_OPTIONS_LOADED = 0x811E,
  // Selects the active application and builds what is out of date in it.
  TARN_CMD_BUILD_APPLICATION = 0x811F,
  // The host opens the listing file of the active application.
  TARN_CMD_APPLICATION_LISTING = 0x8120,
  TARN_CMD_APPLICATION_OPTIONS = 0x8121,  // shows the options of the active application
  TARN_CMD_LIST_TOOLS = 0x8122,  // for GetDynamicCommands: the tools that fit the current node
  TARN_CMD_FIRST_TOOL = 0x8123,  // runs the first of these tools; the others follow
  TARN_CMD_LAST_TOOL = 0x8136,
  TARN_CMD_STOP_PUBLISHING = 0x8137,     // stops reading the options of nodes in the background
  TARN_CMD_ADD_CONFIGURATION = 0x8138,   // adds the configuration that the options window names
  TARN_CMD_REBUILD_AFTERWARDS = 0x8139,  // rebuilds everything after the build that runs
  // Removes everything that was added to the default project.
  TARN_CMD_CLEAR_DEFAULT_PROJECT = 0x813A,
  TARN_CMD_AUTO_DEBUG = 0x82C3,   // to the host: starts the debugger after a build
  TARN_CMD_REMOVE_NODE = 0xE120,  // removes the current node from the project; its file stays
  TARN_CMD_CLEAR_LOG = 0xE121,    // to the log window
  TARN_CMD_COPY = 0xE122,         // copies the current node, or in the log window the selection
  TARN_CMD_CUT_LOG = 0xE123,      // to the log window
  TARN_CMD_PASTE = 0xE125         // inserts what was copied at the current node
};

#endif
