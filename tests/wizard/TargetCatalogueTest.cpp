#include "wizard/TargetCatalogue.h"

#include <gtest/gtest.h>

#include "support/MemoryFileSystem.h"
#include "xml/XmlNode.h"

namespace tarn {
namespace {

std::string Text(const CXmlNode& node) {
  CXmlDisplayOptions inOneLine = g_xmlDisplayOptions;
  inOneLine.newline = false;
  inOneLine.quoteChar = '\'';
  return node.ToString(inOneLine);
}

class TargetCatalogueTest : public ::testing::Test {
 protected:
  // Writes a registry, with @ in place of the key of all packages.
  void Register(std::string_view registry) {
    std::string text;
    for (const char c : registry)
      text += c == '@' ? "Software\\Corvane\\Tarn7\\Targets" : std::string(1, c);
    files.AddFile("/machine/registry.ini", text);
  }
  std::string Packages() const {
    std::string text;
    for (const TargetPackage& each : catalogue.FindPackages()) {
      text += each.label + "=" + each.path + "\n";
    }
    return text;
  }
  // Returns the children of the root.
  std::string Tree() const {
    std::string text;
    const auto root = catalogue.Read();
    for (const CXmlNode* child : root->GetChildren()) text += Text(*child) + "\n";
    return text;
  }

