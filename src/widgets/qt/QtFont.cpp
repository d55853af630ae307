#include "widgets/qt/QtFont.h"

#include "widgets/qt/QtText.h"

namespace tarn {

namespace {

constexpr qreal kTwipsPerPoint = 20;

}  // namespace

QFont ToQtFont(const Font& font, const QFont& base) {
  QFont result = base;
  if (!font.face.empty()) result.setFamily(ToQt(font.face));
  if (font.twips > 0) result.setPointSizeF(font.twips / kTwipsPerPoint);
  if (font.isBold) result.setBold(true);
  if (font.isItalic) result.setItalic(true);
  return result;
}

}  // namespace tarn
