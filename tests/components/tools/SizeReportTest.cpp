#include "components/tools/SizeReport.h"

#include <gtest/gtest.h>

namespace tarn::tools {
namespace {

TEST(SizeReport, SectionSizesAreSummedByNameAndBySharedStart) {
  const std::string text =
      "ok.elf  :\nsection                    size      addr\n.data                         2   "
      "8388864\n.text                       190         0\n.text.main      10         0\n.bss      "
      "                  20   8388866\n.bad   99999999999999999999 0\nTotal          212\n";
  const std::vector<SizeSum> sums{{"flash", {".text*", ".data"}, false},
                                  {"RAM", {".data", ".bss"}, false},
                                  {"EEPROM", {".eeprom"}, true},
                                  {"boot", {".boot"}, false}};
  EXPECT_EQ(DescribeSizes(ReadSizes(SizeFormat::Sections, text), sums),
            "flash 202 B, RAM 22 B, boot 0 B");
  EXPECT_EQ(DescribeSizes(ReadSizes(SizeFormat::Sections, "no sizes here"), sums), "");
}

TEST(SizeReport, SdccMapCountsCellsOfInternalRamAndTheTableOfTheRest) {
  const std::string text =
      "Internal RAM layout:\n      0 1 2 3\n0x00:|0|0|a|a|\n0x10:|S|S| |Q|\n0-3:Reg Banks, "
      "T:Bit\n\n"
      "Stack starts at: 0x0c\n\nOther memory:\n   Name             Start    End      Size     Max\n"
      "   PAGED EXT. RAM                         0      256   \n"
      "   EXTERNAL RAM     0x0000   0x0003       4    65536   \n"
      "   ROM/EPROM/FLASH  0x0000   0x0077     120    65536   \n";
  const std::vector<SizeSum> sums{{"flash", {"flash"}, false},
                                  {"RAM", {"iram"}, false},
                                  {"XRAM", {"xram", "pram"}, true},
                                  {"stack", {"stack"}, true}};
  EXPECT_EQ(DescribeSizes(ReadSizes(SizeFormat::SdccMap, text), sums),
            "flash 120 B, RAM 5 B, XRAM 4 B, stack 2 B");
}

TEST(SizeReport, SdccAreasCountOnceHoweverManyPagesTheyGoOver) {
  const std::string page =
      "Area                                    Addr        Size        Decimal Bytes (Attributes)\n"
      "------------------------------  ----        ----        ------- ----- ------------\n";
  const std::string code =
      "CODE                                0000A734    0000000E =          14. bytes (REL,CON)\n"
      "      Value  Global                              Global Defined In Module\n"
      "     0000A734  _main                              b\n";
  const std::string text =
      page +
      ".  .ABS.                            00000000    00000000 =           0. bytes (ABS)\n" +
      page + "DATA    00000001    00000BB8 =        3000. bytes (REL,CON)\n" + page + code + page +
      code;
  const std::vector<SizeSum> sums{{"flash", {"CODE", "CONST"}, false}, {"RAM", {"DATA"}, false}};
  EXPECT_EQ(DescribeSizes(ReadSizes(SizeFormat::SdccAreas, text), sums), "flash 14 B, RAM 3000 B");
}

}  // namespace
}  // namespace tarn::tools
