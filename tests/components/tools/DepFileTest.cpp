#include "components/tools/DepFile.h"

#include <gtest/gtest.h>

#include <string>

namespace tarn::tools {
namespace {

TEST(DepFile, EveryDependencyIsFoundOnceWithoutItsEscapesAndACutTextIsNoticed) {
  const std::string cut = "ends in the middle of a line";
  // Purpose, text, the names in it, each followed by "|", and the problem.
  const std::string rows[][4] = {
      {"continued lines", "s.o: s.S \\\n /usr/lib/io.h \\\r\n b.h\r\n", "s.S|/usr/lib/io.h|b.h|",
       ""},
      {"escaped blank, hash and dollar", "o\\ ut$$.o: y.c in\\ c\\#$$.h\n", "y.c|in c#$.h|", ""},
      {"pair of backslashes before a blank", "a: b\\\\ c\n", "b\\|c|", ""},
      {"backslashes inside names stay", "a.o: C:\\src\\a.c ..\\b\\\\c.h\n",
       "C:\\src\\a.c|..\\b\\\\c.h|", ""},
      {"target on a drive", "C:\\o\\a.o: a.c\n", "a.c|", ""},
      {"rules for missing headers", "a.o: a.c b.h\n\nb.h:\n", "a.c|b.h|", ""},
      {"two rules with one name in both", "a.o: x.c y.h\nb.o: y.h z.h\n", "x.c|y.h|z.h|", ""},
      {"comment", "# made: by\na.o: a.c # trailing: x\n b.c: c.h\n", "a.c|c.h|", ""},
      {"colon inside a dependency", "a.o: b:c.h\n", "b:c.h|", ""},
      {"no rule", "hello world\n", "", "has no rule"},
      {"cut before the colon", "build/a", "", "has no rule"},
      {"cut after the colon", "a.o:", "", cut},
      {"cut inside a name", "a.o: b.c c", "b.c|c|", cut},
      {"cut inside an escape", "a.o: b\\", "b\\|", cut},
      {"cut inside a dollar", "a.o: b$", "b$|", cut},
      {"cut after a continued line", "a.o: b.c \\\n", "b.c|", cut},
      {"cut inside a line end", "a.o: b.c \\\r", "b.c|\\|", cut},
      {"empty", "", "", "is empty"},
      {"zeros of a lost block", std::string("a.o: a.c\n\0\0", 11), "a.c|", "contains binary data"},
  };
  for (const auto& [name, text, expected, problem] : rows) {
    std::string found;
    const DepFile rules = ReadDepFile(text);
    for (const std::string& each : rules.names) found += each + '|';
    EXPECT_EQ(found, expected) << name;
    EXPECT_EQ(rules.problem, problem) << name;
  }
}

}  // namespace
}  // namespace tarn::tools
