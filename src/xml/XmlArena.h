#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace tarn {

// Arena for the nodes of one parsed or copied tree, or for attributes that are added later. Blocks
// are allocated one after the other in pages, so that a node costs neither a heap call nor the
// heap's overhead. A page has an atomic count of its nodes and is freed with the last one,
// regardless of the trees the nodes were moved to and the threads that free them. Allocation and
// release take constant time. The arena itself belongs to one thread. For use inside the xml folder
// only.
class XmlArena {
 public:
  // Location of a block. `offset` leads back to its page; `Release()` needs it.
  struct Block {
    void* memory;
    std::uint16_t offset;
  };

  // Page sizes grow up to `largestPage` bytes.
  explicit XmlArena(std::size_t largestPage = 256 * 1024) : largest_(largestPage) {}
  XmlArena(const XmlArena&) = delete;
  XmlArena& operator=(const XmlArena&) = delete;
  ~XmlArena() { ClosePage(); }

  // Allocates a block for one node and its trailing data, aligned for pointers.
  Block Allocate(std::size_t bytes) {
    bytes = (bytes + kUnit - 1) / kUnit * kUnit;
    if (bytes > static_cast<std::size_t>(end_ - next_)) return AllocateFromNew(bytes);
    ++taken_;
    char* memory = std::exchange(next_, next_ + bytes);
    return {memory, static_cast<std::uint16_t>((memory - page_) / kUnit)};
  }

  // Returns a node's block to its page. The node occupied at least `bytes` bytes. May be called on
  // any thread.
  static void Release(void* memory, std::uint16_t offset, std::size_t bytes);

 private:
  static constexpr std::ptrdiff_t kUnit = 8;

  Block AllocateFromNew(std::size_t bytes);
  void ClosePage();

  std::size_t largest_;
  char* page_ = nullptr;
  char* next_ = nullptr;
  char* end_ = nullptr;
  std::uint32_t taken_ = 0;   // blocks in the current page
  std::size_t nextSize_ = 0;  // size of the next page
};

}  // namespace tarn
