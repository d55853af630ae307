#include "views/XmlMenu.h"

#include <gtest/gtest.h>

#include "support/RecordingToolkit.h"

namespace tarn {
namespace {

using test::MenuText;

TEST(XmlMenu, EachEntryIsWhatItsAttributesAndChildrenSay) {
  const struct {
    const char* description;
    const char* menu;
  } rows[] = {
      {"<Menu></Menu>", ""},
      {"<Menu><A id=\"0\" Header=\"first\" /></Menu>", "first 32772"},
      {"<Menu><A id=\"57600\" Header=\"last\" /><B id=\"57601\" Header=\"frame\" /></Menu>",
       "last 90372 | frame 57601"},
      {"<Menu><A id=\"x\" Header=\"no number\" /><A id=\"\" /></Menu>", "no number 32772 |  32772"},
      {"<Menu><A Mode=\"Separator\" id=\"1\"><B id=\"2\" /></A><A Mode=\"separator\" id=\"1\" "
       "Header=\"a\" /></Menu>",
       "- | a 32773"},
      {"<Menu><A Header=\"neither\" /><A id=\"1\" Header=\"b\" /></Menu>", "b 32773"},
      {"<Menu><A id=\"9\" Header=\"sub\"><B id=\"1\" Header=\"c\" /><C Header=\"deep\"><D id=\"2\" "
       "Header=\"d\" /></C></A></Menu>",
       "sub {c 32773 | deep {d 32774}}"},
      {"<Menu><A id=\"1\" Header=\"note\"><!-- nothing --></A></Menu>", "note {}"},
      {"<Menu><A id=\"1\" Header=\"read\" /><B", "read 32773"},
  };
  for (const auto& row : rows) {
    CXmlMenu menu;
    EXPECT_TRUE(menu.LoadFromXml(row.description)) << row.description;
    EXPECT_EQ(MenuText(*menu.GetMenu()), row.menu) << row.description;
  }
}

TEST(XmlMenu, WhatDescribesNoMenuLeavesTheMenu) {
  CXmlMenu menu;
  EXPECT_TRUE(menu.LoadFromXml("<Menu><A id=\"1\" Header=\"a\" /></Menu>"));
  for (const char* other : {"<menu><A id=\"2\" Header=\"b\" /></menu>", "", "no element"}) {
    EXPECT_FALSE(menu.LoadFromXml(other)) << other;
    EXPECT_EQ(MenuText(*menu.GetMenu()), "a 32773") << other;
  }
}

}  // namespace
}  // namespace tarn
