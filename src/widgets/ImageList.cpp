#include "widgets/ImageList.h"

#include <cstdint>
#include <limits>
#include <utility>

namespace tarn {

namespace {

// Layout of a bitmap file: the signature "BM", file size, reserved bytes and offset of the pixels,
// followed by the image header: its own length, then width and height. A negative height means that
// the top row comes first.
constexpr std::size_t kHeaderLength = 14;
constexpr std::size_t kShortestPictureHeader = 40;

std::uint32_t LittleEndian(const std::string& bytes, std::size_t at) {
  std::uint32_t value = 0;
  for (std::size_t i = 4; i-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
  return value;
}

std::shared_ptr<Bitmap> Read(std::string bytes) {
  if (bytes.size() < kHeaderLength + kShortestPictureHeader || bytes.compare(0, 2, "BM") != 0 ||
      LittleEndian(bytes, kHeaderLength) < kShortestPictureHeader) {
    return nullptr;
  }
  const auto width = static_cast<std::int32_t>(LittleEndian(bytes, kHeaderLength + 4));
  const auto height = static_cast<std::int32_t>(LittleEndian(bytes, kHeaderLength + 8));
  if (width <= 0 || height == 0 || height == std::numeric_limits<std::int32_t>::min()) {
    return nullptr;
  }
  auto bitmap = std::make_shared<Bitmap>();
  bitmap->size = {width, height < 0 ? -height : height};
  bitmap->bytes = std::move(bytes);
  return bitmap;
}

}  // namespace

std::shared_ptr<const Bitmap> ReadBitmap(std::string bytes) {
  return Read(std::move(bytes));
}

std::shared_ptr<const Bitmap> ReadBitmapFile(FileSystem& files, const std::string& path) {
  Result<std::string> bytes = files.ReadWholeFile(path);
  if (!bytes) return nullptr;
  std::shared_ptr<Bitmap> bitmap = Read(std::move(*bytes));
  if (bitmap != nullptr) bitmap->path = path;
  return bitmap;
}

int CImageList::Add(std::shared_ptr<const Bitmap> bitmap, Color transparent) {
  if (bitmap == nullptr || size_.width <= 0) return -1;
  const int added = bitmap->size.width / size_.width;
  if (added == 0) return -1;
  const int first = count_;
  strips_.push_back({std::move(bitmap), transparent, first, added});
  count_ += added;
  return first;
}

}  // namespace tarn
