#include <gtest/gtest.h>

#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

using SizesJson = nlohmann::json;

SizesJson SizesOf(CliProject& project, std::vector<std::string> more = {}) {
  std::vector<std::string> words{"size", "--json"};
  words.insert(words.end(), more.begin(), more.end());
  return SizesJson::parse(project.Out(words))["applications"][0];
}

// Returns the first column of a tool's lines by the last one; lines of other forms are skipped.
std::map<std::string, std::uint64_t> ReadLines(const std::string& out, std::size_t name,
                                               std::size_t size, int base) {
  std::map<std::string, std::uint64_t> read;
  std::istringstream lines(out);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream stream(line);
    const std::vector<std::string> words{std::istream_iterator<std::string>(stream), {}};
    if (words.size() <= std::max(name, size)) continue;
    char* end = nullptr;
    const std::uint64_t number = std::strtoull(words[size].c_str(), &end, base);
    if (*end == '\0') read[words[name]] += number;
  }
  return read;
}

// Writes sources with a function, initialized, constant and zeroed data.
void WriteSizes(CliProject& project, int bytes) {
  project.Edit("src/a.c", "char blob[" + std::to_string(bytes) +
                              "] = {1};\nchar zero[40];\nextern int b(int);\n"
                              "int main(void) {\n  return b(blob[1] + zero[2]);\n}\n");
  project.Edit("src/b.c",
               "static int counter = 4;\n__attribute__((noinline)) static int help(int n) {\n"
               "  volatile char s[50];\n  s[n & 7] = 1;\n  return s[3] + counter++;\n}\n"
               "int b(int n) { return help(n); }\n");
  project.Edit("src/c.c", "int unused;\n");
}

void PrepareSizes(CliProject& project, const std::string& toolchain) {
  WriteSizes(project, 100);
  const auto set = [&](const char* option, const std::string& value) {
    project.Out({"options", "set", option, value});
  };
  set("Target.Toolchain", toolchain);
  set("Target.LinkExtension", ".elf");
  if (toolchain == "avr-gcc") {
    set("Target.Device", "atmega328p");
    set("Target.FlashSize", "32768");
    set("Target.RamSize", "2048");
  }
  set("Compiler.StackUsage", "Yes");
  project.Out({"build"});
}

// The sections must be those of the program "size", the symbols those of "nm".
void ExpectSameAsTools(CliProject& project, const SizesJson& sizes, const std::string& prefix) {
  const std::string program = sizes["output"];
  auto sections = ReadLines(project.RunProgram(prefix + "size", {"-A", program}).out, 0, 1, 10);
  sections.erase("Total");
  std::map<std::string, std::uint64_t> found;
  for (const SizesJson& each : sizes["sections"]) {
    if (sections.contains(each["name"])) found[each["name"]] += each["size"].get<std::uint64_t>();
  }
  EXPECT_EQ(found, sections) << prefix;
  const auto listed = project.RunProgram(prefix + "nm", {"-S", "--size-sort", program}).out;
  std::map<std::string, std::uint64_t> symbols;
  for (const SizesJson& each : sizes["symbols"]) {
    symbols[each["linkageName"]] += each["size"].get<std::uint64_t>();
  }
  EXPECT_EQ(symbols, ReadLines(listed, 3, 1, 16)) << prefix;
}

TEST(CliSize, FiguresAreThoseOfTheToolchainsOwnPrograms) {
  for (const std::string toolchain : {"host-gcc", "avr-gcc"}) {
    const std::string prefix = toolchain == "avr-gcc" ? "avr-" : "";
    if (FindProgram(prefix + "gcc").empty()) GTEST_SKIP() << prefix << "gcc is not installed";
    CliProject project;
    PrepareSizes(project, toolchain);
    const SizesJson sizes = SizesOf(project);
    ExpectSameAsTools(project, sizes, prefix);
    for (const SizesJson& each : sizes["symbols"]) {
      if (each["name"] != "blob" && each["name"] != "help") continue;
      const std::string file = each["name"] == "blob" ? "src/a.c" : "src/b.c";
      EXPECT_EQ(each["file"], project.PathOf(file)) << each;
      EXPECT_EQ(each["line"], each["name"] == "blob" ? 1 : 2) << each;
      EXPECT_TRUE(Has(each["object"], file + ".o")) << each;
    }
    ASSERT_FALSE(sizes["stack"].empty()) << toolchain;
    if (toolchain == "avr-gcc") {  // the other one has memory below the stack for such a function
      EXPECT_EQ(sizes["stack"][0]["function"], "help");
      EXPECT_GE(sizes["stack"][0]["bytes"], 50);
      EXPECT_EQ(sizes["stack"][0]["file"], project.PathOf("src/b.c"));
    }
    std::map<std::string, std::uint64_t> sums;
    for (const SizesJson& file : sizes["files"]) {
      for (const auto& [memory, bytes] : file["sizes"].items()) {
        sums[memory] += bytes.get<std::uint64_t>();
      }
    }
    for (const SizesJson& each : sizes["memories"])
      EXPECT_EQ(each["used"], sums[each["name"]]) << each;
  }
}

