#pragma once

#include <string>
#include <variant>
#include <vector>

#include "widgets/Geometry.h"
#include "widgets/ImageList.h"

// Paint commands of a control, executed by the toolkit in order.
namespace tarn {

struct PaintFill {
  Rect rect;
  Color color = 0;
};

struct PaintImage {
  const CImageList* images = nullptr;  // borrowed while painting
  int index = 0;
  Point place;
};

// Draws a single line; no character of the text is interpreted as markup.
struct PaintText {
  Rect rect;
  std::string text;
  Font font;
  Color color = 0;
};

// The lists are built for one paint operation and not stored.
using PaintCommand = std::variant<PaintFill, PaintImage, PaintText>;
using PaintCommands = std::vector<PaintCommand>;

}  // namespace tarn
