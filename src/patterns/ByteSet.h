#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <string_view>

namespace tarn {

// Set of bytes as a bitmap of 256 bits. A value type; every operation takes constant time.
class ByteSet {
 public:
  constexpr ByteSet() = default;
  constexpr explicit ByteSet(std::string_view bytes) {
    for (const char byte : bytes) Add(byte);
  }
  constexpr void Add(char byte) { WordOf(byte) |= BitOf(byte); }
  constexpr bool Has(char byte) const {
    return (words_[static_cast<unsigned char>(byte) / 64] & BitOf(byte)) != 0;
  }

  constexpr int Count() const {
    int count = 0;
    for (const std::uint64_t word : words_) count += std::popcount(word);
    return count;
  }
  // Returns the lowest byte of the set, which must not be empty.
  constexpr char First() const {
    std::size_t i = 0;
    while (words_[i] == 0) ++i;
    return static_cast<char>(64 * static_cast<int>(i) + std::countr_zero(words_[i]));
  }
  // Returns true if the two sets have a common member.
  constexpr bool Meets(const ByteSet& other) const { return (*this & other) != ByteSet(); }
  constexpr bool operator==(const ByteSet& other) const = default;
  constexpr ByteSet& operator|=(const ByteSet& other) {
    for (std::size_t i = 0; i < words_.size(); ++i) words_[i] |= other.words_[i];
    return *this;
  }
  constexpr ByteSet operator|(const ByteSet& other) const { return ByteSet(*this) |= other; }
  constexpr ByteSet operator&(const ByteSet& other) const {
    ByteSet both;
    for (std::size_t i = 0; i < words_.size(); ++i) both.words_[i] = words_[i] & other.words_[i];
    return both;
  }
  constexpr ByteSet operator~() const {
    ByteSet others;
    for (std::size_t i = 0; i < words_.size(); ++i) others.words_[i] = ~words_[i];
    return others;
  }

 private:
  static constexpr std::uint64_t BitOf(char byte) {
    return std::uint64_t{1} << (static_cast<unsigned char>(byte) % 64);
  }
  constexpr std::uint64_t& WordOf(char byte) {
    return words_[static_cast<unsigned char>(byte) / 64];
  }

  std::array<std::uint64_t, 4> words_{};
};

}  // namespace tarn
