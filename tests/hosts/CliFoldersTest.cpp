// Taking over folders, and second applications.

#include <gtest/gtest.h>

#include "hosts/CliProject.h"
#include "platform/process/Process.h"

namespace tarn::host {
namespace {

TEST(CliFolders, AGroupFollowsAFolder) {
  CliProject project;
  for (const char* each : {"lib/one/deep", "lib/two", "lib/skip", "lib/gen"}) {
    std::filesystem::create_directories(project.PathOf(each));
  }
  for (const char* each : {"lib/one/a1.c", "lib/one/deep/a2.c", "lib/two/a1.c", "lib/two/a1.h",
                           "lib/skip/no.c", "lib/gen/g.c", "lib/readme.txt"}) {
    project.Write(each, "");
  }
  project.Write("lib/.gitignore", "# made\ngen/\n");
  project.ExpectRefusal({"sync"}, 2, "No group follows a folder.");
  project.ExpectRefusal({"add", "lib"}, 2, "or use -r.");
  project.Out({"add", "-r", "lib", "--exclude", "skip"});
  const std::string added = project.Read("app.tapp");
  EXPECT_EQ(project.Out({"build"}).find("Error"), std::string::npos);
  for (const char* each : {"one\\a1.c", "one\\deep\\a2.c", "two\\a1.c", "two\\a1.h"}) {
    EXPECT_TRUE(Has(added, ".\\lib\\" + std::string(each))) << added;
  }
  for (const char* each : {"no.c", "g.c", "readme"}) EXPECT_FALSE(Has(added, each)) << added;
  EXPECT_EQ(project.Out({"sync"}), "");
  EXPECT_EQ(project.Read("app.tapp"), added);

  project.Write("lib/one/deep/new.c", "");
  std::filesystem::remove_all(project.PathOf("lib/two"));
  EXPECT_EQ(project.Out({"sync", "--remove", "--dry-run"}),
            "would add lib/one/deep/new.c\nwould remove lib/two/a1.c\nwould remove lib/two/a1.h\n");
  EXPECT_EQ(project.Read("app.tapp"), added);
  const auto kept = project.Run({"sync"});
  EXPECT_EQ(kept.out, "added lib/one/deep/new.c\n");
  EXPECT_TRUE(Has(kept.err, "lib/two/a1.c does not exist any more.")) << kept.err;
  project.Out({"sync", "--remove"});
  EXPECT_FALSE(Has(project.Read("app.tapp"), "two"));
  EXPECT_TRUE(Has(project.Read("app.tapp"), "one\\deep\\new.c"));
  EXPECT_EQ(project.Run({"check"}).code, 0);
}

TEST(CliFolders, ASecondApplicationHasTheSameTarget) {
  CliProject project;
  project.Write("src/boot.c", "int main(void) { return 5; }\n");
  project.ExpectRefusal({"add", "--application", "APP"}, 2, "already exists");
  project.ExpectRefusal({"add", "--application", "boot", "src/gone.c"}, 2, "does not exist");
  EXPECT_FALSE(project.Exists("boot.tapp"));
  project.Out({"add", "--application", "boot", "src/boot.c"});
  EXPECT_EQ(project.Run({"build", "--app", "boot"}).code, 0);
  EXPECT_EQ(project.RunProgram(project.PathOf("build/Standard/boot"), {}).code, 5);
}

TEST(CliFolders, AnApplicationForAnotherCompilerHasNoOptionsOfTheHardware) {
  if (FindProgram("arm-none-eabi-gcc").empty()) {
    GTEST_SKIP() << "gcc-arm-none-eabi is not installed";
  }
  CliProject project;
  project.Out({"new", "fw", "--target", "Blue Pill"});
  project.ExpectRefusal({"add", "fw", "--application", "x", "--compiler", "gcd"}, 2, "gcc");
  project.Write("fw/src/boot.c", "int main(void) { return 5; }\n");
  EXPECT_EQ(project.Out({"add", "fw", "--application", "boot", "fw/src/boot.c"}),
            "created fw/boot.tapp\nadded fw/src/boot.c\nadded fw/src/startup.c\n"
            "added fw/src/syscalls.c\n");
  EXPECT_EQ(project.Run({"build", "fw", "--app", "boot"}).code, 0);
  EXPECT_TRUE(Has(project.Read("fw/boot.tapp"), "stm32f1x"));
  project.Out({"add", "fw", "--application", "pc", "--compiler", "host-gcc", "fw/src/boot.c"});
  EXPECT_EQ(project.Run({"build", "fw", "--app", "pc"}).code, 0);
  EXPECT_FALSE(Has(project.Read("fw/pc.tapp"), "FlashSize"));
  EXPECT_FALSE(Has(project.Read("fw/pc.tapp"), "startup.c"));
  project.Out({"add", "fw", "--application", "core", "--library", "fw/src/boot.c"});
  EXPECT_FALSE(Has(project.Read("fw/core.tapp"), "startup.c"));
  project.Out({"add", "fw", "--application", "image", "--empty"});
  EXPECT_FALSE(Has(project.Read("fw/image.tapp"), "startup.c"));
}

}  // namespace
}  // namespace tarn::host
