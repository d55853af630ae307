// Definitions outside of the installation, and toolchains outside of PATH.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "hosts/CliProject.h"
#include "platform/text/Text.h"

namespace tarn::host {
namespace {

constexpr const char* kWithMine =
    R"(<Tools><Tool Name="host-gcc.c" Base="host-gcc.c"><Step Id="driver">)"
    R"(<Arg V="-DMINE" Before="target"/></Step></Tool></Tools>)";

// A project whose a.c needs the definitions of `folder` to compile, and settings of its own.
struct Defined {
  explicit Defined(const std::string& folder) {
    std::filesystem::create_directories(project.PathOf("settings/user/definitions"));
    project.Point("TARN_SETTINGS", "settings");
    project.Edit("src/a.c",
                 "#ifndef MINE\n#error not defined\n#endif\nint a(void) { return 0; }\n");
    project.Edit(folder + "/my.tools", kWithMine);
    project.Edit(folder + "/my.options",
                 R"(<OptionSets><Set Header="Application"><Section Header="Mine">)"
                 R"(<Property Header="Own" Default="7" /></Section></Set></OptionSets>)");
    project.Edit(folder + "/targets/my.xml",
                 R"(<Targets Header="Mine"><Target Header="m1"/></Targets>)");
  }
  CliProject project;
};

TEST(CliDefinitions, OfTheUserExtendThoseOfTheInstallationAndMakeOutputsStale) {
  const std::string folder = "settings/user/definitions";
  Defined defined(folder);
  CliProject& project = defined.project;
  project.Out({"build"});
  EXPECT_EQ(project.Out({"options", "get", "Mine.Own"}), "7\n");
  EXPECT_TRUE(Has(project.Out({"targets"}), "Mine\n  m1\n"));
  EXPECT_TRUE(Has(project.Out({"build"}), "Nothing to do"));
  project.Edit(folder + "/my.tools", ReplaceAll(kWithMine, "-DMINE", "-DMINE=2"));
  EXPECT_EQ(Built(project.Out({"build"})), "a.c b.c c.c app");
  project.Edit(folder + "/my.tools", "<Tools><Tool Name='host-gcc.c' Base='gone.c'/></Tools>");
  EXPECT_TRUE(Has(project.Run({"build"}).err, "no other tool is named gone.c"));
}

TEST(CliDefinitions, ADamagedOneIsNamedAndNotTheInstallation) {
  const std::string folder = "settings/user/definitions";
  Defined defined(folder);
  for (const char* name : {"/my.tools", "/my.options"}) {
    const std::string intact = defined.project.Read(folder + name);
    defined.project.Edit(folder + name, intact.substr(0, intact.size() / 2));
    defined.project.ExpectRefusal({"build"}, 3,
                                  folder + name + ":1 has to be corrected: incomplete");
    defined.project.Edit(folder + name, intact);
  }
}

TEST(CliDefinitions, OfAProjectAreIgnoredAloudUntilItIsTrusted) {
  Defined defined(".tarn");
  CliProject& project = defined.project;
  const CliProject::Answer refused = project.Run({"build"});
  EXPECT_EQ(refused.code, 1);
  EXPECT_TRUE(Has(refused.out + refused.err, "not defined"));
  for (const char* name : {"my.tools", "my.options", "targets/my.xml"}) {
    EXPECT_TRUE(Has(refused.err, project.PathOf(std::string(".tarn/") + name) + ": ignored"));
  }
  EXPECT_TRUE(Has(refused.err, "`tarn trust /"));
  project.Out({"build", "--trust"});
  EXPECT_NE(project.Run({"options", "get", "Mine.Own"}).code, 0);
  project.Out({"trust"});
  const CliProject::Answer trusted = project.Run({"options", "get", "Mine.Own"});
  EXPECT_EQ(trusted.out + trusted.err, "7\n");
}

TEST(CliDefinitions, AToolchainIsFoundWhereTheVariableOrTheSettingSays) {
  Defined defined("settings/user/definitions");
  CliProject& project = defined.project;
  const auto install = [&](const std::string& folder, const std::string& version) {
    for (const std::string program : {"gcc", "g++"}) {
      const std::string path = folder + "/bin/" + program;
      project.Edit(path, "#!/bin/sh\ntest \"$1\" = --version && echo " + version +
                             " && exit\nexec " + program + " \"$@\"\n");
      chmod(project.PathOf(path).c_str(), 0755);
    }
  };
  install("one", "gcc one");
  install("two", "gcc two");
  const std::string setting =
      "[Corvane\\Tarn\\Toolchains]\nhost-gcc=" + project.PathOf("one") + "\n";
  project.Write("settings/user/profile.ini", setting);
  EXPECT_TRUE(Has(project.Out({"toolchains"}), project.PathOf("one/bin/gcc") + "  gcc one\n"));
  project.Point("TARN_HOST_GCC", "two");
  EXPECT_TRUE(Has(project.Out({"toolchains", "--json"}), "\"version\": \"gcc two\""));
  project.Out({"build", "--trust"});
  EXPECT_TRUE(Has(project.Out({"build", "--trust"}), "Nothing to do"));
  install("two", "gcc three");
  EXPECT_EQ(Built(project.Out({"build", "--trust"})), "a.c b.c c.c app");
  // The compiler itself stands for its folder.
  for (const char* each : {"one/bin", "one/bin/gcc"}) {
    project.Point("TARN_HOST_GCC", each);
    EXPECT_TRUE(Has(project.Out({"toolchains"}), project.PathOf("one/bin/gcc") + "  gcc one\n"));
  }
  EXPECT_EQ(Built(project.Out({"build", "--trust"})), "a.c b.c c.c app");
  project.Point("TARN_HOST_GCC", "none");
  const std::string missing = project.Out({"toolchains"});
  EXPECT_TRUE(Has(missing, "gcc is not in " + project.PathOf("none") + ". On Debian")) << missing;
  const CliProject::Answer built = project.Run({"build"});
  EXPECT_EQ(built.code, 4);
  EXPECT_TRUE(Has(built.out + built.err, "set TARN_HOST_GCC, or host-gcc in")) << built.out;
}

}  // namespace
}  // namespace tarn::host
