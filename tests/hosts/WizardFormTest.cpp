#include "hosts/core/WizardForm.h"

#include <gtest/gtest.h>

#include "support/AnsweringUser.h"
#include "wizard/WizardScene.h"

namespace tarn::host {
namespace {

using test::WizardScene;

WizardChoices Target(const char* target) {
  WizardChoices choices;
  choices.target = target;
  return choices;
}

// Returns the wizard's result when a host fills it in, or the reason for a refusal.
std::string Fill(WizardScene& scene, const NewApplication& proposed, const WizardChoices& choices) {
  test::AnsweringUser user(scene.world.host.Handle());
  std::string refused;
  user.useSheet = [&](CPropertySheet& sheet) {
    EXPECT_TRUE(WizardForm::Fits(sheet));
    const auto refusal = WizardForm(sheet).Fill(choices);
    if (!refusal) return kSheetFinish;
    refused = refusal->text;
    for (const std::string& each : refusal->choices) refused += " " + each;
    return kSheetCancel;
  };
  const std::string outcome = scene.Run(proposed);
  return refused.empty() ? outcome : refused;
}

TEST(WizardForm, ChoosesWhatAUserCouldAndTellsWhatHeCouldNot) {
  WizardScene scene;
  scene.world.disk.AddFile("/app/targets/more.xml",
                           "<Targets Header='More'><Target Header='Small' /><Target Header='S1' />"
                           "</Targets>");
  scene.world.disk.AddFile("/app/targets/own.xml",
                           "<Targets Header='Small'><Target Header='S3'><ConfigName>Own"
                           "</ConfigName></Target><Targets Header='Bare' />"
                           "<Target Header='Kit'><Target Header='Part' /></Target></Targets>");
  const auto with = [](WizardChoices choices, auto WizardChoices::*field, auto value) {
    choices.*field = value;
    return choices;
  };
  const NewApplication isNew = WizardScene::Proposed();
  const NewApplication joins = WizardScene::Proposed("app", false);
  const std::string standard = ", config 'Standard', script '', tool ''";
  const std::string first = ", config 'Debug', script 'script 1', tool '";
  const WizardChoices s1 = Target("chips/small/s1");
  const struct {
    const char* name;
    NewApplication proposed;
    WizardChoices choices;
    std::string outcome;
  } rows[] = {
      {"nothing", isNew, {}, "Application: app @ /p, new" + standard},
      {"no target, as proposed", isNew, Target(""), "Application: app @ /p, new" + standard},
      {"a name", isNew, Target("s4"), "Application: app @ /p, new" + standard},
      {"a family's name as a target's", isNew, Target("small"),
       "Application: app @ /p, new" + standard},
      {"a whole path", isNew, s1, "Application: app @ /p, new" + first + "'"},
      {"the end of one", isNew, Target("Small/S1"), "Application: app @ /p, new" + first + "'"},
      {"a whole path that another one ends on", isNew, Target("Small/S3"),
       "Application: app @ /p, new, config 'Own', script '', tool ''"},
      {"several", isNew, Target("S1"),
       "Several targets are named \"S1\": Chips/Small/S1, More/S1."},
      {"part of a name", isNew, Target("1"),
       "Unknown target \"1\". S1 S2 S3 S4 Small S1 S3 Kit Part"},
      {"a family without targets", isNew, Target("Bare"),
       "Unknown target \"Bare\". S1 S2 S3 S4 Small S1 S3 Kit Part"},
      {"a target with others below it", isNew, Target("Kit"),
       "Application: app @ /p, new" + standard},
      {"one below a target", isNew, Target("kit/part"), "Application: app @ /p, new" + standard},
      {"a type, and a name with an extension", isNew,
       with(with(s1, &WizardChoices::typeHeader, std::string("program")),
            &WizardChoices::applicationName, std::string("a.hex")),
       "Program: a.hex @ /p, new" + first + "'"},
      {"no such type", isNew, with({}, &WizardChoices::typeHeader, std::string("Prog")),
       "Unknown application type \"Prog\". Application  Program"},
      {"a project of its own", joins, with({}, &WizardChoices::createNewProject, true),
       "Application: app @ /p, new" + standard},
      {"into the project", joins, with({}, &WizardChoices::createNewProject, false),
       "Application: app @ /p, join" + standard},
      {"into none", isNew, with({}, &WizardChoices::createNewProject, false),
       "No open project can contain an application of this type."},
      {"the tool", isNew, with(s1, &WizardChoices::launchTool, true),
       "Application: app @ /p, new" + first + "cobbler'"},
      {"no tool", isNew, with(s1, &WizardChoices::launchTool, false),
       "Application: app @ /p, new" + first + "'"},
      {"a tool that there isn't", isNew, with(Target("S4"), &WizardChoices::launchTool, true),
       "This target has no tool that generates the initial sources."},
      {"a folder", isNew, with({}, &WizardChoices::location, std::string("/q")),
       "Application: app @ /q, new" + standard},
  };
  for (const auto& row : rows) {
    scene.settings.RemoveProfile("Project", "LastProcessor");
    scene.SetTool("No");
    EXPECT_EQ(Fill(scene, row.proposed, row.choices), row.outcome) << row.name;
  }
}

TEST(WizardForm, WhatIsProposedCanBeGivenBack) {
  WizardScene scene;
  scene.SetTool("Yes");
  scene.settings.WriteProfile("Project", "LastProcessor", "S1");
  test::AnsweringUser user(scene.world.host.Handle());
  user.useSheet = [](CPropertySheet& sheet) {
    WizardForm form(sheet);
    const WizardProposals read = form.Read();
    EXPECT_EQ(read.target, "Chips/Small/S1");
    EXPECT_TRUE(read.mayLaunchTool);
    const auto refusal = form.Fill({read.typeHeader, read.target, read.applicationName,
                                    read.location, read.createNewProject, read.launchTool});
    EXPECT_FALSE(refusal) << refusal->text;
    return kSheetFinish;
  };
  EXPECT_EQ(scene.Run(scene.Proposed()),
            "Application: app @ /p, new, config 'Debug', script 'script 1', tool 'cobbler' runs");
}

}  // namespace
}  // namespace tarn::host
