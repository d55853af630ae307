#pragma once

#include <cstdint>
#include <string>

// Positions and colours of windows. Lengths are device-independent pixels; the toolkit scales them.
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

// Right and bottom are exclusive.
struct Rect {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;

  int Width() const { return right - left; }
  int Height() const { return bottom - top; }
  // True also for an inverted rectangle.
  bool IsEmpty() const { return right <= left || bottom <= top; }
  bool Contains(Point point) const {
    return point.x >= left && point.x < right && point.y >= top && point.y < bottom;
  }
  friend bool operator==(const Rect&, const Rect&) = default;
};

// 0x00BBGGRR, the byte order used in files and messages.
using Color = std::uint32_t;

// Components range from 0 to 255.
constexpr Color MakeColor(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
  return red | (green << 8) | (blue << 16);
}

// Colours defined by the user's desktop.
enum class SystemColor : int {
  Window = 5,
  WindowText = 8,
  Highlight = 13,
  HighlightText = 14,
};

// A font request; the toolkit substitutes what it does not have.
struct Font {
  std::string face;  // empty: the toolkit's default
  int twips = 0;     // twentieths of a point; 0: the toolkit's default
  bool isBold = false;
  bool isItalic = false;
  friend bool operator==(const Font&, const Font&) = default;
};

// Mouse cursors that a toolkit has to provide.
enum class CursorShape { Arrow, Wait, Help, Hand };

}  // namespace tarn
