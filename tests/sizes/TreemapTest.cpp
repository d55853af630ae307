#include "sizes/Treemap.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tarn::sizes {
namespace {

// The example of the paper: areas 6, 6, 4, 3, 2, 2, 1 in a rectangle of 6 by 4.
TEST(Treemap, RectanglesFillTheAreaInProportionAndStayCloseToSquares) {
  const std::vector<std::uint64_t> sizes{6, 6, 4, 3, 2, 2, 1};
  const std::vector<TreemapBox> boxes = Squarify(sizes, {0, 0, 6, 4});
  ASSERT_EQ(boxes.size(), sizes.size());
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    const TreemapBox& box = boxes[i];
    EXPECT_NEAR(box.width * box.height, static_cast<double>(sizes[i]), 1e-9);
    EXPECT_LE(std::max(box.width / box.height, box.height / box.width), 3.0) << i;
    EXPECT_TRUE(box.x >= 0 && box.x + box.width <= 6 + 1e-9) << i;
    EXPECT_TRUE(box.y >= 0 && box.y + box.height <= 4 + 1e-9) << i;
    for (std::size_t j = 0; j < i; ++j) {
      const bool isApart =
          box.x + 1e-9 >= boxes[j].x + boxes[j].width || boxes[j].x + 1e-9 >= box.x + box.width ||
          box.y + 1e-9 >= boxes[j].y + boxes[j].height || boxes[j].y + 1e-9 >= box.y + box.height;
      EXPECT_TRUE(isApart) << i << " and " << j;
    }
  }
  EXPECT_NEAR(boxes[0].width, 3, 1e-9);
  EXPECT_NEAR(boxes[0].height, 2, 1e-9);
}

TEST(Treemap, ThePageEscapesNamesAndNeedsNothingElse) {
  TreemapPage page{"<t>", {{"flash & co", {"flash", 10, {{"a<b>::\"x\"\x01", 6}, {"c", 4}}}}}};
  const std::string html = RenderTreemap(page);
  EXPECT_NE(html.find("a&lt;b&gt;::&quot;x&quot;?\n6 B"), html.npos) << html;
  EXPECT_NE(html.find("flash &amp; co"), html.npos);
  EXPECT_EQ(html.find("<script"), html.npos);
  EXPECT_EQ(html.find("src="), html.npos);
}

TEST(Treemap, ALabelThatIsTooLongKeepsThePartThatDiffers) {
  const std::string folder(200, 'f');
  const std::string name(300, 'n');
  TreemapPage page{"t", {{"flash", {"flash", 10, {{folder + "/led.c.o", 5}, {name + "1", 5}}}}}};
  const std::string html = RenderTreemap(page);
  EXPECT_NE(html.find(">\xe2\x80\xa6"
                      "fff"),
            html.npos)
      << html;
  EXPECT_NE(html.find("fff/led.c.o</text>"), html.npos) << html;
  EXPECT_NE(html.find(">nnn"), html.npos) << html;
  EXPECT_NE(html.find("nnn\xe2\x80\xa6</text>"), html.npos) << html;
}

}  // namespace
}  // namespace tarn::sizes
