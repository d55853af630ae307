// Build steps of a project: generated sources and headers, commands after a link.

#include <gtest/gtest.h>

#include "hosts/CliProject.h"
#include "platform/text/Text.h"

namespace tarn::host {
namespace {

// The application "app", whose c.c includes a generated header, and whose generated source is
// listed before the file that it is made from.
class CliSteps : public ::testing::Test {
 protected:
  void AddLogo() {
    project.Write("src/logo.bin", "ab");
    project.Out({"add", "src/logo.bin", "--tool", "embed"});
    project.Out({"options", "set", "Directories.Include", "build/app.gen"});
    project.Out({"add", kSource, "--to", "app"});
    project.Write("src/c.c",
                  "#include \"logo.h\"\nint c(void) { return logo[1] + (int)logo_size; }\n");
  }

  void AddScript(const std::string& name, const std::string& lines) {
    project.Edit(name, "#!/bin/sh\n" + lines);
    std::filesystem::permissions(project.PathOf(name), std::filesystem::perms::owner_all);
  }

  static constexpr const char* kSource = "build/app.gen/logo.c";
  CliProject project;
};

TEST_F(CliSteps, AFileBecomesAnArrayBeforeWhatUsesItIsCompiled) {
  AddLogo();
  EXPECT_FALSE(project.Exists(kSource));
  EXPECT_FALSE(Has(project.Out({"status"}), "its source")) << "another node makes it";
  std::string log;
  for (const char* jobs : {"-j1", "-j8"}) {
    SCOPED_TRACE(jobs);
    project.Out({"clean"});
    EXPECT_FALSE(project.Exists(kSource) || project.Exists("build/app.gen/logo.h"));
    EXPECT_EQ(Built(project.Out({"build", jobs})), "logo.c a.c b.c c.c logo.c app");
    EXPECT_EQ(project.Read("demo.tlog"), log.empty() ? log = project.Read("demo.tlog") : log);
    EXPECT_TRUE(Has(project.Out({"build", jobs}), "Nothing to do"));
  }
  EXPECT_TRUE(Has(project.Out({"check"}), "No findings"));
  // The header is the same for other bytes.
  project.Edit("src/logo.bin", "xyz");
  EXPECT_EQ(Built(project.Out({"build", "-j8"})), "logo.c logo.c app");
  EXPECT_TRUE(Has(project.Read(kSource), "0x78, 0x79, 0x7a,"));
  project.Out({"options", "set", "-n", "src/logo.bin", "Embed.Type", "unsigned char"});
  EXPECT_EQ(Built(project.Out({"build", "-j8"})), "logo.c c.c logo.c app");
  EXPECT_TRUE(Has(project.Out({"status"}), "up to date"));
}

TEST_F(CliSteps, ABuildContinuesWhereOneWithoutRecordsWasKilled) {
  AddLogo();
  project.Edit(kSource, "half of");
  project.Edit("build/app.gen/logo.h", "half of");
  project.Out({"build"});
  EXPECT_TRUE(Has(project.Read("build/app.gen/logo.h"), "extern"));
}

TEST_F(CliSteps, CommandsOfTheProjectMakeFilesIfItIsTrusted) {
  project.Write("src/names.txt", "ONE 1\n");
  project.Out({"add", "src/names.txt", "--tool", "command"});
  const auto set = [&](const char* option, const std::string& value) {
    project.Out({"options", "set", "-n", "src/names.txt", "--", option, value});
  };
  const CliProject::Answer unset = project.Run({"build", "--trust"});
  EXPECT_EQ(unset.code, 1);
  EXPECT_TRUE(Has(unset.out + unset.err, "Build.Commands is not set")) << unset.out << unset.err;
  set("Build.OutputFile", "build/gen/names.h");
  set("Build.MoreFiles", "build/gen/names.log");
  set("Build.Commands",
      "sed \"s/^/#define /w build/gen/names.h\" $(General.Path);tools/done build/gen/names.log");
  AddScript("tools/done", "echo done >\"$1\"\n");
  project.Write("src/c.c", "#include \"../build/gen/names.h\"\nint c(void) { return ONE; }\n");
  const CliProject::Answer refused = project.Run({"build"});
  EXPECT_EQ(refused.code, 3);
  EXPECT_TRUE(Has(refused.err, "run the program sed ")) << refused.err;
  project.Trust();
  EXPECT_EQ(Built(project.Out({"build", "-j8"})), "names.h a.c b.c c.c app");
  EXPECT_TRUE(Has(project.Out({"build"}), "Nothing to do"));
  project.Edit("src/names.txt", "ONE 2\n");
  EXPECT_EQ(Built(project.Out({"build", "-j8"})), "names.h c.c app");
  // A script is a dependency, and so is what else the commands write.
  project.Touch("tools/done");
  EXPECT_EQ(Built(project.Out({"build"})), "names.h c.c app");
  project.Edit("build/gen/names.log", "changed");
  EXPECT_EQ(Built(project.Out({"build"})), "names.h c.c app");
  project.Edit("tools/done", "#!/bin/sh\nexit 0\n");
  const CliProject::Answer lacks = project.Run({"build"});
  EXPECT_EQ(lacks.code, 1);
  EXPECT_TRUE(Has(lacks.out, "left no file " + project.PathOf("build/gen/names.log"))) << lacks.out;
}

TEST_F(CliSteps, AFileThatAnotherOneMakesIsMadeBeforeItIsUsed) {
  project.Write("src/logo.txt", "text");
  project.Write("src/c.c", "extern const char logo[];\nint c(void) { return logo[0]; }\n");
  project.Trust();
  project.Out({"add", "src/logo.txt", "--tool", "command"});
  project.Out({"options", "set", "-n", "src/logo.txt", "Build.OutputFile", "build/gen/logo.bin"});
  project.Out({"options", "set", "-n", "src/logo.txt", "Build.Commands",
               "cp $(General.Path) $(Build.OutputFile)"});
  project.Out({"add", "build/gen/logo.bin", "--tool", "embed"});
  project.Out({"add", kSource});
  project.Out({"move", "src/logo.txt", "app"});  // after the others
  EXPECT_EQ(Built(project.Out({"build", "-j8"})), "logo.bin logo.c a.c b.c c.c logo.c app");
  EXPECT_TRUE(Has(project.Out({"build"}), "Nothing to do"));
  project.Edit("src/logo.txt", "other");
  EXPECT_EQ(Built(project.Out({"build", "-k0"})), "logo.bin logo.c logo.c app");
  project.Edit("src/logo.txt", "third");
  project.Out({"options", "set", "-n", "src/logo.txt", "Build.Commands", "false"});
  const CliProject::Answer failed = project.Run({"build", "-k0"});
  EXPECT_EQ(failed.code, 1);
  EXPECT_EQ(Built(failed.out), "logo.bin") << failed.out;
}

TEST_F(CliSteps, CommandsAfterALinkRunWithItAndCanFail) {
  AddScript("tools/sign", "echo signing\ncp $1 $2\n");
  project.Out({"options", "set", "After.Commands",
               "tools/sign $(Build.OutputFile) build/$(Config.Name)/app.signed"});
  project.Out({"options", "set", "After.Files", "build/$(Config.Name)/app.signed"});
  const CliProject::Answer refused = project.Run({"build"});
  EXPECT_EQ(refused.code, 3);
  EXPECT_TRUE(Has(refused.err, "run the program " + project.PathOf("tools/sign"))) << refused.err;
  EXPECT_FALSE(project.Exists("build/Standard/app.signed"));
  project.Trust();
  EXPECT_TRUE(Has(project.Out({"build", "-v"}), "signing"));
  EXPECT_TRUE(Has(project.Out({"build"}), "Nothing to do"));
  std::filesystem::remove(project.PathOf("build/Standard/app.signed"));
  EXPECT_EQ(Built(project.Out({"build"})), "app");
  AddScript("tools/sign", "echo no key; exit 3\n");
  const CliProject::Answer failed = project.Run({"build"});
  EXPECT_EQ(failed.code, 1);
  EXPECT_TRUE(Has(project.Run({"report"}).out, "no key")) << failed.out;
  AddScript("tools/sign", "cp $1 $2\n");
  EXPECT_EQ(Built(project.Out({"build"})), "app");
  project.Out({"clean"});
  EXPECT_FALSE(project.Exists("build/Standard/app.signed"));
}

TEST_F(CliSteps, AnApplicationJoinsWhatOthersWrite) {
  project.WriteProject({{"image", {}}, {"boot", {"c.c"}}, {"prog", {"b.c", "a.c"}}});
  project.Trust();
  project.Write("src/c.c", "int main(void) { return 1; }\n");
  AddScript("tools/join", "cat $2 $3 >$1\n");
  const auto set = [&](const char* application, const char* option, const std::string& value) {
    project.Out({"options", "set", "-a", application, option, value});
  };
  set("image", "Build.TranslateTool", "pack");
  set("image", "Build.OutputFile", "build/image.bin");
  set("image", "After.Commands", "tools/join build/image.bin build/boot.bin build/Standard/prog");
  set("boot", "After.Commands", "cp build/Standard/boot build/boot.bin");
  set("boot", "After.Files", "build/boot.bin");
  EXPECT_EQ(Built(project.Out({"build", "-j8"})), "c.c boot b.c a.c prog image.bin");
  EXPECT_TRUE(Has(project.Out({"build"}), "Nothing to do"));
  project.Edit("src/c.c", "int main(void) { return 2; }\n");
  EXPECT_EQ(Built(project.Out({"build", "--app", "image"})), "c.c boot image.bin");
}

TEST_F(CliSteps, AnApplicationLinksALibraryOfTheProject) {
  project.Write("src/core.c", "int core(void) { return 1; }\n");
  project.Write("src/c.c", "int core(void);\nint c(void) { return core(); }\n");
  project.Out({"add", "--application", "core", "--library", "src/core.c"});
  project.Out({"add", "--application", "other", "-a", "core"});
  EXPECT_EQ(project.Out({"options", "get", "-a", "other", "Target.Product"}), "program\n");
  project.Out({"remove", "other"});
  for (const std::string configuration : {"Standard", "Fast"}) {
    SCOPED_TRACE(configuration);
    project.Out(
        {"options", "set", "-a", "app", "-c", configuration, "Linker.Applications", "core"});
    project.Out({"config", "select", "-a", "app", configuration});
    project.Out({"config", "select", "-a", "core", configuration});
    EXPECT_EQ(Built(project.Out({"build", "--app", "app"})), "core.c core.a a.c b.c c.c app");
    EXPECT_TRUE(Has(project.Out({"build"}), "Nothing to do"));
  }
  project.Edit("src/core.c", "int core(void) { return 2; }\n");
  EXPECT_EQ(Built(project.Out({"build"})), "core.c core.a app");
  // The sizes of the library are those of its code in the program.
  EXPECT_TRUE(project.Out({"size"}).starts_with("app  ["));
  project.ExpectRefusal({"size", "-a", "core"}, 3, "a library, whose code counts in the programs");
  EXPECT_TRUE(Has(project.Run({"size", "--by", "stack"}).err, "option Compiler.StackUsage"));
}

TEST_F(CliSteps, TheVersionOfTheSourcesIsCompiledWhereItIsUsed) {
  const auto git = [&](const std::string& line) {
    const std::vector<std::string> words = Words("-c user.name=n -c user.email=e " + line);
    const CliProject::Answer answer = project.RunProgram("git", words);
    EXPECT_EQ(answer.code, 0) << answer.err;
  };
  project.Write("version.h.in", "#define VERSION \"@GIT_DESCRIPTION@ @BUILD_NUMBER@ @ME@\"\n");
  project.Write("src/c.c", "#include \"../build/app.gen/version.h\"\nconst char c[] = VERSION;\n");
  project.Write(".gitignore", "build\n");
  project.Out({"add", "version.h.in", "--tool", "version"});
  project.Out({"add", "build/app.gen/version.h"});  // not yet there
  EXPECT_TRUE(Has(project.Out({"check"}), "No findings"));
  git("init -q");
  git("add .");
  git("commit -qm first");
  git("tag v1");
  const CliProject::Answer refused = project.Run({"build"});
  EXPECT_TRUE(Has(refused.err, "run code with the argument --git")) << refused.err;
  project.Trust();
  const auto version = [&] { return project.Read("build/app.gen/version.h"); };
  project.Out({"build", "-j8"});
  EXPECT_EQ(version(), "#define VERSION \"v1 1 @ME@\"\n");
  EXPECT_TRUE(Has(project.Out({"build"}), "Nothing to do"));
  git("tag v2 -am second");
  EXPECT_EQ(Built(project.Out({"build", "-j8"})), "version.h.stamp c.c app");
  EXPECT_EQ(version(), "#define VERSION \"v2 1 @ME@\"\n");
  project.Edit("src/a.c", "int a(void) { return 9; }\n");
  EXPECT_EQ(Built(project.Out({"build"})), "version.h.stamp a.c c.c app");
  EXPECT_EQ(version(), "#define VERSION \"v2-dirty 1 @ME@\"\n");
  project.Edit("src/a.c", "int a(void) { return 8; }\n");
  EXPECT_EQ(Built(project.Out({"build"})), "version.h.stamp a.c app");
  git("commit -qam second");
  EXPECT_EQ(Built(project.Out({"build"})), "version.h.stamp c.c app");
  EXPECT_TRUE(Has(version(), "\"v2-1-g") && Has(version(), " 2 ")) << version();
  EXPECT_TRUE(Has(project.Out({"build"}), "Nothing to do"));
  project.environment.emplace_back("BUILD_NUMBER", "77");
  EXPECT_EQ(Built(project.Out({"build"})), "version.h.stamp c.c app");
  EXPECT_TRUE(Has(version(), " 77 ")) << version();
}

}  // namespace
}  // namespace tarn::host
