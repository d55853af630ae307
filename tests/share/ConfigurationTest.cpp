#include <tarn/commands.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <string>

#include "share/ShippedFiles.h"

namespace tarn::shipped {
namespace {

constexpr int kFirstCommand = 32772;
constexpr int kFirstFixedCommand = 57601;

// Commands that the server and its log window implement. Any other number would be a menu entry
// that does nothing.
const std::set<int> kCommands = {TARN_CMD_APPLY_OPTION,
                                 TARN_CMD_APPLY_OPTION_AND_REBUILD,
                                 TARN_CMD_ADD_FILES,
                                 TARN_CMD_NEW_APPLICATION,
                                 TARN_CMD_NODE_OPTIONS,
                                 TARN_CMD_NEW_GROUP,
                                 TARN_CMD_OPEN_LISTING,
                                 TARN_CMD_OPEN_BY_TYPE,
                                 TARN_CMD_OPEN_FILE,
                                 TARN_CMD_SHOW_FILE,
                                 TARN_CMD_REBUILD_ALL,
                                 TARN_CMD_BUILD_ALL,
                                 TARN_CMD_CLEAN_ALL,
                                 TARN_CMD_REBUILD_NODE,
                                 TARN_CMD_BUILD_NODE,
                                 TARN_CMD_CLEAN_NODE,
                                 TARN_CMD_TRANSLATE_NODE,
                                 TARN_CMD_SET_ACTIVE_APPLICATION,
                                 TARN_CMD_SELECT_CONFIGURATION,
                                 TARN_CMD_RESET_OPTION,
                                 TARN_CMD_RESET_NODE_OPTIONS,
                                 TARN_CMD_STOP,
                                 TARN_CMD_OPTIONS_LOADED,
                                 TARN_CMD_BUILD_APPLICATION,
                                 TARN_CMD_APPLICATION_LISTING,
                                 TARN_CMD_APPLICATION_OPTIONS,
                                 TARN_CMD_LIST_TOOLS,
                                 TARN_CMD_STOP_PUBLISHING,
                                 TARN_CMD_ADD_CONFIGURATION,
                                 TARN_CMD_REBUILD_AFTERWARDS,
                                 TARN_CMD_CLEAR_DEFAULT_PROJECT,
                                 TARN_CMD_REMOVE_NODE,
                                 TARN_CMD_CLEAR_LOG,
                                 TARN_CMD_COPY,
                                 TARN_CMD_PASTE};

class Configuration : public ::testing::Test {
 protected:
  void SetUp() override {
    root = Parse(ReadBytes(Path("config/projectmanager.config")));
    ASSERT_TRUE(root);
  }

  const CXmlNode& Section(const char* name) {
    const CXmlNode* section = root->FindChild(name);
    EXPECT_TRUE(section) << name;
    return section ? *section : *root;
  }

  std::unique_ptr<CXmlNode> root;
};

// Returns the flags of a record in file order: "Project Application Group".
std::string Flags(const CXmlNode& record) {
  std::string flags;
  for (const CXmlAttr& attribute : record.Attributes()) {
    if (attribute.GetValue() == "Yes") flags += (flags.empty() ? "" : " ") + attribute.GetName();
  }
  return flags;
}

TEST_F(Configuration, ARecordWithoutAFlagThatWalkAndListsNeed) {
  std::string records;
  for (const CXmlNode* record : Elements(Section("Types"))) {
    records +=
        record->GetName() + ": " + Flags(*record) + " [" + Attribute(*record, "Extension") + "]\n";
  }
  EXPECT_EQ(records,
            "Text: Path IsLeaf InBuild [txt;md]\n"
            "Project: Project Path Build []\n"
            "Application: Application Extern Path Build Debug [tapp]\n"
            "DebugApplication: Application Extern Path Debug [tapp]\n"
            "AutoDebugApplication: Application Extern Path Debug AutoDebug [tapp]\n"
            "Group: Build InBuild []\n"
            "C: Path IsLeaf Build InBuild [c]\n"
            "Cpp: Path IsLeaf Build InBuild [cpp;cc;cxx]\n"
            "Assembler: Path IsLeaf Build InBuild [s;asm;a51]\n"
            "Header: Path IsLeaf InBuild [h;hpp;hh;inc]\n"
            "Library: Path IsLeaf InBuild [a;lib]\n"
            "LinkerScript: Path IsLeaf InBuild [ld;lds;lk]\n"
            "Generator: Path IsLeaf Build InBuild First []\n"
            "NodeText: Path IsLeaf InDebug []\n");
}

// A comment among the records would be copied with them, and a menu entry that contains only a
// comment is a submenu.
TEST_F(Configuration, ACommentWhereEachChildCounts) {
  for (const char* name : {"Types", "OptionSets", "ToolBar", "MainMenus", "PopupMenus"}) {
    const CXmlNode& section = Section(name);
    EXPECT_FALSE(Elements(section).empty()) << name;
    EXPECT_FALSE(section.FindDescendant("#COMMENT")) << name;
  }
}

void CheckEntries(const CXmlNode& menu) {
  for (const CXmlNode* entry : Elements(menu)) {
    if (Attribute(*entry, "Mode") == "Separator") continue;
    const std::string label = Attribute(*entry, "Header");
    EXPECT_NE(label, "");
    if (entry->GetChildCount() > 0) {
      CheckEntries(*entry);
      continue;
    }
    if (!Attribute(*entry, "Host").empty()) continue;
    const int id = std::atoi(Attribute(*entry, "id").c_str());
    EXPECT_TRUE(kCommands.count(id < kFirstFixedCommand ? id + kFirstCommand : id))
        << label << ": " << id;
  }
}

TEST_F(Configuration, AMenuEntryOfANumberThatNoCommandHas) {
  CheckEntries(Section("ToolBar"));
  for (const char* name : {"MainMenus", "PopupMenus"}) {
    for (const CXmlNode* menu : Elements(Section(name))) {
      EXPECT_EQ(menu->GetName(), "Menu") << name;
      EXPECT_FALSE(Elements(*menu).empty()) << name;
      CheckEntries(*menu);
    }
  }
}

}  // namespace
}  // namespace tarn::shipped
