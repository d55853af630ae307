#pragma once

#include <QColor>
#include <QPalette>

#include "widgets/Geometry.h"

class QWidget;

namespace tarn {

// A colour of the desktop, as it is.
inline QColor ToQtColor(Color color) {
  return QColor(static_cast<int>(color & 0xFF), static_cast<int>((color >> 8) & 0xFF),
                static_cast<int>((color >> 16) & 0xFF));
}
inline Color FromQtColor(const QColor& color) {
  return MakeColor(static_cast<std::uint32_t>(color.red()),
                   static_cast<std::uint32_t>(color.green()),
                   static_cast<std::uint32_t>(color.blue()));
}

// Of the colours of a widget in its state: with the keyboard, without it, or disabled.
QPalette::ColorGroup GroupOf(const QWidget& widget);

// Whether the desktop writes light on dark.
bool IsDarkPalette();
// A fixed colour of a text or a message, made for a light background, as it is to be shown: on a
// dark one its brightness is turned over.
QColor ToTextColor(Color color);
// Such a colour behind a text.
QColor ToBackgroundColor(Color color);
// From the one (0) to the other (1).
QColor Blend(const QColor& from, const QColor& to, float share);

// How well a text in the one is read on the other: from 1, not at all, to 21, black on white. Small
// texts want 4.5.
double ContrastOf(const QColor& text, const QColor& background);

}  // namespace tarn
