#include "hosts/desktop/OutputPane.h"

#include <gtest/gtest.h>

#include <QApplication>

namespace tarn::host {
namespace {

TEST(OutputPaneTest, PartsOfCharactersAreJoinedAndTheNextCommandStartsEmpty) {
  OutputPane pane(nullptr);
  int shown = 0;
  pane.onFirst = [&shown] { ++shown; };
  pane.Begin();
  pane.Add("a\r\nb\xC3");
  pane.Add("\xA4");
  EXPECT_EQ(pane.toPlainText(), QString::fromUtf8("a\nb\xC3\xA4"));
  pane.Begin();
  EXPECT_EQ(pane.toPlainText(), QString::fromUtf8("a\nb\xC3\xA4"));
  pane.Add("c");
  EXPECT_EQ(pane.toPlainText(), "c");
  EXPECT_EQ(shown, 2);
}

}  // namespace
}  // namespace tarn::host
