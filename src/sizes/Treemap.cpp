#include "sizes/Treemap.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

namespace tarn::sizes {

namespace {

constexpr std::size_t kMostChildren = 400;
constexpr double kWidth = 1200;
constexpr double kHeight = 640;
constexpr double kTitle = 18;    // height of the title of a rectangle with children
constexpr double kLetter = 6.2;  // width of a letter in a label
constexpr int kMostLevels = 8;

// Worst aspect ratio of a row with these areas along a side of this length.
double WorstRatio(double sum, double largest, double smallest, double side) {
  const double square = side * side;
  return std::max(square * largest / (sum * sum), sum * sum / (square * smallest));
}

// Replaces control characters, which XML doesn't allow, and characters with a meaning in it.
bool IsInsideCharacter(char c) {
  return (static_cast<unsigned char>(c) & 0xc0) == 0x80;
}

// Returns `length` bytes of a longer text, and an ellipsis for the rest. Of a path the end is kept,
// because it is the part that differs. Cuts no character of UTF-8 in two.
std::string Shorten(const std::string& text, std::size_t length) {
  constexpr const char* kEllipsis = "\xe2\x80\xa6";
  if (text.find('/') == text.npos) {
    while (length > 0 && IsInsideCharacter(text[length])) --length;
    return text.substr(0, length) + kEllipsis;
  }
  std::size_t start = text.size() - length;
  while (start < text.size() && IsInsideCharacter(text[start])) ++start;
  return kEllipsis + text.substr(start);
}

std::string Escape(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += static_cast<unsigned char>(c) < ' ' || c == '\x7f' ? '?' : c;
    }
  }
  return escaped;
}

std::string Digits(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", number);
  return text;
}

// Returns the children, largest first, with those beyond the limit in one.
std::vector<TreemapNode> ShownChildren(const TreemapNode& node) {
  std::vector<TreemapNode> shown = node.children;
  std::erase_if(shown, [](const TreemapNode& each) { return each.size == 0; });
  std::ranges::stable_sort(shown, std::ranges::greater(), &TreemapNode::size);
  std::uint64_t sum = 0;
  for (const TreemapNode& each : shown) sum += each.size;
  TreemapNode rest{"", node.size > sum ? node.size - sum : 0};
  if (shown.size() > kMostChildren) {
    for (std::size_t i = kMostChildren; i < shown.size(); ++i) rest.size += shown[i].size;
    shown.resize(kMostChildren);
  }
  if (rest.size > 0) {
    rest.name = "(other)";
    const auto place = std::ranges::find_if(
        shown, [&rest](const TreemapNode& each) { return each.size < rest.size; });
    shown.insert(place, std::move(rest));
  }
  return shown;
}

class Drawing {
 public:
  std::string Draw(const TreemapNode& root) {
    svg_ = "<svg viewBox=\"0 0 " + Digits(kWidth) + " " + Digits(kHeight) +
           "\" role=\"img\" xmlns=\"http://www.w3.org/2000/svg\">\n";
    DrawChildren(root, {0, 0, kWidth, kHeight}, 0, 0, "");
    return svg_ + "</svg>\n";
  }

 private:
  void DrawChildren(const TreemapNode& node, const TreemapBox& box, int level, unsigned hue,
                    const std::string& path) {
    const std::vector<TreemapNode> children = ShownChildren(node);
    std::vector<std::uint64_t> sizes;
    for (const TreemapNode& each : children) sizes.push_back(each.size);
    const std::vector<TreemapBox> boxes = Squarify(sizes, box);
    for (std::size_t i = 0; i < children.size(); ++i) {
      // The golden angle keeps the colours of neighbours apart.
      const unsigned own = level == 0 ? static_cast<unsigned>(i * 137) % 360 : hue;
      DrawNode(children[i], boxes[i], level, own, path);
    }
  }