  testing::MemoryFileSystem files;
  Settings settings{files, {"/machine", "/user", "/data"}};
  TargetCatalogue catalogue{files, settings, "/app/targets/"};
};

TEST_F(TargetCatalogueTest, PackagesComeFromTheRegistryWithTheirSecondAndThirdChoices) {
  const std::string tooLong(260, 'x');
  const std::string longest(259, 'x');
  const struct {
    const char* fault;
    std::string registry;
    std::string packages;
  } rows[] = {
      {"order lost, or a key named by what it holds",
       "[@\\b]\nNickName=B\nXmlPath=/b\n[@\\a]\nNickName=A\nXmlPath=/a\n", "B=/b\nA=/a\n"},
      {"hidden package shown",
       "[@\\b]\nNickName=B\nHidden=yES\n[@\\a]\nNickName=A\nXmlPath=/a\nHidden=No\n", "A=/a\n"},
      {"name not taken for the label", "[@\\b]\nName=N\nXmlPath=/b\n", "N=/b\n"},
      {"name not taken for the path", "[@\\b]\nName=/n\nNickName=B\n", "B=/n\n"},
      {"label not taken for the path", "[@\\b]\nNickName=/l\n", "/l=/l\n"},
      {"empty label counted as missing", "[@\\b]\nNickName=\nName=N\nXmlPath=/b\n", "=/b\n"},
      {"empty path not replaced", "[@\\b]\nNickName=B\nXmlPath=\n", "B=B\n"},
      {"value beyond its buffer cut instead of missing",
       "[@\\b]\nNickName=" + tooLong + "\nName=N\nXmlPath=" + tooLong + "\n", "N=N\n"},
      {"longest value missing", "[@\\b]\nNickName=" + longest + "\nXmlPath=/b\n",
       longest + "=/b\n"},
      {"package without values left out", "[@\\b]\n", "=\n"},
      {"key below a package taken for one", "[@\\b\\deep]\nNickName=D\n", "=\n"},
      {"installation used beside a registry with hidden packages only", "[@\\b]\nHidden=Yes\n", ""},
  };
  files.AddFile("/app/targets/own.xml", "<Targets/>");
  for (const auto& row : rows) {
    Register(row.registry);
    EXPECT_EQ(Packages(), row.packages) << row.fault;
  }
}

TEST_F(TargetCatalogueTest, AMachineWithoutPackagesHasThoseOfTheInstallation) {
  EXPECT_EQ(Packages(), "");
  files.AddFile("/app/targets/b.xml", "<Targets Header='Bees' />");
  files.AddFile("/app/targets/a.XML", "<Targets/>");
  files.AddFile("/app/targets/README.md", "");
  files.AddFolder("/app/targets/c.xml");
  EXPECT_EQ(Packages(), "a=/app/targets/a.XML\nb=/app/targets/b.xml\n");
  EXPECT_EQ(Tree(), "<Targets Header='a' />\n<Targets Header='Bees' Header='b' />\n");
}

TEST_F(TargetCatalogueTest, FilesAreMergedAsFarAsTheyCanBeRead) {
  const struct {
    const char* fault;
    std::string file;
    std::string tree;
  } rows[] = {
      {"label not added", "<Targets><Target Header='t' /></Targets>",
       "<Targets Header='L' ><Target Header='t' /></Targets>\n"},
      {"label put in front of the file's own", "<Targets Header='own' />",
       "<Targets Header='own' Header='L' />\n"},
      {"hidden child, or one behind it, kept",
       "<Targets><Target Hidden='YES' /><Targets Hidden='Yes' /><Target Hidden='no' /></Targets>",
       "<Targets Header='L' ><Target Hidden='no' /></Targets>\n"},
      {"nickname ignored, or an empty one used",
       "<Targets><Target Header='t' Nickname='n' /><Target Header='u' Nickname='' /></Targets>",
       "<Targets Header='L' ><Target Header='n' Nickname='n' />"
       "<Target Header='u' Nickname='' /></Targets>\n"},
      {"rules of a child applied to what is below it",
       "<Targets><Targets><Target Header='t' Nickname='n' Hidden='Yes' /></Targets></Targets>",
       "<Targets Header='L' ><Targets><Target Header='t' Nickname='n' Hidden='Yes' /></Targets>"
       "</Targets>\n"},
      {"the registry's spelling used in the file", "<Targets><Target NickName='n' /></Targets>",
       "<Targets Header='L' ><Target NickName='n' /></Targets>\n"},
      {"rest of a damaged file lost, or what is in front of the damage",
       "<Targets><Target Header='t' /><Target Header='u' ></Wrong></Targets>",
       "<Targets Header='L' ><Target Header='t' /><Target Header='u' /></Targets>\n"},
      {"text behind a zero byte read", std::string("<Targets><Target/>\0<Target/></Targets>", 38),
       "<Targets Header='L' ><Target/></Targets>\n"},
      {"another root refused", "<Chips><Target/></Chips>",
       "<Chips Header='L' ><Target/></Chips>\n"},
      {"file without an element shown", "nothing", "\n"},
  };
  Register("[@\\one]\nNickName=L\nXmlPath=/one\n[@\\none]\nNickName=N\nXmlPath=/none\n");
  for (const auto& row : rows) {
    files.AddFile("/one", row.file);
    EXPECT_EQ(Tree(), row.tree) << row.fault;
    const bool isDamaged = row.file == "nothing" || row.file.find("Wrong") != row.file.npos ||
                           row.file.find('\0') != row.file.npos;
    EXPECT_EQ(catalogue.Read()->GetAttr("Problem") != nullptr, isDamaged) << row.fault;
  }
  files.AddFile("/one", "<Targets>\n<Target/>\n");
  EXPECT_STREQ(catalogue.Read()->GetAttrValue("Problem"), "/one:3: the file ends inside <Targets>");
  const auto root = catalogue.Read();
  EXPECT_EQ(root->GetName() + " " + root->GetAttrValue("Header"), "Targets Targets");
}

TEST_F(TargetCatalogueTest, TwoPackagesOfOneLabelAreBothShown) {
  files.AddFile("/one", "<Target Header='1' />");
  Register("[@\\a]\nNickName=L\nXmlPath=/one\n[@\\b]\nNickName=L\nXmlPath=/one\n");
  EXPECT_EQ(Tree(), "<Target Header='1' Header='L' />\n<Target Header='1' Header='L' />\n");
}

// Returns "text|datasheet|wizard|script|configuration", with a dash for absent values.
std::string Show(const TargetDescription& description) {
  std::string text = description.text;
  for (const auto& each :
       {description.datasheet, description.wizard, description.script, description.configName}) {
    text += "|" + each.value_or("-");
  }
  return text;
}

TEST(TargetDescription, ReadsEachChildByItsOwnRule) {
  const struct {
    const char* fault;
    const char* children;
    const char* shown;
  } rows[] = {
      {"absent and empty confused", "", "|-|-|-|-"},
      {"empty link, script or configuration lost",
       "<Datasheet></Datasheet><Wizard></Wizard><![CDATA[]]><ConfigName></ConfigName>", "||-||"},
      {"line breaks not made", "<Micro_Description>a\\nb\\\\nc\\td</Micro_Description>",
       "a\nb\\\nc\\td|-|-|-|-"},
      {"link not cleaned", "<Datasheet>\n  http:\n//x /y \n</Datasheet>", "|http://x /y |-|-|-"},
      {"script, wizard or configuration changed",
       "<Wizard> w </Wizard><![CDATA[ print('a\\n') ]]><ConfigName>Debug</ConfigName>",
       "|-| w | print('a\\n') |Debug"},
      {"first of two taken",
       "<ConfigName>a</ConfigName><Wizard>w</Wizard><ConfigName>b</ConfigName><Wizard></Wizard>",
       "|-|w|-|b"},
      {"names of another case taken", "<datasheet>x</datasheet><cdata>y</cdata>", "|-|-|-|-"},
  };
  for (const auto& row : rows) {
    CXmlNode target;
    CXmlParseInfo parseInfo;
    const std::string text = "<Target>" + std::string(row.children) + "</Target>";
    ASSERT_NE(target.Load(text, parseInfo), nullptr) << row.fault;
    EXPECT_EQ(Show(DescribeTarget(target)), row.shown) << row.fault;
  }
}

}  // namespace
}  // namespace tarn
