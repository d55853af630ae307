// The inspection interface of the manager.

#include <tarn/commands.h>
#include <tarn/methods.h>

#include <gtest/gtest.h>

#include "automation/ManagerFixture.h"
#include "automation/ProjectInspector.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

class Inspector : public ::testing::Test {
 protected:
  Inspector() : object(DispatchPtr::Adopt(new ProjectInspector)) {
    world.AddDemo();
    world.disk.AddFile("/p/demo.tapp",
                       "<Application Header='demo' Extern='.\\demo.tapp' "
                       "Path='.\\demo.tapp' ><Group Header='src' ><C Header='main.c' "
                       "Path='.\\src\\main.c' Custom='kept' /></Group></Application>");
    world.components.Properties().defaults = {{"C.Build.TranslateTool", "cc"},
                                              {"C.Build.OutputFile", "/p/main.o"}};
    world.disk.AddFile("/user/profile.ini",
                       "[Corvane\\app\\Import]\nInterpreter=/no/perl\nSeconds=7\n");
    EXPECT_EQ(world.Init(), "1");
    EXPECT_EQ(world.Manager().GetModel()->Services().importSeconds, 7);
  }

  std::string Ask(DispatchId id, std::initializer_list<Variant> arguments = {}) {
    Variant result;
    const DispatchResult outcome =
        object->Invoke(id, {arguments.begin(), arguments.size()}, result);
    return Show(outcome, result);
  }
  void Open() {
    ASSERT_EQ(Ask(TARN_INS_ATTACH, {world.manager}), "1");
    ASSERT_EQ(world.Call("ProjectOpen", {"/p/demo.tprj"}), "1");
    ASSERT_EQ(Ask(TARN_INS_PUBLISH_ALL), "1");
  }

  ManagerFixture world;
  DispatchPtr object;
};

