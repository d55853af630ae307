// Reports of tools about their outputs.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "output/MessageTable.h"
#include "platform/text/Text.h"
#include "project/ProjectFixture.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

struct ReachRow {
  const char* name;
  const char* content;  // of the application, whose own output is app.elf
  const char* output;   // as reported
  const char* reached;  // labels of the nodes found
};

constexpr ReachRow kReachRows[] = {
    {"one node", "<C Header='a' OutputFile='a.o' /><C Header='b' OutputFile='b.o' />", "b.o", "b"},
    {"in another case", "<C Header='a' OutputFile='Out/A.o' />", "out/a.O", "a"},
    {"no node", "<C Header='a' OutputFile='a.o' />", "x.o", ""},
    {"the last of several",
     "<C Header='a' OutputFile='X.o' /><Group Header='g' ><C Header='b' "
     "OutputFile='X.o' /></Group><C Header='c' OutputFile='c.o' />",
     "x.o", "b"},
    {"the one with the exact name",
     "<C Header='a' OutputFile='x.o' /><C Header='b' OutputFile='X.o' />", "x.o", "a"},
    {"not below a node with the same output",
     "<C Header='a' OutputFile='x.o' /><Group Header='g' OutputFile='x.o' ><C "
     "Header='b' OutputFile='x.o' /></Group>",
     "x.o", "g"},
    {"below a node with another output",
     "<Group Header='g' OutputFile='lib.a' ><C Header='b' OutputFile='x.o' /></Group>", "x.o", "b"},
    {"the application itself", "<C Header='b' OutputFile='x.o' />", "app.elf", "app"},
    {"nothing below an application with the same output", "<C Header='b' OutputFile='app.elf' />",
     "app.elf", "app"},
    {"an excluded node", "<C Header='a' OutputFile='a.o' Exclude='Yes' />", "a.o", "a"},
    {"an empty output is one like others",
     "<Group Header='g' OutputFile='' /><C Header='a' OutputFile='a.o' />", "", "g"},
};

std::string LabelsOfBuilt(const CXmlNode& node) {
  std::string labels;
  if (node.GetAttr("LastBuilt") != nullptr) labels = OrEmpty(node.GetAttrValue("Header"));
  for (int i = 0; i < node.GetChildCount(); ++i) {
    const std::string below = LabelsOfBuilt(*node.GetChild(i));
    if (!below.empty()) labels += (labels.empty() ? "" : " ") + below;
  }
  return labels;
}

TEST(BuildInfo, AReportReachesTheLastNodeOfItsOutput) {
  for (const ReachRow& row : kReachRows) {
    ProjectFixture world;
    world.AddFile("/p/demo.tprj", "<Project><Application Extern=\"demo.tapp\" /></Project>");
    world.AddFile("/p/demo.tapp",
                  "<Application Header=\"app\" >" + std::string(row.content) + "</Application>");
    ASSERT_EQ(world.OpenDemo(), 1) << row.name;
    world.Application()->SetAttrValue("OutputFile", "app.elf");
    const std::string report = "<I><F Header=\"" + std::string(row.output) + "\" Date=\"7\" /></I>";
    EXPECT_EQ(world.builder->Information().SetBuildInfo("", report.c_str()), 1) << row.name;
    EXPECT_EQ(LabelsOfBuilt(world.model->GetProjectRoot()), row.reached) << row.name;
    // Neither nodes of another application nor records without a node are found.
    world.model->CloseProject();
    EXPECT_EQ(world.builder->Information().SetBuildInfo("", report.c_str()), 0) << row.name;
  }
}

struct RecordRow {
  const char* name;
  const char* node;    // attributes
  const char* record;  // attributes
  const char* info;
  const char* lastBuilt;
  const char* desc;
};

constexpr RecordRow kRecordRows[] = {
    {"all", "Path=\"/p/m.c\" ", "Infos=\"12 bytes\" Date=\"0\" ", " 12 bytes", "0",
     "file \t /p/m.c\noutput \t\t a.o\ninfo \t 12 bytes\ndate \t\t 01/01/70 00:00:00"},
    {"excluded, in any case", "Exclude=\"yes\" LinkExclude=\"YES\" ", "Infos=\"i\" Date=\"0\" ",
     " [Excluded from Build] [Excluded from Link] i", "0",
     " \t \noutput \t\t a.o\ninfo \t i\ndate \t\t 01/01/70 00:00:00"},
    {"not excluded", "Exclude=\"No\" LinkExclude=\"\" ", "Infos=\"i\" Date=\"0\" ", " i", "0",
     " \t \noutput \t\t a.o\ninfo \t i\ndate \t\t 01/01/70 00:00:00"},
    {"a configuration", "Config=\"Debug\" ", "Infos=\"i\" Date=\"0\" ", " i", "0",
     " \t \noutput \t\t a.o\nconfig \t Debug\ninfo \t i\ndate \t\t 01/01/70 00:00:00"},
    {"no information and no date", "", "", " ", "",
     " \t \noutput \t\t a.o\ninfo \t \ndate \t\t 01/01/70 00:00:00"},
    {"a date that is none", "", "Infos=\"i\" Date=\"soon\" ", " i", "soon",
     " \t \noutput \t\t a.o\ninfo \t i\ndate \t\t 01/01/70 00:00:00"},
};

