#pragma once

#include <QPixmap>
#include <map>
#include <memory>
#include <tuple>

#include "widgets/ImageList.h"

namespace tarn {

// Renders image `number` of a bitmap that holds images of one size side by side, at a device pixel
// ratio. If there is a vector drawing next to the bitmap's file (same name with ".svg", for a strip
// "-0.svg" and so on), renders that, so that the image is sharp on every screen. Returns null if
// the bitmap cannot be decoded.
QPixmap ToPixmap(const Bitmap& bitmap, Size size, int number, qreal ratio,
                 Color transparent = kTransparentColor);

// Cache of rendered images of image lists. Lists and bitmaps may be destroyed at any time; images
// rendered from them are evicted when the next image is rendered. Widget thread only.
class ImageCache {
 public:
  // Returns null if the list has no such number or the bitmap cannot be decoded.
  QPixmap Get(const CImageList& images, int index, qreal ratio = 1);

 private:
  struct Picture {
    std::weak_ptr<const Bitmap> bitmap;  // detects a new bitmap at the address of a destroyed one
    QPixmap pixmap;
  };
  // Bitmap, transparent colour, width and height of an image, its number, and the ratio in
  // hundredths.
  using Key = std::tuple<const Bitmap*, Color, int, int, int, int>;

  std::map<Key, Picture> pictures_;
};

}  // namespace tarn
