#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "share/ShippedFiles.h"

namespace tarn::shipped {
namespace {

// Returns "width x height x bits" as the views read it from the file header.
std::string FormOf(const std::string& bytes) {
  if (bytes.size() < 54 || bytes.substr(0, 2) != "BM") return "no bitmap";
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::int16_t bits = 0;
  std::memcpy(&width, &bytes[18], sizeof width);
  std::memcpy(&height, &bytes[22], sizeof height);
  std::memcpy(&bits, &bytes[28], sizeof bits);
  return std::to_string(width) + "x" + std::to_string(height) + "x" + std::to_string(bits);
}

TEST(Pictures, HaveTheSizesThatTheViewsExpect) {
  const struct {
    const char* name;
    const char* form;
  } rows[] = {
      {"errors", "96x16x24"},         {"globals", "96x16x24"},      {"marker", "16x16x24"},
      {"dependencies", "18x18x24"},   {"target", "18x18x24"},       {"wizard", "48x48x24"},
      {"class-func", "18x18x24"},     {"class-define", "18x18x24"}, {"class-type", "18x18x24"},
      {"class-variable", "18x18x24"}, {"class-file", "18x18x24"},   {"class-toolbar", "16x16x24"},
  };
  for (const auto& row : rows) {
    const std::string bytes = ReadBytes(Path(std::string("config/resources/") + row.name + ".bmp"));
    EXPECT_EQ(FormOf(bytes), row.form) << row.name;
    // The corner is transparent, and the transparent color is magenta.
    EXPECT_EQ(bytes.substr(54, 3), std::string("\xFF\x00\xFF", 3)) << row.name;
  }
}

}  // namespace
}  // namespace tarn::shipped
