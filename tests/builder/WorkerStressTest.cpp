// The main thread keeps reading, reporting and sending messages while a worker builds a large
// project. The test checks little itself; it is meant to be run under the thread sanitizer.

#include <tarn/commands.h>

#include <gtest/gtest.h>

#include "builder/BuildFixture.h"
#include "builder/LinkFiles.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

constexpr int kFiles = 1000;

class StressFixture : public ProjectFixture {
 public:
  StressFixture() {
    std::string content;
    for (int i = 0; i < kFiles; ++i) {
      const std::string name = "f" + std::to_string(i);
      content += "<C Header=\"" + name + ".c\" Path=\".\\" + name + ".c\" />";
      AddFile("/p/" + name + ".c", "");
    }
    AddDemo("<Group Header=\"all\" >" + content + "</Group>");
    components.Properties().defaults["Application.Build.TranslateTool"] = "ld";
    components.Properties().defaults["Application.Build.OutputFile"] = "demo.elf";
    components.Properties().defaults["C.Build.TranslateTool"] = "cc";
    components.Tools().onRun = [this](const ToolRun& run) {
      const bool isLink = run.tool == "ld";
      const std::string source = run.files.substr(1, run.files.size() - 2);
      disk.AddFile(isLink ? "/p/demo.elf" : source.substr(0, source.size() - 1) + "o", "");
      return 1;
    };
    OpenDemo();
    model->PublishAll();
    for (int i = 0; i < kFiles; ++i) {
      const std::string name = "f" + std::to_string(i);
      Node((name + ".c").c_str())->SetAttrValue("OutputFile", "/p/" + name + ".o");
    }
  }

  // One round of everything that a host may call during a build.
  void Disturb(int round) {
    const std::string product = "/p/f" + std::to_string(round % kFiles) + ".o";
    builder->Information().SetBuildInfo(
        "",
        ("<I><F Header=\"" + product + "\" Infos=\"i\" Date=\"" +
         ToDecimal(disk.ModifiedOf(product).value_or(0)) + "\" ><D Header=\"/p/h.h\" /></F></I>")
            .c_str());
    model->Host().ReportMessage("from the host");
    std::string list;
    CollectLinkFiles(model->Types(), list, Application(), true, Application(), ",");
    CollectDebugFiles(list, Application(), Application(), ",");
    model->Publishing().GetDynamicCommands(TARN_CMD_LIST_TOOLS);
    model->Services().views.GetSymbolInfo("main");
    model->Publishing().GetCurrentConfigName();
    builder->GetBuildState();
    propertyManager.GetPropertyValue("C", "Build", "OutputFile");
    model->SetCurrentNode(model->GetProjectRoot().GetChild(0));
    model->Publishing().PublishTick();
    if (builder->IsWorkerAlive()) {
      EXPECT_EQ(model->CloseProject(), 0);
    }
  }
};

TEST(WorkerStress, AHostThatIsBusyBesideABuildMeetsNoRace) {
  StressFixture world;
  bool ended = false;
  world.host.actions[kMsgWorkerEnded] = [&ended] { ended = true; };
  ASSERT_EQ(world.builder->StartBuildThread(kWorkerBuildAll), 1);
  int round = 0;
  while (!ended && round < 100'000) {
    world.Disturb(round++);
    world.builder->RunPendingStep();
    MessageLoop::ForCurrentThread()->Pump();
  }
  ASSERT_TRUE(ended);
  EXPECT_EQ(world.components.Tools().CallsOf("RunTool").size(), kFiles + 1u);
  EXPECT_EQ(world.builder->GetBuildState(), StateSucceeded);
  EXPECT_GT(round, 10);
}

}  // namespace
}  // namespace tarn::test