TEST_F(Inspector, AnswersNothingUntilItHasAManager) {
  const struct {
    const char* name;
    DispatchId id;
    std::vector<Variant> arguments;
    const char* bare;  // without a manager
    const char* idle;  // without an open project
  } rows[] = {
      {"PublishAll", TARN_INS_PUBLISH_ALL, {}, "0", "1"},
      {"GetTree", TARN_INS_GET_TREE, {}, "''", "'\r\n<Project/>'"},
      {"GetStatus", TARN_INS_GET_STATUS, {}, "''", "'\r\n<Status/>'"},
      {"GetStatusFor", TARN_INS_GET_STATUS_FOR, {5, 1}, "''", "'\r\n<Status/>'"},
      {"GetBuildInputs", TARN_INS_GET_BUILD_INPUTS, {}, "''", "''"},
      {"GetBuildTimes", TARN_INS_GET_BUILD_TIMES, {}, "''", "''"},
      {"GetToolInput", TARN_INS_GET_TOOL_INPUT, {"demo", "/p/main.o"}, "''", "''"},
      {"GetPropertyManager", TARN_INS_GET_PROPERTY_MANAGER, {}, "object", "object"},
      {"SelectNodeByKey", TARN_INS_SELECT_NODE_BY_KEY, {"main.c", ""}, "0", "0"},
      {"ExplainOption",
       TARN_INS_EXPLAIN_OPTION,
       {"C", "Build", "Tool"},
       "''",
       "'\r\n<Option Node=\"\" Value=\"\" />'"},
      {"MissingImportProgram", TARN_INS_MISSING_IMPORT_PROGRAM, {}, "''", "'/no/perl'"},
      {"GetTargets", TARN_INS_GET_TARGETS, {}, "''", "'\r\n<Targets/>'"},
      {"GetLogFile", TARN_INS_GET_LOG_FILE, {}, "''", "'/tmp/$opj1.xml'"},
      {"GetGlobals", TARN_INS_GET_GLOBALS, {"", ""}, "''", "''"},
      {"GetReport", TARN_INS_GET_REPORT, {"<log/>"}, "''", "'\r\n<Report/>'"},
      {"SelectNodeByPlace", TARN_INS_SELECT_NODE_BY_PLACE, {"0/0"}, "0", "0"},
      {"GetChangeCount", TARN_INS_GET_CHANGE_COUNT, {}, "0", "0"},
      {"GetFileTexts", TARN_INS_GET_FILE_TEXTS, {}, "''", "''"},
      {"PublishFor", TARN_INS_PUBLISH_FOR, {5}, "1", "1"},
      {"ContinuePublishing", TARN_INS_CONTINUE_PUBLISHING, {5}, "2", "2"},
      {"NoteCurrentNode", TARN_INS_NOTE_CURRENT_NODE, {}, "0", "1"},
      {"SelectNotedNode", TARN_INS_SELECT_NOTED_NODE, {}, "0", "1"},
      {"GetDamage", TARN_INS_GET_DAMAGE, {}, "''", "'\r\n<Damage/>'"},
      {"ProtectDamaged", TARN_INS_PROTECT_DAMAGED, {1}, "0", "1"},
      {"GetFailedDamage", TARN_INS_GET_FAILED_DAMAGE, {}, "''", "'\r\n<Damage/>'"},
      {"GetBuildGaps", TARN_INS_GET_BUILD_GAPS, {}, "''", "'\r\n<BuildGaps/>'"},
      {"GetInstallationProblem", TARN_INS_GET_INSTALLATION_PROBLEM, {}, "''", "''"},
      {"GetBuildProblem", TARN_INS_GET_BUILD_PROBLEM, {}, "''", "''"},
      {"OpenBuildState", TARN_INS_OPEN_BUILD_STATE, {"/p/x.tstate"}, "''", "''"},
      {"IsBuildStateCurrent", TARN_INS_IS_BUILD_STATE_CURRENT, {"/p/x.tstate"}, "0", "0"},
      {"RestoreFor", TARN_INS_RESTORE_FOR, {5}, "1", "1"},
      {"FinishBuildState", TARN_INS_FINISH_BUILD_STATE, {1}, "''", "''"},
      {"GetBuildInfos", TARN_INS_GET_BUILD_INFOS, {"a", "/p/a.o"}, "''", "''"},
      {"CopyConfiguration", TARN_INS_COPY_CONFIGURATION, {"A", "B"}, "0", "0"},
      {"RefreshDefinitions", TARN_INS_REFRESH_DEFINITIONS, {}, "0", "0"},
      {"GetSharedOutputs", TARN_INS_GET_SHARED_OUTPUTS, {""}, "''", "''"},
      {"SetNewProjectFolder", TARN_INS_SET_NEW_PROJECT_FOLDER, {"/home/me/Tarn"}, "0", "1"},
      {"GetBuildStateProblem", TARN_INS_GET_BUILD_STATE_PROBLEM, {}, "''", "''"},
      {"OpenForReading", TARN_INS_OPEN_FOR_READING, {0}, "0", "1"},
      {"TryLockProject", TARN_INS_TRY_LOCK_PROJECT, {"/p/x.tprj"}, "'no project manager'", "''"},
      {"UnlockProject", TARN_INS_UNLOCK_PROJECT, {}, "0", "1"},
      {"GetSaveReport", TARN_INS_GET_SAVE_REPORT, {}, "''", "'\r\n<Save/>'"},
      {"AllowOutside", TARN_INS_ALLOW_OUTSIDE, {0}, "0", "1"},
      {"GetApplications", TARN_INS_GET_APPLICATIONS, {}, "''", "'\r\n<Project/>'"},
      {"ApplyChange",
       TARN_INS_APPLY_CHANGE,
       {"", ""},
       "'no project manager'",
       "'no project is open'"},
      {"MergeTexts",
       TARN_INS_MERGE_TEXTS,
       {"<A />", "<A />", "<A y=\"2\" />"},
       "'11 text\n<A y=\"2\" />'",
       "'11 text\n<A y=\"2\" />'"},
      {"GetBaseTexts", TARN_INS_GET_BASE_TEXTS, {}, "''", "''"},
      {"StageFileTexts", TARN_INS_STAGE_FILE_TEXTS, {"", ""}, "0", "1"},
      {"IsModified", TARN_INS_IS_MODIFIED, {}, "0", "0"},
      {"SaveAllOrNone", TARN_INS_SAVE_ALL_OR_NONE, {0}, "0", "1"},
      {"SetFailureLimit", TARN_INS_SET_FAILURE_LIMIT, {1}, "0", "1"},
      {"DropChanges", TARN_INS_DROP_CHANGES, {}, "0", "1"},
      {"GetMissedSelection", TARN_INS_GET_MISSED_SELECTION, {}, "''", "''"},
      {"TakeBuildNotices", TARN_INS_TAKE_BUILD_NOTICES, {}, "''", "'\r\n<Notices/>'"},
      {"SetTrustedFolders", TARN_INS_SET_TRUSTED_FOLDERS, {"/p"}, "0", "1"},
      {"SetStateFolder", TARN_INS_SET_STATE_FOLDER, {"/home/me/state"}, "0", "1"},
      {"SetDefinitionFolders", TARN_INS_SET_DEFINITION_FOLDERS, {"/me", ".tarn"}, "0", "1"},
      {"GetIgnoredDefinitions", TARN_INS_GET_IGNORED_DEFINITIONS, {}, "''", "''"},
      {"TakeRefusedWishes", TARN_INS_TAKE_REFUSED_WISHES, {}, "''", "''"},
      {"CheckScript", TARN_INS_CHECK_SCRIPT, {"/p/x.lua"}, "''", "''"},
      {"CheckTool", TARN_INS_CHECK_TOOL, {"t", "", ""}, "''", "''"},
  };
  ASSERT_EQ(object->GetMethods().size(), std::size(rows) + 1);
  for (const DispatchPtr& other : {DispatchPtr(), object, DispatchPtr(&world.components.Tools())}) {
    EXPECT_EQ(Ask(TARN_INS_ATTACH, {other}), "0");
  }
  ManagerFixture uninitialised;
  for (const bool hasManager : {false, true}) {
    if (hasManager) {
      EXPECT_EQ(Ask(TARN_INS_ATTACH, {uninitialised.manager}), "1");
    }
    for (const auto& row : rows) {
      DispatchId id = 0;
      EXPECT_TRUE(object->GetIDsOfNames(row.name, id));
      EXPECT_EQ(id, row.id);
      Variant result;
      const DispatchResult outcome = object->Invoke(row.id, row.arguments, result);
      EXPECT_EQ(Show(outcome, result), row.bare) << row.name;
    }
  }
  ASSERT_EQ(Ask(TARN_INS_ATTACH, {world.manager}), "1");
  for (const auto& row : rows) {
    Variant result;
    const DispatchResult outcome = object->Invoke(row.id, row.arguments, result);
    EXPECT_EQ(Show(outcome, result), row.idle) << row.name;
  }
}