TEST(BuildInfo, ARecordIsShownAtItsNode) {
  setenv("TZ", "UTC", 1);
  for (const RecordRow& row : kRecordRows) {
    ProjectFixture world;
    SetMessageText(kRowLabelPath, "file");
    SetMessageText(kRowLabelOutputFile, "output");
    SetMessageText(kRowLabelConfiguration, "config");
    SetMessageText(kRowLabelInformation, "info");
    SetMessageText(kRowLabelDate, "date");
    world.AddDemo("<C Header=\"m\" OutputFile=\"a.o\" " + std::string(row.node) + "/>");
    ASSERT_EQ(world.OpenDemo(), 1) << row.name;
    world.builder->Information().SetBuildInfo(
        "", ("<I><F Header=\"a.o\" " + std::string(row.record) + "/></I>").c_str());
    const CXmlNode& node = *world.Node("m");
    EXPECT_STREQ(node.GetAttrValue("Info"), row.info) << row.name;
    EXPECT_STREQ(node.GetAttrValue("LastBuilt"), row.lastBuilt) << row.name;
    EXPECT_STREQ(node.GetAttrValue("Desc"), row.desc) << row.name;
    // A stale node says so and keeps its date.
    EXPECT_EQ(world.builder->Information().RecordBuildInfo(world.Node("m"), nullptr, nullptr), 1);
    EXPECT_STREQ(node.GetAttrValue("Info"), " ") << row.name;
    EXPECT_STREQ(node.GetAttrValue("LastBuilt"), row.lastBuilt) << row.name;
    EXPECT_EQ(std::string(row.desc).rfind(node.GetAttrValue("Desc"), 0), 0u) << row.name;
  }
}

TEST(BuildInfo, DependenciesAreReplacedAndGetTheTypesOfTheirFiles) {
  ProjectFixture world;
  world.components.Properties().defaults["Target.Internal.C-Ext"] = "c;S";
  world.AddDemo("<C Header=\"m\" OutputFile=\"a.o\" /><C Header=\"n\" OutputFile=\"b.o\" />");
  ASSERT_EQ(world.OpenDemo(), 1);
  const auto report = [&](const char* text) {
    world.builder->Information().SetBuildInfo("", text);
    CXmlDisplayOptions options = g_xmlDisplayOptions;
    options.newline = false;
    const CXmlNode* list = world.Node("m")->FindChild("Dependencies");
    return list == nullptr ? std::string("none") : list->ToString(options);
  };
  EXPECT_EQ(report("<I><F Header=\"a.o\" ><D Header=\"a.HPP\" t=\"1\" /><D Header=\"x.s\" /><D "
                   "Header=\"y.inc\" ><E/></D><D/></F></I>"),
            "<Dependencies Header=\"Dependencies\" ><Header Header=\"a.HPP\" t=\"1\" /><C "
            "Header=\"x.s\" /><D Header=\"y.inc\" ><E/></D><D/></Dependencies>");
  // A record of another output leaves the list unchanged; a record without files removes it.
  EXPECT_NE(report("<I><F Header=\"b.o\" /></I>"), "none");
  EXPECT_EQ(report("<I><F Header=\"a.o\" Date=\"3\" /></I>"), "none");
  // Two records in one report, which is truncated after the first file of the second one.
  EXPECT_EQ(report("<I><F Header=\"b.o\" Date=\"4\" /><F Header=\"a.o\" Date=\"5\" ><D "
                   "Header=\"z.h\" /><D "),
            "<Dependencies Header=\"Dependencies\" ><Header Header=\"z.h\" /><D/></Dependencies>");
  EXPECT_STREQ(world.Node("n")->GetAttrValue("LastBuilt"), "4");
  EXPECT_STREQ(world.Node("m")->GetAttrValue("LastBuilt"), "5");
  // Neither the dates nor the lists are written to disk.
  world.Touch();
  world.model->CloseProject();
  const std::string saved = world.FileText("/p/demo.tapp");
  for (const char* word : {"Dependencies", "LastBuilt", "Info", "Desc"}) {
    EXPECT_EQ(saved.find(word), saved.npos) << word;
  }
}

// The index of outputs must be updated when publishing changes them.
TEST(BuildInfo, AReportFindsAnOutputThatWasChangedSinceTheLastOne) {
  ProjectFixture world;
  world.AddDemo("<C Header=\"m\" />");
  FakePropertyManager& properties = world.components.Properties();
  ASSERT_EQ(world.OpenDemo(), 1);
  for (const char* output : {"one.o", "two.o"}) {
    properties.defaults["C.Build.OutputFile"] = output;
    world.model->Derived().ResetNodeCache(*world.Node("m"), false);
    world.model->PublishAll();
    const std::string date = output;
    world.builder->Information().SetBuildInfo(
        "", ("<I><F Header=\"/p/" + date + "\" Date=\"" + date + "\" /></I>").c_str());
    EXPECT_STREQ(world.Node("m")->GetAttrValue("LastBuilt"), output);
  }
}

}  // namespace
}  // namespace tarn::test