// A program of a device whose memories are in the linker script, which was linked by other means.
TEST(CliSize, MemoriesAreThoseOfTheLinkerScript) {
  const std::string prefix = "arm-none-eabi-";
  if (FindProgram(prefix + "gcc").empty()) GTEST_SKIP() << "gcc-arm-none-eabi is not installed";
  CliProject project;
  WriteSizes(project, 100);
  project.Edit(
      "arm.ld",
      "MEMORY { FLASH : ORIGIN = 0x8000000, LENGTH = 4K\n RAM : ORIGIN = 0x20000000, LENGTH "
      "= 1K }\nSECTIONS { .text : { *(.text*) *(.rodata*) } > FLASH\n"
      " .data : { *(.data*) } > RAM AT> FLASH\n .bss : { *(.bss*) *(COMMON) } > RAM }\n");
  project.Edit("build/made", "");
  const CliProject::Answer linked =
      project.RunProgram(prefix + "gcc", {"-mcpu=cortex-m3", "-mthumb", "-Os", "-g", "-nostdlib",
                                          "-e", "main", "-T", "arm.ld", "-Wl,-Map=build/made.map",
                                          "-o", "build/made.elf", "src/a.c", "src/b.c"});
  ASSERT_EQ(linked.code, 0) << linked.err;
  project.Out({"options", "set", "Build.OutputFile", "build/made.elf"});
  project.Out({"options", "set", "Linker.MapFile", "build/made.map"});
  const SizesJson sizes = SizesOf(project);
  ExpectSameAsTools(project, sizes, prefix);
  ASSERT_EQ(sizes["memories"].size(), 2U) << sizes["memories"];
  EXPECT_EQ(sizes["memories"][0]["name"], "FLASH");
  EXPECT_EQ(sizes["memories"][0]["size"], 4096);
  EXPECT_EQ(sizes["memories"][1]["used"], 144);  // blob, counter and zero
  for (const SizesJson& each : sizes["symbols"]) {
    if (each["name"] != "help") continue;
    EXPECT_EQ(each["memory"], "FLASH");
    EXPECT_EQ(each["file"], project.PathOf("src/b.c"));
  }
}

TEST(CliSize, ChangesAreThoseSinceTheLastBuildOrABaseline) {
  if (FindProgram("avr-gcc").empty()) GTEST_SKIP() << "avr-gcc is not installed";
  CliProject project;
  PrepareSizes(project, "avr-gcc");
  EXPECT_TRUE(SizesOf(project)["comparedWith"].is_null());
  project.Out({"size", "--save-baseline", "first", "-q"});
  for (const int bytes : {130, 160}) {
    WriteSizes(project, bytes);
    EXPECT_TRUE(Has(project.Out({"build"}), "%)"));
    EXPECT_EQ(SizesOf(project)["memories"][1]["change"], 30);
  }
  const SizesJson sizes = SizesOf(project, {"--compare", "first"});
  EXPECT_EQ(sizes["memories"][0]["change"], 60);
  for (const SizesJson& each : sizes["symbols"]) {
    EXPECT_EQ(each["change"], each["name"] == "blob" ? 60 : 0) << each;
  }
  project.ExpectRefusal({"size", "--compare", "second"}, 2,
                        "no baseline \"second\". It has: first");
  project.Edit("demo.sizes.tstate", "{\"version\":1,\"programs\":[[[[");
  EXPECT_TRUE(SizesOf(project)["comparedWith"].is_null());
  project.Out({"size", "--html", "map.html"});
  EXPECT_TRUE(Has(project.Read("map.html"), "blob\n160 B</title>"));
  project.ExpectRefusal({"size", "--html", "src/a.c"}, 2, "is not a page");
}

TEST(CliSize, AProgramAboveItsLimitFailsTheBuildEachTime) {
  if (FindProgram("avr-gcc").empty()) GTEST_SKIP() << "avr-gcc is not installed";
  CliProject project;
  PrepareSizes(project, "avr-gcc");
  struct Row {
    const char* option;
    const char* value;
    const char* error;  // empty: the build succeeds
  };
  const Row rows[] = {{"Build.MaxRam", "5",
                       "RAM is 40 B too large: 142 B, 6.9 %, but Build.MaxRam "
                       "(5) allows 102 B"},
                      {"Build.MaxRam", "200 B", ""},
                      {"Build.MaxFlash", "10 B", "but Build.MaxFlash (10 B) allows 10 B"},
                      {"Build.MaxFlash", "much", "Build.MaxFlash (much) is neither"},
                      {"Build.MaxFlash", "10000", "Build.MaxFlash (10000) is more than 100 %"},
                      {"Target.FlashSize", "128", "Build.MaxFlash"},
                      {"Build.MaxFlash", "100", "but Build.MaxFlash (100) allows 128 B"}};
  for (const Row& row : rows) {
    project.Out({"options", "set", row.option, row.value});
    for (int round = 0; round < 2; ++round) {
      const CliProject::Answer built = project.Run({"build"});
      EXPECT_EQ(built.code, row.error[0] == '\0' ? 0 : 1) << row.value << built.out << built.err;
      EXPECT_TRUE(Has(built.out + built.err, row.error)) << row.value << built.out << built.err;
    }
  }
  EXPECT_TRUE(Has(project.Run({"report"}).out, "blob"));
}