  void DrawNode(const TreemapNode& node, const TreemapBox& box, int level, unsigned hue,
                const std::string& path) {
    constexpr double kSmallest = 0.7;
    if (box.width < kSmallest || box.height < kSmallest) return;
    const std::string full = path.empty() ? node.name : path + " / " + node.name;
    const int light = level == 0 ? 62 : 80;
    svg_ += "<g><title>" + Escape(full) + "\n" + std::to_string(node.size) +
            " B</title><rect x=\"" + Digits(box.x) + "\" y=\"" + Digits(box.y) + "\" width=\"" +
            Digits(box.width) + "\" height=\"" + Digits(box.height) + "\" fill=\"hsl(" +
            std::to_string(hue) + ",45%," + std::to_string(light) + "%)\"/>";
    DrawLabel(node, box);
    svg_ += "</g>\n";
    const bool hasRoom = box.width > 30 && box.height > kTitle + 12;
    if (node.children.empty() || !hasRoom || level >= kMostLevels) return;
    DrawChildren(node, {box.x + 2, box.y + kTitle, box.width - 4, box.height - kTitle - 2},
                 level + 1, hue, full);
  }

  void DrawLabel(const TreemapNode& node, const TreemapBox& box) {
    const double room = (box.width - 6) / kLetter;
    if (box.height < 14 || room < 3) return;
    std::string text = node.name;
    const std::string size = "  " + std::to_string(node.size) + " B";
    if (static_cast<double>(text.size() + size.size()) <= room) {
      text += size;
    } else if (static_cast<double>(text.size()) > room) {
      text = Shorten(text, static_cast<std::size_t>(room) - 1);
    }
    svg_ += "<text x=\"" + Digits(box.x + 3) + "\" y=\"" + Digits(box.y + 12) + "\">" +
            Escape(text) + "</text>";
  }

  std::string svg_;
};

}  // namespace

std::vector<TreemapBox> Squarify(const std::vector<std::uint64_t>& sizes, const TreemapBox& area) {
  double total = 0;
  for (const std::uint64_t each : sizes) total += static_cast<double>(each);
  std::vector<TreemapBox> boxes(sizes.size());
  if (total <= 0) return boxes;
  const double scale = area.width * area.height / total;
  TreemapBox rest = area;
  for (std::size_t start = 0; start < sizes.size();) {
    const double side = std::max(std::min(rest.width, rest.height), 1e-9);
    double sum = static_cast<double>(sizes[start]) * scale;
    const double largest = std::max(sum, 1e-12);
    std::size_t end = start + 1;
    double worst = WorstRatio(std::max(sum, 1e-12), largest, largest, side);
    for (; end < sizes.size(); ++end) {
      const double next = std::max(static_cast<double>(sizes[end]) * scale, 1e-12);
      const double ratio = WorstRatio(sum + next, largest, next, side);
      if (ratio > worst) break;
      sum += next;
      worst = ratio;
    }
    // Places the row along the shorter side.
    const double depth = sum / side;
    const bool isColumn = rest.width >= rest.height;
    double offset = 0;
    for (std::size_t i = start; i < end; ++i) {
      const double length = sum > 0 ? static_cast<double>(sizes[i]) * scale / sum * side : 0;
      boxes[i] = isColumn ? TreemapBox{rest.x, rest.y + offset, depth, length}
                          : TreemapBox{rest.x + offset, rest.y, length, depth};
      offset += length;
    }
    (isColumn ? rest.x : rest.y) += depth;
    double& left = isColumn ? rest.width : rest.height;
    left = std::max(left - depth, 0.0);
    start = end;
  }
  return boxes;
}

std::string RenderTreemap(const TreemapPage& page) {
  std::string html =
      "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"/>\n"
      "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src "
      "'unsafe-inline'\"/>\n<title>" +
      Escape(page.title) +
      "</title>\n<style>\nbody{font:14px sans-serif;margin:1em;color:#222;background:#fff}\n"
      "h1{font-size:20px}h2{font-size:16px;margin:1em 0 .3em}\n"
      "svg{width:100%;height:auto;max-width:1600px}\n"
      "rect{stroke:#fff;stroke-width:1}rect:hover{stroke:#000}\n"
      "text{font:11px sans-serif;fill:#111;pointer-events:none}\n</style></head><body>\n<h1>" +
      Escape(page.title) + "</h1>\n";
  for (const TreemapPage::Part& part : page.parts) {
    html += "<h2>" + Escape(part.heading) + "</h2>\n" + Drawing().Draw(part.root);
  }
  return html + "</body></html>\n";
}

}  // namespace tarn::sizes
