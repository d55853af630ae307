#include "widgets/qt/ImageCache.h"

#include <QByteArray>
#include <QImage>
#include <QImageReader>
#include <cmath>

#include "widgets/qt/QtColor.h"
#include "widgets/qt/QtText.h"

namespace tarn {

namespace {

QImage Decode(const Bitmap& bitmap, const QRect& part, Color transparent) {
  const QByteArray bytes =
      QByteArray::fromRawData(bitmap.bytes.data(), static_cast<qsizetype>(bitmap.bytes.size()));
  QImage image = QImage::fromData(bytes, "BMP").convertToFormat(QImage::Format_ARGB32);
  if (image.isNull()) return image;
  image = image.copy(part);
  const QRgb hidden = ToQtColor(transparent).rgb();
  for (int y = 0; y < image.height(); ++y) {
    auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < image.width(); ++x) {
      if ((line[x] | 0xFF000000) == hidden) line[x] = 0;
    }
  }
  return image;
}

QImage DrawFile(const Bitmap& bitmap, Size size, int number, qreal ratio) {
  const QString path = ToQt(bitmap.path);
  if (!path.endsWith(QLatin1String(".bmp"), Qt::CaseInsensitive)) return {};
  QString name = path.chopped(4);
  if (bitmap.size.width >= 2 * size.width) name += QStringLiteral("-%1").arg(number);
  QImageReader reader(name + QStringLiteral(".svg"));
  if (!reader.canRead()) return {};
  reader.setScaledSize(QSize(static_cast<int>(std::lround(size.width * ratio)),
                             static_cast<int>(std::lround(size.height * ratio))));
  QImage image = reader.read();
  image.setDevicePixelRatio(ratio);
  return image;
}

}  // namespace

QPixmap ToPixmap(const Bitmap& bitmap, Size size, int number, qreal ratio, Color transparent) {
  QImage image = DrawFile(bitmap, size, number, ratio);
  if (image.isNull()) {
    image = Decode(bitmap, QRect(number * size.width, 0, size.width, size.height), transparent);
  }
  return QPixmap::fromImage(image);
}

QPixmap ImageCache::Get(const CImageList& images, int index, qreal ratio) {
  const Size size = images.GetImageSize();
  for (const CImageList::Strip& strip : images.GetStrips()) {
    const int number = index - strip.first;
    if (number < 0 || number >= strip.count) continue;
    const auto hundredths = static_cast<int>(std::lround(ratio * 100));
    const Key key(strip.bitmap.get(), strip.transparent, size.width, size.height, number,
                  hundredths);
    const auto known = pictures_.find(key);
    if (known != pictures_.end() && !known->second.bitmap.expired()) return known->second.pixmap;
    std::erase_if(pictures_, [](const auto& each) { return each.second.bitmap.expired(); });
    QPixmap pixmap = ToPixmap(*strip.bitmap, size, number, ratio, strip.transparent);
    pictures_[key] = {strip.bitmap, pixmap};
    return pixmap;
  }
  return {};
}

}  // namespace tarn
