#pragma once

#include <cstdint>
#include <string>

namespace tarn::test {

// Returns the header of a bitmap of that size, without pixels.
inline std::string TinyBitmap(std::int32_t width, std::int32_t height) {
  std::string bytes(54, '\0');
  bytes.replace(0, 2, "BM");
  bytes[14] = 40;
  for (std::size_t i = 0; i < 4; ++i) {
    bytes[18 + i] = static_cast<char>(static_cast<std::uint32_t>(width) >> (8 * i));
    bytes[22 + i] = static_cast<char>(static_cast<std::uint32_t>(height) >> (8 * i));
  }
  return bytes;
}

}  // namespace tarn::test
