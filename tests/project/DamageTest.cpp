// Reports about files that lost content when they were read.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <cstring>

#include "project/EditedFixture.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

using Lines = std::vector<std::string>;

const std::string kTwo = "/p/two.tapp";

Lines ToLines(const std::vector<FileDamage>& damage) {
  Lines lines;
  for (const FileDamage& each : damage) lines.push_back(each.ToString());
  return lines;
}

std::string File(const std::string& content) {
  return "\n<Application Header=\"two\" Extern=\".\\two.tapp\" Path=\".\\two.tapp\" >\n" + content +
         "</Application>";
}

struct DamageRow {
  const char* name;
  std::string text;
  std::string damage = {};  // lines, without "/p/two.tapp"
};

TEST(Damage, EachLossIsNamedWithItsLine) {
  const DamageRow rows[] = {
      {"nothing lost", File("\t<!-- ours -->\n\t<C Header=\"c\" />\n")},
      {"a value of an option belongs to its owner",
       File("<Options>\n<Config Header=\"\" ><Set Header=\"\" ><Section Header=\"\" >"
            "<P>text<![CDATA[v]]></P></Section></Set></Config></Options>")},
      {"remarks and a declaration around the root",
       "<?xml version=\"1.0\"?>\n<!-- a -->\n" + File("") + "\n<!-- b -->\n"},
      {"text between nodes", File("\t<C Header=\"c\" />\nleft over\n"),
       ":4: stray text \"left over\""},
      {"text in a node", File("<Group Header=\"g\" >C Path=\"x\" /></Group>"),
       ":3: stray text \"C Path=\"x\" />\""},
      {"a second run of text", File("one<C/>\n\ntwo"),
       ":3: stray text \"one\"\n"
       ":5: stray text \"two\""},
      {"text between options and in configurations",
       File("<Options>\nx<Config Header=\"x\" /></Options><Configs>y</Configs>"),
       ":4: stray text \"x\"\n"
       ":4: stray text \"y\""},
      {"a merge conflict",
       File("<<<<<<< ours\n<C Header=\"a\" />\n=======\n<C Header=\"b\" />\n>>>>>>> theirs\n"),
       ":3: a merge conflict that was not resolved\n"
       ":5: a merge conflict that was not resolved\n"
       ":7: a merge conflict that was not resolved"},
      {"a processing instruction", File("<?x y?><C Header=\"c\" />"),
       ":3: a processing instruction, which is not read"},
      {"unknown markup", File("<!ENTITY x >"),
       ":3: unknown markup <!ENTITY\n"
       ":3: malformed attribute \"x\"\n"
       ":3: </Application> closes another element; nothing after it is read"},
      {"a byte order mark", "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n" + File("")},
      {"text after a byte order mark", "\xEF\xBB\xBFx" + File(""), ":1: stray text \"x\""},
      {"a zero byte", File("") + '\0' + "\n", ":3: a zero byte; nothing after it is read"},
      {"cut after a complete tag",
       File("").substr(0, File("").size() - 14) + "<Group Header=\"g\" >\n",
       ":4: the file ends inside <Group>"},
      {"cut in a tag", File("").substr(0, 40),
       ":2: incomplete tag of <Application>; nothing after it is read"},
      {"a lost end", File("<Group Header=\"g\" >\n"),
       ":4: </Application> closes another element; nothing after it is read"},
      {"an empty file", "", ":1: the file ends before its first element"},
      {"values that only a run keeps", File("<![CDATA[<C/>]]>"),
       ":3: a CDATA section, which is not read"},
      {"content after the root", File("") + "\n" + File(""),
       ":5: content after the end of the root element, which is not read"},
  };
  for (const DamageRow& row : rows) {
    EditedFixture world;
    world.model->Protection().SetDamageProtection(true);
    world.AddFile(kTwo, row.text);
    ASSERT_EQ(world.OpenDemo(), 1) << row.name;
    Lines expected;
    for (const std::string_view line : Split(row.damage, '\n')) {
      expected.push_back(kTwo + std::string(line));
    }
    EXPECT_EQ(ToLines(world.model->Protection().GetDamage()), expected) << row.name;
    for (const std::string& line : expected) {
      EXPECT_NE(world.LogText().find(line), std::string::npos) << row.name << world.LogText();
    }
    EXPECT_EQ(world.model->Protection().IsDamageHeld(), !expected.empty()) << row.name;
    EXPECT_EQ(world.model->CloseProject(), 1) << row.name;
    EXPECT_TRUE(world.model->Protection().GetDamage().empty()) << row.name;
  }
}

