#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace tarn {

// Memory for the nodes of one read or copied tree, or for attributes that come later. They lie side
// by side in pages, so that a node costs neither a call to the heap nor the heap's own bytes. A
// page goes with the last node in it, wherever the nodes were moved meanwhile and whichever threads
// free them. Inside the xml folder only.
class XmlPages {
 public:
  // Where a node lies: `offset` leads back to its page and is what Release wants.
  struct Place {
    void* memory;
    std::uint16_t offset;
  };

  // The pages grow up to `largestPage` bytes.
  explicit XmlPages(std::size_t largestPage = 256 * 1024) : largest(largestPage) {}
  XmlPages(const XmlPages&) = delete;
  XmlPages& operator=(const XmlPages&) = delete;
  ~XmlPages() { ClosePage(); }

  // The place for one node with all that lies behind it, aligned for pointers.
  Place Take(std::size_t bytes) {
    bytes = (bytes + kUnit - 1) / kUnit * kUnit;
    if (bytes > static_cast<std::size_t>(end - next)) return TakeFromNew(bytes);
    ++taken;
    char* memory = std::exchange(next, next + bytes);
    return {memory, static_cast<std::uint16_t>((memory - page) / kUnit)};
  }

  // Gives a node's place back; the node was `bytes` long at least.
  static void Release(void* memory, std::uint16_t offset, std::size_t bytes);

 private:
  static constexpr std::ptrdiff_t kUnit = 8;

  Place TakeFromNew(std::size_t bytes);
  void ClosePage();

  std::size_t largest;
  char* page = nullptr;
  char* next = nullptr;
  char* end = nullptr;
  std::uint32_t taken = 0;   // places in the page
  std::size_t nextSize = 0;  // of the page behind this one
};

}  // namespace tarn
