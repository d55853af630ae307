#pragma once

#include <QPixmap>
#include <map>
#include <memory>
#include <tuple>

#include "widgets/ImageList.h"

namespace tarn {

// The picture of that number among those of one size that stand side by side in a bitmap, for a
// screen of that many pixels to a pixel of ours. Where the bitmap's file has a drawing beside it -
// of the same name with ".svg", for a strip "-0.svg" and so on - it is drawn from that, so that it
// is sharp on every screen. Null for a bitmap that can't be decoded.
QPixmap ToPixmap(const Bitmap& bitmap, Size size, int number, qreal ratio,
                 Color transparent = kTransparentColor);

// The pictures of image lists, each drawn once. Lists and bitmaps may go at any time; what was
// drawn from them goes when the next picture is drawn. On the thread of the widgets.
class ImageCache {
 public:
  // Null for a number that the list does not have, and for a bitmap that can't be decoded.
  QPixmap Get(const CImageList& images, int index, qreal ratio = 1);

 private:
  struct Picture {
    std::weak_ptr<const Bitmap> bitmap;  // another one may have the place of one that has gone
    QPixmap pixmap;
  };
  // The bitmap, what is transparent in it, the size of one picture and which it is, and the ratio
  // in hundredths.
  using Key = std::tuple<const Bitmap*, Color, int, int, int, int>;

  std::map<Key, Picture> pictures;
};

}  // namespace tarn
