#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "project/ProjectWorld.h"

namespace tarn::test {
namespace {

using ::testing::ElementsAre;

constexpr const char* kOneFile =
    "\n\t<Group Header=\"Sources\" sate=\"32\" >\n\t\t<C Header=\"main.c\" "
    "Path=\".\\src\\main.c\" />\n\t</Group>\n";

TEST(Lifecycle, OpeningTellsTheHostInOrder) {
  ProjectWorld world;
  world.AddDemo(kOneFile);
  ASSERT_EQ(world.OpenDemo(), 1);
  EXPECT_THAT(world.host.TakeLines(),
              ElementsAre("0x8015 /p/demo.tprj 0", "0x8023 /p/demo.tapp Standard",
                          "0x8019 demo Local Settings 4005", "0x8011 /p/demo.tapp 0",
                          "0x8010 /p/demo.tapp Standard"));
  EXPECT_EQ(ProjectWorld::Show(world.model->GetProjectRoot(), {"Header", "Path"}),
            "Project(Header=Tarn Project 'demo' Path=/p/demo.tprj)[Application(Header=demo "
            "Path=/p/demo.tapp)[Group(Header=Sources)[C(Header=main.c Path=.\\src\\main.c)]]]");
  EXPECT_FALSE(world.model->IsModified());
}

TEST(Lifecycle, SavingWhatWasNotChangedGivesTheSameBytes) {
  ProjectWorld world;
  world.AddDemo(kOneFile);
  world.AddFile("/p/src/main.c", "");
  ASSERT_EQ(world.OpenDemo(), 1);
  world.model->PublishAll();
  world.model->SetActiveApplication(world.Application());
  ASSERT_EQ(world.model->StoreChangedProperty("C.General.Nothing"), 1);
  ASSERT_EQ(world.model->SaveProject(), 1);
  const std::string project = world.FileText("/p/demo.tprj");
  const std::string application = world.FileText("/p/demo.tapp");
  ASSERT_EQ(world.model->StoreChangedProperty("C.General.Nothing"), 1);
  ASSERT_EQ(world.model->SaveProject(), 1);
  EXPECT_EQ(world.FileText("/p/demo.tprj"), project);
  EXPECT_EQ(application.find("/p"), std::string::npos) << application;
}

}  // namespace
}  // namespace tarn::test
