#include <gtest/gtest.h>

#include <filesystem>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

// Creation of a project from start to finish: a microcontroller of the catalogue, the hidden
// wizard, the script of the target, and a compiler for it.
TEST(CliNew, AProjectForATargetIsBuiltForThatTarget) {
  const struct {
    const char* name;
    std::vector<std::string> more;
    const char* target;
    const char* machine;  // option and value set by the target
    const char* program;
  } rows[] = {
      {"avr", {}, "atmega328p", "atmega328p", "build/Standard/avr.elf"},
      {"mcs51", {"--config", "Field"}, "AT89S52", "at89s52", "build/Field/mcs51.ihx"},
  };
  for (const auto& row : rows) {
    CliProject project;
    std::vector<std::string> arguments = {"new", row.name, "--target", row.target};
    arguments.insert(arguments.end(), row.more.begin(), row.more.end());
    const std::string name = row.name;
    EXPECT_EQ(project.Out(arguments), "created " + name + "/" + name + ".tprj\ncreated " + name +
                                          "/" + name + ".tapp\ncreated " + name +
                                          "/src/main.c\nRun `tarn build " + name +
                                          "` to build it.\n");
    EXPECT_EQ(project.Out({"options", "get", "Target.Device", name}),
              std::string(row.machine) + "\n");
    EXPECT_TRUE(Has(project.Out({"tree", name}), "Sources")) << row.name;
    const auto built = project.Run({"build", name});
    if (built.code == 4) continue;  // that compiler is not installed
    EXPECT_EQ(built.code, 0) << built.out << built.err;
    EXPECT_TRUE(project.Exists(name + "/" + row.program)) << built.out;
    EXPECT_TRUE(Has(project.Out({"build", name}), "Nothing to do")) << row.name;
  }
}

TEST(CliNew, ABoardIsFoundByTheNamesThatPeopleUse) {
  CliProject project;
  const std::pair<const char*, const char*> rows[] = {{"uno", "Arduino Uno"},
                                                      {"bluepill", "Blue Pill"},
                                                      {"nucleo_f401re", "NUCLEO-F401RE"},
                                                      {"disco_f407vg", "STM32F4DISCOVERY"}};
  for (const auto& [name, board] : rows) {
    project.Out({"new", name, "--target", name});
    EXPECT_EQ(project.Out({"options", "get", "Target.Board", name}), board + std::string("\n"));
  }
  EXPECT_TRUE(project.Out({"targets", "disco_f407vg"}).starts_with("STM32F4DISCOVERY"));
}

TEST(CliNew, WhatABoardNeedsToStartIsSaidAtOnce) {
  CliProject project;
  std::filesystem::create_directories(project.PathOf("settings/user"));
  project.Point("TARN_SETTINGS", "settings");
  project.Write("targets.xml",
                "<Targets Header='Mine' ><Target Header='ab1' ><ConfigName>Standard</ConfigName>"
                "<![CDATA[\nprint('Press its button.')\n]]></Target></Targets>");
  project.Write("settings/user/registry.ini",
                "[Software\\Corvane\\Tarn7\\Targets\\mine]\nNickName=Mine\nXmlPath=" +
                    project.PathOf("targets.xml") + "\n");
  const auto made = project.Run({"new", "p", "--target", "ab1"});
  EXPECT_EQ(made.code, 0);
  EXPECT_TRUE(Has(made.err, "Press its button.")) << made.err;
}

// simavr would start, and say that it doesn't have the device.
TEST(CliNew, ASimulatorIsOfferedOnlyForDevicesThatItHas) {
  CliProject project;
  const std::pair<const char*, const char*> rows[] = {{"ATxmega8E5", "none\n"},
                                                      {"ATmega328P", "simavr\n"}};
  for (const auto& [target, tool] : rows) {
    project.Out({"new", target, "--target", target});
    EXPECT_EQ(project.Out({"options", "get", "Simulate.Tool", target}), tool) << target;
  }
}

TEST(CliNew, ANearMissOfATargetIsCorrected) {
  CliProject project;
  const std::pair<const char*, const char*> rows[] = {
      {"microbit", "Did you mean \"micro:bit v1\" or \"micro:bit v2\"?"},
      {"bleupill", "\"Blue Pill\""},
      {"arduino_unoo", "\"Arduino Uno\""},
      {"nucleo_f401er", "\"NUCLEO-F401RE\""},
      {"atmega382p", "\"ATmega328P\""},
      {"f103c8", "\"STM32F103C8\""},
      {"STM32F103C8T6TR", "\"STM32F103C8\""},
      {"xyzzy", "See `tarn targets`."}};
  for (const auto& [name, said] : rows) {
    project.ExpectRefusal({"new", "q", "--target", name}, 2, said);
  }
}