TEST(Damage, AFileThatBreaksOffWhileItIsReadIsNamed) {
  EditedFixture world;
  Fail("read", kTwo, ErrorCode::Io)(world);
  ASSERT_EQ(world.OpenDemo(), 1);
  ASSERT_EQ(world.model->Protection().GetDamage().size(), 1U);
  EXPECT_THAT(world.model->Protection().GetDamage()[0].ToString(),
              ::testing::StartsWith("/p/two.tapp: reading the file failed"));
}

TEST(Damage, ProtectedFilesAreNeitherBuiltNorWritten) {
  EditedFixture world;
  world.AddFile(kTwo, File("<?x?><C Header=\"two.c\" />"));
  world.model->Protection().SetDamageProtection(true);
  ASSERT_EQ(world.OpenDemo(), 1);
  const Lines before = world.Files();
  world.Edit();
  EXPECT_EQ(world.model->SaveProject(), 0);
  EXPECT_TRUE(world.model->IsModified());
  EXPECT_EQ(world.builder->StartBuildThread(kWorkerBuildAll), 0);
  EXPECT_EQ(world.builder->BuildSynchronously(), 0);
  EXPECT_EQ(world.model->CloseProject(), 1);
  EXPECT_EQ(world.Files(), before);

  // If the user agrees, content that was not read is kept in the backup.
  ASSERT_EQ(world.OpenDemo(), 1);
  world.Edit();
  world.model->Protection().SetDamageProtection(false);
  EXPECT_EQ(world.model->SaveProject(), 1);
  EXPECT_THAT(world.FileText("/p/two.tapp.bak"), ::testing::HasSubstr("<?x?>"));
  EXPECT_TRUE(world.model->Protection().GetDamage().empty());
}

TEST(Damage, ALongListEndsWithARemark) {
  std::string text;
  for (int i = 0; i < 500; ++i) text += "<C/>x" + std::to_string(i) + "\n";
  EditedFixture world;
  world.AddFile(kTwo, File(text));
  ASSERT_EQ(world.OpenDemo(), 1);
  ASSERT_EQ(world.model->Protection().GetDamage().size(), DamageCollector::kMaxDamage + 1);
  EXPECT_EQ(world.model->Protection().GetDamage().back().ToString(),
            "/p/two.tapp:103: more damage, from here on");
}

// --- Every kind of damage at every position of a small file ---

const std::string kSmall =
    "\r\n<Application Header=\"small\" Extern=\".\\small.tapp\" Path=\".\\small.tapp\" "
    "Config=\"Fast\" >"
    "\r\n\t<Configs>\r\n\t\t<Config Header=\"Fast\" />\r\n\t</Configs>"
    "\r\n\t<Options>\r\n\t\t<Config Header=\"Standard\" >\r\n\t\t\t<Set Header=\"C\" >"
    "\r\n\t\t\t\t<Section Header=\"Build\" >\r\n\t\t\t\t\t<Property Header=\"Tool\" Value=\"cc; "
    "-O2\" />"
    "\r\n\t\t\t\t</Section>\r\n\t\t\t</Set>\r\n\t\t</Config>\r\n\t</Options>"
    "\r\n\t<Group Header=\"Sources\" Marker=\"-1\" >\r\n\t\t<C Header=\"main.c\" "
    "Path=\".\\src\\main.c\" />"
    "\r\n\t\t<C Header=\"led.c\" Path=\".\\src\\led.c\" />\r\n\t\t<!-- ours -->\r\n\t</Group>"
    "\r\n\t<C Header=\"end.c\" Path=\".\\end.c\" />\r\n</Application>";

