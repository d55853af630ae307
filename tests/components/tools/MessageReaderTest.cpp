#include "components/tools/MessageReader.h"

#include <gtest/gtest.h>

#include <future>
#include <span>
#include <utility>

#include "tests/components/tools/ShippedTools.h"

namespace tarn::tools {
namespace {

// A line, and the expected result: "kind|file|line|content", where kind is E, W or P.
using Row = std::pair<const char*, const char*>;

void Check(const MessageRuleLists& lists, std::span<const Row> rows) {
  for (const auto& [line, expected] : rows) {
    const ToolMessage message = MessageReader(lists, "/w").Read(line);
    EXPECT_EQ(message.text, line);
    const char kind = "PEWH"[static_cast<std::size_t>(message.severity)];
    EXPECT_EQ(kind + ("|" + message.file + "|" + message.line + "|" + message.content), expected)
        << line;
  }
}

TEST(MessageReader, CompilerLinesAreJudgedByTheWordAfterThePosition) {
  const Row rows[] = {
      {"c.c:3:21: warning: unused variable 'u' [-Wunused-variable]",
       "W|/w/c.c|3|unused variable 'u' [-Wunused-variable]"},
      {"/s/a b.c:7: error: x: 12: y", "E|/s/a b.c|7|x: 12: y"},
      {"../c.c:3:1: fatal error: n.h: No such file or directory",
       "E|/c.c|3|n.h: No such file or directory"},
      {"C:\\src\\a.c:12:4: error: x", "E|C:\\src\\a.c|12|x"},
      {"c.c:5:1: note: declared here", "P|/w/c.c|5|"},
      {"odd:7:name.c:3: error: x", "E|/w/odd:7:name.c|3|x"},
      {"./a::b:c.c:3:9: warning: x: y:4:5: error: z", "W|/w/a::b:c.c|3|x: y:4:5: error: z"},
      {"x:1y:2:3: note: declared here", "P|x:1y|2|"},
      {"odd:7:name.c: In function 'f':", "P|/w/odd:7:name.c||"},
      {"a.c:3: error: b.c:4: error: x", "E|/w/a.c|3|b.c:4: error: x"},
      {"/tmp/ccrrKJju.s: Assembler messages:", "P|||"},
      {"/tmp/ccrrKJju.s:26: Error: unknown opcode `frob'", "E|||unknown opcode `frob'"},
      {"Fatal error: can't create out/a.o: No such file or directory",
       "E|||can't create out/a.o: No such file or directory"},
      {"a.c:1:1: sorry, unimplemented: far", "E|/w/a.c|1|far"},
      {"t.cpp:3:14:   required from here", "P|/w/t.cpp|3|"},
      {"<built-in>: error: x", "E|||x"},
      {"<command-line>:0:1: warning: \"A\" redefined", "W|||\"A\" redefined"},
      {"{standard input}:12: Error: out of range", "E|||out of range"},
      {"s.S:3: Error: unknown opcode `foo'", "E|/w/s.S|3|unknown opcode `foo'"},
      {"s.S: Assembler messages:", "P|/w/s.S||"},
      {"c.c: In function 'main':", "P|/w/c.c||"},
      {"c.c: At top level:", "P|/w/c.c||"},
      {"avr-gcc: error: nofile.c: No such file", "E|||nofile.c: No such file"},
      {"cc1: warning: unrecognized option", "W|||unrecognized option"},
      {"compilation terminated.", "P|||"},
  };
  Check(testing::ShippedMessages("gcc"), rows);
}

TEST(MessageReader, ChainsAndEchoedSourceAreNeverErrors) {
  const Row rows[] = {
      {"In file included from d.h:1:0,", "P|/w/d.h|1|"},
      {"                 from c.c:2:", "P|/w/c.c|2|"},
      {"In file included from a.c:1:", "P|/w/a.c|1|"},
      {" puts(\"x.c:3: error: y\");", "P|||"},
      {"    3 | puts(\"x.c:3: error: y\");", "P|||"},
      {"                     ^", "P|||"},
  };
  Check(testing::ShippedMessages("gcc"), rows);
}

TEST(MessageReader, LinkerLinesAreErrorsWithoutSayingSo) {
  const Row rows[] = {
      {"/w/c.c:3: undefined reference to `missing'", "E|/w/c.c|3|undefined reference to `missing'"},
      {"c.c:(.text+0x20): undefined reference to `missing'",
       "E|/w/c.c||undefined reference to `missing'"},
      {"/usr/bin/ld: /tmp/x.o: in function `main':", "P|||"},
      {"c.o: In function `main':", "P|||"},
      {"many.o (symbol from plugin): In function `f':", "P|||"},
      {"/usr/bin/ld: c.o: definition of f", "P|||"},
      {"/usr/bin/ld: total time in link: 0.011398", "P|||"},
      {"/usr/bin/ld: mode elf_x86_64", "P|||"},
      {"ld: x.o:(.text+0x8): dangerous relocation: unsupported",
       "E|||dangerous relocation: unsupported"},
      {"x.o:(.text+0x8): warning: deprecated", "W|||deprecated"},
      {"--defsym:1: undefined symbol `foo' referenced in expression", "P|||"},
      {"/usr/lib/gcc/avr/5.4.0/../../../avr/bin/ld: cannot find -lnone", "E|||cannot find -lnone"},
      {"avr-ld: region `text' overflowed by 18 bytes", "E|||region `text' overflowed by 18 bytes"},
      {"/usr/bin/ld.bfd: c.elf section `.text' will not fit in region `text'",
       "E|||c.elf section `.text' will not fit in region `text'"},
      {"h.c:(.text+0x0): multiple definition of `main'; h.o:h.c:(.text+0x0): first "
       "defined here",
       "E|/w/h.c||multiple definition of `main'; h.o:h.c:(.text+0x0): first "
       "defined here"},
      {"h.c:(.text+0x0): first defined here", "P|/w/h.c||"},
      {"/usr/bin/ld: warning: x.o: missing .note.GNU-stack section",
       "W|||x.o: missing .note.GNU-stack section"},
      {"/usr/bin/ld: skipping incompatible /usr/lib/libx.a when searching for -lx", "P|||"},
      {"collect2: error: ld returned 1 exit status", "E|||ld returned 1 exit status"},
      {"The word world: cannot be said", "P|||"},
  };
  Check(testing::ShippedMessages("gnu-ld gcc"), rows);
}

TEST(MessageReader, SdccLinesCarryNumbersAndTheLinkerAPrefix) {
  const Row rows[] = {
      {"a.c:4: warning 85: in function f unreferenced function argument : 'a'",
       "W|/w/a.c|4|in function f unreferenced function argument : 'a'"},
      {"a.c:5: error 20: Undefined identifier 'z'", "E|/w/a.c|5|Undefined identifier 'z'"},
      {"  to type 'int fixed'", "P|||"},
      {"g.c:1: syntax error: token -> '}' ; column 24", "E|/w/g.c|1|token -> '}' ; column 24"},
      {"at 1: error 119: don't know what to do", "E|||don't know what to do"},
      {"at 1: warning 190: ISO C forbids an empty source file",
       "W|||ISO C forbids an empty source file"},
      {"e.c:2:17: fatal error: nob.h: No such file", "E|/w/e.c|2|nob.h: No such file"},
      {"sdcpp: error: too many filenames given.", "E|||too many filenames given."},
      {"s.asm:5: Error: <o> .org in REL area", "E|/w/s.asm|5|<o> .org in REL area"},
      {"?ASlink-Warning-Undefined Global '_m' referenced by module 'c'",
       "W|||Undefined Global '_m' referenced by module 'c'"},
      {"?ASlink-Error-<cannot open> : \"none.rel\"", "E|||<cannot open> : \"none.rel\""},
      {"Multiple definition of _q", "E|||Multiple definition of _q"},
      {"removing out/s.rel", "P|||"},
  };
  Check(testing::ShippedMessages("sdcc"), rows);
}

// The example in the documentation of definitions; the tool's own line precedes those of its list.
TEST(MessageReader, LinesOfDefinitionsAreTriedInTheirOrder) {
  const ReadDefinitions read = ReadDefinitionFiles({{"t.tools", R"~(
      <T><Tool Name="t" Messages="acme"><Line Template="error C21: {SPECMESSAGE}"/>
      <Step Program="p"/></Tool><Messages Name="acme"><Line Template="^  "/>
      <Line Template="^{SPECFILE}\({SPECLINE}\): {SPECERROR} [A-Z][0-9]+: {SPECMESSAGE}"/>
      <Line Template="^acme-link: {SPECMESSAGE}" With="unresolved|does not fit" Kind="Error"/>
      </Messages></T>)~"}});
  ASSERT_EQ(read.errors, std::vector<std::string>());
  const Row rows[] = {
      {"src/a.c(12): error C20: no such name", "E|/w/src/a.c|12|no such name"},
      {"a.c(1): Warning W7:x: error", "W|/w/a.c|1|x: error"},
      {"  a.c(1): error C20: x", "P|||"},
      {"src/a.c(12): error C21: no warning", "W|||no warning"},
      {"acme-link: f is unresolved", "E|||f is unresolved"},
      {"acme-link: f is fine", "P|||"},
  };
  Check(read.tools.at(0)->messages, rows);
}

TEST(MessageReader, NamesCountFromTheFolderThatWasEnteredLast) {
  const MessageRuleLists lists = testing::ShippedMessages("make gcc");
  MessageReader reader(lists, "/w");
  const Row rows[] = {
      {"make[1]: Leaving directory '/w'", "|"},
      {"a.c:1:1: error: x", "/w/a.c|1"},
      {"/usr/bin/gmake[1]: Entering directory `sub one'", "|"},
      {"a.c:1:1: error: x", "/w/sub one/a.c|1"},
      {"make[2]: Entering directory '/o'", "|"},
      {"../a.c:1:1: error: x", "/a.c|1"},
      {"make[2]: Leaving directory '/o'", "|"},
      {"make[1]: *** [Makefile:3: all] Error 1", "/w/sub one/Makefile|3"},
      {"make[1]: Leaving directory '/w/sub one'", "|"},
      {"a.c:1:1: error: x", "/w/a.c|1"},
  };
  for (const auto& [line, expected] : rows) {
    const ToolMessage message = reader.Read(line);
    EXPECT_EQ(message.file + '|' + message.line, expected) << line;
  }
}

// The lists of a tool are shared by all its runs.
TEST(MessageReader, RunsAtTheSameTimeDoNotDisturbEachOther) {
  const MessageRuleLists lists = testing::ShippedMessages("gnu-ld gcc");
  const auto read = [&](const std::string& name) {
    MessageReader reader(lists, "/w");
    for (int i = 0; i < 5000; ++i) {
      const ToolMessage message = reader.Read(name + ":3:1: error: " + name);
      if (message.file != "/w/" + name || message.content != name) return false;
    }
    return true;
  };
  auto other = std::async(std::launch::async, read, "a.c");
  EXPECT_TRUE(read("a/much/longer/name.c"));
  EXPECT_TRUE(other.get());
}

}  // namespace
}  // namespace tarn::tools
