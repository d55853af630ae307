// Merging two sides' changes of a tree, and the form in which a tree is written to disk.

#include <gtest/gtest.h>

#include "project/FileDamage.h"
#include "project/ProjectFixture.h"
#include "project/StableForm.h"
#include "project/TreeMerge.h"
#include "project/TreeText.h"

namespace tarn::test {
namespace {

// Compact notation of a tree: `Name=label{children}`, with attributes after a colon: `C=a:x1`.
class Short {
 public:
  static std::unique_ptr<CXmlNode> Read(std::string_view text) {
    auto root = CXmlNode::CreateNode("Root");
    ReadChildren(*root, text);
    return root;
  }
  static std::string Write(const CXmlNode& node) {
    std::string text;
    for (const CXmlNode* child : node.GetChildren()) {
      if (!text.empty()) text += ' ';
      text += child->GetName() + "=" + OrEmpty(child->GetAttrValue("Header"));
      for (const CXmlAttr& each : child->Attributes()) {
        if (each.NameView() != "Header")
          text += ":" + each.GetName().substr(0, 1) + each.GetValue();
      }
      if (child->GetChildCount() > 0) text += "{" + Write(*child) + "}";
    }
    return text;
  }

 private:
  static void ReadChildren(CXmlNode& parent, std::string_view& text) {
    while (!text.empty() && text.front() != '}') {
      const std::size_t end = std::min(text.find_first_of(" {}"), text.size());
      ReadWord(parent, text.substr(0, end));
      text.remove_prefix(end);
      if (text.starts_with('{')) {
        text.remove_prefix(1);
        ReadChildren(*parent.GetChild(parent.GetChildCount() - 1), text);
        text.remove_prefix(1);
      }
      if (text.starts_with(' ')) text.remove_prefix(1);
    }
  }
  // The first letter is the attribute's name, the rest its value.
  static void ReadWord(CXmlNode& parent, std::string_view word) {
    const std::size_t equal = word.find('=');
    CXmlNode& node = *parent.AddChild(std::string(word.substr(0, equal)));
    bool isLabel = true;
    for (const std::string_view part : Split(word.substr(equal + 1), ':')) {
      if (isLabel) {
        node.AddAttr("Header", std::string(part));
      } else {
        const std::string name(part.substr(0, 1));
        node.AddAttr(name == "P" ? "Path" : name, std::string(part.substr(1)));
      }
      isLabel = false;
    }
  }
};

TEST(TreeMerge, BothSidesChangesAreThere) {
  const struct {
    const char *base, *theirs, *ours, *merged, *conflicts;
  } rows[] = {
      {"C=a", "C=a", "C=a", "C=a", ""},
      // Additions follow the same neighbor as on their side.
      {"C=a", "C=a C=t", "C=a", "C=a C=t", ""},
      {"C=a", "C=a C=t", "C=a C=o", "C=a C=o C=t", ""},
      {"C=a C=b", "C=t C=a C=b", "C=a C=o C=b", "C=t C=a C=o C=b", ""},
      {"", "C=t", "C=o", "C=o C=t", ""},
      {"C=a", "C=a C=n:x1", "C=a C=n:x1", "C=a C=n:x1", ""},
      {"C=a", "C=a C=n:x1", "C=a C=n:x2", "C=a C=n:x2", "n: x"},
      {"", "C=n:P/t/n", "C=n:P/o/n", "C=n:P/o/n C=n:P/t/n", ""},
      {"G=g{C=a} G=h", "G=g{C=a C=t} G=h", "G=g{C=a} G=h{C=o}", "G=g{C=a C=t} G=h{C=o}", ""},
      // Removals, and changes of elements that the other side removed.
      {"C=a C=b", "C=b", "C=a C=b C=o", "C=b C=o", ""},
      {"C=a C=b", "C=a C=b C=t", "C=b", "C=b C=t", ""},
      {"C=a C=b", "C=a", "C=b", "", ""},
      {"G=g{C=a}", "", "G=g{C=a C=o}", "G=g{C=a C=o}", "g: changed here, removed there"},
      {"G=g{C=a}", "G=g{C=a C=t}", "", "G=g{C=a C=t}", "g: removed here, changed there"},
      // Attributes.
      {"C=a:x1:y1", "C=a:x2:y1", "C=a:x1:y2", "C=a:x2:y2", ""},
      {"C=a:x1", "C=a", "C=a:x1:y2", "C=a:y2", ""},
      {"C=a:x1", "C=a:x2", "C=a:x2", "C=a:x2", ""},
      {"C=a:x1", "C=a:x2", "C=a:x3", "C=a:x3", "a: x"},
      {"C=a:x1", "C=a", "C=a:x3", "C=a:x3", "a: x"},
      // A rename on one side and a change inside on the other.
      {"G=g{C=a C=b}", "G=h{C=a C=b}", "G=g{C=a C=b C=o}", "G=h{C=a C=b C=o}", ""},
      {"G=g{C=a C=b}", "G=g{C=a C=t C=b}", "G=h{C=a C=b}", "G=h{C=a C=t C=b}", ""},
      {"C=a:P/a", "C=b:P/a", "C=a:P/a:x1", "C=b:P/a:x1", ""},
      // The order of the side that changed it.
      {"C=a C=b C=c", "C=c C=a C=b", "C=a C=b C=c C=o", "C=c C=o C=a C=b", ""},
      {"C=a C=b C=c", "C=a C=t C=b C=c", "C=c C=b C=a", "C=c C=b C=a C=t", ""},
      // A moved node receives the other side's changes.
      {"C=a:P/a G=g", "G=g{C=a:P/a}", "C=a:P/a:x1 G=g", "G=g{C=a:P/a:x1}", ""},
      {"C=a:P/a G=g", "C=a:P/a:x1 G=g", "G=g{C=a:P/a}", "G=g{C=a:P/a:x1}", ""},
      {"C=a:P/a", "G=n{C=a:P/a}", "C=a:P/a:x1", "G=n{C=a:P/a:x1}", ""},
      {"C=a:P/a G=g", "G=g{C=b:P/a}", "C=a:P/a:x1 G=g", "G=g{C=b:P/a:x1}", ""},
      {"G=g{C=a:P/a}", "C=a:P/a", "G=g{C=a:P/a:x1}", "C=a:P/a:x1", ""},
      {"G=g{C=a:P/a C=b:P/b} G=h", "G=h{G=g{C=a:P/a C=b:P/b}}", "G=g{C=a:P/a:x1 C=b:P/b} G=h",
       "G=h{G=g{C=a:P/a:x1 C=b:P/b}}", ""},
      {"C=a:P/a G=g", "G=g{C=a:P/a:x1}", "G=g{C=a:P/a:y1}", "G=g{C=a:P/a:x1:y1}", ""},
      {"C=a:P/a", "G=n{C=a:P/a:x1}", "G=n{C=a:P/a:y1}", "G=n{C=a:P/a:x1:y1}", ""},
      {"C=a:P/a G=g G=h", "G=g{C=a:P/a:x1} G=h", "G=g G=h{C=a:P/a}", "G=g G=h{C=a:P/a:x1}",
       "h/a: the group that it is in"},
      {"C=a:P/a G=g", "G=g{C=a:P/a}", "G=g", "G=g{C=a:P/a}", ""},
      {"C=a:P/a G=g{C=b}", "G=g{C=b C=a:P/a}", "C=a:P/a:x1", "G=g{C=b C=a:P/a:x1}",
       "g: removed here, changed there"},
      {"C=a:P/a C=a:P/a G=g", "G=g{C=a:P/a C=a:P/a}", "C=a:P/a:x1 C=a:P/a G=g",
       "C=a:P/a:x1 G=g{C=a:P/a C=a:P/a}", "a: changed here, removed there"},
      // Options are merged individually, even if one side has reset the last one.
      {"Options={S=s{P=a:x1}}", "Options={S=s{P=a:x1 P=b:x1}}", "", "Options={S=s{P=b:x1}}", ""},
      {"Options={S=s{P=a:x1}}", "Options={S=s{P=a:x2}}", "", "Options={S=s{P=a:x2}}",
       "Options/s/a: removed here, changed there"},
      {"Options={S=s{P=a:x1}}", "", "Options={S=s{P=a:x1}}", "", ""},
      // Two elements with the same label are distinguished by their order.
      {"C=a C=a", "C=a C=a:x1", "C=a:y1 C=a", "C=a:y1 C=a:x1", ""},
  };
  for (const auto& row : rows) {
    const MergedTree merged =
        MergeTrees(*Short::Read(row.base), *Short::Read(row.theirs), *Short::Read(row.ours));
    SCOPED_TRACE(std::string(row.base) + " | " + row.theirs + " | " + row.ours);
    EXPECT_EQ(Short::Write(*merged.root), row.merged);
    std::string conflicts;
    for (const TreeConflict& each : merged.conflicts) conflicts += each.place + ": " + each.what;
    EXPECT_EQ(conflicts, row.conflicts);
  }
}

// Takes minutes if the time is quadratic.
TEST(TreeMerge, VeryManyAttributesOfOneElementTakeNoLongerThanTheSameInMany) {
  constexpr int kCount = 200'000;
  const auto make = [](int from, int changed) {
    std::string text = "<Project><C";
    for (int i = from; i < kCount; ++i) {
      text += " a" + std::to_string(i) + "='" + (i == changed ? "new'" : "'");
    }
    text += " a0='again' /></Project>";
    std::unique_ptr<CXmlNode> root;
    DamageCollector collector(text);
    root = CXmlNode::CreateNode("Project");
    ReadTree(text, *root, collector);
    EXPECT_EQ(collector.Collect("f").size(), from == 0 ? 1u : 0u);
    return root;
  };
  const auto base = make(0, -1);
  const auto ours = make(1, 7);
  MergedTree merged = MergeTrees(*base, *make(0, 5), *ours);
  const CXmlNode& node = *merged.root->GetChild(0);
  EXPECT_EQ(node.GetAttrCount(), kCount);
  EXPECT_STREQ(node.GetAttrValue("a5"), "new");
  EXPECT_STREQ(node.GetAttrValue("a7"), "new");
  MakeStable(*base, *merged.root, NodeTypes());
  EXPECT_EQ(merged.root->GetChild(0)->GetAttrCount(), kCount);
}

// A node that is also renamed is a different node, unless its file was moved on disk.
TEST(TreeMerge, AFileThatWasMovedOnTheDiskIsTheSameNode) {
  const FileMoved isMoved = [](const std::string& from, const std::string& to) {
    return from == "/a" && to == "/lib/q";
  };
  const struct {
    const char *base, *theirs, *ours, *merged, *conflicts;
  } rows[] = {
      {"C=a:P/a", "C=q:P/lib/q", "C=a:P/a:x1", "C=q:P/lib/q:x1", ""},
      {"C=a:P/a G=g", "G=g{C=a:P/lib/q}", "C=a:P/a:x1 G=g", "G=g{C=a:P/lib/q:x1}", ""},
      {"C=a:P/a", "C=b:P/b", "C=a:P/a:x1", "C=a:P/a:x1 C=b:P/b", "a: changed here, removed there"},
  };
  for (const auto& row : rows) {
    const MergedTree merged = MergeTrees(*Short::Read(row.base), *Short::Read(row.theirs),
                                         *Short::Read(row.ours), isMoved);
    EXPECT_EQ(Short::Write(*merged.root), row.merged);
    std::string conflicts;
    for (const TreeConflict& each : merged.conflicts) conflicts += each.place + ": " + each.what;
    EXPECT_EQ(conflicts, row.conflicts);
  }
}

// Derived attributes follow configuration and view, which is not a reason to change the file.
TEST(StableForm, OnlyWhatTheUserChangedDiffersFromTheFile) {
  const std::string open = "\r\n<Project Header=\"p\" sate=\"32\" >";
  const std::string app = "\r\n\t<Application Header=\"a\" Extern=\"a.tapp\" Path=\"a.tapp\"";
  const std::string close = " />\r\n</Project>";
  const struct {
    std::string base, tree, written;
  } rows[] = {
      {open + app + close, open + app + close, open + app + close},
      {open + app + " sate=\"2\"" + close, open + app + " Config=\"x\" OutputFile=\"o\"" + close,
       open + app + " sate=\"2\"" + close},
      {open + app + close, "<Project sate=\"0\" OutputFile=\"\" Header=\"q\" >" + app + close,
       "\r\n<Project Header=\"q\" sate=\"32\" >" + app + close},
      {"<Project Header='p' />", open + "<Group Header='g' Marker='0' sate='2' />" + "</Project>",
       "\r\n<Project Header=\"p\" >\r\n\t<Group Header=\"g\" />\r\n</Project>"},
      {"<Project Header='p' ><Group Header='g' Marker='0' OutputFile='x' /></Project>",
       "<Project Header='p' ><Group OutputFile='y' Header='h' Marker='-1' /></Project>",
       "\r\n<Project Header=\"p\" >\r\n\t<Group Header=\"h\" />\r\n</Project>"},
      {"<Project><Options><Config Header='a' /></Options><Group Header='g' /></Project>",
       "<Project><Group Header='g' /><Group Header='h' /><Options><Config Header='b' /></Options>"
       "</Project>",
       "\r\n<Project>\r\n\t<Options>\r\n\t\t<Config Header=\"b\" />\r\n\t</Options>"
       "\r\n\t<Group Header=\"g\" />\r\n\t<Group Header=\"h\" />\r\n</Project>"},
      // Options set before nodes and configurations; options reset and set again; options of which
      // the last was reset, or copied away with its configuration.
      {"<Project><Options><Config Header='a' /></Options><Configs /><C Header='c' /></Project>",
       "<Project><Configs /><C Header='c' /><Options><Config Header='b' /></Options></Project>",
       "\r\n<Project>\r\n\t<Options>\r\n\t\t<Config Header=\"b\" />\r\n\t</Options>"
       "\r\n\t<Configs/>\r\n\t<C Header=\"c\" />\r\n</Project>"},
      {"<Project><Group Header='g' /><Configs><Config Header='a' /></Configs></Project>",
       "<Project><Options /><Group Header='g' ><Options /></Group><Configs /></Project>",
       "\r\n<Project>\r\n\t<Group Header=\"g\" />\r\n</Project>"},
      {"<Project><Options /><Configs /></Project>", "<Project><Options /><Configs /></Project>",
       "\r\n<Project>\r\n\t<Options/>\r\n\t<Configs/>\r\n</Project>"},
      // An application: saved by a project in another folder; renamed; not in Tarn's form.
      {"<Application Extern='.\\a.tapp' Path='.\\a.tapp' />",
       "<Application Extern='..\\p\\a.tapp' Path='..\\p\\a.tapp' Config='standard' />",
       "\r\n<Application Extern=\".\\a.tapp\" Path=\".\\a.tapp\" />"},
      {"<Application Extern='.\\a.tapp' Config='Debug' />",
       "<Application Extern='.\\b.tapp' Config='Standard' />",
       "\r\n<Application Extern=\".\\b.tapp\" />"},
      {"<Application Extern='.\\a.tapp' Config='Standard' />",
       "<Application Extern='.\\a.tapp' Config='Standard' />",
       "\r\n<Application Extern=\".\\a.tapp\" Config=\"Standard\" />"},
      {"<Application Extern='p/a.tapp' Path='/p/a.tapp' />",
       "<Application Extern='.\\p\\a.tapp' Path='.\\p\\a.tapp' />",
       "\r\n<Application Extern=\".\\p\\a.tapp\" Path=\".\\p\\a.tapp\" />"},
      {"<Project Header='a' Header='b' sate='1' />", "<Project Header='c' Header='b' sate='2' />",
       "\r\n<Project Header=\"c\" Header=\"b\" sate=\"1\" />"},
  };
  ProjectFixture world;
  for (const auto& row : rows) {
    CXmlNode base;
    CXmlNode tree;
    ASSERT_TRUE(ReadWholeTree(row.base, base)) << row.base;
    ASSERT_TRUE(ReadWholeTree(row.tree, tree)) << row.tree;
    MakeStable(base, tree, world.model->Types());
    EXPECT_EQ(WriteTree(tree, {}), row.written);
  }
}

TEST(TreeText, LineEndsAreThoseOfMostLines) {
  const struct {
    const char *model, *end;
  } rows[] = {
      {"", "\r\n"},       {"<a>", "\r\n"},  {"\r\n\r\n\n", "\r\n"}, {"\n\r\n\n", "\n"},
      {"\r\n\n", "\r\n"}, {"\n\r\n", "\n"}, {"\r\r\n", "\r\n"},     {"\r\r\n\n\n", "\n"},
  };
  CXmlNode root;
  root.SetName("A");
  for (const auto& row : rows) {
    EXPECT_EQ(WriteTree(root, row.model), row.end + std::string("<A/>")) << row.model;
  }
}

}  // namespace
}  // namespace tarn::test
