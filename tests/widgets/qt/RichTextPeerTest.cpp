#include "widgets/RichTextCtrl.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <algorithm>
#include <string>
#include <vector>

#include "widgets/qt/QtColor.h"
#include "widgets/qt/QtToolkit.h"
#include "widgets/qt/WidgetPeer.h"

namespace tarn {
namespace {

constexpr int kLines = 10'000;

std::string LogLine(int number) {
  const std::string shown = std::to_string(number);
  return "{\\rtf1{\\colortbl;\\red200\\green0\\blue0;}\\cf0 plain \xC3\xA4 \xFF\xE2\x82 "
         "\\cf1\\b bold \xF0\x9F\x98\x80\\b0 {\\field{\\*\\fldinst { HYPERLINK file " +
         shown + " }} {\\fldrslt link " + shown + "}}\\cf0 end\\par}";
}

class RichTextPeerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(control.Create(kStyleVisible, {0, 0, 400, 200}, nullptr, 1));
    view = dynamic_cast<QPlainTextEdit*>(WidgetOf(control));
    ASSERT_NE(view, nullptr);
    view->resize(400, 200);
    view->show();
    control.SetLinkHandler([this](const std::string& target, const MouseEvent& event) {
      if (event.action != MouseAction::Release) return;
      followed.push_back(target);
      if (isEnding) control.DestroyWindow();
    });
  }