TEST_F(Inspector, ProtectedDamagedProjectIsNeitherBuiltNorSaved) {
  world.disk.AddFile("/p/demo.tapp",
                     "<Application Header='demo' Extern='.\\demo.tapp' Path='.\\demo.tapp' >\n"
                     "stray<C Header='main.c' Path='.\\src\\main.c' /></Application>");
  const std::string bytes = *world.disk.BytesOf("/p/demo.tapp");
  Open();
  EXPECT_EQ(Ask(TARN_INS_GET_DAMAGE),
            "'\r\n<Damage>\r\n\t<Place File=\"/p/demo.tapp\" Line=\"2\" Text=\"stray text "
            "&quot;stray&quot;\" />\r\n</Damage>'");
  for (const bool isProtected : {true, false}) {
    EXPECT_EQ(Ask(TARN_INS_PROTECT_DAMAGED, {isProtected ? 1 : 0}), "1");
    EXPECT_EQ(world.Call("PrologCommand", {TARN_CMD_BUILD_ALL}), isProtected ? "0" : "1");
    world.Call("EpilogCommand", {TARN_CMD_BUILD_ALL});
    world.Call("SavePropertyValue", {"C", "Build", "Tool", "edited"});
    EXPECT_EQ(world.Call("ProjectSave", {}), "1");
    EXPECT_EQ(*world.disk.BytesOf("/p/demo.tapp") == bytes, isProtected);
  }
}

