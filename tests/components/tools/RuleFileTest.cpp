#include "components/tools/RuleFile.h"

#include <gtest/gtest.h>

#include <string>

namespace tarn::tools {
namespace {

TEST(RuleFile, GivesEveryDependencyOnceWithItsEscapesTakenOff) {
  // What for, a text, and the names in it with "|" behind each.
  const char* const rows[][3] = {
      {"continued lines", "s.o: s.S \\\n /usr/lib/io.h \\\r\n b.h", "s.S|/usr/lib/io.h|b.h|"},
      {"escaped blank, hash and dollar", "o\\ ut$$.o: y.c in\\ c\\#$$.h\n", "y.c|in c#$.h|"},
      {"pair of backslashes in front of a blank", "a: b\\\\ c\n", "b\\|c|"},
      {"backslashes inside names stay", "a.o: C:\\src\\a.c ..\\b\\\\c.h\n",
       "C:\\src\\a.c|..\\b\\\\c.h|"},
      {"target behind a drive", "C:\\o\\a.o: a.c\n", "a.c|"},
      {"rules for missing headers", "a.o: a.c b.h\n\nb.h:\n", "a.c|b.h|"},
      {"two rules with one name in both", "a.o: x.c y.h\nb.o: y.h z.h\n", "x.c|y.h|z.h|"},
      {"comment", "# made: by\na.o: a.c # trailing: x\n b.c: c.h", "a.c|c.h|"},
      {"no rule", "hello world", ""},
      {"backslash at the end", "a.o: b\\", "b\\|"},
      {"dollar at the end", "a.o: b$", "b$|"},
      {"colon inside a dependency", "a.o: b:c.h\n", "b:c.h|"},
      {"empty", "", ""},
  };
  for (const auto& [name, text, expected] : rows) {
    std::string found;
    for (const std::string& each : ReadRuleFile(text)) found += each + '|';
    EXPECT_EQ(found, expected) << name;
  }
}

}  // namespace
}  // namespace tarn::tools
