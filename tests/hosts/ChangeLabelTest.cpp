#include "hosts/core/ChangeLabel.h"

#include <gtest/gtest.h>

#include "platform/text/Text.h"

namespace tarn::host {
namespace {

// Returns an application in the file format: one element per line, indented by tabs.
std::string App(const std::string& content, const std::string& attributes = "Header=\"app\"") {
  std::string text = "<Application " + attributes + " Path=\".\\app.tapp\" >\n";
  for (const std::string_view line : Split(content, '\n')) {
    if (!line.empty()) text += "\t" + std::string(line) + "\n";
  }
  return text + "</Application>";
}

TEST(ChangeLabel, NamesWhatAUserDid) {
  const std::string a = "<C Header=\"a.c\" Path=\".\\a.c\" />\n";
  const std::string b = "<C Header=\"b.c\" Path=\".\\b.c\" />\n";
  const std::string open = "<Group Header=\"G\" >\n";
  const std::string g = open + "\t" + a + "\t" + b + "</Group>\n";
  const auto options = [](const std::string& properties) {
    return "<Options>\n\t<Config Header=\"Standard\" >\n\t\t<Section Header=\"S\" >\n" +
           properties + "\t\t</Section>\n\t</Config>\n</Options>\n";
  };
  const std::string x = "\t\t\t<Property Header=\"X\" Value=\"1\" />\n";
  const std::string y = "\t\t\t<Property Header=\"Y\" Value=\"1\" />\n";
  const std::string debug = "<Configs>\n\t<Config Header=\"Debug\" />\n</Configs>\n";
  const auto with = [](std::string text, const char* from, const char* to) {
    return ReplaceAll(text, from, to);
  };
  const struct {
    std::string before, after;
    const char* forward;
    const char* back;
  } rows[] = {
      {App(""), App(a), "Add a.c", "Remove a.c"},
      {App(a), App(a + "<C Header=\"c&quot;\" Path=\"c\" />\n"), "Add c\"", "Remove c\""},
      {App(""), App(a + b), "Add 2 files", "Remove 2 files"},
      {App(a), App(a + g), "Add G", "Remove G"},
      {App(a), App(a + g + with(g, "\"G\"", "\"H\"")), "Add 2 groups", "Remove 2 groups"},
      {App(a), App(a + g + b), "Add 2 items", "Remove 2 items"},
      {App(a + b), App(with(a, "\"a.c\"", "\"x\"") + b), "Rename a.c to x", "Rename x to a.c"},
      {App(g), App(with(g, "\"G\"", "\"H\"")), "Rename G to H", "Rename H to G"},
      {App(a), App(a, "Header=\"b\""), "Rename app to b", "Rename b to app"},
      {App(a + b), App(b + a), "Move a.c", "Move b.c"},
      {App(b + open + "\t" + a + "</Group>\n"), App(g), "Move b.c", "Move b.c"},
      {App(g + a), App(a + g), "Move a.c", "Move a.c"},
      {App(options("")), App(options(x)), "Set S.X", "Reset S.X"},
      {App(a), App(options(x) + a), "Set S.X", "Reset S.X"},
      {App(options(x)), App(options(with(x, "\"1\"", "\"2\""))), "Set S.X", "Set S.X"},
      {App(options("")), App(options(x + y)), "Change 2 options", "Change 2 options"},
      {App(a), App(with(a, " />\n", " >\n") + "\t\t" + options(x) + "</C>\n"), "Set S.X",
       "Reset S.X"},
      {App(a), App(debug + a), "Add configuration Debug", "Remove configuration Debug"},
      {App(a, "Config=\"Fast\""), App(a, "Config=\"Slow\""), "Select configuration Slow",
       "Select configuration Fast"},
      {"<Project ActiveApp=\"a\" >\n</Project>", "<Project ActiveApp=\"b\" >\n</Project>",
       "Select application b", "Select application a"},
      {App("x"), App("\"<"), "Change the project", "Change the project"},
      {"", "</", "Change the project", "Change the project"},
  };
  for (const auto& row : rows) {
    const FileChanges changes = {{"/p/app.tapp", row.before, row.after}};
    EXPECT_EQ(DescribeChanges(changes), row.forward) << row.before << row.after;
    EXPECT_EQ(DescribeChanges(Reverse(changes)), row.back) << row.before << row.after;
  }
}

TEST(ChangeLabel, AFileThatComesIsNamedByItsProject) {
  const std::string none = "<Project >\n</Project>";
  const std::string one = "<Project >\n\t<Application Header=\"app\" Extern=\"x\" />\n</Project>";
  EXPECT_EQ(DescribeChanges({{"/p/x", std::nullopt, App("")}, {"/p/demo.tprj", none, one}}),
            "Add app");
}

}  // namespace
}  // namespace tarn::host
