// Elements of a project's files in positions where they have no effect.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "project/EditedFixture.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

const std::string kOne = "/p/one.tapp";
const std::string kProject = "/p/demo.tprj";

// Returns the lines of the damage, without the file name if it is `file`.
std::string ToText(const std::vector<FileDamage>& damage, const std::string& file) {
  std::string text;
  for (const FileDamage& each : damage) {
    const std::string line = each.ToString();
    text += (text.empty() ? "" : "\n") + line.substr(line.starts_with(file) ? file.size() : 0);
  }
  return text;
}

// Returns a file of the application "one" with this content from its second line.
std::string Application(const std::string& content) {
  return "<Application Header='one' Extern='one.tapp' Path='one.tapp' >\n" + content +
         "\n</Application>";
}

// Returns the project file with this content after the application "one", on the second line.
std::string Project(const std::string& content) {
  return "<Project Header='demo' ><Application Header='one' Extern='one.tapp' />\n" + content +
         "</Project>";
}

// Returns the options of a configuration with an element at each level.
std::string Options(const std::string& section) {
  return "<Options><Config Header='Standard' ><Set Header='C' ><Section Header='Build' >" +
         section + "</Section></Set></Config></Options>";
}

struct Row {
  const char* name;
  std::string text;
  std::string damage = {};  // without the file name
  std::string file = kOne;
};

TEST(Structure, WhatHasNoEffectWhereItIsIsNamed) {
  const std::string inOptions = " is in <Options>, where no node is read";
  const std::string isSecond = " is a duplicate in its node; only the first one is read";
  const std::string isUnnamed = " has no attribute Header, so it is not read";
  const Row rows[] = {
      {"a source among options", Application("<Options>\n<C Header='f.c' /></Options>"),
       ":3: <C> \"f.c\"" + inOptions},
      {"a group in a configuration",
       Application("<Options><Config Header='x' >\n<Group Header='g' /></Config></Options>"),
       ":3: <Group> \"g\"" + inOptions},
      {"a source beside a property", Application(Options("<C Path='f.c' />")),
       ":2: <C>" + inOptions},
      {"a source in a property", Application(Options("<P><C Path='f.c' /></P>")),
       ":2: <C>" + inOptions},
      {"a source among configurations",
       Application("<Configs><Config Header='x' ><C Header='f.c' /></Config></Configs>"),
       ":2: <C> \"f.c\" is in <Configs>, where no node is read"},
      {"a source among dependencies",
       Application("<C Header='c' ><Dependencies>\n<C Header='f.c' Path='f.c' />"
                   "<Header Header='h.h' /></Dependencies></C>"),
       ":3: <C> \"f.c\" is in <Dependencies>, where no node is read"},
      {"a group in stored state", Application("<Info><X><Group><C/></Group></X></Info>"),
       ":2: <Group> is in <Info>, where no node is read"},
      {"a source in a source",
       Application("<C Header='a.c' >\n<Header Header='b.h' ><X><C Header='f.c' /></X></Header>"
                   "</C>"),
       ":3: <Header> \"b.h\" is in <C> \"a.c\", which can't contain nodes\n"
       ":3: <C> \"f.c\" is in <C> \"a.c\", which can't contain nodes"},
      {"options twice", Application("<Options/>\n<Options/>"), ":3: <Options>" + isSecond},
      {"configurations twice", Application("<Group><Configs/>\n<Configs/></Group>"),
       ":3: <Configs>" + isSecond},
      {"levels of options",
       Application("<Options><Set Header='s' />\n<Config Header='x' ><Property Header='p' "
                   "/></Config>\n<Config Header='y' ><Set Header='s' ><Config Header='z' />"
                   "</Set></Config></Options>"),
       ":2: <Set> \"s\" is at a wrong level of <Options>\n"
       ":3: <Property> \"p\" is at a wrong level of <Options>\n"
       ":4: <Config> \"z\" is at a wrong level of <Options>"},
      {"options without a name",
       Application("<Options><Config ><X/></Config>\n<Config Header='x' ><Set/>\n<Set Header='s' >"
                   "<Section/></Set></Config></Options><Configs><Config/></Configs>"),
       ":2: <Config>" + isUnnamed + "\n:3: <Set>" + isUnnamed + "\n:4: <Section>" + isUnnamed +
           "\n:4: <Config>" + isUnnamed},
      {"another root", "\n<Group Header='one' ></Group>",
       ":2: the root is <Group>, the project names <Application>"},
      {"the root of another application", "<AutoApp Header='one' ></AutoApp>",
       ":1: the root is <AutoApp>, the project names <Application>"},
      {"a root in another letter case", "<APPLICATION Header='one' ></APPLICATION>"},
      {"content of an application",
       Project("<Application Header='two' Extern='two.tapp' ><!-- c -->\n<X/><C/></Application>"),
       ":3: <X> is content of <Application> \"two\", which is read from its own file", kProject},
      {"an application twice", Project("<Application Header='1' Extern='.\\one.tapp' />"),
       ":2: <Application> \"1\" names a file that has already been read", kProject},
      {"a configuration that is not there",
       "<Application Header='one' Config='Gone' >\n<Configs><Config Header='Fast' /></Configs>"
       "</Application>",
       ":1: <Application> \"one\" names the configuration \"Gone\", which it does not have"},
      {"a configuration in another letter case",
       "<Application Header='one' Config='fast' ><Configs><Config Header='Fast' /></Configs>"
       "</Application>"},
      {"the active application is not there",
       "\n<Project ActiveApp='two' ><Application Header='one' Extern='one.tapp' />\n</Project>",
       ":2: the application \"two\", which is the active one, is missing", kProject},
      {"the active application has another label in its own file",
       "<Project ActiveApp='uno' ><Application Header='uno' Extern='one.tapp' /></Project>", "",
       kProject},
      {"a project of another type", "\n<Group ></Group>",
       ":2: the root is <Group>, not that of a project", kProject},
      {"types that are unknown, and what belongs to others",
       Application("<X><C Header='c' /></X><C Header='d' ><X Path='x' /></C>" +
                   Options("<Proprety/><P><Group/><Set/></P><P Value='x'>t</P>") +
                   "<C><Dependencies Header='Dependencies' ><Header Header='x.h' /></Dependencies>"
                   "<PropState>x</PropState><Info><X/></Info></C><Configs><X/></Configs>")},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    EditedFixture world;
    world.AddFile(row.file, row.text);
    ASSERT_EQ(world.OpenDemo(), 1);
    EXPECT_EQ(ToText(world.model->Protection().GetDamage(), row.file), row.damage);
    world.Edit();
    world.model->SaveProject();
    EXPECT_EQ(world.FileText(row.file + ".bak"), row.damage.empty() ? "(none)" : row.text);
  }
}

