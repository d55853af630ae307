#pragma once

#include <QFont>

#include "widgets/Geometry.h"

namespace tarn {

// What the font leaves open is taken from `base`.
QFont ToQtFont(const Font& font, const QFont& base);

}  // namespace tarn
