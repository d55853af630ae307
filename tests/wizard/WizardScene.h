#pragma once

#include <string>

#include "platform/settings/Settings.h"
#include "project/ProjectFixture.h"
#include "wizard/ProjectWizard.h"
#include "xml/XmlNode.h"

namespace tarn::test {

// Model, settings and target catalogue for the wizard. Its dialogs appear over the window of
// `world.host`, or over the window passed to SetAsked(). The available types are "Application", one
// without a label, and "Program", which isn't built.
class WizardScene {
 public:
  WizardScene() {
    CXmlNode program;
    program.Load("<Program Application='YES' Header='Program' />", g_xmlParseInfo);
    world.model->Services().types.Add(program);
    world.disk.AddFile(
        "/app/targets/chips.xml",
        "<Targets Header='Chips'>"
        "<Targets Header='Small'>"
        "<Target Header='S1'><Micro_Description>one\\ntwo</Micro_Description>"
        "<Datasheet>\n  https://s/1\n</Datasheet><Wizard>cobbler</Wizard>"
        "<ConfigName>Debug</ConfigName><![CDATA[script 1]]></Target>"
        "<Target Header='S2'><Micro_Description>bare</Micro_Description></Target>"
        "<Target Header='S3'><Micro_Description></Micro_Description><Datasheet></Datasheet>"
        "<Wizard></Wizard><ConfigName></ConfigName><![CDATA[]]></Target>"
        "<Target Header='S4'><Datasheet>https://s/4</Datasheet></Target>"
        "</Targets></Targets>");
    world.AddDemo("");
  }

  static NewApplication Proposed(const char* name = "app", bool isNew = true,
                                 const char* type = "") {
    NewApplication application;
    application.createNewProject = isNew;
    application.applicationName = name;
    application.location = "/p";
    application.typeHeader = type;
    return application;
  }
  // Returns the result as a string, or "cancelled".
  std::string Run(NewApplication application) {
    const TargetCatalogue catalogue(world.disk, settings, "/app/targets");
    ProjectWizardMaker maker({*world.model, world.disk, settings, catalogue});
    if (!maker.AskNewApplication(application)) return "cancelled";
    return application.typeHeader + ": " + application.applicationName + " @ " +
           application.location + (application.createNewProject ? ", new" : ", join") +
           ", config '" + application.configName + "', script '" + application.targetText +
           "', tool '" + application.wizardPath + (application.useCobbler ? "' runs" : "'");
  }
  // Sets the window whose user is asked.
  void SetAsked(WindowHandle window) { world.model->Services().mainframeHandle = window; }
  void SetTool(const char* value) { settings.WriteProfile("Project", "UseCobbler", value); }
  std::string Profile() const {
    return settings.ReadProfile("Project", "UseCobbler", "none") + " " +
           settings.ReadProfile("Project", "LastProcessor", "none");
  }

  ProjectFixture world;
  Settings settings{world.disk, {"/machine", "/user", "/data"}};
};

}  // namespace tarn::test
