#include "platform/qt/ImageCache.h"

#include <QByteArray>
#include <QImage>

#include "platform/qt/QtFont.h"

namespace tarn {

namespace {

QImage Decode(const Bitmap& bitmap, Color transparent) {
  const QByteArray bytes =
      QByteArray::fromRawData(bitmap.bytes.data(), static_cast<qsizetype>(bitmap.bytes.size()));
  QImage image = QImage::fromData(bytes, "BMP").convertToFormat(QImage::Format_ARGB32);
  const QRgb hidden = ToQtColor(transparent).rgb();
  for (int y = 0; y < image.height(); ++y) {
    auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < image.width(); ++x) {
      if ((line[x] | 0xFF000000) == hidden) line[x] = 0;
    }
  }
  return image;
}

}  // namespace

QPixmap ImageCache::Get(const CImageList& images, int index) {
  for (const CImageList::Strip& strip : images.GetStrips()) {
    if (index < strip.first || index >= strip.first + strip.count) continue;
    return PicturesOf(images, strip).pixmaps[static_cast<std::size_t>(index - strip.first)];
  }
  return {};
}

const ImageCache::Pictures& ImageCache::PicturesOf(const CImageList& images,
                                                   const CImageList::Strip& strip) {
  const Size size = images.GetImageSize();
  Pictures& pictures = strips[{strip.bitmap.get(), strip.transparent, size.width, size.height}];
  if (pictures.bitmap != nullptr) return pictures;
  pictures.bitmap = strip.bitmap;
  const QImage image = Decode(*strip.bitmap, strip.transparent);
  for (int i = 0; i < strip.count; ++i) {
    pictures.pixmaps.push_back(image.isNull() ? QPixmap()
                                              : QPixmap::fromImage(image.copy(
                                                    i * size.width, 0, size.width, size.height)));
  }
  return pictures;
}

}  // namespace tarn
