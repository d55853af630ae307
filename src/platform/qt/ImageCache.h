#pragma once

#include <QPixmap>
#include <map>
#include <memory>
#include <tuple>
#include <vector>

#include "platform/windowing/ImageList.h"

namespace tarn {

// The pictures of image lists, each decoded once. It keeps the bitmaps alive that it knows, so that
// a list may go at any time. On the thread of the widgets.
class ImageCache {
 public:
  // Null for a number that the list does not have, and for a bitmap that can't be decoded.
  QPixmap Get(const CImageList& images, int index);

 private:
  struct Pictures {
    std::shared_ptr<const Bitmap> bitmap;
    std::vector<QPixmap> pixmaps;
  };
  // The bitmap, what is transparent in it, and the size of one picture.
  using Key = std::tuple<const Bitmap*, Color, int, int>;

  const Pictures& PicturesOf(const CImageList& images, const CImageList::Strip& strip);

  std::map<Key, Pictures> strips;
};

}  // namespace tarn
