#include "widgets/qt/QtColor.h"

#include <QGuiApplication>
#include <QPalette>
#include <QWidget>
#include <algorithm>
#include <cmath>

namespace tarn {

namespace {

// Limits: an inverted dark colour would otherwise be paler than its surroundings.
constexpr qreal kDarkestOnDark = 0.55;
constexpr qreal kBrightestBackground = 0.3;
constexpr float kSaturationOnDark = 0.3F;

// Relative luminance as perceived by the eye, 0 to 1.
double LuminanceOf(const QColor& color) {
  const auto linear = [](float share) {
    const auto value = static_cast<double>(share);
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

}  // namespace

QPalette::ColorGroup GroupOf(const QWidget& widget) {
  if (!widget.isEnabled()) return QPalette::Disabled;
  return widget.hasFocus() ? QPalette::Active : QPalette::Inactive;
}

bool IsDarkPalette() {
  const QPalette palette = QGuiApplication::palette();
  return palette.color(QPalette::Window).lightness() <
         palette.color(QPalette::WindowText).lightness();
}

QColor ToTextColor(Color color) {
  // Black means the desktop's text colour.
  if (color == 0) return QGuiApplication::palette().color(QPalette::Text);
  const QColor plain = ToQtColor(color);
  if (!IsDarkPalette()) return plain;
  const auto lightness = static_cast<qreal>(plain.lightnessF());
  const qreal turned = qMax(kDarkestOnDark, 1.0 - lightness);
  return QColor::fromHslF(plain.hslHueF(), plain.hslSaturationF(), static_cast<float>(turned));
}

QColor ToBackgroundColor(Color color) {
  const QColor plain = ToQtColor(color);
  if (!IsDarkPalette()) return plain;
  // White means the desktop's background, and a slightly darker colour becomes a slightly brighter
  // one.
  const QColor base = QGuiApplication::palette().color(QPalette::Base);
  const auto lightness = static_cast<qreal>(plain.lightnessF());
  const qreal turned =
      qMin(kBrightestBackground, static_cast<qreal>(base.lightnessF()) + 1.0 - lightness);
  return QColor::fromHslF(plain.hslHueF(), plain.hslSaturationF() * kSaturationOnDark,
                          static_cast<float>(turned));
}

QColor Blend(const QColor& from, const QColor& to, float share) {
  const auto mix = [share](float a, float b) { return a + (b - a) * share; };
  return QColor::fromRgbF(mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()),
                          mix(from.blueF(), to.blueF()));
}

double ContrastOf(const QColor& text, const QColor& background) {
  // Reflected light of the screen brightens both.
  constexpr double kGlare = 0.05;
  const double one = LuminanceOf(text) + kGlare;
  const double other = LuminanceOf(background) + kGlare;
  return std::max(one, other) / std::min(one, other);
}

}  // namespace tarn
