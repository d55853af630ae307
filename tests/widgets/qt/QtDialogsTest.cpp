#include "widgets/qt/QtDialogs.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "widgets/Button.h"
#include "widgets/ComboBox.h"
#include "widgets/HyperlinkCtrl.h"
#include "widgets/Menu.h"
#include "widgets/PropertySheet.h"
#include "widgets/Static.h"
#include "widgets/qt/QtToolkit.h"
#include "widgets/qt/WidgetPeer.h"

namespace tarn {
namespace {

enum Id { kLabel = 1, kKind, kUse, kHere, kThere, kFast, kSlow, kMore, kLink };

constexpr ControlRow kControls[] = {
    {kLabel, ControlKind::Label, "Kind:", {8, 11, 88, 29}},
    {kKind, ControlKind::DropDownList, "", {96, 8, 296, 32}},
    {kUse, ControlKind::CheckBox, "Use it", {96, 40, 296, 60}},
    {kHere, ControlKind::RadioButton, "Here", {96, 68, 190, 88}, 0, true},
    {kThere, ControlKind::RadioButton, "There", {196, 68, 296, 88}},
    {kFast, ControlKind::RadioButton, "Fast", {96, 96, 190, 116}, 0, true},
    {kSlow, ControlKind::RadioButton, "Slow", {196, 96, 296, 116}},
    {kMore, ControlKind::PushButton, "More...", {96, 124, 180, 150}},
    {kLink, ControlKind::Link, "Sheet <1> & more", {190, 124, 296, 150}},
};

class Page : public CPropertyPage {
 public:
  Page() : CPropertyPage({7, {304, 160}, kControls}) { SetHeader("New thing", "What it is."); }
  ~Page() override { DestroyWindow(); }

  bool IsChecked(int id) const { return FindControl<CButton>(id)->IsChecked(); }
  QWidget* Widget(int id) const { return WidgetOf(*FindChild(id)); }

  std::vector<int> used;
  std::function<void(int)> onControl;
  int chosenAtFinish = -1;

 protected:
  void OnInitDialog() override {
    auto& list = *FindControl<CComboBox>(kKind);
    for (const char* entry : {"Apple", "Pear", "Plum"}) list.AddString(entry);
    list.SetCurSel(1);
    FindControl<CButton>(kHere)->SetCheck(true);
    FindControl<CButton>(kSlow)->SetCheck(true);
  }
  void OnControl(int id) override {
    used.push_back(id);
    if (id == kUse) GetSheet()->EnableFinish(IsChecked(kUse));
    if (onControl) onControl(id);
  }
  void OnWizardFinish() override { chosenAtFinish = FindControl<CComboBox>(kKind)->GetCurSel(); }
};

class Toolkit : public QtToolkit {
 public:
  void OpenAddress(const std::string& address) override { opened.push_back(address); }
  std::vector<std::string> opened;
};

class QtDialogsTest : public ::testing::Test {
 protected:
  QtDialogsTest() {
    frame.Create(kStylePopup, {0, 0, 640, 480}, nullptr, 0);
    host.resize(640, 480);
    host.show();
    dialogs.emplace(frame.GetHandle(), &host);
    sheet.emplace("Wizard", frame.GetHandle());
    sheet->SetPage(page);
  }

  // Runs an action as soon as the toolkit runs a nested loop. Closes a dialog that is left open, so
  // that a failing test terminates.
  void InTheLoop(const std::function<void()>& act) {
    QTimer::singleShot(0, &watch, [act] {
      QWidget* const modal = QApplication::activeModalWidget();
      ASSERT_TRUE(modal == nullptr || QTest::qWaitForWindowActive(modal));
      act();
    });
    QTimer::singleShot(60000, &watch, [] {
      if (QWidget* const popup = QApplication::activePopupWidget()) popup->close();
      if (QWidget* const modal = QApplication::activeModalWidget()) {
        ADD_FAILURE() << "the question is still open";
        modal->close();
      }
    });
  }

  static void Press(Qt::Key key) {
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    QTest::keyClick(QApplication::focusWidget(), key);
  }

