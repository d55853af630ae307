// Projects whose files were damaged when they were read.

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

using Json = nlohmann::json;
using Words = std::vector<std::string>;

// Inserts text between two sources, on the second line.
void DamageApplication(CliProject& project) {
  std::string text = project.Read("app.tapp");
  project.Write("app.tapp", text.insert(text.find("<C Header=\"b.c\""), "left over"));
}

constexpr const char* kNotice = "app.tapp:2: stray text \"left over\"\n";

TEST(CliDamage, NothingBuildsOrChangesADamagedProjectUnlessTheUserSaysSo) {
  CliProject project;
  project.Trust();
  DamageApplication(project);
  project.Write("src/d.c", "int d;\n");
  project.Write("save.lua",
                "tarn.SavePropertyValue('C', 'Compiler', 'Defines', 'X')\ntarn.ProjectSave()\n");
  project.Write("build.lua", "pcall(host.build)\n");
  project.Write("config.lua", "pcall(host.add_configuration, 'Other')\n");
  const std::string bytes = project.Read("app.tapp");
  const Words commands[] = {
      {"build"},
      {"rebuild"},
      {"clean"},
      {"add", "src/d.c"},
      {"move", "src/a.c", "app"},
      {"rename", "src/a.c", "first"},
      {"remove", "src/a.c"},
      {"select", "app"},
      {"options", "set", "Compiler.Defines", "X"},
      {"options", "reset", "Compiler.Defines"},
      {"config", "add", "Other"},
      {"config", "select", "Fast"},
      {"run", "save.lua"},
      {"run", "build.lua"},
      {"run", "config.lua"},
  };
  for (const Words& words : commands) {
    const auto answer = project.Run(words);
    EXPECT_EQ(answer.code, 3) << words.front() << answer.out << answer.err;
    EXPECT_TRUE(Has(answer.err, kNotice)) << answer.err;
    EXPECT_TRUE(Has(answer.err, "--damaged-ok")) << answer.err;
    EXPECT_EQ(answer.out, "") << words.front();
    EXPECT_EQ(project.Read("app.tapp"), bytes) << words.front();
  }
  EXPECT_FALSE(project.Exists("build"));
  EXPECT_FALSE(project.Exists("app.tapp.bak"));
  EXPECT_EQ(project.Run({"build", "--damaged-ok"}).code, 0);
  EXPECT_TRUE(project.Exists("build/Standard/app"));
  EXPECT_EQ(project.Run({"run", "build.lua", "--damaged-ok"}).code, 0);
  EXPECT_EQ(project.Run({"clean", "--damaged-ok", "-q"}).err,
            std::string(kNotice) +
                "tarn: Only part of the project was read: the locations above are damaged.\n");
}

TEST(CliDamage, LookingWorksAndNamesThePlaces) {
  CliProject project;
  ASSERT_EQ(project.Run({"build"}).code, 0);
  EXPECT_EQ(Json::parse(project.Out({"tree", "--json"}))["damage"], Json::array());
  DamageApplication(project);
  const Words commands[] = {
      {"status"},         {"tree"}, {"options", "list"}, {"options", "get", "Compiler.Defines"},
      {"config", "list"}, {"log"},  {"report"},          {"export", "sarif", "-o", "-"},
  };
  for (Words words : commands) {
    const auto answer = project.Run(words);
    EXPECT_EQ(answer.code, 0) << words.front() << answer.err;
    EXPECT_TRUE(answer.err.starts_with(kNotice)) << words.front() << answer.err;
    if (words.front() == "export") continue;
    words.emplace_back("--json");
    Json document = Json::parse(project.Out(words), nullptr, false);
    if (document.is_array()) document = document[0];
    EXPECT_EQ(document["damage"][0]["line"], 2) << words.front() << document;
    EXPECT_EQ(document["damage"][0]["file"], project.PathOf("app.tapp"));
  }
  for (const char* kind : {"sarif", "compile-commands"}) {
    project.ExpectRefusal({"export", kind, "-o", "x"}, 3, "--damaged-ok");
    EXPECT_FALSE(project.Exists("x")) << kind;
    project.Out({"export", kind, "-o", kind, "--damaged-ok"});
    EXPECT_TRUE(project.Exists(kind));
  }
  const auto refused = project.Run({"build", "--json"});
  EXPECT_EQ(refused.code, 3);
  const Json document = Json::parse(refused.out, nullptr, false);
  EXPECT_EQ(document["result"], "refused");
  EXPECT_EQ(document["damage"][0]["text"], "stray text \"left over\"");
}

TEST(CliDamage, AConflictMarkerIsNoTypeOfNode) {
  CliProject project;
  std::string text = project.Read("app.tapp");
  project.Write("app.tapp", text.insert(text.find("<C Header=\"b.c\""), "\n<<<<<<< HEAD\n"));
  const auto answer = project.Run({"check"});
  EXPECT_TRUE(Has(answer.out + answer.err, "merge conflict")) << answer.out;
  EXPECT_FALSE(Has(answer.out, "is not a type")) << answer.out;
}

TEST(CliDamage, WhatWasNotReadIsCopiedBeforeTheFileIsWritten) {
  CliProject project;
  std::string text = project.Read("app.tapp");
  text.insert(text.find("<C Header=\"c.c\""), "<?keep me?>");
  project.Write("app.tapp", text);
  EXPECT_EQ(project.Out({"options", "set", "Compiler.Defines", "X", "--damaged-ok"}), "");
  EXPECT_EQ(project.Read("app.tapp.bak"), text);
  EXPECT_EQ(project.Run({"build"}).code, 0);
}