  QString Shown() const { return view->toPlainText() + QLatin1Char('\n'); }
  bool WaitForText() {
    return QTest::qWaitFor([this] { return Shown() == ToQt(control.GetText()); }, 20'000);
  }
  QPoint PointOf(std::size_t byte) {
    QTextCursor cursor = view->textCursor();
    cursor.setPosition(ToQtPosition(control.GetText(), byte));
    return view->cursorRect(cursor).center() + QPoint(3, 0);
  }

  QtToolkit toolkit;
  CRichTextCtrl control;
  QPlainTextEdit* view = nullptr;
  std::vector<std::string> followed;
  bool isEnding = false;
};

TEST_F(RichTextPeerTest, ShowsTextColorsAndLinksOfTheControl) {
  control.AppendRichText("begun \xE2\x82");
  QTest::qWait(40);
  control.AppendRichText("\xAC completed");
  for (int i = 0; i < kLines; ++i) control.AppendRichText(LogLine(i));
  ASSERT_TRUE(WaitForText());

  const std::string& text = control.GetText();
  // Compares each line of the text with the block of the view, and each fragment with the control's
  // run.
  std::size_t start = 0;
  int compared = 0;
  for (QTextBlock block = view->document()->firstBlock(); block.isValid(); block = block.next()) {
    const std::string line = text.substr(start, text.find('\n', start) - start);
    for (auto at = block.begin(); !at.atEnd(); ++at) {
      const QTextFragment fragment = at.fragment();
      const std::size_t byte = start + FromQtPosition(line, fragment.position() - block.position());
      const auto& runs = control.GetRuns();
      const auto run = std::partition_point(
          runs.begin(), runs.end(), [byte](const auto& each) { return each.range.end <= byte; });
      ASSERT_NE(run, runs.end());
      const QTextCharFormat format = fragment.charFormat();
      ASSERT_EQ(format.foreground().color(), ToTextColor(run->color)) << line;
      ASSERT_EQ(format.fontWeight() == QFont::Bold, run->isBold) << line;
      ASSERT_EQ(format.isAnchor(), run->target != nullptr) << line;
      ASSERT_FALSE(format.fontUnderline()) << line;
      if (run->target != nullptr) {
        ASSERT_EQ(FromQt(format.anchorHref()), *run->target);
      }
      ++compared;
    }
    start += line.size() + 1;
  }
  EXPECT_GE(compared, 4 * kLines);

  control.Clear();
  EXPECT_TRUE(WaitForText());
}

TEST_F(RichTextPeerTest, StaysWhereTheUserStands) {
  for (int i = 0; i < 100; ++i) control.AppendRichText(LogLine(i));
  ASSERT_TRUE(WaitForText());
  QScrollBar* const bar = view->verticalScrollBar();
  EXPECT_EQ(bar->value(), bar->maximum());
  view->resize(400, 120);
  EXPECT_EQ(bar->value(), bar->maximum());
  control.AppendRichText(LogLine(100));
  ASSERT_TRUE(WaitForText());
  EXPECT_GT(bar->maximum(), 0);
  EXPECT_EQ(bar->value(), bar->maximum());

  bar->setValue(10);
  control.AppendRichText(LogLine(101));
  ASSERT_TRUE(WaitForText());
  EXPECT_EQ(bar->value(), 10);
}

TEST_F(RichTextPeerTest, SelectsBytesBothWays) {
  for (int i = 0; i < 3; ++i) control.AppendRichText(LogLine(i));
  const std::size_t link = control.GetText().find("link 1");
  control.SetSelection({link, link + 6});
  ASSERT_TRUE(WaitForText());
  EXPECT_EQ(view->textCursor().selectedText(), QStringLiteral("link 1"));

  QTest::keyClick(view, Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_EQ(control.GetSelectedText(), "link 1e");
  QTest::keyClick(view, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("link 1e"));
  // Select all, with invalid UTF-8 in a line.
  QTest::keyClick(view, Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(control.GetSelection(), (TextRange{0, control.GetText().size() - 1}));

  const std::size_t from = control.GetText().find("plain");
  control.SetSelection({0, 0});  // otherwise a press in it would start a drag
  // Text appended before or during a selection is inserted after its end.
  const int lines = view->blockCount();
  control.AppendRichText(LogLine(3));
  QTest::mousePress(view->viewport(), Qt::LeftButton, {}, PointOf(from) - QPoint(3, 0));
  control.AppendRichText(LogLine(3));
  QTest::qWait(40);
  EXPECT_EQ(view->blockCount(), lines);
  QMouseEvent move(QEvent::MouseMove, PointOf(from + 5) - QPoint(3, 0), QPointF(), Qt::NoButton,
                   Qt::LeftButton, {});
  QApplication::sendEvent(view->viewport(), &move);
  EXPECT_EQ(control.GetSelectedText(), "plain");
  QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, PointOf(from + 5) - QPoint(3, 0));
  ASSERT_TRUE(WaitForText());
  EXPECT_EQ(view->textCursor().selectedText(), QStringLiteral("plain"));
  // Text appended afterwards does not change the selection either, even if a drag has consumed the
  // release.
  QTest::mousePress(view->viewport(), Qt::LeftButton, {}, PointOf(from + 2));
  control.AppendRichText(LogLine(4));
  QMouseEvent hover(QEvent::MouseMove, QPointF(5, 5), QPointF(), Qt::NoButton, Qt::NoButton, {});
  QApplication::sendEvent(view->viewport(), &hover);
  ASSERT_TRUE(WaitForText());
  EXPECT_EQ(control.GetSelectedText(), "plain");
  EXPECT_EQ(view->textCursor().selectedText(), QStringLiteral("plain"));
}

TEST_F(RichTextPeerTest, TellsTheLinkThatTheUserFollows) {
  for (int i = 0; i < 3; ++i) control.AppendRichText(LogLine(i));
  ASSERT_TRUE(WaitForText());
  view->resize(800, 200);
  const std::size_t link = control.GetText().find("link 1");
  QTest::mouseMove(view->viewport(), PointOf(link));
  EXPECT_TRUE(QTest::qWaitFor(
      [this] { return view->viewport()->cursor().shape() == Qt::PointingHandCursor; }));
  ASSERT_EQ(view->extraSelections().size(), 1);
  EXPECT_EQ(view->extraSelections()[0].cursor.selectedText(), "link 1");
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, PointOf(link));
  EXPECT_EQ(followed, (std::vector<std::string>{"file 1"}));
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, PointOf(link - 3));
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, QPoint(790, 10));
  EXPECT_EQ(followed.size(), 1U);
  // Pending text must not move the content under the mouse.
  followed.clear();
  for (int i = 3; i < 40; ++i) control.AppendRichText(LogLine(i));
  ASSERT_TRUE(WaitForText());
  const QPoint last = PointOf(control.GetText().find("link 39"));
  for (int i = 40; i < 43; ++i) control.AppendRichText(LogLine(i));
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, last);
  EXPECT_EQ(followed, (std::vector<std::string>{"file 39"}));
  control.Clear();
  for (int i = 0; i < 3; ++i) control.AppendRichText(LogLine(i));
  ASSERT_TRUE(WaitForText());
  // A selection that ends on a link is not a click.
  QTest::mousePress(view->viewport(), Qt::LeftButton, {}, PointOf(link - 5));
  QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, PointOf(link + 3));
  EXPECT_EQ(followed.size(), 1U);

  // Backwards from the end, back and forth, and out at the beginning.
  followed.clear();
  control.SetSelection({control.GetText().size(), control.GetText().size()});
  for (const auto key : {Qt::Key_Backtab, Qt::Key_Backtab, Qt::Key_Tab, Qt::Key_Backtab,
                         Qt::Key_Backtab, Qt::Key_Backtab}) {
    QTest::keyClick(view, key);
    QTest::keyClick(view, Qt::Key_Return);
  }
  EXPECT_EQ(followed,
            (std::vector<std::string>{"file 2", "file 1", "file 2", "file 1", "file 0", "file 0"}));
}

TEST_F(RichTextPeerTest, MayEndInItsOwnEvents) {
  control.AppendRichText(LogLine(0));
  ASSERT_TRUE(WaitForText());
  isEnding = true;
  const QPointer<QPlainTextEdit> watched = view;
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                    PointOf(control.GetText().find("link 0")));
  EXPECT_FALSE(control.IsCreated());
  EXPECT_TRUE(QTest::qWaitFor([&watched] { return watched == nullptr; }));
}

}  // namespace
}  // namespace tarn