  Toolkit toolkit;
  QWidget host;
  QObject watch;
  CWnd frame;
  Page page;
  std::optional<QtDialogs> dialogs;
  std::optional<CPropertySheet> sheet;
};

TEST_F(QtDialogsTest, SheetIsFilledInAndFinishedByKey) {
  InTheLoop([&] {
    EXPECT_EQ(QApplication::focusWidget(), page.Widget(kKind));
    EXPECT_EQ(QApplication::focusWidget()->accessibleName(), "Kind:");
    Press(Qt::Key_Down);
    Press(Qt::Key_Return);  // Finish is disabled
    ASSERT_TRUE(sheet->IsCreated());
    Press(Qt::Key_Tab);
    Press(Qt::Key_Space);
    Press(Qt::Key_Return);
  });
  EXPECT_EQ(sheet->DoModal(), kSheetFinish);
  EXPECT_EQ(page.used, (std::vector<int>{kKind, kUse}));
  EXPECT_EQ(page.chosenAtFinish, 2);
}

TEST_F(QtDialogsTest, SheetIsCancelledByEscape) {
  InTheLoop([&] {
    Press(Qt::Key_Tab);
    Press(Qt::Key_Space);
    Press(Qt::Key_Escape);
  });
  EXPECT_EQ(sheet->DoModal(), kSheetCancel);
  EXPECT_EQ(page.chosenAtFinish, -1);
}

TEST_F(QtDialogsTest, SheetEndsWhenItsWindowGoesAlsoFromAControlsOwnEvent) {
  page.onControl = [&](int id) {
    if (id == kMore) sheet->DestroyWindow();
  };
  InTheLoop([&] { QTest::mouseClick(page.Widget(kMore), Qt::LeftButton); });
  EXPECT_EQ(sheet->DoModal(), kSheetCancel);
  EXPECT_EQ(page.used, std::vector<int>{kMore});
  // Again with the same objects; this time the host's widget destroys the dialog.
  auto* const other = new QWidget(&host);
  dialogs.reset();
  dialogs.emplace(frame.GetHandle(), other);
  InTheLoop([&] { delete other; });
  EXPECT_EQ(sheet->DoModal(), kSheetCancel);
}

TEST_F(QtDialogsTest, ArrowKeysStayWithinARadioGroup) {
  InTheLoop([&] {
    page.Widget(kHere)->setFocus();
    Press(Qt::Key_Right);
    EXPECT_TRUE(page.IsChecked(kThere));
    EXPECT_FALSE(page.IsChecked(kHere));
    Press(Qt::Key_Right);  // stays in its own group
    EXPECT_TRUE(page.IsChecked(kThere));
    Press(Qt::Key_Left);
    EXPECT_TRUE(page.IsChecked(kHere));
    EXPECT_TRUE(page.IsChecked(kSlow));
    // Changes by the program are shown as well, even if no button is left checked.
    page.FindControl<CButton>(kSlow)->SetCheck(false);
    for (const int id : {kHere, kThere, kFast, kSlow}) {
      const auto* const radio = qobject_cast<QAbstractButton*>(page.Widget(id));
      EXPECT_EQ(radio->isChecked(), page.IsChecked(id)) << id;
    }
    Press(Qt::Key_Escape);
  });
  sheet->DoModal();
  EXPECT_EQ(page.used, (std::vector<int>{kThere, kHere}));
}

TEST_F(QtDialogsTest, LinkIsOpenedByKeyAndByMouse) {
  InTheLoop([&] {
    sheet->EnableFinish(true);
    page.FindControl<CHyperlinkCtrl>(kLink)->SetAddress("https://example.com/sheet?a=1&b=2");
    page.Widget(kMore)->setFocus();
    Press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), page.Widget(kLink));
    Press(Qt::Key_Return);
    ASSERT_TRUE(sheet->IsCreated());
    QTest::mouseClick(page.Widget(kLink), Qt::LeftButton, {}, QPoint(5, 10));
    const std::string address = "https://example.com/sheet?a=1&b=2";
    EXPECT_EQ(toolkit.opened, (std::vector<std::string>{address, address}));
    Press(Qt::Key_Escape);
  });
  EXPECT_EQ(sheet->DoModal(), kSheetCancel);
}

