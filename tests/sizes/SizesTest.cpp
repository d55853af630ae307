#include <gtest/gtest.h>

#include "sizes/LinkerMap.h"
#include "sizes/ProgramSizes.h"
#include "sizes/SizeLimit.h"
#include "sizes/StackUsage.h"

namespace tarn::sizes {
namespace {

std::string Describe(const LinkerMap& map) {
  std::string text;
  for (const MapRegion& each : map.regions) {
    text +=
        each.name + " " + std::to_string(each.origin) + "+" + std::to_string(each.length) + "\n";
  }
  for (const MapPiece& each : map.pieces) {
    const MapSection& section = map.sections[each.section];
    text += std::string(section.name) + "@" + std::to_string(section.loadAddress) + " " +
            std::string(each.input) + " " + std::to_string(each.address) + "+" +
            std::to_string(each.size) + " " + std::string(map.files[each.file]) + "\n";
  }
  return text;
}

TEST(LinkerMap, PiecesHaveTheirSectionAndFile) {
  struct Row {
    const char* name;
    std::string text;
    const char* expected;
  };
  const Row rows[] = {
      {"GNU ld",
       "Discarded input sections\n\n .text.gone    0x00000000       0x10 a.o\n\n"
       "Memory Configuration\n\nName Origin Length Attributes\n"
       "FLASH            0x00000100         0x00000400         xr\n"
       "*default*        0x00000000         0xffffffff\n\nLinker script and memory map\n\n"
       "LOAD a.o\n\n.text           0x00000100       0x50\n *(.text*)\n"
       " .text.startup.main\n                0x00000100       0x20 dir with space/a.o\n"
       "                0x00000100                main\n"
       " *fill*         0x00000120        0x4 00\n .text          0x00000124        0x0 b.o\n"
       " .text          0x00000124       0x10 lib.a(b.o)\n\n"
       ".data           0x00000200        0x4 load address 0x00000150\n *(.data*)\n"
       " .data          0x00000200        0x4 b.o\r\nOUTPUT(x.elf elf32)\n"
       "Cross Reference Table\n\n .text 0x1 0x2 c.o\n",
       "FLASH 256+1024\n.text@256 .text.startup.main 256+32 dir with space/a.o\n"
       ".text@256 *fill* 288+4 \n.text@256 .text 292+16 lib.a(b.o)\n.data@336 .data 512+4 b.o\n"},
      {"lld",
       "     VMA      LMA     Size Align Out     In      Symbol\n"
       "     100      100       20     4 .text\n     100      100       20     4         "
       "a.o:(.text)\n"
       "     101      101       20     1                 main\n"
       "     200      120        4     4 .data\n"
       "     200      120        4     4         <internal>:(.data)\n",
       ".text@256 .text 256+32 a.o\n.data@288 .data 512+4 \n"},
      {"another file", "#include <stdio.h>\nint x;\n", ""},
      {"numbers that are too large",
       "Memory Configuration\nLinker script and memory map\n.text 0x1 0x2\n"
       " .text 0x1 0xfffffffffffffffff a.o\n",
       ""}};
  for (const Row& row : rows) {
    EXPECT_EQ(Describe(ReadLinkerMap(row.text)), row.expected) << row.name;
  }
}

TEST(LinkerMap, OverflowsAreReadFromMessagesOfBothLinkers) {
  const std::pair<const char*, RegionOverflow> rows[] = {
      {"/usr/bin/ld: region `FLASH' overflowed by 2360 bytes", {"FLASH", 2360}},
      {"ld.lld: error: section '.text' will not fit in region 'FLASH': overflowed by 12 bytes",
       {"FLASH", 12}},
      {"ld: region \xe2\x80\x98RAM\xe2\x80\x99 overflowed by 3 bytes", {"RAM", 3}},
      {"a.c:1: region is overflowed by much", {"", 0}},
      {"undefined reference to `f'", {"", 0}}};
  for (const auto& [message, expected] : rows) {
    const RegionOverflow read = ReadOverflow(message);
    EXPECT_EQ(read.region, expected.region) << message;
    EXPECT_EQ(read.bytes, expected.bytes) << message;
  }
}

TEST(StackUsage, NamesMayContainColonsAndOtherLinesAreSkipped) {
  std::string text;
  for (const FunctionStack& each : ReadStackUsage(
           "src/a.c:6:38:helper\t24\tstatic\nC:\\b.cpp:7:5:int ns::f(int)\t2\tdynamic,bounded\r\n"
           "c.c:9:g\t8\tdynamic\nbroken\nd.c:h\t1\tstatic\n\t\t\nx:1:2:y\tmany\tstatic")) {
    text += each.file + "|" + std::to_string(each.line) + "|" + each.function + "|" +
            std::to_string(each.bytes) + "|" + each.kind + "\n";
  }
  EXPECT_EQ(text,
            "src/a.c|6|helper|24|static\nC:\\b.cpp|7|int ns::f(int)|2|dynamic,bounded\n"
            "c.c|9|g|8|dynamic\n");
}

TEST(SizeLimit, PercentagesNeedATotalAndBytesAUnit) {
  struct Row {
    const char* text;
    std::uint64_t total;
    std::int64_t most;  // -1: none
  };
  const Row rows[] = {{"90", 1000, 900},    {" 90 % ", 1000, 900}, {"100", 0, -1},
                      {"28 KiB", 0, 28672}, {"300 B", 1000, 300},  {"1M", 0, 1 << 20},
                      {"", 1000, -1},       {"-5", 1000, -1},      {"99999999999999999999", 9, -1},
                      {"5 apples", 9, -1},  {"101", 1000, -1},     {"10000 %", 1000, -1}};
  for (const Row& row : rows) {
    const SizeLimit limit = ReadSizeLimit(row.text, row.total);
    EXPECT_EQ(limit.most ? static_cast<std::int64_t>(*limit.most) : -1, row.most) << row.text;
    EXPECT_EQ(limit.problem.empty(), row.most >= 0) << row.text;
  }
}

TEST(ProgramSizes, InitialValuesTakeBothMemoriesAndGapsBelongToNoFile) {
  ElfImage program;
  program.machine = ElfImage::kMachineAvr;
  program.sections = {{},
                      {".text", 0, 0, 100, true, false, true},
                      {".data", 0x800100, 100, 10, true, true, true},
                      {".bss", 0x80010a, 0x80010a, 5, true, true, false},
                      {".debug_info", 0, 0, 999, false, false, true}};
  program.symbols = {{"main", 10, 40, 1, true}, {"table", 0x800100, 8, 2, false}};
  LinkerMap map;
  map.regions = {{"text", 0, 0x20000}, {"data", 0x800060, 0xffa0}};
  map.sections = {{".text", 0, 0}, {".data", 0x800100, 100}};
  map.files = {"", "a.o", "b.o"};
  map.pieces = {
      {".text", 0, 90, 0, 1}, {".data", 0x800100, 10, 1, 2}, {".data", 0x800100, 99, 1, 1}};
  DeviceMemory device;
  device.flashSize = 2048;
  const ProgramSizes sizes = MeasureProgram(program, map, device);
  std::string text;
  for (const MemoryRegion& each : sizes.regions) {
    text += each.name + " " + std::to_string(each.used) + "/" + std::to_string(each.length) + "\n";
  }
  for (const FileSize& each : sizes.files) {
    text += "[" + each.name + "] " + std::to_string(each.byRegion[0]) + " " +
            std::to_string(each.byRegion[1]) + "\n";
  }
  for (const SymbolSize& each : sizes.symbols) text += each.name + " " + each.file + "\n";
  EXPECT_EQ(text,
            "flash 110/2048\nRAM 15/65440\n[a.o] 90 0\n[b.o] 10 10\n[] 10 5\n"
            "main a.o\ntable b.o\n");
}

TEST(ProgramSizes, WhatTheLinkerScriptReservesIsNotUsed) {
  ElfImage program;
  program.sections = {{},
                      {".bss", 0x20000000, 0x20000000, 16, true, true, false},
                      {".own", 0x20000010, 0x20000010, 8, true, true, false},
                      {".heap_and_stack", 0x20000018, 0x20000018, 1024, true, true, false},
                      {".unlisted", 0x20000418, 0x20000418, 4, true, true, false}};
  program.symbols = {{"own", 0x20000010, 8, 2, false}};
  LinkerMap map;
  map.regions = {{"RAM", 0x20000000, 0x1000}};
  map.sections = {{".bss", 0x20000000, 0x20000000},
                  {".own", 0x20000010, 0x20000010},
                  {".heap_and_stack", 0x20000018, 0x20000018}};
  map.files = {"", "a.o"};
  map.pieces = {{".bss", 0x20000000, 16, 0, 1}, {"*fill*", 0x20000018, 1024, 2, 0}};
  const ProgramSizes sizes = MeasureProgram(program, map, {});
  ASSERT_EQ(sizes.regions.size(), 1U);
  EXPECT_EQ(sizes.regions[0].used, 28U);
  EXPECT_EQ(sizes.regions[0].reserved, 1024U);
  std::uint64_t inFiles = 0;
  for (const FileSize& each : sizes.files) inFiles += each.byRegion[0];
  EXPECT_EQ(inFiles, 28U);
  // Without a map, nothing shows that a section is empty.
  EXPECT_EQ(MeasureProgram(program, {}, {0, 0, 0x20000000, 4096, 0}).regions[0].reserved, 0U);
}

TEST(ProgramSizes, MapsOfSdccHaveSizesUpToTheNextSymbol) {
  const std::string area =
      "CODE                                00008024    00000029 =          41. bytes (REL,CON)\n";
  const ProgramSizes sizes = MeasureSdcc(
      area + "      Value  Global                              Global Defined In Module\n" +
          "     00008024  _main                              a\n     00008030  _f   b\n" + area +
          "     00008030  G$f$0_0$0                       b\n     00008032  A$b$12  b\n"
          "     00008033  C$b.c$3$1_0$5  b\n     00008034  XG$f$0$0  b\n     00008040  Fb$h$0$0  "
          "b\nDATA 00000001 00000002 = 2. bytes "
          "(REL)\n"
          "     00000001  _x    a\n",
      {32768, 8192, 0, 1024, 0});
  std::string text;
  for (const MemoryRegion& each : sizes.regions) {
    text += each.name + " " + std::to_string(each.used) + "/" + std::to_string(each.length) + " ";
  }
  for (const SymbolSize& each : sizes.symbols) {
    text += each.name + " " + each.file + " " + std::to_string(each.size) + " ";
  }
  EXPECT_EQ(text, "flash 41/8192 RAM 2/1024 _f b 16 Fb$h$0$0 b 13 _main a 12 _x a 2 ");
  // The linker for the 8051 has the area of internal variables with all that they might take.
  const ProgramSizes inner = MeasureSdcc(
      "DSEG 00000000 00000080 = 128. bytes (REL,CON)\n 00000008 _x a\n"
      "_GSINIT 0000020E 00000025 = 37. bytes (REL,CON)\nXSEG 0 4 = 4. bytes (REL,CON)\n"
      "_HEADER8 00000000 0000000C = 12. bytes (ABS,CON)\n"
      "CODEIVT0 00000000 00000002 = 2. bytes (ABS,CON)\n"
      "HEADER3 00000000 00000010 = 16. bytes (ABS,CON)\n",
      {}, "0x00:|0|0|a|b| |S|\n0x20:|B|Q|c|T|\nx:|a|\n");
  ASSERT_EQ(inner.regions.size(), 2U);
  EXPECT_EQ(inner.regions[0].used, 67U);
  EXPECT_EQ(inner.regions[1].used, 7U);
}

TEST(ProgramSizes, AMemoryWithoutASizeHoldsNothing) {
  ElfImage program;
  program.sections = {{}, {".text", 0x8000000, 0x8000000, 100, true, false, true}};
  LinkerMap map;
  map.regions = {{"FLASH", 0x8000000, 0x1000}, {"RAM2", 0, 0}};
  const ProgramSizes sizes = MeasureProgram(program, map, {});
  ASSERT_EQ(sizes.regions.size(), 1U);
  EXPECT_EQ(sizes.regions[0].used, 100U);
}

TEST(ElfImage, MalformedFilesAreRefused) {
  EXPECT_FALSE(ReadElf(""));
  EXPECT_FALSE(
      ReadElf("\x7f"
              "ELF"));
  EXPECT_FALSE(ReadElf(std::string("\x7f"
                                   "ELF\x01\x01",
                                   6) +
                       std::string(100, '\xff')));
  EXPECT_FALSE(ReadElf(std::string("\x7f"
                                   "ELF\x02\x02",
                                   6) +
                       std::string(60, '\0')));
}

}  // namespace
}  // namespace tarn::sizes
