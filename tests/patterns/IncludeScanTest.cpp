#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "patterns/IncludeScan.h"

namespace tarn {
namespace {

using ::testing::ElementsAre;

TEST(IncludeScan, FindsNamesInDirectivesAlone) {
  EXPECT_THAT(FindIncludes("\xEF\xBB\xBF#include <avr/io.h>\r\n"
                           "  #  include\t\"a b.h\"  // why\n"
                           "#include_next <x.h>\n"
                           ".include \"vectors.inc\"\n"
                           "logo: .INCBIN \"logo.bin\"\n"
                           "#import <once.h>\n"
                           "#include <avr/io.h>\n"
                           "#include \"a.h"),
              ElementsAre("avr/io.h", "a b.h", "x.h", "vectors.inc", "logo.bin", "once.h"));
  EXPECT_THAT(FindIncludes("// #include <a.h>\nint include = 1; char *s = \"#include <b.h>\";\n"
                           "#included <c.h>\n#include MACRO\n#include \"\"\n#include <d.h\n#"),
              ElementsAre());
}

TEST(IncludeScan, CommentsAndContinuedLinesHideNoDirective) {
  const char* const rows[][2] = {
      {"/* why */ #include \"x.h\"\n", "x.h"},
      {"#include /* why */ \"x.h\"\n", "x.h"},
      {"/* two\nlines */ # /**/ include <x.h>\n", "x.h"},
      {"#include \\\n\"x.h\"\n", "x.h"},
      {"#inc\\\r\nlude <x.h>\n", "x.h"},
      {"char *s = \"/*\";\n#include \"x.h\"\n", "x.h"},
      {"char *s = R\"(\n/*)\";\n#include \"x.h\"\n", "x.h"},
      {"#if defined(A) && __has_include ( <x.h> )\n", "x.h"},
      {"#if __has_include_next(\"x.h\")\n", "x.h"},
      {"\t.include /x.inc/\n", "x.inc"},
      {"asm(\".incbin \\\"x.bin\\\"\\n\");\n", "x.bin"},
      {"#embed <x.bin> limit(4)\n", "x.bin"},
      {"#if __has_embed(\"x.bin\" limit(4))\n", "x.bin"},
  };
  for (const auto& [text, name] : rows) EXPECT_THAT(FindIncludes(text), ElementsAre(name)) << text;
}

TEST(IncludeScan, FindsWhatALinkerScriptReads) {
  const ScriptNames names = FindScriptNames(
      "/* INCLUDE no.ld */ INCLUDE sub.ld\nSEARCH_DIR(\"a b\"); SEARCH_DIR ( =lib )\n"
      "INPUT(a.o, \"b c.o\" AS_NEEDED ( -lm ) d.o)\nGROUP ( e.a )\nSTARTUP(s.o)\n"
      "SECTIONS { .x : { INCLUDE deep/x.ld; *(.text) KEEP(f.o) } }");
  EXPECT_THAT(names.inputs,
              ElementsAre("sub.ld", "a.o", "b c.o", "-lm", "d.o", "e.a", "s.o", "deep/x.ld"));
  EXPECT_THAT(names.folders, ElementsAre("a b", "=lib"));
}

}  // namespace
}  // namespace tarn