TEST(CliNew, WhatCanNotBeMadeIsToldAndLeavesNothing) {
  CliProject project;
  std::filesystem::create_directories(project.PathOf("taken"));
  project.Write("taken/taken.tapp", "mine");
  project.ExpectRefusal({"new", ""}, 2, "A project needs a name.");
  project.ExpectRefusal({"new", "a", "--target", "ATtiny8411"}, 2,
                        "Unknown target \"ATtiny8411\". Did you mean \"ATtiny841\"");
  project.ExpectRefusal({"new", "a", "--target", "Z80"}, 2,
                        "Unknown target \"Z80\". See `tarn targets`.");
  project.ExpectRefusal({"new", "a", "--target", "ATmega328P", "--type", "aplication"}, 2,
                        "Unknown application type \"aplication\". Did you mean "
                        "\"Application\"?");
  project.ExpectRefusal({"new", "a", "--target", "ATmega328P", "--type", "exe"}, 2,
                        "Unknown application type \"exe\". Expected one of: \"Application\", ");
  project.ExpectRefusal({"new", "a", "--target", "ATmega328P", "--config", "../x"}, 2,
                        "A configuration's name can't contain /");
  project.ExpectRefusal({"new", "taken", "--target", "ATmega328P"}, 2,
                        "taken/taken.tapp already exists.");
  project.ExpectRefusal({"new", "a", "--target", "ATmega328P", "--compiler", "avr-gcc"}, 2,
                        "--compiler excludes --target");
  project.ExpectRefusal({"new", "a", "--type", "Application"}, 2, "--type requires --target");
  project.ExpectRefusal({"new", "a", "--compiler", "sdcc"}, 2, "Unknown compiler: ");
  for (const char* option : {"--target", "--compiler"}) {
    project.ExpectRefusal({"new", "a", option, ""}, 2, std::string(option) + ": needs a name");
  }
  project.ExpectRefusal({"new", "src/a.c/b", "--target", "ATmega328P"}, 3,
                        "src/a.c/b/src/main.c can't be written: Not a directory");
  EXPECT_FALSE(project.Exists("a"));
  EXPECT_EQ(project.Read("taken/taken.tapp"), "mine");
  EXPECT_FALSE(project.Exists("taken/taken.tprj"));
}

// Pairs of changes that cancel each other.
const std::vector<std::vector<std::string>> kThereAndBack[] = {
    {{"add", "one", "src/d.c"}, {"remove", "one", "src/d.c"}},
    {{"options", "set", "Compiler.Defines", "X", "one"},
     {"options", "reset", "Compiler.Defines", "one"}},
    {{"rename", "one", "one/src/main.c", "other"}, {"rename", "one", "other", "main.c"}},
};

TEST(CliNew, TheFirstSaveChangesNothing) {
  const struct {
    const char* name;
    std::vector<std::string> words;
  } rows[] = {
      {"new", {"new", "one"}},
      {"new with a compiler", {"new", "one", "--compiler", "host-gcc"}},
      {"new for a target", {"new", "one", "--target", "atmega328p"}},
      {"new in a configuration", {"new", "one", "--target", "AT89S52", "--config", "Field"}},
      {"import", {"import", "one/one.prj"}},
  };
  for (const auto& row : rows) {
    CliProject project;
    project.Trust();
    std::filesystem::create_directories(project.PathOf("one/src"));
    project.Write("one/src/main.c", "int main(void) { return 0; }\n");
    project.Write("one/one.prj",
                  "[Project]\nForm = 1\nName = one\nTarget = HOST\nConfiguration = debug\n"
                  "[Files Parts]\nsrc/main.c\n");
    project.Write("src/d.c", "");
    project.Write("save.lua", "tarn.ProjectSave()");
    project.Out(row.words);
    const auto text = [&project] {
      return project.Read("one/one.tprj") + "\n" + project.Read("one/one.tapp");
    };
    const std::string made = text();
    project.Out({"run", "save.lua", "one"});
    EXPECT_EQ(text(), made) << row.name;
    for (const auto& commands : kThereAndBack) {
      for (const auto& words : commands) project.Out(words);
      EXPECT_EQ(text(), made) << row.name << ": " << commands[0][0];
    }
  }
}

TEST(CliNew, ADebugSessionHasNoSources) {
  CliProject project;
  EXPECT_EQ(project.Out({"new", "bare 1", "--target", "ATmega328P", "--type", "debug session"}),
            "created bare 1/bare 1.tprj\ncreated bare 1/bare 1.tapp\nRun `tarn build 'bare 1'` to "
            "build it.\n");
  EXPECT_EQ(
      project.Out({"new", "bare/", "--target", "ATmega328P", "--type", "debug session", "-q"}), "");
  EXPECT_FALSE(project.Exists("bare/src"));
  EXPECT_TRUE(Has(project.Read("bare/bare.tapp"), "<DebugApplication "));
}

TEST(CliNew, ANameThatTheCompilerCantHandleIsRefused) {
  CliProject project;
  for (const char* option : {"--target=AT89S52", "--compiler=sdcc-stm8"}) {
    project.ExpectRefusal(
        {"new", "my firmware", option}, 2,
        "tarn: sdcc can't handle spaces or special characters in a name: my firmware\n");
    EXPECT_FALSE(project.Exists("my firmware"));
  }
}

}  // namespace
}  // namespace tarn::host
