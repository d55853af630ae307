#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "hosts/CliProject.h"

// The compilers of microcontrollers with the processors that they are for: a program in C, C++ and
// assembler is built, and runs in a simulator. `make test-toolchains` installs them.
namespace tarn::host {
namespace {

struct Machine {
  const char* name;
  std::vector<std::vector<std::string>> options;  // in addition to those of a new project
  std::vector<std::string> simulator;
};

const char* const kMain = R"(#include <stdio.h>
#include <stdlib.h>
int three(void);
int constructed(void);
volatile float half = 0.5f;
static int filled = 40, cleared;
int main(void) {
  char* const block = malloc(16);
  if (block == NULL) return 1;
  *block = (char)cleared++;
  half *= 3;
  printf("%d %d %d\n", filled + 2, constructed(), (int)(half * 100));
  return three();
}
)";

const char* const kConstructed = R"(struct Base {
  virtual int value() = 0;
  virtual ~Base() {}
};
struct Counted : Base {
  Counted() : count(7) {}
  int value() override { return count; }
  int count;
};
static Counted global;
static Base* base = &global;
extern "C" int constructed(void) {
#ifdef __EXCEPTIONS
  try {
    throw base->value();
  } catch (int caught) {
    return caught + 100;
  }
#else
  static Counted local;
  return base->value() + local.value() - 7;
#endif
}
)";

const char* const kArmThree =
    ".syntax unified\n.thumb\n.global three\n.thumb_func\n.type three, %function\n"
    "three: movs r0, #3\n bx lr\n";
const char* const kRiscvThree = ".global three\n.type three, @function\nthree: li a0, 3\n ret\n";

class Toolchains : public ::testing::Test {
 protected:
  // Skips the test unless the programs are installed.
  static std::string Missing(const std::string& programs) {
    std::string missing;
    for (const std::string& each : Words(programs)) {
      if (FindProgram(each).empty()) missing += " " + each;
    }
    return missing.empty() ? missing : "not installed:" + missing + " (scripts/setup toolchains)";
  }

  void Create(const std::string& compiler, const char* three) {
    project.Out({"new", "p", "--compiler", compiler});
    project.Write("p/src/main.c", kMain);
    project.Write("p/src/constructed.cpp", kConstructed);
    project.Write("p/src/three.s", three);
    project.Out({"add", "p", "p/src/constructed.cpp", "p/src/three.s"});
    project.Out({"options", "set", "Target.Semihosting", "Yes", "p"});
  }

  // Builds the project for the machine and runs it.
  void Check(const Machine& machine, const std::string& output) {
    SCOPED_TRACE(machine.name);
    for (const auto& option : machine.options) {
      project.Out({"options", "set", option[0], option[1], "p"});
    }
    const auto built = project.Run({"build", "p"});
    ASSERT_EQ(built.code, 0) << built.out << built.err;
    EXPECT_TRUE(Has(built.out, "flash ")) << built.out;
    EXPECT_FALSE(Has(built.out + built.err, "warning")) << built.out << built.err;
    for (const char* extension : {"elf", "hex", "bin", "map"}) {
      EXPECT_TRUE(project.Exists(std::string("p/build/Standard/p.") + extension)) << extension;
    }
    std::vector<std::string> arguments(machine.simulator.begin() + 1, machine.simulator.end());
    for (const char* each : {"-nographic", "-monitor", "none", "-semihosting-config",
                             "enable=on,target=native", "-kernel", "p/build/Standard/p.elf"}) {
      arguments.emplace_back(each);
    }
    arguments.insert(arguments.begin(), {"20", machine.simulator[0]});
    const auto run = project.RunProgram("/usr/bin/timeout", arguments);
    EXPECT_EQ(run.code, 3) << run.err;
    EXPECT_TRUE(Has(run.out + run.err, output)) << run.out << run.err;
  }

  CliProject project;
};