TEST(Structure, AProjectThatCannotBeOpenedKeepsWhatIsWrong) {
  const Row rows[] = {
      {"an application in itself", Application("<Application Header='x' Extern='one.tapp' />"),
       ":2: <Application> \"x\" names a file that has already been read"},
      {"cut in an application", "<Project ><Application Header='x'",
       ":1: incomplete tag of <Application>; nothing after it is read", kProject},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    EditedFixture world;
    world.AddFile(row.file, row.text);
    world.model->Protection().SetDamageProtection(true);
    EXPECT_EQ(world.OpenDemo(), 0);
    EXPECT_TRUE(world.model->Protection().GetDamage().empty());
    world.AddNext();
    EXPECT_EQ(world.model->OpenProject("/p/next.tprj", 1), 1);  // opened in place of the
                                                                // placeholder
    EXPECT_EQ(ToText(world.model->Protection().GetFailedDamage(), row.file), row.damage);
    EXPECT_EQ(world.model->OpenProject("/p/next.tprj", 0), 1);
    EXPECT_TRUE(world.model->Protection().GetFailedDamage().empty());
  }
}

TEST(Structure, AnApplicationThatIsAddedMayBeOfAnotherType) {
  EditedFixture world;
  ASSERT_EQ(world.OpenDemo(), 1);
  world.AddFile("/p/auto.tapp", "<AutoApp Header='auto' ></AutoApp>");
  world.AddFile("/p/group.tapp", "<Group Header='group' ></Group>");
  world.model->SetCurrentNode(&world.model->GetProjectRoot());
  ASSERT_EQ(world.model->Items().AddExistingItem("/p/auto.tapp", nullptr), 1);
  EXPECT_EQ(world.Node("auto")->NameView(), "AutoApp");
  EXPECT_TRUE(world.model->Protection().GetDamage().empty());
  world.model->SetCurrentNode(&world.model->GetProjectRoot());
  ASSERT_EQ(world.model->Items().AddExistingItem("/p/group.tapp", nullptr), 1);
  EXPECT_EQ(ToText(world.model->Protection().GetDamage(), "/p/group.tapp"),
            ":1: the root is <Group>, the project names <Application>");
}

TEST(Structure, ANodeWithContentBecomesNoLeaf) {
  EditedFixture world;
  world.AddFile(kOne, Application("<Group Header='g' ><C Header='c' /></Group>"));
  ASSERT_EQ(world.OpenDemo(), 1);
  for (const auto& [header, name] : {std::pair{"g", "Group"}, std::pair{"c", "Header"}}) {
    CXmlNode* node = world.Node(header);
    world.model->SetCurrentNode(node);
    world.components.Properties().SetPropertyValue(node->GetName().c_str(), "General", "Type",
                                                   "Header");
    world.model->Options().StoreChangedProperty("General.Type");
    EXPECT_EQ(node->NameView(), name);
  }
}

TEST(Structure, ConflictMarksAreNamedInAValueAndNotInAComment) {
  EditedFixture world;
  world.AddFile(kOne, Application("<C Header='a\n<<<<<<< ours\nb\n=======\nc\n>>>>>>> theirs\n' />"
                                  "<!-- title\n=======\n-->\n<!-- x\n--><!--\n||||||| \n-->"
                                  "<C Header='\n========\n=======x\n|||||||' />"));
  ASSERT_EQ(world.OpenDemo(), 1);
  const std::string conflict = ": a merge conflict that was not resolved";
  EXPECT_EQ(ToText(world.model->Protection().GetDamage(), kOne),
            ":3" + conflict + "\n:5" + conflict + "\n:7" + conflict);
}

}  // namespace
}  // namespace tarn::test