TEST_F(Inspector, LooksAtEverythingAndChangesNothing) {
  Open();
  const std::vector<std::string> files = world.disk.AllFiles();
  const std::string application = *world.disk.BytesOf("/p/demo.tapp");
  const std::string current = world.Call("GetSelectedApplication");
  EXPECT_NE(
      Ask(TARN_INS_GET_TREE).find("<C Header=\"main.c\" Path=\"/p/src/main.c\" Custom=\"kept\""),
      std::string::npos)
      << Ask(TARN_INS_GET_TREE);
  EXPECT_EQ(Ask(TARN_INS_GET_TREE).find("Values"), std::string::npos);
  EXPECT_NE(Ask(TARN_INS_GET_STATUS).find("Reason=\"source-missing\""), std::string::npos)
      << Ask(TARN_INS_GET_STATUS);
  std::string part = Ask(TARN_INS_GET_STATUS_FOR, {0, 1});
  EXPECT_EQ(part, "''") << "the first of several parts";
  while (part == "''") part = Ask(TARN_INS_GET_STATUS_FOR, {0, 0});
  EXPECT_EQ(part, Ask(TARN_INS_GET_STATUS));
  const std::string inputs = Ask(TARN_INS_GET_BUILD_INPUTS);
  EXPECT_EQ(inputs.substr(0, 20), "'A /p/demo.tapp\nN /p") << inputs;
  EXPECT_NE(inputs.find(" /p/main.o\n"), std::string::npos) << inputs;
  EXPECT_EQ(Ask(TARN_INS_GET_BUILD_INPUTS), inputs);
  EXPECT_NE(Ask(TARN_INS_GET_TOOL_INPUT, {"DEMO", "/p/main.o"}).find("Tool=\"cc\""),
            std::string::npos);
  EXPECT_EQ(Ask(TARN_INS_GET_TOOL_INPUT, {"other", "/p/main.o"}) +
                Ask(TARN_INS_GET_TOOL_INPUT, {nullptr, nullptr}),
            "''''");
  EXPECT_NE(Ask(TARN_INS_EXPLAIN_OPTION, {"", "Build", "TranslateTool"}).find("<Option"),
            std::string::npos);
  EXPECT_FALSE(world.Manager().GetModel()->IsModified());
  EXPECT_EQ(world.Call("ProjectSave"), "1");
  EXPECT_EQ(*world.disk.BytesOf("/p/demo.tapp"), application);
  EXPECT_EQ(world.disk.AllFiles(), files);
  EXPECT_EQ(world.Call("GetSelectedApplication"), current);
}