const std::vector<std::string> kLm3s{"qemu-system-arm", "-M", "lm3s6965evb"};
const std::vector<std::string> kMicrobit{"qemu-system-arm", "-M", "microbit"};
const std::vector<std::string> kSifiveE{"qemu-system-riscv32", "-M", "sifive_e", "-bios", "none"};
const std::vector<std::string> kVirt32{"qemu-system-riscv32", "-M", "virt", "-bios", "none"};
const std::vector<std::string> kVirt64{"qemu-system-riscv64", "-M", "virt", "-bios", "none"};

TEST_F(Toolchains, ArmProgramsRunOnEachCore) {
  const std::string missing = Missing("arm-none-eabi-gcc arm-none-eabi-g++ qemu-system-arm");
  if (!missing.empty()) GTEST_SKIP() << missing;
  Create("arm-gcc", kArmThree);
  const Machine machines[] = {
      {"M3, newlib-nano", {}, kLm3s},
      {"M3, exceptions", {{"Compiler.Exceptions", "Yes"}}, kLm3s},
      {"M3, exceptions, newlib, LTO",
       {{"Compiler.Lto", "Yes"}, {"Target.CLibrary", "newlib"}},
       kLm3s},
      {"M0, picolibc, LTO",
       {{"Compiler.Exceptions", "No"},
        {"Target.CLibrary", "picolibc"},
        {"Target.Cpu", "cortex-m0"},
        {"Target.RamSize", "16384"}},
       kMicrobit},
      {"M0+",
       {{"Compiler.Lto", "No"},
        {"Target.Cpu", "cortex-m0plus"},
        {"Linker.Uf2Family", "0xe48bff56"}},
       kMicrobit},
      {"M4", {{"Target.Cpu", "cortex-m4"}}, {"qemu-system-arm", "-M", "mps2-an386"}},
      {"M4F",
       {{"Target.Fpu", "fpv4-sp-d16"}, {"Target.CLibrary", "newlib-nano"}},
       {"qemu-system-arm", "-M", "mps2-an386"}},
      {"M7",
       {{"Target.Cpu", "cortex-m7"}, {"Target.Fpu", "fpv5-d16"}, {"Target.FloatAbi", "softfp"}},
       {"qemu-system-arm", "-M", "mps2-an500"}},
      {"M33",
       {{"Target.Cpu", "cortex-m33"},
        {"Target.Fpu", "fpv5-sp-d16"},
        {"Target.FloatAbi", "hard"},
        {"Target.FlashStart", "0x10000000"},
        {"Target.RamStart", "0x38000000"}},
       {"qemu-system-arm", "-M", "mps2-an505"}},
  };
  bool isWithExceptions = false;
  for (const Machine& machine : machines) {
    for (const auto& option : machine.options) {
      if (option[0] == "Compiler.Exceptions") isWithExceptions = option[1] == "Yes";
    }
    Check(machine, isWithExceptions ? "42 107 150\n" : "42 7 150\n");
  }
  const std::string image = project.Read("p/build/Standard/p.uf2");
  EXPECT_EQ(image.substr(0, 4) + std::to_string(image.size() % 512), "UF2\n0");
  EXPECT_TRUE(Has(project.Out({"globals", "p", "--file", "*main.c"}), "static int filled"));
  EXPECT_TRUE(Has(project.Out({"build", "p"}), "Nothing to do"));
}

TEST_F(Toolchains, RiscvProgramsRunOnEachInstructionSet) {
  const std::string missing =
      Missing("riscv64-unknown-elf-gcc qemu-system-riscv32 qemu-system-riscv64");
  if (!missing.empty()) GTEST_SKIP() << missing;
  Create("riscv-gcc", kRiscvThree);
  const Machine machines[] = {
      {"rv32imac", {}, kSifiveE},
      {"rv32imc, LTO",
       {{"Target.Arch", "rv32imc_zicsr"},
        {"Compiler.Lto", "Yes"},
        {"Target.FlashStart", "0x80000000"},
        {"Target.RamStart", "0x80100000"},
        {"Target.RamSize", "65536"}},
       kVirt32},
      {"rv32ec",
       {{"Target.Arch", "rv32ec_zicsr"}, {"Target.Abi", "ilp32e"}, {"Compiler.Lto", "No"}},
       kVirt32},
      {"rv64imac", {{"Target.Arch", "rv64imac"}, {"Target.Abi", "lp64"}}, kVirt64},
      {"rv64gc", {{"Target.Arch", "rv64gc"}, {"Target.Abi", "lp64d"}}, kVirt64},
  };
  for (const Machine& machine : machines) Check(machine, "42 7 150\n");
}

