#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>

#include "share/ShippedFiles.h"

namespace tarn::shipped {
namespace {

namespace fs = std::filesystem;

class ExampleProject : public ::testing::TestWithParam<const char*> {
 protected:
  std::string Folder() const { return Path(std::string("examples/") + GetParam()); }
  std::string File(const char* extension) const { return Folder() + "/" + GetParam() + extension; }
};

// The parser stores the tabs before the end tag as the value of an element with children, and each
// save adds more. Without them the text is the same as after a first save.
void DropIndentation(CXmlNode& node) {
  if (node.GetChildCount() == 0) return;
  if (node.GetValue().find_first_not_of("\t") == std::string::npos) node.SetValue("");
  for (CXmlNode* child : node.GetChildren()) DropIndentation(*child);
}

TEST_P(ExampleProject, BytesThatASaveWouldChange) {
  for (const char* extension : {".tprj", ".tapp"}) {
    const std::string bytes = ReadBytes(File(extension));
    const auto root = Parse(bytes);
    ASSERT_TRUE(root) << extension;
    DropIndentation(*root);
    EXPECT_EQ(root->ToString(g_xmlDisplayOptions), bytes) << extension;
  }
}

void CollectPaths(const CXmlNode& node, std::set<std::string>& paths) {
  for (const CXmlNode* child : Elements(node)) {
    if (const char* path = child->GetAttrValue("Path")) paths.insert(path);
    CollectPaths(*child, paths);
  }
}

std::set<std::string> FilesBelow(const std::string& folder) {
  std::set<std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder + "/src")) {
    if (!entry.is_regular_file()) continue;
    std::string path = ".\\" + fs::relative(entry.path(), folder).string();
    std::replace(path.begin(), path.end(), '/', '\\');
    files.insert(path);
  }
  return files;
}

TEST_P(ExampleProject, ASourceThatTheProjectLacksOrHasTooMuch) {
  const auto application = Parse(ReadBytes(File(".tapp")));
  ASSERT_TRUE(application);
  std::set<std::string> paths;
  CollectPaths(*application, paths);
  EXPECT_EQ(paths, FilesBelow(Folder()));
}

TEST_P(ExampleProject, AProjectThatDoesNotLeadToItsApplication) {
  const auto project = Parse(ReadBytes(File(".tprj")));
  ASSERT_TRUE(project);
  const auto applications = Elements(*project);
  ASSERT_EQ(applications.size(), 1U);
  const std::string file = std::string(".\\") + GetParam() + ".tapp";
  EXPECT_EQ(Attribute(*applications[0], "Extern"), file);
  EXPECT_EQ(Attribute(*applications[0], "Path"), file);
  EXPECT_EQ(Attribute(*project, "ActiveApp"), Attribute(*applications[0], "Header"));
}

INSTANTIATE_TEST_SUITE_P(Shipped, ExampleProject, ::testing::Values("blinky-avr", "blinky-8051"),
                         [](const auto& example) {
                           std::string name = example.param;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

}  // namespace
}  // namespace tarn::shipped
