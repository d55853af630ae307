#include "hosts/desktop/AssemblerLexer.h"

#include <gtest/gtest.h>

#include <string>

#include "hosts/desktop/AssemblerStyles.h"
#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/EditorTabs.h"
#include "support/TestEnvironment.h"

namespace tarn::host {
namespace {

std::string Letters(const std::string& styles) {
  std::string letters;
  for (const char style : styles) letters += " cCLDMRNSP"[static_cast<int>(style)];
  return letters;
}

TEST(AssemblerLexerTest, EachPartOfALineHasItsStyle) {
  struct Row {
    const char* text;
    const char* styles;
  };
  for (const Row& row : {
           Row{"loop: ldi r16, 0x1F ; r1", "LLLL  MMM RRR  NNNN cccc"},
           Row{"\tst\tX+, r0 // A", " MM R   RR cccc"},
           Row{"1: brne 1b", "L  MMMM NN"},
           Row{"\t.text\n.L2:.word a", " DDDDD LLL DDDDD R"},
           Row{"  mov a, #0FFh", "  MMM R   NNNN"},
           Row{"MOVX @DPTR,A", "MMMM  RRRR R"},
           Row{"SIZE EQU 10", "LLLL DDD NN"},
           Row{"size = $1f", "LLLL   NNN"},
           Row{"ORG 30H", "DDD NNN"},
           Row{"$INCLUDE (r.inc) ; c", "PPPPPPPPPPPPPPPPPccc"},
           Row{"# include <r.h> /* a", "PPPPPPPPPPPPPPPPCCCC"},
           Row{"# told by r1\nret", "cccccccccccc MMM"},
           Row{".ascii \"a\\\";b\" ; c", "DDDDDD SSSSSSS ccc"},
           Row{"cpi r1, 'x ; c", "MMM RR  SS ccc"},
           Row{"DB 'it;', \"open", "DD SSSSS  SSSSS"},
           Row{"r1/* a\nb */ r1\r\nr2", "MMCCCCCCCCC RR  MM"},
           Row{"cpi r1, '\\n\ncpi r2, 'y'", "MMM RR  SSS MMM RR  SSS"},
           Row{"\\", " "},
       }) {
    EXPECT_EQ(Letters(StyleAssembler(row.text, false)), row.styles) << row.text;
  }
}

TEST(AssemblerLexerTest, TheEditorFollowsACommentThatBeginsAbove) {
  testing::ScratchFolder folder;
  folder.Write("a.S", "nop\nnop\nnop\n");
  EditorTabs tabs(FileSystem::Native(), nullptr);
  ASSERT_TRUE(tabs.OpenFile(folder / "a.S", 0));
  CodeEditor& editor = *tabs.Current();
  const auto styles = [&editor] {
    editor.SendScintilla(QsciScintillaBase::SCI_COLOURISE, 0UL, -1L);
    std::string all;
    for (int at = 0; at < editor.length(); ++at) {
      all += static_cast<char>(editor.SendScintilla(QsciScintillaBase::SCI_GETSTYLEAT, at));
    }
    return Letters(all);
  };
  EXPECT_EQ(styles(), "MMM MMM MMM ");
  editor.insertAt("/*", 1, 0);
  EXPECT_EQ(styles(), "MMM CCCCCCCCCC");
  editor.insertAt("*/", 1, 5);
  EXPECT_EQ(styles(), "MMM CCCCCCC MMM ");
}

}  // namespace
}  // namespace tarn::host
