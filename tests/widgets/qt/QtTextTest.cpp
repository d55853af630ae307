#include "widgets/qt/QtText.h"

#include <gtest/gtest.h>

#include <string>

namespace tarn {
namespace {

TEST(QtTextTest, PlacesAreThoseOfTheCharacters) {
  for (const std::string text :
       {"plain", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", "\xFF\xE2\x82 \xF0\x9F\x98 \xC0\x80\xC3",
        "\xED\xA0\x80\xE0\x80\x80\xF0\x80\x80\x80\xF4\x90\x80\x80\xF5", "\xEF\xBB\xBFmark"}) {
    const QString shown = ToQt(text);
    EXPECT_EQ(ToQtPosition(text, text.size()), shown.size()) << text;
    EXPECT_EQ(FromQtPosition(text, static_cast<int>(shown.size())), text.size()) << text;
    for (int i = 0; i < shown.size(); ++i) {
      if (shown[i].isLowSurrogate()) continue;
      const std::size_t byte = FromQtPosition(text, i);
      EXPECT_EQ(ToQtPosition(text, byte), i) << text;
      if (shown[i] != QChar::ReplacementCharacter) {
        EXPECT_TRUE(ToQt(text.substr(byte)).startsWith(shown.mid(i, 1))) << text;
      }
    }
  }
}

}  // namespace
}  // namespace tarn
