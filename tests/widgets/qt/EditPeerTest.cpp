#include <gtest/gtest.h>

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>
#include <string>
#include <vector>

#include "widgets/Edit.h"
#include "widgets/qt/QtToolkit.h"
#include "widgets/qt/WidgetPeer.h"

namespace tarn {
namespace {

class HearingEdit : public CEdit {
 public:
  int edits = 0;
  int endsAt = -1;
  std::vector<int> keys;
  int usedKey = 0;

 protected:
  void OnTextEdited() override {
    if (++edits == endsAt) DestroyWindow();
  }
  bool OnKeyDown(const KeyEvent& event) override {
    keys.push_back(event.key);
    return event.key == usedKey;
  }
};

class EditPeerTest : public ::testing::TestWithParam<std::uint32_t> {
 protected:
  void SetUp() override {
    ASSERT_TRUE(edit.Create(kStyleVisible | GetParam(), {0, 0, 200, 60}, nullptr, 1));
    field = WidgetOf(edit);
    ASSERT_NE(field, nullptr);
    field->show();
  }
  QString Shown() const {
    const auto* const line = qobject_cast<QLineEdit*>(field);
    return line != nullptr ? line->text() : qobject_cast<QPlainTextEdit*>(field)->toPlainText();
  }

  QtToolkit toolkit;
  HearingEdit edit;
  QPointer<QWidget> field;
};

TEST_P(EditPeerTest, UserAndSystemEditTheSameText) {
  // Invalid UTF-8 is preserved as long as the user does not edit it.
  edit.SetControlText("\xFF \xC3\xA4 end");
  EXPECT_EQ(Shown(), ToQt(edit.GetControlText()));
  EXPECT_EQ(edit.edits, 0);
  edit.SetSelection({2, 4});
  QTest::keyClicks(field, QStringLiteral("new"));
  EXPECT_EQ(edit.GetControlText(), "\xFF new end");
  EXPECT_EQ(edit.GetSelection(), (TextRange{5, 5}));
  EXPECT_EQ(edit.edits, 3);
  QTest::keyClick(field, Qt::Key_Left, Qt::ShiftModifier);
  EXPECT_EQ(edit.GetSelection(), (TextRange{4, 5}));
  QTest::keyClick(field, Qt::Key_Backspace);
  EXPECT_EQ(edit.GetControlText(), "\xFF ne end");

  edit.SetReadOnly(true);
  QTest::keyClicks(field, QStringLiteral("x"));
  EXPECT_EQ(edit.GetControlText(), "\xFF ne end");

  edit.SetReadOnly(false);
  edit.SetControlText("5\xC2\xA0MHz");
  QTest::keyClick(field, Qt::Key_End);
  QTest::keyClicks(field, QStringLiteral("x"));
  EXPECT_EQ(edit.GetControlText(), "5\xC2\xA0MHzx");
  EXPECT_EQ(edit.GetSelection(), (TextRange{7, 7}));

  edit.SetControlText(std::string(100'000, 'x'));
  EXPECT_EQ(Shown().size(), 100'000);
}

TEST_P(EditPeerTest, KeysGoThroughTheWindowFirst) {
  for (const auto key : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Tab, Qt::Key_Backtab}) {
    QTest::keyClick(field, key);
  }
  EXPECT_EQ(edit.keys, (std::vector<int>{kKeyEnter, kKeyEscape, kKeyTab, kKeyTab}));
  edit.SetControlText("");
  edit.usedKey = kKeyEnter;
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_EQ(edit.GetControlText(), "");
}

TEST_P(EditPeerTest, MayEndInItsOwnEvents) {
  edit.endsAt = 1;
  QTest::keyClicks(field, QStringLiteral("a"));
  EXPECT_FALSE(edit.IsCreated());
  EXPECT_TRUE(QTest::qWaitFor([this] { return field == nullptr; }));
}

INSTANTIATE_TEST_SUITE_P(Kinds, EditPeerTest, ::testing::Values(0U, kEditMultiLine));

}  // namespace
}  // namespace tarn
