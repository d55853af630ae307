#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/files/FileSystem.h"
#include "widgets/Geometry.h"

namespace tarn {

// An image file in memory. Only its header is parsed here; the toolkit decodes the rest.
struct Bitmap {
  Size size;
  std::string bytes;  // the whole file
  std::string path;   // path of the file; empty if unknown
};

// Return null if the bytes are not a bitmap or the bitmap has no pixels.
std::shared_ptr<const Bitmap> ReadBitmap(std::string bytes);
std::shared_ptr<const Bitmap> ReadBitmapFile(FileSystem& files, const std::string& path);

// Magenta, drawn as transparent.
inline constexpr Color kTransparentColor = 0xFF00FF;

// Images of one size, addressed by number. An added bitmap provides as many images as fit into its
// width.
class CImageList {
 public:
  struct Strip {
    std::shared_ptr<const Bitmap> bitmap;
    Color transparent = kTransparentColor;
    int first = 0;  // number of its first image
    int count = 0;
  };

  explicit CImageList(Size imageSize) : size_(imageSize) {}

  // Returns the number of the bitmap's first image, or -1 if the bitmap is too small for one.
  int Add(std::shared_ptr<const Bitmap> bitmap, Color transparent = kTransparentColor);
  Size GetImageSize() const { return size_; }
  int GetCount() const { return count_; }
  const std::vector<Strip>& GetStrips() const { return strips_; }

 private:
  Size size_;
  int count_ = 0;
  std::vector<Strip> strips_;
};

}  // namespace tarn