// Some devices have constants in the flash, at addresses of the RAM. Memories of other kinds, which
// programmers take from other files, are in no image.
TEST(CliSize, ABuildCountsTheFlashOfAnAvrAndWritesNothingElse) {
  if (FindProgram("avr-gcc").empty()) GTEST_SKIP() << "avr-gcc is not installed";
  const struct {
    const char *device, *source;
  } rows[] = {
      {"attiny10",
       "const char table[200] = {1};\nvolatile unsigned char i;\n"
       "int main(void) { return table[i]; }\n"},
      {"atmega328p",
       "#include <avr/io.h>\n#include <avr/signature.h>\nFUSES = {.low = 0xE2, .high = 0xD9, "
       ".extended = 0xFF};\nLOCKBITS = 0xFC;\n__attribute__((section(\".eeprom\"), used)) "
       "char e = 1;\nint main(void) { return 0; }\n"}};
  for (const auto& row : rows) {
    CliProject project;
    project.Out({"new", "p", "--target", row.device});
    project.Write("p/src/main.c", row.source);
    const std::string built = project.Out({"build", "p"});
    const SizesJson memory = SizesOf(project, {"p"})["memories"][0];
    EXPECT_TRUE(Has(built, "flash " + memory["used"].dump() + " B")) << built << memory;
    const std::string hex = project.Read("p/build/Standard/p.hex");
    EXPECT_FALSE(hex.empty() || Has(hex, ":02000004")) << hex;  // an address above 64 KiB
    if (row.device != rows[0].device) continue;
    EXPECT_GT(memory["used"], 200);
    project.Out({"options", "set", "Build.MaxFlash", "200 B", "p"});
    EXPECT_EQ(project.Run({"build", "p"}).code, 1);
  }
}

// An image of several programs has no sizes of its own.
TEST(CliSize, WhatCommandsMakeIsLeftOut) {
  CliProject project;
  PrepareSizes(project, "host-gcc");
  project.Out({"add", "--application", "image", "--empty"});
  for (const auto& [option, value] : {std::pair("Build.TranslateTool", "pack"),
                                      std::pair("Build.OutputFile", "build/image.bin")}) {
    project.Out({"options", "set", "-a", "image", option, value});
  }
  project.Edit("build/image.bin", "bytes");
  EXPECT_EQ(SizesJson::parse(project.Out({"size", "--json"}))["applications"].size(), 1U);
  project.ExpectRefusal({"size", "-a", "image"}, 3, "made by commands of the project");
}

TEST(CliSize, AnOverflowOfARegionNamesTheLargestSymbols) {
  CliProject project;
  WriteSizes(project, 3000);
  project.Edit("small.ld",
               "MEMORY { FLASH : ORIGIN = 0x1000, LENGTH = 1K\n RAM : ORIGIN = 0x100000, LENGTH = "
               "1M }\nSECTIONS { .text : { *(.text*) *(.rodata*) } > FLASH\n"
               " .data : { *(.data*) } > RAM AT> FLASH\n .bss : { *(.bss*) *(COMMON) } > RAM\n"
               " /DISCARD/ : { *(.eh_frame*) *(.note*) } }\nENTRY(main)\n");
  project.Out({"options", "set", "Linker.Script", "small.ld"});
  project.Out({"options", "set", "Linker.Extra", "--", "-nostdlib -static -no-pie"});
  const CliProject::Answer built = project.Run({"build"});
  EXPECT_EQ(built.code, 1);
  EXPECT_TRUE(Has(built.out, "largest in FLASH:")) << built.out;
  EXPECT_TRUE(Has(built.out, "3000 B  blob")) << built.out;
  EXPECT_TRUE(Has(built.out, "FLASH is")) << built.out;
}

// The stack has no symbol.
TEST(CliSize, AnOverflowByTheStackNamesItsSection) {
  if (FindProgram("arm-none-eabi-gcc").empty()) {
    GTEST_SKIP() << "gcc-arm-none-eabi is not installed";
  }
  CliProject project;
  project.Out({"new", "fw", "--target", "Blue Pill"});
  project.Out({"options", "set", "Target.StackSize", "40000", "fw"});
  const CliProject::Answer built = project.Run({"build", "fw"});
  EXPECT_EQ(built.code, 1);
  EXPECT_TRUE(Has(built.out, "largest in RAM:\n   40000 B  .heap_and_stack")) << built.out;
}

}  // namespace
}  // namespace tarn::host
