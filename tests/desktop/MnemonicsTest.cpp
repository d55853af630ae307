#include "hosts/desktop/Mnemonics.h"

#include <gtest/gtest.h>

namespace tarn::host {
namespace {

TEST(Mnemonics, EveryEntryGetsALetterOfItsOwn) {
  const struct {
    const char* name;
    QStringList labels;
    const char* result;
  } rows[] = {
      {"first letters", {"Build", "Clean"}, "&Build|&Clean"},
      {"a later word", {"Add files...", "Add folder"}, "&Add files...|Add &folder"},
      {"a letter inside", {"Copy", "Cap"}, "&Copy|C&ap"},
      {"one that exists", {"Stop", "&Save"}, "S&top|&Save"},
      {"an ampersand is no mark", {"A && B", "A&&B"}, "&A && B|A&&&B"},
      {"not in a shortcut", {"Copy", "C\tDel"}, "&Copy|C\tDel"},
      {"separators", {"", "Open"}, "|&Open"},
      {"other letters", {"Öffnen", "Über öffnen"}, "&Öffnen|&Über öffnen"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(WithMnemonics(row.labels).join('|').toStdString(), row.result) << row.name;
  }
}

}  // namespace
}  // namespace tarn::host
