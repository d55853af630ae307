#include "components/tools/MessageScanner.h"

#include <gtest/gtest.h>

#include <vector>

namespace tarn::tools {
namespace {

struct Row {
  const char* scanners;
  const char* line;
  // "kind|file|line|content", kind one of E, W, P
  const char* expected;
};

std::string Describe(const ToolMessage& message) {
  constexpr char kKinds[] = {'P', 'E', 'W', 'H'};
  return std::string(1, kKinds[static_cast<std::size_t>(message.severity)]) + '|' + message.file +
         '|' + message.line + '|' + message.content;
}

std::string Recognise(const std::string& scanners, const std::string& line) {
  MessageRecogniser recogniser;
  if (scanners.find("gcc") != scanners.npos) recogniser.Add(*FindScanner("gcc"));
  if (scanners.find("ld") != scanners.npos) recogniser.Add(*FindScanner("gnu-ld"));
  if (scanners.find("sdcc") != scanners.npos) recogniser.Add(*FindScanner("sdcc"));
  const ToolMessage message = recogniser.Recognise(line, "/w");
  EXPECT_EQ(message.text, line);
  return Describe(message);
}

void Check(const std::vector<Row>& rows) {
  for (const Row& row : rows)
    EXPECT_EQ(Recognise(row.scanners, row.line), row.expected) << row.line;
}

TEST(MessageScanner, CompilerLinesAreJudgedByTheWordBehindThePlace) {
  Check({
      {"gcc", "c.c:3:21: warning: unused variable 'u' [-Wunused-variable]",
       "W|/w/c.c|3|unused variable 'u' [-Wunused-variable]"},
      {"gcc", "/s/a b.c:7: error: x: 12: y", "E|/s/a b.c|7|x: 12: y"},
      {"gcc", "../c.c:3:1: fatal error: n.h: No such file or directory",
       "E|/c.c|3|n.h: No such file or directory"},
      {"gcc", "C:\\src\\a.c:12:4: error: x", "E|C:\\src\\a.c|12|x"},
      {"gcc", "c.c:5:1: note: declared here", "P|/w/c.c|5|"},
      {"gcc", "odd:7:name.c:3: error: x", "E|/w/odd:7:name.c|3|x"},
      {"gcc", "a.c:1:1: sorry, unimplemented: far", "E|/w/a.c|1|far"},
      {"gcc", "t.cpp:3:14:   required from here", "P|/w/t.cpp|3|"},
      {"gcc", "<built-in>: error: x", "E|||x"},
      {"gcc", "<command-line>:0:1: warning: \"A\" redefined", "W|||\"A\" redefined"},
      {"gcc", "{standard input}:12: Error: out of range", "E|||out of range"},
      {"gcc", "s.S:3: Error: unknown opcode `foo'", "E|/w/s.S|3|unknown opcode `foo'"},
      {"gcc", "s.S: Assembler messages:", "P|/w/s.S||"},
      {"gcc", "c.c: In function 'main':", "P|/w/c.c||"},
      {"gcc", "c.c: At top level:", "P|/w/c.c||"},
      {"gcc", "avr-gcc: error: nofile.c: No such file", "E|||nofile.c: No such file"},
      {"gcc", "cc1: warning: unrecognized option", "W|||unrecognized option"},
      {"gcc", "compilation terminated.", "P|||"},
  });
}

TEST(MessageScanner, ChainsAndEchoedSourceAreNeverErrors) {
  Check({
      {"gcc", "In file included from d.h:1:0,", "P|/w/d.h|1|"},
      {"gcc", "                 from c.c:2:", "P|/w/c.c|2|"},
      {"gcc", "In file included from a.c:1:", "P|/w/a.c|1|"},
      {"gcc", " puts(\"x.c:3: error: y\");", "P|||"},
      {"gcc", "    3 | puts(\"x.c:3: error: y\");", "P|||"},
      {"gcc", "                     ^", "P|||"},
  });
}

TEST(MessageScanner, LinkerLinesAreErrorsWithoutSayingSo) {
  Check({
      {"gcc ld", "/w/c.c:3: undefined reference to `missing'",
       "E|/w/c.c|3|undefined reference to `missing'"},
      {"gcc ld", "c.c:(.text+0x20): undefined reference to `missing'",
       "E|/w/c.c||undefined reference to `missing'"},
      {"gcc ld", "/usr/bin/ld: /tmp/x.o: in function `main':", "P|||"},
      {"gcc ld", "c.o: In function `main':", "P|/w/c.o||"},
      {"gcc ld", "/usr/lib/gcc/avr/5.4.0/../../../avr/bin/ld: cannot find -lnone",
       "E|||cannot find -lnone"},
      {"gcc ld", "avr-ld: region `text' overflowed by 18 bytes",
       "E|||region `text' overflowed by 18 bytes"},
      {"gcc ld", "/usr/bin/ld.bfd: c.elf section `.text' will not fit in region `text'",
       "E|||c.elf section `.text' will not fit in region `text'"},
      {"gcc ld",
       "h.c:(.text+0x0): multiple definition of `main'; h.o:h.c:(.text+0x0): first "
       "defined here",
       "E|/w/h.c||multiple definition of `main'; h.o:h.c:(.text+0x0): first "
       "defined here"},
      {"gcc ld", "h.c:(.text+0x0): first defined here", "P|/w/h.c||"},
      {"gcc ld", "/usr/bin/ld: warning: x.o: missing .note.GNU-stack section",
       "W|||x.o: missing .note.GNU-stack section"},
      {"gcc ld", "/usr/bin/ld: skipping incompatible /usr/lib/libx.a when searching for -lx",
       "P|||"},
      {"gcc ld", "collect2: error: ld returned 1 exit status", "E|||ld returned 1 exit status"},
      {"gcc ld", "The word world: cannot be said", "P|||"},
  });
}

TEST(MessageScanner, SdccLinesCarryNumbersAndTheLinkerAPrefix) {
  Check({
      {"sdcc", "a.c:4: warning 85: in function f unreferenced function argument : 'a'",
       "W|/w/a.c|4|in function f unreferenced function argument : 'a'"},
      {"sdcc", "a.c:5: error 20: Undefined identifier 'z'", "E|/w/a.c|5|Undefined identifier 'z'"},
      {"sdcc", "  to type 'int fixed'", "P|||"},
      {"sdcc", "g.c:1: syntax error: token -> '}' ; column 24",
       "E|/w/g.c|1|token -> '}' ; column 24"},
      {"sdcc", "at 1: error 119: don't know what to do", "E|||don't know what to do"},
      {"sdcc", "at 1: warning 190: ISO C forbids an empty source file",
       "W|||ISO C forbids an empty source file"},
      {"sdcc", "e.c:2:17: fatal error: nob.h: No such file", "E|/w/e.c|2|nob.h: No such file"},
      {"sdcc", "sdcpp: error: too many filenames given.", "E|||too many filenames given."},
      {"sdcc", "s.asm:5: Error: <o> .org in REL area", "E|/w/s.asm|5|<o> .org in REL area"},
      {"sdcc", "?ASlink-Warning-Undefined Global '_m' referenced by module 'c'",
       "W|||Undefined Global '_m' referenced by module 'c'"},
      {"sdcc", "?ASlink-Error-<cannot open> : \"none.rel\"", "E|||<cannot open> : \"none.rel\""},
      {"sdcc", "Multiple definition of _q", "E|||Multiple definition of _q"},
      {"sdcc", "removing out/s.rel", "P|||"},
  });
}

}  // namespace
}  // namespace tarn::tools
