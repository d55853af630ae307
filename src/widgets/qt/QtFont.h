#pragma once

#include <QFont>

#include "widgets/Geometry.h"

namespace tarn {

// Properties that the font does not set are taken from `base`.
QFont ToQtFont(const Font& font, const QFont& base);

}  // namespace tarn
