#include "widgets/Edit.h"

#include <gtest/gtest.h>

#include "support/RecordingToolkit.h"

namespace tarn {
namespace {

class TellingEdit : public CEdit {
 public:
  ~TellingEdit() override { DestroyWindow(); }
  std::vector<std::string> edits;
  std::vector<int> keys;

 protected:
  void OnTextEdited() override { edits.push_back(GetControlText()); }
  bool OnKeyDown(const KeyEvent& event) override {
    keys.push_back(event.key);
    return event.key == kKeyEnter;
  }
};

class EditToolkit : public test::RecordingToolkit {
 public:
  using RecordingToolkit::MakePeer;
  std::unique_ptr<EditPeer> MakePeer(CEdit& /*edit*/) override {
    struct Peer : EditPeer {
      explicit Peer(std::vector<std::string>& where) : lines(where) {}
      void OnTextChanged() override { lines.emplace_back("text"); }
      void OnReadOnlyChanged() override { lines.emplace_back("read only"); }
      void OnSelectionChanged() override { lines.emplace_back("selection"); }
      std::vector<std::string>& lines;
    };
    return std::make_unique<Peer>(lines);
  }
};

TEST(EditTest, TheUsersTextComesInOnceAndIsNotToldBack) {
  EditToolkit toolkit;
  TellingEdit edit;
  edit.NotifyTextEdited("before it stands", {});
  edit.Create(kEditAutoScroll, {0, 0, 80, 20}, nullptr, 326);
  EXPECT_FALSE(edit.IsMultiLine());
  edit.SetControlText("blink");
  edit.SelectAll();
  edit.SelectAll();
  edit.NotifyTextEdited("b", {1, 1});
  EXPECT_EQ(edit.GetControlText(), "b");
  EXPECT_EQ(edit.edits, std::vector<std::string>{"b"});
  EXPECT_EQ(toolkit.TakeLines(), (std::vector<std::string>{"text", "selection"}));
  EXPECT_TRUE(edit.NotifyKey({kKeyEnter}));
  EXPECT_FALSE(edit.NotifyKey({kKeyEscape}));
  EXPECT_EQ(edit.keys, (std::vector<int>{kKeyEnter, kKeyEscape}));
  edit.DestroyWindow();
  edit.SetReadOnly(true);  // the peer has been destroyed
  EXPECT_FALSE(edit.NotifyKey({kKeyEnter}));
}

TEST(EditTest, AReadOnlyEditKeepsItsText) {
  EditToolkit toolkit;
  TellingEdit edit;
  edit.Create(kEditReadOnly | kEditMultiLine, {}, nullptr, 1);
  EXPECT_TRUE(edit.IsReadOnly());
  EXPECT_TRUE(edit.IsMultiLine());
  edit.NotifyTextEdited("x", {});
  EXPECT_EQ(edit.GetControlText(), "");
  edit.SetReadOnly(false);
  edit.NotifyTextEdited("x", {});
  EXPECT_EQ(edit.GetControlText(), "x");
  EXPECT_EQ(toolkit.TakeLines(), (std::vector<std::string>{"read only", "read only"}));
}

TEST(EditTest, ASelectionNeverReachesBeyondTheText) {
  struct Row {
    TextRange wanted;
    TextRange kept;
  };
  TellingEdit edit;
  edit.Create(0, {}, nullptr, 1);
  edit.SetControlText("12345");
  for (const Row& row :
       {Row{{1, 3}, {1, 3}}, Row{{4, 900}, {4, 5}}, Row{{7, 9}, {5, 5}}, Row{{3, 1}, {3, 3}}}) {
    edit.NotifySelected(row.wanted);
    EXPECT_EQ(edit.GetSelection(), row.kept) << row.wanted.start << ' ' << row.wanted.end;
  }
  edit.SetSelection({2, 5});
  edit.SetControlText("123");
  EXPECT_EQ(edit.GetSelection(), (TextRange{2, 3}));
}

}  // namespace
}  // namespace tarn
