#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "patterns/TestedNames.h"

namespace tarn {
namespace {

using ::testing::Contains;
using ::testing::IsEmpty;

TestedNames Find(std::string_view text) {
  const MacroScan scan = ScanMacros(text);
  const MacroScan* const scans[] = {&scan};
  return FindTestedNames(scans);
}

TEST(TestedNames, AreThoseThatMacrosYield) {
  const char* const rows[][2] = {
      {"#define CFG \"x.h\" // why\n#if __has_include(CFG)\n", "x.h"},
      {"#define CFG <deep/x.h> /* why */\n#elif 1 && __has_include_next ( CFG )\n", "deep/x.h"},
      {"#define S_(x) #x\n#define S(x) S_(x)\n#define D dir\n#if __has_include(S(D/x.h))\n",
       "dir/x.h"},
      {"#define S(x) #x\n#if __has_include(S(a b/x.h))\n", "a b/x.h"},
      {"#define CAT(a, b) <a##b.h>\n#if __has_include(CAT(con, fig))\n", "config.h"},
      {"#define PICK(b, ...) <__VA_ARGS__>\n#if __has_include(PICK(1, x.h))\n", "x.h"},
      {"#define ID(x) x\n#define F \"x.h\"\n#if __has_include(ID(ID(F)))\n", "x.h"},
      {"#define HAS(x) __has_include(x)\n#if HAS(\"x.h\")\n", "x.h"},
      {"#define HAS __has_include\n#if 0 || HAS(<x.h>)\n", "x.h"},
      {"#define ANY (__has_include(\"a.h\") || __has_include(CFG))\n#define CFG \"x.h\"\n#if ANY\n",
       "x.h"},
      // All definitions are considered.
      {"#define CFG \"a.h\"\n#undef CFG\n#define CFG \"x.h\"\n#if __has_include(CFG)\n", "x.h"},
      {"#define CFG \\\n  \"x.h\"\n#if __has_include(CFG)\n", "x.h"},
      {"#define F(x) G(x)\n#define G(x) F(x) x\n#define C <x.h>\n#if __has_include(C)\n", "x.h"},
  };
  for (const auto& [text, name] : rows) {
    EXPECT_TRUE(HasComputedTest(text)) << text;
    const TestedNames found = Find(text);
    EXPECT_THAT(found.names, Contains(name)) << text;
    EXPECT_FALSE(found.isIncomplete) << text;
  }
}

TEST(TestedNames, ThatAreLiteralOrDefinedCostNothing) {
  EXPECT_FALSE(
      HasComputedTest("#if defined(__has_include) && __has_include(<x.h>)\n"
                      "#ifdef __has_include\n#if __has_include ( \"y.h\" )\n"
                      "#define YES __has_include(\"z.h\")\n#if __has_attribute(A)\n"));
}

TEST(TestedNames, AreIncompleteIfOnlyTheCompilerKnowsThem) {
  EXPECT_TRUE(Find("#define S_(x) #x\n#define S(x) S_(x)\n#if __has_include(S(__DEVICE__.h))\n")
                  .isIncomplete);
  std::string bomb = "#define A0 \"x.h\"\n";
  for (int i = 1; i < 40; ++i) {
    const std::string last = " A" + std::to_string(i - 1);
    bomb += "#define A" + std::to_string(i) + last + last + '\n';
  }
  EXPECT_TRUE(Find(bomb + "#if __has_include(A39)\n").isIncomplete);
  const TestedNames open =
      Find("#define F(\n#if __has_include(F(\n#define #\n#if __has_include(\n");
  EXPECT_THAT(open.names, IsEmpty());
}

}  // namespace
}  // namespace tarn
