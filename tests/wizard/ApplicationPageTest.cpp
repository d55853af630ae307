#include "wizard/ApplicationPage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <functional>

#include "support/AnsweringUser.h"
#include "support/RecordingToolkit.h"
#include "support/WizardUser.h"
#include "widgets/HyperlinkCtrl.h"
#include "widgets/Static.h"
#include "wizard/WizardScene.h"

namespace tarn::test {
namespace {

using ::testing::ElementsAre;

// Adds access to what the user sees.
class User : public WizardUser {
 public:
  using WizardUser::WizardUser;

  void ClickLink() const { Control<CHyperlinkCtrl>(kIdDatasheet).NotifyClicked(); }

  // Returns the visible part of the catalogue: the rows from the top, with the selected one in
  // brackets.
  std::string Tree() const {
    std::string text;
    const auto& tree = Control<CTreeCtrl>(kIdTargetTree);
    for (int row = 0; row < tree.GetRows().GetCount(); ++row) {
      const CTreeItem& item = *tree.GetRows().GetAt(row);
      const bool isSelected = &item == tree.GetSelectedItem();
      text +=
          (text.empty() ? "" : " ") + (isSelected ? "[" + item.GetText() + "]" : item.GetText());
    }
    return text;
  }
  // Returns the other controls: type, name @ location, project, tool box, description, link.
  std::string Form() const {
    const auto& types = Control<CComboBox>(kIdType);
    const auto& box = Control<CButton>(kIdLaunchTool);
    const auto& link = Control<CHyperlinkCtrl>(kIdDatasheet);
    std::string text = types.GetText(types.GetCurSel()) + ": " +
                       Control<CEdit>(kIdName).GetControlText() + " @ " +
                       Control<CEdit>(kIdLocation).GetControlText();
    text += Control<CButton>(kIdNewProject).IsChecked() ? ", new" : ", join";
    text += Control<CButton>(kIdIntoProject).IsEnabled() ? "" : " only";
    text +=
        std::string(", tool ") + (box.IsChecked() ? "x" : "-") + (box.IsEnabled() ? "" : " off");
    text += ", '" + Control<CStatic>(kIdDescription).GetControlText() + "'";
    return text + ", " + link.GetAddress() + (link.IsEnabled() ? "" : " off");
  }
};

class ApplicationPageTest : public ::testing::Test, protected WizardScene {
 protected:
  // Runs the wizard for a user who performs `act` and then pushes the given button.
  std::string Run(const NewApplication& proposed, const std::function<void(const User&)>& act,
                  int button = kSheetFinish) {
    user.useSheet = [&](CPropertySheet& sheet) {
      act(User(sheet));
      return button;
    };
    return WizardScene::Run(proposed);
  }

