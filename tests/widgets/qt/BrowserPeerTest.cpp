#include "widgets/BrowserCtrl.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QFile>
#include <QMenu>
#include <QPalette>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>
#include <string>
#include <vector>

#include "widgets/qt/QtToolkit.h"
#include "widgets/qt/WidgetPeer.h"

namespace tarn {
namespace {

struct BrowserPeerTest : ::testing::Test {
  BrowserPeerTest() {
    browser.SetNavigationHandler([this](const std::string& address) {
      asked.push_back(address);
      return !address.starts_with("err:");
    });
    browser.Create(kStylePopup | kStyleVisible, {0, 0, 300, 200}, nullptr, 100);
    page = qobject_cast<QTextBrowser*>(WidgetOf(browser));
    page->resize(300, 200);
    page->show();
  }

  std::string Write(const char* name, const QByteArray& text) const {
    const QString path = folder.filePath(name);
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(text);
    return FromQt(path);
  }
  std::string Shown() const { return FromQt(page->toPlainText()); }
  // Follows the link of that number by keyboard.
  void FollowLink(int number) const {
    page->moveCursor(QTextCursor::Start);
    for (int i = 0; i < number; ++i) QTest::keyClick(page, Qt::Key_Tab);
    QTest::keyClick(page, Qt::Key_Return);
  }

  QtToolkit toolkit;
  CBrowserCtrl browser;
  QTextBrowser* page = nullptr;
  QTemporaryDir folder;
  std::vector<std::string> asked;
};

TEST_F(BrowserPeerTest, AddressesOfLinksReachTheHandlerAsTheyStand) {
  const std::string second = Write("second page.txt", "the second");
  const std::string first =
      Write("first.html",
            "<a href='err://C:\\My Dir\\Main.c:12'>a</a> <a href='err://src/Main.c:7'>b</a> "
            "<a href='second page.txt'>c</a> <a href='http://example.invalid/x'>d</a> "
            "<a href='second%20page.txt'>e</a>");
  browser.Navigate(first);
  EXPECT_EQ(Shown(), "a b c d e");
  asked.clear();
  FollowLink(1);
  FollowLink(2);
  EXPECT_EQ(Shown(), "a b c d e");
  browser.Navigate(first);
  FollowLink(3);
  EXPECT_EQ(Shown(), "the second");
  EXPECT_EQ(browser.GetAddress(), second);
  browser.Navigate(first);
  FollowLink(4);
  EXPECT_NE(Shown().find("can't be shown"), std::string::npos);
  EXPECT_EQ(asked, (std::vector<std::string>{"err://C:\\My Dir\\Main.c:12", "err://src/Main.c:7",
                                             first, second, first, "http://example.invalid/x"}));
  browser.Navigate(first);
  FollowLink(5);
  EXPECT_EQ(Shown(), "the second");
}

TEST_F(BrowserPeerTest, LinksFollowTheDesktopFromLightToDark) {
  browser.Navigate(Write("page.html", "<a href='x.html'>x</a>"));
  const QPalette light = QApplication::palette();
  QPalette dark(Qt::white, Qt::black);
  dark.setColor(QPalette::Link, Qt::cyan);
  QApplication::setPalette(dark);
  QCoreApplication::processEvents();
  const QTextFragment link = page->document()->begin().begin().fragment();
  EXPECT_EQ(link.charFormat().foreground().color(), QColor(Qt::cyan));
  QApplication::setPalette(light);
}

TEST_F(BrowserPeerTest, HasAMenuByKeyboard) {
  browser.Navigate(Write("page.txt", "text"));
  QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
  QApplication::sendEvent(page, &event);
  const auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  EXPECT_NE(menu->findChild<QAction*>("edit-copy"), nullptr);
  EXPECT_EQ(menu->findChild<QAction*>("link-copy"), nullptr);
}

TEST_F(BrowserPeerTest, OnlyFilesOfThisMachineAreRead) {
  const QByteArray text = "<p>text<script>code</script></p>";
  const std::string good = Write("page.html", text);
  const std::string marked = Write("c#.html", text);
  const struct {
    std::string address;
    bool isShown;
  } kCases[] = {
      {good, true},
      {"file://" + good, true},
      {good + "#place", true},
      {marked, true},
      {marked + "#place", true},
      {"http://example.invalid/page.html", false},
      {good + ".not", false},
      {FromQt(folder.path()), false},
  };
  for (const auto& each : kCases) {
    browser.Navigate(each.address);
    EXPECT_EQ(Shown() == "text", each.isShown) << each.address << "\n" << Shown();
  }
  Write("page.html", "<a href='other.html'>x</a>");
  browser.Navigate(good);
  browser.SetNavigationHandler([this](const std::string&) {
    browser.DestroyWindow();
    return true;
  });
  FollowLink(1);
  EXPECT_FALSE(browser.IsCreated());
}

}  // namespace
}  // namespace tarn