TEST_F(QtDialogsTest, QuestionOfASheetStandsOverIt) {
  page.onControl = [&](int) {
    InTheLoop([&] {
      auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      EXPECT_EQ(box->parentWidget(), WidgetOf(*sheet));
      EXPECT_EQ(box->text(), "<b>really</b>?");
      EXPECT_EQ(box->textFormat(), Qt::PlainText);
      QTest::keyClick(box, Qt::Key_Return);
    });
    EXPECT_TRUE(AskOkCancel(frame.GetHandle(), "<b>really</b>?", "Question"));
    QTest::keyClick(WidgetOf(*sheet), Qt::Key_Escape);
  };
  InTheLoop([&] { QTest::mouseClick(page.Widget(kMore), Qt::LeftButton); });
  EXPECT_EQ(sheet->DoModal(), kSheetCancel);
  InTheLoop([&] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); });
  EXPECT_FALSE(AskOkCancel(frame.GetHandle(), "And now?", "Question"));
}

TEST_F(QtDialogsTest, FiltersOfAFileQuestion) {
  const struct {
    const char* filter;
    QStringList shown;
  } rows[] = {
      {"", {}},
      {"Applications (*.hex;*.bin)|*.hex;*.bin;*|", {"Applications (*.hex *.bin *)"}},
      {"Sources|*.c; *.h|All files (*.*)|*.*|", {"Sources (*.c *.h)", "All files (*)"}},
      {"No patterns||Cut off", {}},
  };
  for (const auto& row : rows) EXPECT_EQ(ToNameFilters(row.filter), row.shown) << row.filter;
}

TEST_F(QtDialogsTest, FilesAndFoldersComeWithTheirWholePaths) {
  const QTemporaryDir folder;
  const std::string root = FromQt(folder.path());
  for (const char* name : {"/main.c", "/\xC3\xBC.c"}) {
    QFile file(ToQt(root + name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  }
  ASSERT_TRUE(QDir(folder.path()).mkdir("sub"));
  const auto type = [&](const char* text) {
    InTheLoop([text] {
      auto* const field = QApplication::activeModalWidget()->findChild<QLineEdit*>("fileNameEdit");
      ASSERT_NE(field, nullptr);
      field->setText(ToQt(text));
      QTest::keyClick(field, text[0] == 0 ? Qt::Key_Escape : Qt::Key_Return);
    });
  };
  using Paths = std::vector<std::string>;
  const WindowHandle asked = frame.GetHandle();
  type("\xC3\xBC.c");
  EXPECT_EQ(ChooseFiles(asked, {"C (*.c)|*.c|", root, false}), Paths{root + "/\xC3\xBC.c"});
  type("\"main.c\" \"\xC3\xBC.c\"");
  EXPECT_EQ(ChooseFiles(asked, {"", root, true}), (Paths{root + "/main.c", root + "/\xC3\xBC.c"}));
  type("");
  EXPECT_EQ(ChooseFiles(asked, {"", root, true}), Paths());
  type("sub");
  EXPECT_EQ(ChooseFolder(asked, {root}), root + "/sub");
}

TEST_F(QtDialogsTest, MenuByKeyboard) {
  CMenu menu;
  menu.AppendCommand(11, "Sort &Ascending").isEnabled = false;
  menu.AppendCommand(12, "Show A & B").isChecked = true;
  menu.AppendSeparator();
  auto below = std::make_unique<CMenu>();
  below->AppendCommand(21, "Left");
  below->AppendCommand(22, "Right");
  menu.AppendSubmenu(std::move(below), "A&lign");

  const auto answer = [&](const std::vector<Qt::Key>& keys) {
    InTheLoop([keys] {
      auto* const shown = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      ASSERT_NE(shown, nullptr);
      EXPECT_EQ(shown->actions()[1]->text(), "Show A && B");
      EXPECT_TRUE(shown->actions()[1]->isChecked());
      EXPECT_FALSE(shown->actions()[0]->isEnabled());
      for (const Qt::Key key : keys) {
        if (QWidget* const popup = QApplication::activePopupWidget()) QTest::keyClick(popup, key);
      }
    });
    return toolkit.TrackMenu(menu, {20, 20}, frame);
  };
  EXPECT_EQ(answer({Qt::Key_Escape}), 0);
  EXPECT_EQ(answer({Qt::Key_Down, Qt::Key_Return}), 12);
  EXPECT_EQ(answer({Qt::Key_L, Qt::Key_Down, Qt::Key_Return}), 22);
  // The owner of the menu may be destroyed while it is shown.
  InTheLoop([&] { frame.DestroyWindow(); });
  EXPECT_EQ(toolkit.TrackMenu(menu, {20, 20}, frame), 0);
}

}  // namespace
}  // namespace tarn
