#include "hosts/cli/Wildcards.h"

#include <gtest/gtest.h>

#include <string>

namespace tarn::host {
namespace {

TEST(Wildcards, AStarStandsForAnythingAndAPlainWordForAPart) {
  const struct {
    const char *text, *pattern;
    bool fits;
  } rows[] = {
      {"uart_init", "UART", true},
      {"uart_init", "init", true},
      {"uart_init", "uart_*", true},
      {"uart_init", "*art*", true},
      {"uart_init", "uart", true},
      {"uart_init", "uart?", false},
      {"uart_init", "*init?", false},
      {"uart", "uar?", true},
      {"uart", "u*t*", true},
      {"abcabd", "*ab?", true},
      {"abcabd", "*abc", false},
      {"", "*", true},
      {"", "?", false},
      {"", "", true},
      {"aXbXc", "a*x*c", true},
      {"src/[a].c", "src/[a].*", true},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(FitsPattern(row.text, row.pattern), row.fits) << row.text << " " << row.pattern;
  }
  // Many stars take no more than O(pattern x text) steps.
  std::string stars;
  for (int i = 0; i < 100; ++i) stars += "*a";
  EXPECT_FALSE(FitsPattern(std::string(20'000, 'a'), stars + "b"));
}

}  // namespace
}  // namespace tarn::host