// Dumps the tree without one character, which may have been inserted into a name or value, and
// without whitespace.
std::string DumpWithout(const CXmlNode& node, char removed) {
  std::string dump = node.GetName();
  for (const CXmlAttr& attr : node.Attributes()) {
    dump += "[" + attr.GetName() + "=" + attr.GetValue() + "]";
  }
  dump += node.GetValue() + "(";
  for (const CXmlNode* child : node.GetChildren()) dump += DumpWithout(*child, removed) + ")";
  std::erase_if(dump, [removed](char c) {
    return c == removed || std::isspace(static_cast<unsigned char>(c)) != 0;
  });
  return dump;
}

std::vector<FileDamage> FindDamage(const std::string& text, CXmlNode* node) {
  CXmlNode own;
  CXmlParseInfo info;
  DamageCollector collector(text);
  (node == nullptr ? own : *node).Load(text.c_str(), info, collector);
  return collector.Collect("small");
}

// Returns an empty string if the text has reported damage, or is read completely except for
// `inserted` in its names and values; otherwise a description of the difference.
std::string FindSilentLoss(const std::string& text, char inserted) {
  CXmlNode original;
  CXmlNode node;
  CXmlParseInfo info;
  original.Load(kSmall, info);
  const std::vector<FileDamage> damage = FindDamage(text, &node);
  const auto lines = std::max(std::count(text.begin(), text.end(), '\n'),
                              std::count(text.begin(), text.end(), '\r')) +
                     2;
  for (const FileDamage& each : damage) {
    if (each.line < 1 || each.line > lines) return "no such line: " + each.ToString();
  }
  if (!damage.empty()) return {};
  const std::string read = DumpWithout(node, inserted);
  return read == DumpWithout(original, inserted) ? std::string() : read;
}

TEST(Damage, ASmallFileCutAnywhereIsNamed) {
  EXPECT_TRUE(FindDamage(kSmall, nullptr).empty());
  for (std::size_t i = 0; i <= kSmall.size(); ++i) {
    EXPECT_EQ(FindSilentLoss(kSmall.substr(0, i), '\r'), "") << kSmall.substr(0, i);
    EXPECT_EQ(FindSilentLoss(kSmall.substr(i), '\r'), "") << kSmall.substr(i);
  }
}

TEST(Damage, AStrayCharacterAnywhereIsNamedOrRead) {
  for (const char c : std::string("<>\"'&=/\\ \tx#!?-]\0", 17)) {
    for (std::size_t i = 0; i <= kSmall.size(); ++i) {
      std::string text = kSmall;
      text.insert(i, 1, c);
      ASSERT_EQ(FindSilentLoss(text, c), "") << "'" << c << "' at " << i << text.substr(0, i + 1);
    }
  }
}

TEST(Damage, ALostCharacterOfMarkupAnywhereIsNamedOrRead) {
  for (std::size_t i = 0; i < kSmall.size(); ++i) {
    if (std::strchr("<>\"=/!-", kSmall[i]) == nullptr) continue;
    std::string text = kSmall;
    text.erase(i, 1);
    ASSERT_EQ(FindSilentLoss(text, kSmall[i]), "") << i << text.substr(0, i);
  }
}

TEST(Damage, AMergeConflictAtAnyLineIsNamed) {
  for (std::size_t i = 2; i != std::string::npos + 2; i = kSmall.find("\r\n", i) + 2) {
    for (const char* mark :
         {"<<<<<<< HEAD\r\n", "=======\r\n", ">>>>>>> other\r\n", "||||||| base\r\n"}) {
      std::string text = kSmall;
      text.insert(i, mark);
      const Lines lines = ToLines(FindDamage(text, nullptr));
      const auto line =
          std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(i), '\n') + 1;
      EXPECT_THAT(lines, ::testing::Contains("small:" + std::to_string(line) +
                                             ": a merge conflict that was not resolved"));
    }
    if (kSmall.find("\r\n", i) == std::string::npos) break;
  }
}

}  // namespace
}  // namespace tarn::test