TEST_F(Toolchains, ClangBuildsForArm) {
  const std::string missing =
      Missing("clang ld.lld llvm-objcopy arm-none-eabi-gcc qemu-system-arm");
  if (!missing.empty()) GTEST_SKIP() << missing;
  Create("arm-clang", kArmThree);
  const Machine machines[] = {
      {"M3", {}, kLm3s},
      {"M0, LTO",
       {{"Target.Cpu", "cortex-m0"}, {"Target.RamSize", "16384"}, {"Compiler.Lto", "Yes"}},
       kMicrobit},
      {"M4F",
       {{"Target.Cpu", "cortex-m4"}, {"Target.Fpu", "fpv4-sp-d16"}, {"Compiler.Lto", "No"}},
       {"qemu-system-arm", "-M", "mps2-an386"}},
  };
  for (const Machine& machine : machines) Check(machine, "42 7 150\n");
}

TEST_F(Toolchains, ClangBuildsForRiscv) {
  const std::string missing =
      Missing("clang ld.lld llvm-objcopy riscv64-unknown-elf-gcc qemu-system-riscv32");
  if (!missing.empty()) GTEST_SKIP() << missing;
  Create("riscv-clang", kRiscvThree);
  Check({"rv32imac", {}, kSifiveE}, "42 7 150\n");
}

TEST_F(Toolchains, ClangBuildsForThisMachine) {
  const std::string missing = Missing("clang ld.lld");
  if (!missing.empty()) GTEST_SKIP() << missing;
  project.Out({"options", "set", "Target.Toolchain", "host-clang"});
  EXPECT_TRUE(Has(project.Out({"build"}), "app"));
  EXPECT_EQ(project.RunProgram(project.PathOf("build/Standard/app"), {}).code, 0);
  EXPECT_TRUE(Has(project.Out({"build"}), "Nothing to do"));
}

// What a program that doesn't fit, or an option that was never set, is reported as.
TEST_F(Toolchains, ALinkThatCanNotSucceedNamesTheReason) {
  const std::string missing = Missing("arm-none-eabi-gcc");
  if (!missing.empty()) GTEST_SKIP() << missing;
  project.Out({"new", "p", "--compiler", "arm-gcc"});
  const struct {
    std::vector<std::string> change;
    const char* reason;
  } rows[] = {
      {{"set", "Target.FlashSize", "512"}, "region `FLASH' overflowed by "},
      {{"reset", "Target.FlashSize"}, "The size of the flash is not set: option Target.FlashSize"},
      {{"reset", "Target.Cpu"}, "the option Target.Cpu is not set"},
  };
  for (const auto& row : rows) {
    std::vector<std::string> command = row.change;
    command.insert(command.begin(), "options");
    command.emplace_back("p");
    project.Out(command);
    const auto built = project.Run({"build", "p"});
    EXPECT_NE(built.code, 0) << row.reason;
    EXPECT_TRUE(Has(built.out + built.err, row.reason)) << built.out << built.err;
  }
}

// A copy that differs would no longer be what a new project gets.
TEST_F(Toolchains, TheExamplesHaveTheStartUpCodeOfNewProjects) {
  for (const char* family : {"arm", "riscv"}) {
    const std::string share = TARN_SHARE;
    const std::string example = share + "/examples/blinky-" + family + "/src/";
    const std::string config = share + "/config/";
    EXPECT_EQ(project.Read(example + "startup.c"), project.Read(config + family + "/startup.c"));
    EXPECT_EQ(project.Read(example + "syscalls.c"), project.Read(config + "libc/syscalls.c"));
  }
}

}  // namespace
}  // namespace tarn::host
