#pragma once

#include <string>
#include <variant>
#include <vector>

#include "widgets/Geometry.h"
#include "widgets/ImageList.h"

// Paint commands of a control, executed by the toolkit in order.
namespace tarn {

struct FillStep {
  Rect rect;
  Color color = 0;
};

struct ImageStep {
  const CImageList* images = nullptr;  // borrowed while painting
  int index = 0;
  Point place;
};

// Draws a single line; no character of the text is interpreted as markup.
struct TextStep {
  Rect rect;
  std::string text;
  Font font;
  Color color = 0;
};

// The lists are built for one paint operation and not stored.
using DrawingStep = std::variant<FillStep, ImageStep, TextStep>;
using DrawingSteps = std::vector<DrawingStep>;

}  // namespace tarn