TEST_F(Inspector, NamesWhatABuildPassesOver) {
  const struct {
    const char* name;
    std::map<std::string, std::string> defaults;
    const char* node;  // below the application
    std::vector<std::string> gaps;
    const char* problem;
  } rows[] = {
      {"whole",
       {{"Application.Build.TranslateTool", "ld"}, {"C.Build.TranslateTool", "cc"}},
       "",
       {},
       ""},
      {"no tools", {}, "", {"Application no-tool Yes"}, "demo can't be built: it has no tool"},
      {"a source without one",
       {{"Application.Build.TranslateTool", "ld"}},
       "",
       {"C no-tool No"},
       ""},
      {"excluded",
       {{"Application.Build.TranslateTool", "ld"}, {".Build.Exclude", "Yes"}},
       "<X Path='x' />",
       {},
       ""},
      {"no type",
       {{".Build.TranslateTool", "x"}},
       "<X><Y Path='y' /></X><!-- c --><Z />",
       {"X no-type No"},
       ""},
      {"no type of a source",
       {{".Build.TranslateTool", "x"}},
       "<X Header='x' ><Y><C Path='y' /></Y></X>",
       {"X no-type Yes"},
       "x can't be built: its type X isn't defined"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    world.components.Properties().defaults = row.defaults;
    world.disk.AddFile("/p/demo.tapp",
                       std::string("<Application Header='demo' Extern='.\\demo.tapp' "
                                   "Path='.\\demo.tapp' ><C Header='a' Path='.\\a.c' />") +
                           row.node + "</Application>");
    ASSERT_EQ(Ask(TARN_INS_ATTACH, {world.manager}), "1");
    ASSERT_EQ(world.Call("ProjectOpen", {"/p/demo.tprj"}), "1");
    ASSERT_EQ(Ask(TARN_INS_PUBLISH_ALL), "1");
    CXmlNode list;
    CXmlParseInfo info;
    const std::string xml = Ask(TARN_INS_GET_BUILD_GAPS);
    list.Load(xml.substr(1, xml.size() - 2), info);
    std::vector<std::string> gaps;
    for (const CXmlNode* application : list.GetChildren()) {
      for (const CXmlNode* gap : application->GetChildren()) {
        gaps.push_back(OrEmpty(gap->GetAttrValue("Type")) + ' ' +
                       OrEmpty(gap->GetAttrValue("Reason")) + ' ' +
                       OrEmpty(gap->GetAttrValue("IsFatal")));
      }
    }
    EXPECT_EQ(gaps, row.gaps) << xml;
    EXPECT_EQ(Ask(TARN_INS_GET_BUILD_PROBLEM), "'" + std::string(row.problem) + "'");
    ASSERT_EQ(world.Call("ProjectClose"), "1");
  }
}

TEST_F(Inspector, SelectsTheNodeAtAPlaceOfTheTree) {
  Open();
  const auto selected = [&](const char* place) {
    const std::string reported = Ask(TARN_INS_SELECT_NODE_BY_PLACE, {place});
    const CXmlNode* const node = world.Manager().GetModel()->GetCurrentNode();
    return reported + ' ' + (node == nullptr ? "" : node->GetName());
  };
  EXPECT_EQ(selected(""), "1 Project");
  EXPECT_EQ(selected("0"), "1 Application");
  EXPECT_EQ(selected("0/0/0"), "1 C");
  for (const char* const none : {"7", "0/0/0/0", "-1", "0/x", "99999999999"}) {
    EXPECT_EQ(selected(none), "0 C") << none;
  }
  EXPECT_EQ(Ask(TARN_INS_NOTE_CURRENT_NODE), "1");
  EXPECT_EQ(selected("0"), "1 Application");
  EXPECT_EQ(Ask(TARN_INS_SELECT_NOTED_NODE), "1");
  EXPECT_EQ(world.Manager().GetModel()->GetCurrentNode()->GetName(), "C");
  EXPECT_EQ(world.Call("ProjectClose"), "1");
  EXPECT_EQ(Ask(TARN_INS_SELECT_NOTED_NODE), "0") << "gone";
}

TEST_F(Inspector, GivesTheFilesAsASaveWritesThemAndTellsOfEachChange) {
  Open();
  Ask(TARN_INS_SELECT_NODE_BY_KEY, {"main.c", ""});
  const std::string tree = Ask(TARN_INS_GET_TREE);
  const std::string count = Ask(TARN_INS_GET_CHANGE_COUNT);
  Ask(TARN_INS_GET_FILE_TEXTS);
  EXPECT_EQ(Ask(TARN_INS_GET_TREE), tree);
  EXPECT_EQ(Ask(TARN_INS_GET_CHANGE_COUNT), count);
  EXPECT_EQ(world.Call("SavePropertyValue", {"C", "Build", "Tool", "own"}), "1");
  EXPECT_NE(Ask(TARN_INS_GET_CHANGE_COUNT), count);
  const std::string texts = Ask(TARN_INS_GET_FILE_TEXTS);
  EXPECT_EQ(world.Call("ProjectSave"), "1");
  for (const char* const path : {"/p/demo.tapp", "/p/demo.tprj"}) {
    const std::string bytes = *world.disk.BytesOf(path);
    EXPECT_NE(texts.find(std::to_string(bytes.size()) + ' ' + path + '\n' + bytes),
              std::string::npos)
        << path << '\n'
        << texts << '\n'
        << bytes;
  }
}

TEST_F(Inspector, OpensAProjectWithChangesThatWereNeverSavedAndMergesThemAtASave) {
  Open();
  const std::string before = *world.disk.BytesOf("/p/demo.tapp");
  Ask(TARN_INS_SELECT_NODE_BY_KEY, {"main.c", ""});
  EXPECT_EQ(Ask(TARN_INS_IS_MODIFIED), "0");
  EXPECT_EQ(world.Call("SavePropertyValue", {"C", "Build", "Tool", "own"}), "1");
  EXPECT_EQ(Ask(TARN_INS_IS_MODIFIED), "1");
  const auto unquoted = [](const std::string& text) { return text.substr(1, text.size() - 2); };
  const std::string texts = unquoted(Ask(TARN_INS_GET_FILE_TEXTS));
  const std::string bases = unquoted(Ask(TARN_INS_GET_BASE_TEXTS));
  ASSERT_EQ(world.Call("ProjectClose"), "1");
  EXPECT_EQ(Ask(TARN_INS_IS_MODIFIED), "0");
  // Simulates a killed process and a change by another program, which adds a file.
  std::string theirs = before;
  theirs.insert(theirs.rfind("</"), "<C Header=\"theirs.c\" Path=\".\\theirs.c\" />");
  world.disk.AddFile("/p/demo.tapp", theirs);
  EXPECT_EQ(Ask(TARN_INS_STAGE_FILE_TEXTS, {texts + "9 cut", bases}), "0");
  EXPECT_EQ(Ask(TARN_INS_STAGE_FILE_TEXTS, {texts, bases}), "1");
  ASSERT_EQ(world.Call("ProjectOpen", {"/p/demo.tprj"}), "1");
  EXPECT_EQ(Ask(TARN_INS_IS_MODIFIED), "1");
  EXPECT_EQ(*world.disk.BytesOf("/p/demo.tapp"), theirs);
  EXPECT_EQ(unquoted(Ask(TARN_INS_GET_FILE_TEXTS)), texts);
  EXPECT_EQ(Ask(TARN_INS_GET_TREE).find("theirs.c"), std::string::npos);
  ASSERT_EQ(world.Call("ProjectSave"), "1");
  EXPECT_EQ(Ask(TARN_INS_IS_MODIFIED), "0");
  const std::string saved = *world.disk.BytesOf("/p/demo.tapp");
  EXPECT_NE(saved.find("theirs.c"), std::string::npos) << saved;
  EXPECT_NE(saved.find("Value=\"own\""), std::string::npos) << saved;
  EXPECT_NE(Ask(TARN_INS_GET_SAVE_REPORT).find("Merged=\"Yes\""), std::string::npos)
      << Ask(TARN_INS_GET_SAVE_REPORT);
  EXPECT_FALSE(world.disk.BytesOf("/p/demo.tapp.orig").has_value());

  // Only the next open uses them, even if a file is missing.
  ASSERT_EQ(world.Call("ProjectClose"), "1");
  ASSERT_TRUE(world.disk.RemoveFile("/p/demo.tapp"));
  Ask(TARN_INS_STAGE_FILE_TEXTS, {texts, bases});
  ASSERT_EQ(world.Call("ProjectOpen", {"/p/demo.tprj"}), "1");
  EXPECT_NE(Ask(TARN_INS_GET_TREE).find("main.c"), std::string::npos);
  ASSERT_EQ(world.Call("ProjectSave"), "1");
  EXPECT_NE(world.disk.BytesOf("/p/demo.tapp")->find("Value=\"own\""), std::string::npos);
}

TEST_F(Inspector, ReportsAConflictAlsoIfTheFileStaysAsAnotherProgramWroteIt) {
  Open();
  EXPECT_EQ(world.Call("SavePropertyValue", {"C", "Build", "Tool", "own"}), "1");
  ASSERT_EQ(world.Call("ProjectSave"), "1");
  std::string theirs = *world.disk.BytesOf("/p/demo.tapp");
  ASSERT_EQ(world.Call("RemoveItem", {"main.c"}), "1");
  const std::size_t custom = theirs.find("kept");
  ASSERT_NE(custom, std::string::npos) << theirs;
  world.disk.AddFile("/p/demo.tapp", theirs.replace(custom, 4, "changed"));
  ASSERT_EQ(world.Call("ProjectSave"), "1");
  EXPECT_EQ(*world.disk.BytesOf("/p/demo.tapp"), theirs);
  EXPECT_NE(Ask(TARN_INS_GET_SAVE_REPORT).find("removed here, changed there"), std::string::npos)
      << Ask(TARN_INS_GET_SAVE_REPORT);
}

TEST_F(Inspector, ListsTheTargetsOfTheRegistryOrOfTheInstallation) {
  world.disk.AddFile("/app/targets/own.xml",
                     "<Targets><Target Header='t' ><Micro_Description>a\\nb</Micro_Description>"
                     "<Datasheet>\nd</Datasheet><ConfigName></ConfigName></Target>"
                     "<Target><ConfigName>x</ConfigName></Target><Chip Header='c' />"
                     "<Targets Header='f' ><Target Header='u' Flash='9' Config='-' ><ConfigName>C"
                     "</ConfigName></Target>"
                     "</Targets></Targets>");
  ASSERT_EQ(Ask(TARN_INS_ATTACH, {world.manager}), "1");
  std::string text = Ask(TARN_INS_GET_TARGETS);
  std::erase(text, '\r');
  EXPECT_EQ(text,
            "'\n<Targets>\n\t<Targets Header=\"own\" >\n"
            "\t\t<Target Header=\"t\" Description=\"a\nb\" Datasheet=\"d\" Config=\"Standard\" />\n"
            "\t\t<Targets Header=\"f\" >\n"
            "\t\t\t<Target Header=\"u\" Description=\"\" Datasheet=\"\" Config=\"C\" Flash=\"9\" "
            "/>\n"
            "\t\t</Targets>\n\t</Targets>\n</Targets>'");
  world.disk.AddFile("/machine/registry.ini",
                     "[Software\\Corvane\\Tarn7\\Targets\\x]\nHidden=Yes\n");
  EXPECT_EQ(Ask(TARN_INS_GET_TARGETS), "'\r\n<Targets/>'");
}

TEST_F(Inspector, TellsTheRowsOfTheReportsInTheirOrder) {
  Open();
  const std::string file = "/p/demo-Globals.Standard.xml";
  EXPECT_EQ(Ask(TARN_INS_GET_GLOBALS, {"", ""}),
            "'\r\n<Globals File=\"" + file + "\" Found=\"No\" />'");
  world.disk.AddFile(file,
                     "<g><s Icon='2' Header='b' Desc='&lt;2' DeclFile='/x.c' DeclLine='10'/>"
                     "<s Header='B' DeclFile='/X.c' DeclLine='10'/><s Header='A'/></g>");
  const std::string head = "'\r\n<Globals File=\"" + file + "\" Found=\"Yes\" >";
  const std::string b =
      "\r\n\t<Row Icon=\"2\" Header=\"b\" Desc=\"&lt;2\" DeclFile=\"/x.c\" DeclLine=\"10\" />";
  const std::string a =
      "\r\n\t<Row Icon=\"\" Header=\"A\" Desc=\"\" DeclFile=\"\" DeclLine=\"\" />";
  EXPECT_EQ(Ask(TARN_INS_GET_GLOBALS, {"", ""}), head + b + a + "\r\n</Globals>'");
  EXPECT_EQ(Ask(TARN_INS_GET_GLOBALS, {"DEMO", "name"}), head + a + b + "\r\n</Globals>'");
  EXPECT_EQ(Ask(TARN_INS_GET_GLOBALS, {"none", "name"}), "''");
  EXPECT_EQ(Ask(TARN_INS_GET_REPORT,
                {"<output><message Icon='2' ShowInReport='yes' Description='d' File='/x.c' "
                 "Line='3'><link>0</link></message><message Description='e'/></output>"}),
            "'\r\n<Report>\r\n\t<Row Icon=\"2\" Description=\"d\" File=\"/x.c\" Line=\"3\" "
            "Help=\"\" />\r\n</Report>'");
}

TEST_F(Inspector, FindsANodeByAnyOfItsNamesIfItIsTheOnlyOne) {
  world.disk.AddFile("/p/demo.tprj",
                     "<Project Header='Project 'demo'' ActiveApp='demo' >"
                     "<Application Header='demo' Extern='.\\demo.tapp' />"
                     "<Application Header='boot' Extern='.\\boot\\b.tapp' /></Project>");
  world.disk.AddFile("/p/boot/b.tapp",
                     "<Application Header='boot' Path='.\\boot\\b.tapp' >"
                     "<Group Header='src' ><C Header='m' Path='..\\src\\main.c' />"
                     "<C Header='own' Path='.\\own.c' /></Group>"
                     "<Group Header='Boot' /></Application>");
  world.disk.AddFolder("/p/src");
  const struct {
    const char* folder;  // current folder
    Variant key;
    const char* place;
    const char* answer;
    const char* selected;
  } rows[] = {
      {"/p", "/p/boot/own.c", "", "1", "own"},
      {"/", "boot/own.c", "", "1", "own"},
      {"/p/boot", "OWN.c", "", "1", "own"},
      {"/p", "./src/../boot/own.c", "", "1", "own"},
      {"/p/src", "../demo.tapp", "", "1", "demo"},
      {"/", "MAIN.C", "", "1", "main.c"},
      {"/", "src/main.c", "", "2", "demo"},
      {"/", "src/main.c", "boot", "1", "m"},
      {"/", "src/main.c", "/p/demo.tapp", "1", "main.c"},
      {"/", "SRC", "", "2", "demo"},
      {"/", "src", "BOOT", "1", "src"},
      {"/", "boot", "", "2", "demo"},
      {"/", "boot", "boot", "1", "Boot"},
      {"/", "demo", "demo", "1", "demo"},
      {"/", "own", "demo", "0", "demo"},
      {"/", "own", "none", "0", "demo"},
      {"/", "none", "", "0", "demo"},
      {"/", "", "", "0", "demo"},
      {"/", nullptr, "", "0", "demo"},
  };
  for (const bool isPublished : {false, true}) {
    if (isPublished) {
      ASSERT_EQ(Ask(TARN_INS_PUBLISH_ALL), "1");
    } else {
      ASSERT_EQ(Ask(TARN_INS_ATTACH, {world.manager}), "1");
      ASSERT_EQ(world.Call("ProjectOpen", {"/p/demo.tprj"}), "1");
    }
    for (const auto& row : rows) {
      ASSERT_EQ(world.Call("SelectApplication", {"demo"}), "1");
      world.disk.SetCurrentFolder(row.folder);
      const std::string key = row.key.AsText().value_or("null") + " of " + row.place;
      EXPECT_EQ(Ask(TARN_INS_SELECT_NODE_BY_KEY, {row.key, row.place}), row.answer) << key;
      const CXmlNode* node = world.Manager().GetModel()->GetCurrentNode();
      EXPECT_STREQ(node->GetAttrValue("Header"), row.selected) << key;
    }
  }
}

TEST_F(Inspector, TellsWhereAValueIsStored) {
  Open();
  ASSERT_EQ(Ask(TARN_INS_SELECT_NODE_BY_KEY, {"src", ""}), "1");
  ASSERT_EQ(world.Call("SavePropertyValue", {"C", "Build", "Flag", "group"}), "1");
  ASSERT_EQ(Ask(TARN_INS_SELECT_NODE_BY_KEY, {"main.c", ""}), "1");
  ASSERT_EQ(world.Call("SavePropertyValue", {"C", "Build", "Flag", "own"}), "1");
  const std::string reported = Ask(TARN_INS_EXPLAIN_OPTION, {"", "Build", "Flag"});
  const std::size_t group =
      reported.find("<From Kind=\"group\" Header=\"src\" Config=\"Standard\"");
  const std::size_t own =
      reported.find("<From Kind=\"node\" Header=\"main.c\" Config=\"Standard\"");
  EXPECT_LT(group, own) << reported;
  EXPECT_NE(own, std::string::npos) << reported;
  EXPECT_NE(reported.find("<Option Node=\"main.c\" Value=\"own\""), std::string::npos) << reported;
}

}  // namespace
}  // namespace tarn::test
