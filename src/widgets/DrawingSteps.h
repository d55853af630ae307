#pragma once

#include <string>
#include <variant>
#include <vector>

#include "widgets/Geometry.h"
#include "widgets/ImageList.h"

// What a control wants painted, told as steps that a toolkit carries out in order.
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

// On one line, with nothing in the text standing for anything else.
struct TextStep {
  Rect rect;
  std::string text;
  Font font;
  Color color = 0;
};

using DrawingStep = std::variant<FillStep, ImageStep, TextStep>;
using DrawingSteps = std::vector<DrawingStep>;

}  // namespace tarn
