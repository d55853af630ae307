// Numbers that programs in any language pass to the server or receive from it. They are published,
// so none may ever change; the numbers of the methods are in DispatchSurfaceTest.cpp.

#include <tarn/commands.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "automation/CommandTable.h"
#include "widgets/HostMessageNames.h"

namespace tarn::test {
namespace {

struct Pin {
  std::uint32_t number;
  const char* published;
};

constexpr Pin kCommands[] = {
    {TARN_CMD_APPLY_OPTION, "0x8105"},
    {TARN_CMD_APPLY_OPTION_AND_REBUILD, "0x8106"},
    {TARN_CMD_ADD_FILES, "0x8108"},
    {TARN_CMD_NEW_APPLICATION, "0x8109"},
    {TARN_CMD_NODE_OPTIONS, "0x810B"},
    {TARN_CMD_NEW_GROUP, "0x810C"},
    {TARN_CMD_OPEN_LISTING, "0x810D"},
    {TARN_CMD_OPEN_BY_TYPE, "0x810E"},
    {TARN_CMD_OPEN_FILE, "0x810F"},
    {TARN_CMD_SHOW_FILE, "0x8110"},
    {TARN_CMD_REBUILD_ALL, "0x8111"},
    {TARN_CMD_BUILD_ALL, "0x8112"},
    {TARN_CMD_CLEAN_ALL, "0x8113"},
    {TARN_CMD_REBUILD_NODE, "0x8114"},
    {TARN_CMD_BUILD_NODE, "0x8115"},
    {TARN_CMD_CLEAN_NODE, "0x8116"},
    {TARN_CMD_TRANSLATE_NODE, "0x8117"},
    {TARN_CMD_SET_ACTIVE_APPLICATION, "0x8118"},
    {TARN_CMD_SELECT_CONFIGURATION, "0x8119"},
    {TARN_CMD_RESET_OPTION, "0x811A"},
    {TARN_CMD_RESET_NODE_OPTIONS, "0x811B"},
    {TARN_CMD_STOP, "0x811C"},
    {TARN_CMD_OPTIONS_LOADED, "0x811E"},
    {TARN_CMD_BUILD_APPLICATION, "0x811F"},
    {TARN_CMD_APPLICATION_LISTING, "0x8120"},
    {TARN_CMD_APPLICATION_OPTIONS, "0x8121"},
    {TARN_CMD_LIST_TOOLS, "0x8122"},
    {TARN_CMD_FIRST_TOOL, "0x8123"},
    {TARN_CMD_LAST_TOOL, "0x8136"},
    {TARN_CMD_STOP_PUBLISHING, "0x8137"},
    {TARN_CMD_ADD_CONFIGURATION, "0x8138"},
    {TARN_CMD_REBUILD_AFTERWARDS, "0x8139"},
    {TARN_CMD_CLEAR_DEFAULT_PROJECT, "0x813A"},
    {TARN_CMD_AUTO_DEBUG, "0x82C3"},
    {TARN_CMD_REMOVE_NODE, "0xE120"},
    {TARN_CMD_CLEAR_LOG, "0xE121"},
    {TARN_CMD_COPY, "0xE122"},
    {TARN_CMD_CUT_LOG, "0xE123"},
    {TARN_CMD_PASTE, "0xE125"},
};

constexpr Pin kMessages[] = {
    {TARN_MSG_COMMAND, "273"},
    {TARN_MSG_SHOW_TIME_STAMPS, "0x2503"},
    {TARN_MSG_ANNOUNCE_WINDOW, "0x8005"},
    {TARN_MSG_CREATION_ENDED, "0x8006"},
    {TARN_MSG_OPEN_FILE_AT_LINE, "0x8008"},
    {TARN_MSG_RUN_SCRIPT, "0x8009"},
    {TARN_MSG_CREATE_TOOLBAR, "0x800B"},
    {TARN_MSG_BUILD_STARTING, "0x800C"},
    {TARN_MSG_WORKER_ENDED, "0x800D"},
    {TARN_MSG_OPEN_FILE, "0x800F"},
    {TARN_MSG_APPLICATION_ACTIVATED, "0x8010"},
    {TARN_MSG_CURRENT_NODE_CHANGED, "0x8011"},
    {TARN_MSG_SHOW_POPUP_MENU, "0x8012"},
    {TARN_MSG_ADD_MAIN_MENU, "0x8013"},
    {TARN_MSG_PROJECT_OPENED, "0x8015"},
    {TARN_MSG_PROJECT_CLOSING, "0x8016"},
    {TARN_MSG_PROJECT_CREATED, "0x8017"},
    {TARN_MSG_TOOL_SUCCEEDED, "0x8018"},
    {TARN_MSG_PANE_CAPTION, "0x8019"},
    {TARN_MSG_LOG_LINE, "0x801B"},
    {TARN_MSG_OUTPUT_INVALID, "0x8021"},
    {TARN_MSG_APPLICATION_KNOWN, "0x8023"},
    {TARN_MSG_SHOW_HELP, "0x802D"},
    {TARN_MSG_TOOL_STARTED, "0x8F01"},
    {TARN_MSG_TOOL_ENDED, "0x8F02"},
};

TEST(PublicNumbers, AreThePublishedOnes) {
  for (const auto& pins : {std::span<const Pin>(kCommands), std::span<const Pin>(kMessages)}) {
    for (const Pin& pin : pins) {
      EXPECT_EQ(pin.number, std::strtoul(pin.published, nullptr, 0)) << pin.published;
    }
  }
}

TEST(PublicNumbers, EachCommandAndEachMessageIsPinned) {
  const auto isIn = [](std::span<const Pin> pins, std::uint32_t number) {
    return std::ranges::any_of(pins, [&](const Pin& pin) { return pin.number == number; });
  };
  for (const CommandRow& row : CommandRow::Table()) {
    EXPECT_TRUE(isIn(kCommands, row.id)) << row.name;
    EXPECT_TRUE(isIn(kCommands, row.LastId())) << row.name;
  }
  for (const HostMessageName& each : kHostMessageNames) {
    EXPECT_TRUE(isIn(kMessages, each.number)) << each.name;
  }
  EXPECT_EQ(std::size(kMessages), std::size(kHostMessageNames));
}

}  // namespace
}  // namespace tarn::test
