#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarn::sizes {

struct TreemapNode {
  std::string name;
  std::uint64_t size = 0;  // at least that of its children
  std::vector<TreemapNode> children = {};
};

struct TreemapBox {
  double x = 0, y = 0, width = 0, height = 0;
};

// Squarified treemap (Bruls, Huizing, van Wijk 2000): divides the area into rectangles whose areas
// are proportional to the sizes, which are in descending order. A row is filled along the shorter
// side of what is left as long as the worst aspect ratio in it improves. Linear.
std::vector<TreemapBox> Squarify(const std::vector<std::uint64_t>& sizes, const TreemapBox& area);

// A page with one or more maps, each with a heading and lines below it.
struct TreemapPage {
  struct Part {
    std::string heading;
    TreemapNode root;
  };
  std::string title;
  std::vector<Part> parts;
};

// Returns one HTML file with the maps as SVG, which needs neither scripts nor other files. Names
// are escaped. Of many children, the largest ones are drawn, and the others together.
std::string RenderTreemap(const TreemapPage& page);

}  // namespace tarn::sizes
