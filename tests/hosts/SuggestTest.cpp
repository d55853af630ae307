#include "platform/text/Suggest.h"

#include <gtest/gtest.h>

namespace tarn::host {
namespace {

TEST(Suggest, NamesWhatWasNearlyWritten) {
  const std::vector<std::string> names = {"build", "rebuild", "clean", "config", "status", "tree"};
  const struct {
    const char *word, *text;
  } cases[] = {
      {"biuld", " Did you mean \"build\"?"},
      {"BUILD", " Did you mean \"build\"?"},
      {"stat", " Did you mean \"status\"?"},
      {"rbuild", " Did you mean \"build\" or \"rebuild\"?"},
      {"c", ""},
      {"make", ""},
      {"", ""},
      {"a-very-long-word-that-is-nothing", ""},
  };
  for (const auto& each : cases)
    EXPECT_EQ(SuggestionText(each.word, names), each.text) << each.word;
}

}  // namespace
}  // namespace tarn::host
