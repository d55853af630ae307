#pragma once

#include <cstdint>
#include <string>

// Places and colours of windows. Lengths are pixels of a screen that is not scaled; a toolkit
// scales them.
namespace tarn {

struct Point {
  int x = 0;
  int y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
  int width = 0;
  int height = 0;
  friend bool operator==(const Size&, const Size&) = default;
};

// Right and bottom are outside of it.
struct Rect {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;

  int Width() const { return right - left; }
  int Height() const { return bottom - top; }
  bool IsEmpty() const { return right <= left || bottom <= top; }
  bool Contains(Point point) const {
    return point.x >= left && point.x < right && point.y >= top && point.y < bottom;
  }
  friend bool operator==(const Rect&, const Rect&) = default;
};

// 0x00BBGGRR, as colours stand in files and messages.
using Color = std::uint32_t;

constexpr Color MakeColor(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
  return red | (green << 8) | (blue << 16);
}

// Colours that the user's desktop chooses.
enum class SystemColor : int {
  Window = 5,
  WindowText = 8,
  Highlight = 13,
  HighlightText = 14,
};

struct Font {
  std::string face;  // empty: the toolkit's own
  int twips = 0;     // twentieths of a point; 0: the toolkit's own
  bool isBold = false;
  bool isItalic = false;
  friend bool operator==(const Font&, const Font&) = default;
};

enum class CursorShape { Arrow, Wait, Help, Hand };

}  // namespace tarn
