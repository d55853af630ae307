#include "widgets/qt/QtToolBar.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QMenu>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <vector>

#include "widgets/qt/QtToolkit.h"
#include "widgets/qt/WidgetPeer.h"

namespace tarn {
namespace {

class BarOwner : public CWnd {
 public:
  ~BarOwner() override { DestroyWindow(); }
  std::vector<int> commands;
  CToolBar bar;
  int goesAt = 0;

 protected:
  bool OnCommand(int command) override {
    commands.push_back(command);
    if (command == goesAt) bar.DestroyWindow();
    return true;
  }
};

class ToolBarPeerTest : public ::testing::Test {
 protected:
  ToolBarPeerTest() {
    owner.Create(kStylePopup, {0, 0, 400, 300}, nullptr, 0);
    owner.bar.Create(kStyleChild | kStyleVisible, {0, 0, 400, 32}, &owner, 1);
    owner.bar.AddButton(10, "Properties", -1);
    owner.bar.AddSeparator();
    owner.bar.AddDropDown(20, "Show", -1, [] {
      auto menu = std::make_unique<CMenu>();
      menu->AppendCommand(21, "Sizes");
      return menu;
    });
    WidgetOf(owner)->resize(400, 300);
    WidgetOf(owner)->show();
    QCoreApplication::processEvents();
  }

  QToolButton* Button(std::size_t index) {
    const Rect place = owner.bar.GetButtonRect(index);
    return qobject_cast<QToolButton*>(WidgetOf(owner.bar)->childAt(place.left + 3, place.top + 3));
  }

  QtToolkit toolkit;
  BarOwner owner;
};

TEST_F(ToolBarPeerTest, PressesGoToTheOwnerAndStatesStayTheBars) {
  ASSERT_NE(Button(0), nullptr);
  EXPECT_EQ(Button(0)->toolTip(), "Properties");
  QTest::mouseClick(Button(0), Qt::LeftButton);
  EXPECT_EQ(owner.commands, std::vector<int>{10});
  owner.bar.SetUpdater([](CToolBar::Button& button) {
    if (button.id == 10) button.isChecked = button.isRadio = true;
    if (button.id == 20) button.isEnabled = false;
  });
  RunIdle();
  EXPECT_TRUE(Button(0)->isChecked());
  EXPECT_FALSE(Button(2)->isEnabled());
  QTest::mouseClick(Button(0), Qt::LeftButton);
  EXPECT_TRUE(Button(0)->isChecked());
}

TEST_F(ToolBarPeerTest, MenuOfAButtonByKeyboard) {
  QTimer::singleShot(0, [] {
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Return);
  });
  QTest::keyClick(Button(2), Qt::Key_Space);
  EXPECT_EQ(owner.commands, std::vector<int>{21});
}

TEST_F(ToolBarPeerTest, BreaksIntoRowsWhereTheWidthDoesNotDo) {
  const int oneRow = owner.bar.GetHeightFor(400);
  EXPECT_GT(owner.bar.GetHeightFor(owner.bar.GetButtonRect(0).right + 4), oneRow);
  owner.bar.MoveWindow({0, 0, owner.bar.GetButtonRect(0).right + 4, 100});
  EXPECT_GT(owner.bar.GetButtonRect(2).top, owner.bar.GetButtonRect(0).top);
  ASSERT_NE(Button(2), nullptr);
  EXPECT_EQ(Button(2)->text(), "Show");
}

TEST_F(ToolBarPeerTest, BarMayGoInItsOwnPress) {
  owner.goesAt = 10;
  QTest::mouseClick(Button(0), Qt::LeftButton);
  EXPECT_EQ(owner.commands, std::vector<int>{10});
  EXPECT_FALSE(owner.bar.IsCreated());
}

}  // namespace
}  // namespace tarn
