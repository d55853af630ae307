#pragma once

#include <QColor>
#include <QPalette>

#include "widgets/Geometry.h"

class QWidget;

namespace tarn {

// Convert a colour of the desktop without adjustment.
inline QColor ToQtColor(Color color) {
  return QColor(static_cast<int>(color & 0xFF), static_cast<int>((color >> 8) & 0xFF),
                static_cast<int>((color >> 16) & 0xFF));
}
inline Color FromQtColor(const QColor& color) {
  return MakeColor(static_cast<std::uint32_t>(color.red()),
                   static_cast<std::uint32_t>(color.green()),
                   static_cast<std::uint32_t>(color.blue()));
}

// Colour group for a widget's state: focused, unfocused or disabled.
QPalette::ColorGroup GroupOf(const QWidget& widget);

// Returns whether the desktop uses a dark theme.
bool IsDarkPalette();
// Adapts a fixed text colour, designed for a light background, to the desktop: on a dark theme its
// brightness is inverted.
QColor ToTextColor(Color color);
// Like ToTextColor(), for a background colour.
QColor ToBackgroundColor(Color color);
// Interpolates linearly: `from` at share 0, `to` at 1.
QColor Blend(const QColor& from, const QColor& to, float share);

// Contrast ratio of a text on a background: from 1 (invisible) to 21 (black on white). Small text
// needs 4.5.
double ContrastOf(const QColor& text, const QColor& background);

}  // namespace tarn