TEST(CliDamage, ATextThatIsKeptElsewhereIsCopiedByEveryWayToWriteTheFile) {
  CliProject project;
  std::string text = project.Read("app.tapp");
  text.insert(text.find("<C Header=\"a.c\""), "left over");
  project.Write("app.tapp", text);
  project.Out({"options", "set", "Compiler.Defines", "X", "--damaged-ok"});
  EXPECT_EQ(project.Read("app.tapp.bak"), text);
  const std::string edited = project.Read("app.tapp");
  ASSERT_TRUE(Has(edited, "left over"));
  project.Out({"undo", "--damaged-ok"});
  EXPECT_FALSE(Has(project.Read("app.tapp"), "Defines"));
  EXPECT_EQ(project.Read("app.tapp.bak2"), edited);
}

TEST(CliDamage, AnUndoOrRedoOfNothingNamesTheDamage) {
  for (const char* command : {"undo", "redo"}) {
    CliProject project;
    DamageApplication(project);
    const auto answer = project.Run({command});
    EXPECT_EQ(answer.code, 2) << command;
    EXPECT_TRUE(answer.err.starts_with(kNotice)) << answer.err;
  }
}

TEST(CliDamage, AProjectThatHasLostItsApplicationIsNotBuiltAndAnEmptyOneIs) {
  CliProject project;
  std::string text = project.Read("demo.tprj");
  const std::size_t start = text.find("<Application");
  project.Write("demo.tprj", text.erase(start, text.find("</Project>") - start));
  project.ExpectRefusal(
      {"build"}, 3, "demo.tprj:2: the application \"app\", which is the active one, is missing");
  EXPECT_TRUE(Has(project.Run({"check"}).out, "which is the active one, is missing"));
  project.Write("demo.tprj", text.erase(text.find("ActiveApp"), 15));
  EXPECT_TRUE(Has(project.Out({"build"}), "no application to build"));
  EXPECT_TRUE(Has(project.Out({"status"}), "no application"));
}

// Either the truncation is reported, or nothing is missing; a single damaged file that is added is
// reported too.
TEST(CliDamage, ACutProjectIsNeverBuilt) {
  CliProject project;
  const std::string bytes = project.Read("app.tapp");
  for (std::size_t end = 0; end < bytes.size(); end += bytes.size() / 7) {
    project.Write("app.tapp", bytes.substr(0, end));
    const auto answer = project.Run({"build"});
    EXPECT_EQ(answer.code, 3) << end << answer.out;
    EXPECT_TRUE(Has(answer.err, "app.tapp:")) << answer.err;
  }
  project.Write("app.tapp", bytes);
  project.Write("other.tapp", bytes.substr(0, bytes.size() - 20));
  project.ExpectRefusal({"add", ".", "other.tapp"}, 3, "other.tapp:2: ");
  EXPECT_FALSE(Has(project.Read("demo.tprj"), "other"));
  project.Out({"add", ".", "other.tapp", "--damaged-ok"});
  EXPECT_TRUE(Has(project.Read("demo.tprj"), "other"));
}

TEST(CliDamage, ASourceThatHasNoEffectWhereItIsKeepsTheProjectFromABuild) {
  CliProject project;
  std::string text = project.Read("app.tapp");
  project.Write("app.tapp", text.insert(text.find("</Options>"), "<C Header=\"d.c\" />"));
  project.ExpectRefusal({"build"}, 3, "app.tapp:2: <C> \"d.c\" is in <Options>");
}

TEST(CliDamage, ARefusalIsADocumentForPrograms) {
  const struct {
    const char* name;
    void (*damage)(CliProject& project);
    Words words;
    const char* error;
    int places;
  } rows[] = {
      {"a cut project",
       [](CliProject& project) {
         const std::string text = project.Read("demo.tprj");
         project.Write("demo.tprj", text.substr(0, text.find("Extern")));
       },
       {"build"},
       "demo.tprj can't be opened",
       1},
      {"no project", [](CliProject& /*project*/) {}, {"tree", "gone"}, "gone", 0},
      {"an incomplete installation",
       [](CliProject& project) { project.Point("TARN_ROOT", "src"); },
       {"options", "list"},
       "This installation is incomplete",
       0},
  };
  for (const auto& row : rows) {
    CliProject project;
    row.damage(project);
    Words words = row.words;
    words.emplace_back("--json");
    const auto answer = project.Run(words);
    EXPECT_EQ(answer.code, 3) << row.name;
    const Json document = Json::parse(answer.out, nullptr, false);
    ASSERT_TRUE(document.is_object()) << row.name << answer.out << answer.err;
    EXPECT_EQ(document["result"], "refused");
    EXPECT_EQ(document["exitCode"], 3);
    EXPECT_TRUE(Has(document["error"], row.error)) << document;
    EXPECT_EQ(document.contains("damage") ? document["damage"].size() : 0U, row.places) << document;
    EXPECT_EQ(Has(answer.err, "demo.tprj:2: "), row.places > 0) << answer.err;
  }
}

}  // namespace
}  // namespace tarn::host
