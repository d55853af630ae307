#include "reports/ClassWnd.h"

#include <gtest/gtest.h>

#include "reports/ReportFixture.h"
#include "support/RecordingHost.h"
#include "support/RecordingToolkit.h"

namespace tarn::test {
namespace {

class ClassView : public ::testing::Test {
 protected:
  ClassView() {
    for (const char* name : {"file", "variable", "type", "define", "func"}) {
      disk.AddFile("/c/resources/class-" + std::string(name) + ".bmp", BitmapBytes(18, 18));
    }
    disk.AddFile("/c/resources/class-toolbar.bmp", BitmapBytes(16, 16));
    settings.WriteProfile("Classes", "Sorted", "1");
    window = std::make_unique<CClassWnd>(disk, settings, host.Handle(), "/c/");
    EXPECT_TRUE(window->Create(kStylePopup, {0, 0, 200, 300}, nullptr, 0));
  }

  void Fill() {
    window->SetContents(
        Tree("<aoffile Header='all' a='1'><variable Header='b' Kind='X' DeclFile='/b.c' "
             "DeclLine='7'/><func Header='A' Kind='y'/><type Header='c' Kind='x'/><other/>"
             "</aoffile>"),
        Tree("<S><Row Header='Kind'/><Row Header='Header' Icon='class-func'/><Row/></S>"));
  }
  // Returns the labels of the items, with a dot before the label for each level.
  std::string Items() {
    std::string text;
    const CTreeItem* item = window->GetTree().GetRootItem();
    if (item == nullptr) return text;
    text = item->GetText();
    for (const CTreeItem* child = item->GetFirstChildItem(); child != nullptr;
         child = child->GetNextSiblingItem()) {
      text += " ." + child->GetText();
    }
    return text;
  }
  void Command(int command) { SendWindowMessage(window->GetHandle(), kMsgCommand, command, 0); }

  testing::MemoryFileSystem disk;
  Settings settings{disk, {"/machine", "/user", "/userdata"}};
  RecordingToolkit toolkit;
  RecordingHost host;
  std::unique_ptr<CClassWnd> window;
};

TEST_F(ClassView, StaysEmptyWhateverFileItIsGiven) {
  disk.AddFile("/a-Globals.Standard.xml", "<aoffile Header='x'/>");
  window->SetGlobalsFile("/a-Globals.Standard.xml");
  EXPECT_EQ(Items(), "");
  EXPECT_EQ(window->GetSortIndex(), 1);
  const CToolBar& bar = window->GetToolBar();
  ASSERT_EQ(bar.GetButtons().size(), 1u);
  EXPECT_EQ(bar.GetButtons()[0].text, "Sort");
  EXPECT_EQ(bar.GetButtons()[0].id, 32778);
  EXPECT_EQ(bar.GetRect().Width(), 200);
  EXPECT_EQ(window->GetTree().GetRect().bottom, 300);
  for (const int command : {8192, 8212, 8213}) Command(command);
  EXPECT_EQ(window->GetSortIndex(), 1);
  window->Clear();
  Command(32779);
  EXPECT_TRUE(window->GetTree().IsHelpMode());
}

TEST_F(ClassView, SortsACopyOfItsTreeByTheChosenAttribute) {
  Fill();
  EXPECT_EQ(Items(), "all .b .A .c");
  toolkit.menuAnswers = {8192};
  window->GetToolBar().NotifyDropDown(32778);
  EXPECT_NE(toolkit.TakeLines().back().find("Kind 8192 | [x] Header 8193 |  8194"),
            std::string::npos);
  EXPECT_EQ(Items(), "all .b .c .A") << "blind to case, equal ones as they were";
  EXPECT_EQ(settings.ReadProfile("Classes", "Sorted", ""), "0");
  EXPECT_EQ(Dump(*window->GetTree().GetXmlRoot()).substr(0, 74),
            "aoffile[Header=all][a=1](other[highlight=Yes] variable[Header=b][Kind=X][D");
  Command(8193);
  EXPECT_EQ(Items(), "all .A .b .c");
  Command(8194);
  EXPECT_EQ(window->GetSortIndex(), 1) << "a choice without a name";
  window->Clear();
  EXPECT_EQ(Items(), "");
}

TEST_F(ClassView, ADoubleClickOpensTheDeclarationWithTheLineAsItIs) {
  Fill();
  const auto open = [this](int child) {
    CXmlNode* node = window->GetTree().GetXmlRoot()->GetChild(child);
    window->SelectNode(node);
    EXPECT_EQ(window->GetCurrentNode(), node);
    window->GetTree().NotifyMouse({MouseAction::DoubleClick, MouseButton::Left, {100, 200}});
    return host.TakeLines();
  };
  EXPECT_EQ(open(0), std::vector<std::string>{"OpenFileAtLine /b.c 7"});
  EXPECT_EQ(open(1), std::vector<std::string>());
  host.actions[kMsgOpenFileAtLine] = [this] { window->Clear(); };
  EXPECT_EQ(open(0), std::vector<std::string>{"OpenFileAtLine /b.c 7"});
  Fill();
  host.actions[kMsgOpenFileAtLine] = [this] { window->DestroyWindow(); };
  EXPECT_EQ(open(0), std::vector<std::string>{"OpenFileAtLine /b.c 7"});
}

}  // namespace
}  // namespace tarn::test
