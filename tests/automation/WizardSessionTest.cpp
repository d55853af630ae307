// Changes to a project while its wizard is open.

#include <tarn/commands.h>

#include <gtest/gtest.h>

#include <functional>

#include "automation/ManagerFixture.h"
#include "support/AnsweringUser.h"
#include "support/WizardUser.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

class WizardSession : public ::testing::Test {
 protected:
  // Adds an application "boot" to the project and performs `act` while the wizard is open. Returns
  // the result of the call and the final applications of the project.
  std::string Play(const std::function<void(WizardSession&, CPropertySheet&)>& act) {
    world = std::make_unique<ManagerFixture>();
    AnsweringUser user(world->host.Handle());
    world->AddDemo();
    world->AddDefaultProject();
    world->components.Properties().defaults[".Build.TranslateTool"] = "cc";
    world->components.Properties().defaults[".Build.OutputFile"] = "/p/demo.o";
    world->Init();
    world->Call("InitToolManager", {DispatchPtr(&world->components.Tools())});
    world->Call("ProjectOpen", {"/p/demo.tprj"});
    world->Call("SelectApplication", {"Tarn Project 'demo'"});
    bool isInner = false;
    user.useSheet = [&](CPropertySheet& sheet) {
      WizardUser(sheet).Type(kIdName, isInner ? "inner" : "boot");
      if (!std::exchange(isInner, true)) act(*this, sheet);
      return kSheetFinish;
    };
    const std::string answer = world->Call("AddNewItem", {NullableText(), "Application"});
    if (!world->manager) return answer;
    MessageLoop::ForCurrentThread()->PumpUntil([this] { return !GetBuilder().IsWorkerAlive(); },
                                               std::chrono::seconds(20));
    std::string text = answer + (Model().IsDefaultProject() ? " default:" : ":");
    for (const CXmlNode* child : Model().GetProjectRoot().GetChildren()) {
      if (IsContentNode(*child)) text += " " + OrEmpty(child->GetAttrValue("Header"));
    }
    return text;
  }
  CProjectModel& Model() { return *world->Manager().GetModel(); }
  Builder& GetBuilder() { return *world->Manager().GetBuilder(); }

 public:
  std::unique_ptr<ManagerFixture> world;
};

TEST_F(WizardSession, NothingThatHappensMeanwhileCrashesOrMeetsAnotherProject) {
  using Session = WizardSession;
  using Sheet = CPropertySheet;
  const struct {
    const char* name;
    std::function<void(Session&, Sheet&)> act;
    const char* outcome;
  } rows[] = {
      {"nothing", [](Session&, Sheet&) {}, "1: demo boot"},
      {"the project is closed",
       [](Session& session, Sheet&) { session.world->Call("ProjectClose"); }, "0 default: demo"},
      {"the same is opened anew",
       [](Session& session, Sheet&) {
         session.world->Call("ProjectClose");
         session.world->Call("ProjectOpen", {"/p/demo.tprj"});
         session.world->Call("SelectApplication", {"Tarn Project 'demo'"});
       },
       "0: demo"},
      {"the current application goes",
       [](Session& session, Sheet&) { session.world->Call("RemoveItem", {"demo"}); }, "1: boot"},
      {"a second wizard",
       [](Session& session, Sheet&) {
         session.world->Call("AddNewItem", {NullableText(), "Application"});
         session.world->Call("SelectApplication", {"Tarn Project 'demo'"});
       },
       "1: demo inner boot"},
      {"a build begins",
       [](Session& session, Sheet&) {
         EXPECT_EQ(session.world->Call("Command", {TARN_CMD_BUILD_ALL}), "2");
       },
       "0: demo"},
      {"its window goes", [](Session&, Sheet& sheet) { sheet.DestroyWindow(); }, "0: demo"},
      {"the host says goodbye",
       [](Session& session, Sheet&) {
         session.world->Call("Clean");
         session.world->manager = {};
       },
       "1"},
  };
  for (const auto& row : rows) EXPECT_EQ(Play(row.act), row.outcome) << row.name;
}

}  // namespace
}  // namespace tarn::test
