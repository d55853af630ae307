#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "build/IncludeScan.h"

namespace tarn {
namespace {

using ::testing::ElementsAre;

TEST(IncludeScan, FindsNamesInDirectivesAlone) {
  EXPECT_THAT(FindIncludes("#include <avr/io.h>\r\n"
                           "  #  include\t\"a b.h\"  // why\n"
                           "#include_next <x.h>\n"
                           ".include \"vectors.inc\"\n"
                           ".incbin \"logo.bin\"\n"
                           "#import <once.h>\n"
                           "#include <avr/io.h>\n"
                           "#include \"a.h"),
              ElementsAre("avr/io.h", "a b.h", "x.h", "vectors.inc", "logo.bin", "once.h"));
  EXPECT_THAT(FindIncludes("// #include <a.h>\nint include = 1; char *s = \"#include <b.h>\";\n"
                           "#included <c.h>\n#include MACRO\n#include \"\"\n#include <d.h\n#"),
              ElementsAre());
}

}  // namespace
}  // namespace tarn