  RecordingToolkit toolkit;
  AnsweringUser user{world.host.Handle()};
};

TEST_F(ApplicationPageTest, ItOpensWithWhatIsProposedAndWhatWasChosenLast) {
  const struct {
    const char* name;
    const char* last;  // nullptr: no last processor
    const char* cobbler;
    NewApplication proposed;
    const char* tree;
    const char* form;
  } rows[] = {
      {"for the first time", nullptr, nullptr, Proposed("app.x"), "Targets [Chips]",
       "Application: app @ /p, new only, tool - off, '', "},
      {"into the project", nullptr, "Yes", Proposed("app", false), "Targets [Chips]",
       "Application: app @ /p, join, tool - off, '', "},
      {"what was chosen last", "S1", "Yes", Proposed(), "Targets Chips Small [S1] S2 S3 S4",
       "Application: app @ /p, new only, tool x, 'one\ntwo', https://s/1"},
      {"a tool that isn't wanted", "S1", "No", Proposed(), "Targets Chips Small [S1] S2 S3 S4",
       "Application: app @ /p, new only, tool -, 'one\ntwo', https://s/1"},
      {"another case is another processor", "s1", "Yes", Proposed(), "Targets [Chips]",
       "Application: app @ /p, new only, tool - off, '', "},
      {"a type by its beginning", "S3", "Yes", Proposed("a.hex", true, "PROG"),
       "Targets Chips Small S1 S2 [S3] S4", "Program: a.hex @ /p, new only, tool - off, '',  off"},
      {"a type that is none for applications", "S4", "Yes", Proposed("a.c", true, "C source"),
       "Targets Chips Small S1 S2 S3 [S4]", ": a.c @ /p, new only, tool - off, '', https://s/4"},
  };
  for (const auto& row : rows) {
    settings.RemoveProfile("Project", "UseCobbler");
    settings.RemoveProfile("Project", "LastProcessor");
    if (row.last != nullptr) settings.WriteProfile("Project", "LastProcessor", row.last);
    if (row.cobbler != nullptr) SetTool(row.cobbler);
    const std::string before = Profile();
    const auto look = [&row](const User& shown) {
      EXPECT_EQ(shown.Tree(), row.tree) << row.name;
      EXPECT_EQ(shown.Form(), row.form) << row.name;
      // The messages posted by the initial selections must not change anything.
      MessageLoop::ForCurrentThread()->PumpUntil([] { return false; },
                                                 std::chrono::milliseconds(5));
      EXPECT_EQ(shown.Form(), row.form) << row.name << ", later";
    };
    EXPECT_EQ(Run(row.proposed, look, kSheetCancel), "cancelled");
    EXPECT_EQ(Profile(), before) << row.name;
  }
}

TEST_F(ApplicationPageTest, WhatTheUserDoesIsWhatComesOut) {
  const struct {
    const char* name;
    const char* cobbler;
    std::function<void(const User&)> act;
    const char* form;
    const char* outcome;
    const char* profile;
  } rows[] = {
      {"nothing", "No", [](const User&) {}, "Application: app @ /p, join, tool - off, '', ",
       "Application: app @ /p, join, config 'Standard', script '', tool ''", "No Chips"},
      {"a processor without a tool", "Yes", [](const User& shown) { shown.ClickTarget("S2"); },
       "Application: app @ /p, join, tool - off, 'bare', ",
       "Application: app @ /p, join, config 'Standard', script '', tool '' runs", "No S2"},
      {"one with a tool", "Yes", [](const User& shown) { shown.ClickTarget("S1"); },
       "Application: app @ /p, join, tool x, 'one\ntwo', https://s/1",
       "Application: app @ /p, join, config 'Debug', script 'script 1', tool 'cobbler' runs",
       "Yes S1"},
      {"what one leaves open stays from the one before", "Yes",
       [](const User& shown) {
         shown.ClickTarget("S1");
         shown.ClickTarget("S2");
       },
       "Application: app @ /p, join, tool - off, 'bare', https://s/1",
       "Application: app @ /p, join, config 'Debug', script 'script 1', tool '' runs", "No S2"},
      {"what one has empty is empty", "Yes",
       [](const User& shown) {
         shown.ClickTarget("S1");
         shown.ClickTarget("S3");
       },
       "Application: app @ /p, join, tool - off, '', https://s/1 off",
       "Application: app @ /p, join, config '', script '', tool '' runs", "No S3"},
      {"a tick is for the next time", "No",
       [](const User& shown) {
         shown.ClickTarget("S1");
         shown.Click(kIdLaunchTool);
       },
       "Application: app @ /p, join, tool x, 'one\ntwo', https://s/1",
       "Application: app @ /p, join, config 'Debug', script 'script 1', tool 'cobbler'", "Yes S1"},
      {"a tick taken away is for now too", "Yes",
       [](const User& shown) {
         shown.ClickTarget("S1");
         shown.Click(kIdLaunchTool);
       },
       "Application: app @ /p, join, tool -, 'one\ntwo', https://s/1",
       "Application: app @ /p, join, config 'Debug', script 'script 1', tool '' runs", "No S1"},
      {"a finished program needs no sources", "Yes",
       [](const User& shown) {
         shown.ClickTarget("S1");
         shown.ChooseType(2);
         shown.Type(kIdName, "boot.hex");
       },
       "Program: boot.hex @ /p, join, tool - off, 'one\ntwo', https://s/1",
       "Program: boot.hex @ /p, join, config 'Debug', script 'script 1', tool '' runs", "No S1"},
      {"but one that is built does again, and has no extension", "Yes",
       [](const User& shown) {
         shown.ClickTarget("S1");
         shown.ChooseType(2);
         shown.Type(kIdName, "boot.hex");
         shown.ChooseType(0);
       },
       "Application: boot @ /p, join, tool x, 'one\ntwo', https://s/1",
       "Application: boot @ /p, join, config 'Debug', script 'script 1', tool 'cobbler' runs",
       "Yes S1"},
      {"a project of its own in another folder", "No",
       [](const User& shown) {
         shown.Click(kIdNewProject);
         shown.Type(kIdLocation, "/q");
       },
       "Application: app @ /q, new, tool - off, '', ",
       "Application: app @ /q, new, config 'Standard', script '', tool ''", "No Chips"},
  };
  for (const auto& row : rows) {
    settings.RemoveProfile("Project", "LastProcessor");
    SetTool(row.cobbler);
    const std::string outcome = Run(Proposed("app", false), [&row](const User& shown) {
      row.act(shown);
      EXPECT_EQ(shown.Form(), row.form) << row.name;
    });
    EXPECT_EQ(outcome, row.outcome) << row.name;
    EXPECT_EQ(Profile(), row.profile) << row.name;
  }
}

TEST_F(ApplicationPageTest, WhatIsInTheWayOfTheApplicationIsSaidBeforeTheEnd) {
  world.OpenDemo();
  world.AddFile("/p/file", "x");
  world.AddFile("/p/there.tapp", "<Application/>");
  world.model->SetCurrentNode(&world.model->GetProjectRoot());
  const struct {
    const char* name;
    const char* location;
    bool isNew;
    const char* problem;
  } rows[] = {
      {"app", "/p", false, ""},
      {"app", "/p/new/folder/", false, ""},
      {"demo", "/p", true, ""},
      {" ", "/p", false, "The application needs a name."},
      {"a/b", "/p", true, "A name can't contain"},
      {"a\nb", "/p", true, "A name can't contain"},
      {"Demo", "/q", false, "The name \"Demo\" is in use."},
      {"there", "/p", false, "/p/there.tapp already exists."},
      {"app", "", true, "The application needs a folder."},
      {"app", "new/folder", true, "Enter the full path of the folder."},
      {"app", "new/folder", false, ""},
      {"app", "/p/file", true, "/p/file is a file, not a folder."},
      {"app", "/p/file/below", false, "/p/file is a file, not a folder."},
  };
  for (const auto& row : rows) {
    std::string problem;
    Run(
        Proposed("app", false),
        [&](const User& shown) {
          shown.Type(kIdName, row.name);
          shown.Type(kIdLocation, row.location);
          if (row.isNew) shown.Click(kIdNewProject);
          problem = shown.Problem();
        },
        kSheetCancel);
    EXPECT_EQ(problem.substr(0, std::strlen(row.problem)), row.problem) << row.name;
    EXPECT_EQ(problem.empty(), *row.problem == '\0') << problem;
  }
  world.model->SetCurrentNode(world.Application());
  std::string problem;
  Run(
      Proposed("app", false), [&](const User& shown) { problem = shown.Problem(); }, kSheetCancel);
  EXPECT_EQ(problem,
            "\"demo\" can't contain an application of this type. Select the project first.");
}

TEST_F(ApplicationPageTest, BrowsingAsksForWhatTheTypeNeeds) {
  user.folders = {"/chosen", ""};
  user.files = {{"/built/boot.hex"}, {}};
  const auto browse = [](const User& shown) {
    shown.Click(kIdBrowse);
    shown.Click(kIdBrowse);
  };
  EXPECT_EQ(Run(Proposed(), browse),
            "Application: app @ /chosen, new, config 'Standard', script '', tool ''");
  EXPECT_EQ(Run(Proposed("app", true, "Program"), browse),
            "Program: boot.hex @ /built, new, config 'Standard', script '', tool ''");
  EXPECT_THAT(user.lines,
              ElementsAre("folder: from /p", "folder: from /chosen",
                          "files: Applications (*.hex;*.bin;*.aof)|*.hex;*.bin;*.aof;*| in ",
                          "files: Applications (*.hex;*.bin;*.aof)|*.hex;*.bin;*.aof;*| in "));
}

TEST_F(ApplicationPageTest, TheDatasheetOpensOutsideOfTheSystem) {
  Run(Proposed(), [](const User& shown) {
    shown.ClickLink();
    shown.ClickTarget("S4");
    shown.ClickLink();
    shown.ClickTarget("S3");
    shown.ClickLink();
  });
  EXPECT_THAT(toolkit.lines, ElementsAre("open https://s/4"));
}

TEST_F(ApplicationPageTest, ItsTitleSaysWhatBecomesOfTheApplication) {
  std::vector<std::string> titles;
  const auto note = [&titles](CPropertySheet& sheet) {
    titles.push_back(sheet.GetControlText() + ": " + sheet.GetPage()->GetHeaderTitle() + ", " +
                     sheet.GetPage()->GetHeaderSubtitle());
    return kSheetCancel;
  };
  for (const int isDefault : {1, 0}) {
    ASSERT_EQ(world.model->OpenProject("/p/demo.tprj", isDefault), 1);
    user.useSheet = note;
    WizardScene::Run(Proposed());
  }
  EXPECT_THAT(titles, ElementsAre("Project New: row 26 %s %s %s, row 3 %s %s %s",
                                  "Project New: row 2 %s %s %s, row 3 %s %s %s"));
}

TEST_F(ApplicationPageTest, ThePicturesAreThoseOfTheInstallation) {
  for (const std::string name : {"target.bmp", "wizard.bmp"}) {
    const std::string shipped =
        std::string(std::getenv("TARN_SOURCE_DIR")) + "/share/config/resources/" + name;
    world.disk.AddFile("/app/config/resources/" + name,
                       *FileSystem::Native().ReadWholeFile(shipped));
  }
  user.useSheet = [](CPropertySheet& sheet) {
    EXPECT_EQ(sheet.GetHeaderBitmap()->size, (Size{48, 48}));
    const auto& tree = User(sheet).Control<CTreeCtrl>(kIdTargetTree);
    EXPECT_EQ(tree.GetImageList()->GetImageSize(), (Size{18, 18}));
    return kSheetCancel;
  };
  WizardScene::Run(Proposed());
}

TEST_F(ApplicationPageTest, WithoutACatalogueOneCanStillMakeAnApplication) {
  SetTool("Yes");
  world.disk.Erase("/app/targets/chips.xml");
  EXPECT_EQ(Run(Proposed(),
                [](const User& shown) {
                  EXPECT_EQ(shown.Tree(), "Targets");
                  EXPECT_EQ(shown.Form(), "Application: app @ /p, new only, tool -, '', ");
                  shown.Type(kIdName, "boot");
                }),
            "Application: boot @ /p, new, config 'Standard', script '', tool ''");
  EXPECT_EQ(Profile(), "Yes none") << "nothing was chosen";
}

TEST_F(ApplicationPageTest, DamagedAndForeignDescriptionsShowWhatTheyHave) {
  world.disk.AddFile("/app/targets/cut.xml",
                     "<Targets Header='Cut'><Target Header='C1'>"
                     "<Micro_Description>half");
  world.disk.AddFile("/app/targets/other.xml", "<Parts><Target Header='P1' /></Parts>");
  world.disk.AddFile("/app/targets/junk.xml", "junk");
  Run(Proposed(), [](const User& shown) {
    EXPECT_EQ(shown.Tree(), "Targets Chips [Cut]");
    shown.ClickTarget("C1");
    EXPECT_EQ(shown.Form(), "Application: app @ /p, new only, tool - off, 'half', ");
  });
}

}  // namespace
}  // namespace tarn::test
