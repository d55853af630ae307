#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/files/FileSystem.h"
#include "widgets/Geometry.h"

namespace tarn {

// A picture as its file has it. Only the header is looked into here; a toolkit decodes the rest.
struct Bitmap {
  Size size;
  std::string bytes;  // the whole file
  std::string path;   // of the file; empty when nobody knows
};

// Null for bytes that are no bitmap, or one without pixels.
std::shared_ptr<const Bitmap> ReadBitmap(std::string bytes);
std::shared_ptr<const Bitmap> LoadBitmap(FileSystem& files, const std::string& path);

// Magenta: where the background shows through.
inline constexpr Color kTransparentColor = 0xFF00FF;

// Pictures of one size by number. A bitmap that is added gives as many as fit into its width.
class CImageList {
 public:
  struct Strip {
    std::shared_ptr<const Bitmap> bitmap;
    Color transparent = kTransparentColor;
    int first = 0;  // number of its first picture
    int count = 0;
  };

  explicit CImageList(Size imageSize) : size(imageSize) {}

  // The number of the first picture of the bitmap; -1 when none fits.
  int Add(std::shared_ptr<const Bitmap> bitmap, Color transparent = kTransparentColor);
  Size GetImageSize() const { return size; }
  int GetCount() const { return count; }
  const std::vector<Strip>& GetStrips() const { return strips; }

 private:
  Size size;
  int count = 0;
  std::vector<Strip> strips;
};

}  // namespace tarn
