#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "hosts/CliProject.h"
#include "platform/text/Text.h"

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
    CheckSizes(built.out);
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

  // The summary of a build and the table of sizes have the same figures: the reserve for heap and
  // stack, which is 1024 bytes in a new project, is apart.
  void CheckSizes(const std::string& summary) {
    const auto memories =
        nlohmann::json::parse(project.Out({"size", "--json", "p"}))["applications"][0]["memories"];
    EXPECT_EQ(memories.size(), 2U);
    for (const auto& each : memories) {
      const bool isRam = each["name"] == "RAM";
      const std::string figure = (isRam ? ", RAM " : "flash ") + each["used"].dump() + " B (";
      EXPECT_TRUE(Has(summary, figure)) << summary << figure;
      EXPECT_EQ(each["reserved"], isRam ? 1024 : 0);
      EXPECT_EQ(each["free"],
                each["size"].get<int>() - each["used"].get<int>() - each["reserved"].get<int>());
    }
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

// Reads a little-endian number of 32 bits; 0 beyond the end.
std::uint32_t WordAt(const std::string& bytes, std::size_t at) {
  std::uint32_t word = 0;
  for (std::size_t i = 4; i-- > 0;) {
    word = word << 8 | (at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0U);
  }
  return word;
}

// Checksum that the boot ROM compares, bit by bit.
std::uint32_t BootChecksum(const std::string& flash) {
  std::uint32_t crc = 0xFFFFFFFF;
  for (std::size_t bit = 0; bit < std::size_t{252} * 8; ++bit) {
    const bool isSet = (flash[bit / 8] >> (7 - bit % 8) & 1) != 0;
    crc = crc << 1 ^ ((crc >> 31 != 0) != isSet ? 0x04C11DB7 : 0);
  }
  return crc;
}

// Returns the content of the flash that a boot loader would write, and checks each block.
std::string FlashOf(const std::string& uf2, std::uint32_t start, std::uint32_t family) {
  std::string flash;
  EXPECT_GT(uf2.size(), 0U);
  EXPECT_EQ(uf2.size() % 512, 0U);
  for (std::size_t at = 0; at + 512 <= uf2.size(); at += 512) {
    const std::uint32_t words[] = {0x0A324655,
                                   0x9E5D5157,
                                   0x2000,
                                   static_cast<std::uint32_t>(start + flash.size()),
                                   256,
                                   static_cast<std::uint32_t>(at / 512),
                                   static_cast<std::uint32_t>(uf2.size() / 512),
                                   family};
    for (std::size_t i = 0; i < std::size(words); ++i) {
      EXPECT_EQ(WordAt(uf2, at + 4 * i), words[i]) << "block " << at / 512 << " word " << i;
    }
    EXPECT_EQ(WordAt(uf2, at + 508), 0x0AB16F30U);
    flash += uf2.substr(at + 32, 256);
  }
  return flash;
}

// The boot ROM of the RP2040 runs the first 256 bytes of the flash, if their checksum is right, and
// these start the program after them.
TEST_F(Toolchains, APicoStartsFromItsFlash) {
  for (const char* toolchain : {"arm-gcc", "arm-clang"}) {
    const bool isClang = std::string(toolchain) == "arm-clang";
    const std::string missing = Missing(isClang ? "clang ld.lld llvm-objcopy arm-none-eabi-gcc"
                                                : "arm-none-eabi-gcc arm-none-eabi-g++");
    if (!missing.empty()) GTEST_SKIP() << missing;
    const std::string name = isClang ? "c" : "g";
    project.Out({"new", name, "--target", "pico"});
    project.Out({"options", "set", "Target.Toolchain", toolchain, name});
    const std::string built = project.Out({"build", name});
    EXPECT_FALSE(Has(built, "warning")) << built;
    const auto read = [&](const char* extension) {
      return project.Read(name + "/build/Standard/" + name + extension);
    };
    const std::string binary = read(".bin");
    ASSERT_GT(binary.size(), 512U);
    EXPECT_EQ(WordAt(binary, 252), BootChecksum(binary));
    EXPECT_EQ(WordAt(binary, 256), 0x20040000U) << "stack at the end of the RAM";
    EXPECT_EQ(WordAt(binary, 260) & 0xFFFC0001, 0x10000001U) << "reset handler in Thumb code";
    std::string flash = FlashOf(read(".uf2"), 0x10000000, 0xE48BFF56);
    ASSERT_GE(flash.size(), binary.size());
    flash.resize(binary.size());
    EXPECT_TRUE(flash == binary) << toolchain;
    EXPECT_TRUE(Has(built, "flash " + std::to_string(binary.size()) + " B")) << built;
    EXPECT_TRUE(Has(read(".hex"), ":020000041000EA"));  // the upper half of the first address

    // A loader of the user's own gets its checksum as well.
    const std::string loader = name + "/src/boot2.s";
    const std::string source = project.Read(loader);
    project.Edit(loader, ReplaceAll(source, "CLOCK_DIVIDER 4", "CLOCK_DIVIDER 2"));
    project.Out({"build", name});
    const std::string faster = read(".bin");
    EXPECT_NE(faster.substr(0, 256), binary.substr(0, 256));
    EXPECT_EQ(WordAt(faster, 252), BootChecksum(faster));
    EXPECT_TRUE(Has(project.Out({"build", name}), "Nothing to do"));

    // However the start of the flash is written.
    project.Out({"options", "set", "Target.FlashStart", "268435456", name});
    project.Edit(loader, source);
    project.Out({"build", name});
    EXPECT_TRUE(read(".bin") == binary);
    project.Out({"options", "set", "Target.FlashStart", "0x10000000", name});

    project.Edit(loader, ReplaceAll(source, ".org 252", ".org 260"));
    const auto large = project.Run({"build", name});
    EXPECT_TRUE(Has(large.out + large.err, "must have 256 bytes")) << large.out << large.err;
    project.Edit(loader, "");
    const auto none = project.Run({"build", name});
    EXPECT_TRUE(Has(none.out + none.err, "the option Linker.ChecksumSection names it"));
    EXPECT_FALSE(project.Exists(name + "/build/Standard/" + name + ".uf2"));
    // A program that another boot loader starts needs none.
    project.Out({"options", "set", "Target.FlashStart", "0x10000100", name});
    project.Out({"build", name});
    EXPECT_EQ(WordAt(read(".bin"), 0), 0x20040000U);

    // A second application starts in the same way.
    project.Out({"options", "set", "Target.FlashStart", "0x10000000", name});
    project.Edit(loader, source);
    project.Write(name + "/src/other.c", "int main(void) { for (;;); }\n");
    project.Out({"add", name, "--application", "other", name + "/src/other.c"});
    project.Out({"build", name, "--app", "other"});
    const std::string other =
        FlashOf(project.Read(name + "/build/Standard/other.uf2"), 0x10000000, 0xE48BFF56);
    EXPECT_EQ(other.substr(0, 256), binary.substr(0, 256));
  }
}

// The boot ROM of the RP2350 looks for a block in the first 4 KB, and expects the vector table at
// the start.
TEST_F(Toolchains, APico2IsToldThatItsFlashHasAProgram) {
  const std::string missing = Missing("arm-none-eabi-gcc arm-none-eabi-g++");
  if (!missing.empty()) GTEST_SKIP() << missing;
  project.Out({"new", "p", "--target", "pico2"});
  for (const char* lto : {"No", "Yes"}) {
    project.Out({"options", "set", "Compiler.Lto", lto, "p"});
    project.Out({"build", "p"});
    const std::string binary = project.Read("p/build/Standard/p.bin");
    EXPECT_EQ(WordAt(binary, 0), 0x20082000U);
    EXPECT_EQ(WordAt(binary, 4) & 0xFFC00001, 0x10000001U);
    const std::size_t block = binary.find("\xd3\xde\xff\xff");
    ASSERT_LT(block, 4096U - 20);
    EXPECT_EQ(block % 4, 0U);
    const std::uint32_t words[] = {0xFFFFDED3, 0x10210142, 0x1FF, 0, 0xAB123579};
    for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(WordAt(binary, block + 4 * i), words[i]) << i;
    FlashOf(project.Read("p/build/Standard/p.uf2"), 0x10000000, 0xE48BFF59);
  }
}

// What the hardware and the boot ROM of some devices read at the start of the flash.
TEST_F(Toolchains, TheStartOfTheFlashIsWhatTheDeviceReads) {
  const std::string erased(16, '\xFF');
  const std::string kinetis = std::string(12, '\xFF') + "\xFE\xFF\xFF\xFF";
  const std::string clocks("\0\0\0\0\0\0\0\0\0\0\0\x80\0\0\0\x80", 16);
  const struct {
    const char* target;
    std::size_t at;
    std::string bytes;
  } rows[] = {
      {"FRDM-K64F", 0x3F0, erased + kinetis},
      {"FRDM-KL25Z", 0x3F0, erased + kinetis},
      {"R7FA2L1AB2DFM", 0x3F0, erased + erased + erased + erased + erased},
      {"XMC1302-T038x0200", 8, clocks},
      {"LPC1768", 0, ""},
      {"LPC810M021FN8", 0, ""},
  };
  for (const std::string toolchain : {"arm-gcc", "arm-clang"}) {
    const std::string missing =
        Missing(toolchain == "arm-clang" ? "clang ld.lld llvm-objcopy" : "arm-none-eabi-gcc");
    if (!missing.empty()) GTEST_SKIP() << missing;
    for (const auto& row : rows) {
      const std::string name = row.target + toolchain;
      SCOPED_TRACE(name);
      project.Out({"new", name, "--target", row.target});
      project.Out({"options", "set", "Target.Toolchain", toolchain, name});
      const std::string built = project.Out({"build", name});
      EXPECT_FALSE(Has(built, "warning")) << built;
      const std::string flash = project.Read(name + "/build/Standard/" + name + ".bin");
      const bool isCounted = Has(built, "flash " + std::to_string(flash.size()) + " B");
      EXPECT_TRUE(isCounted || row.at < 0x100) << built;
      ASSERT_GT(flash.size(), row.at + row.bytes.size()) << "no code after it";
      EXPECT_TRUE(flash.substr(row.at, row.bytes.size()) == row.bytes);
      std::uint32_t sum = 0;
      for (std::size_t i = 0; i < 8; ++i) sum += WordAt(flash, 4 * i);
      EXPECT_EQ(sum == 0, row.bytes.empty());
    }
  }
  // A start-up file of one's own that has no such field would lock the device.
  project.Edit(
      "FRDM-K64Farm-gcc/src/startup.c",
      ReplaceAll(project.Read("FRDM-K64Farm-gcc/src/startup.c"), ".flash_config", ".text"));
  const auto none = project.Run({"build", "FRDM-K64Farm-gcc"});
  EXPECT_TRUE(Has(none.out + none.err, "No section .flash_config")) << none.out << none.err;
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
