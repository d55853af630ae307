#include "xml/XmlArena.h"

#include <algorithm>
#include <atomic>
#include <new>

// An address sanitizer tracks heap blocks only, so freed nodes of a page are poisoned explicitly.
#if defined(__SANITIZE_ADDRESS__)
#define TARN_POISONS_NODES
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TARN_POISONS_NODES
#endif
#endif
#if defined(TARN_POISONS_NODES)
// Provided by the sanitizer's run-time library.
extern "C" void __asan_poison_memory_region(const volatile void* memory, std::size_t bytes);
#endif

namespace tarn {
namespace {

// The first page has room for one node, since many trees have only one; later pages double in size.
constexpr std::size_t kSecondPage = 512;

// Header of a page. While the page is being filled, the count is too large by kOpen, so that it
// can't reach zero before all nodes of the page were allocated.
struct Page {
  static constexpr std::uint32_t kOpen = 1u << 30;
  std::atomic<std::uint32_t> nodes;

  void Drop(std::uint32_t count) {
    if (nodes.fetch_sub(count, std::memory_order_acq_rel) == count) ::operator delete(this);
  }
};
constexpr std::size_t kHead = sizeof(std::uint64_t);
static_assert(sizeof(Page) <= kHead);

char* NewPage(std::size_t size, std::uint32_t nodes) {
  return reinterpret_cast<char*>(new (::operator new(size)) Page{nodes});
}

}  // namespace

XmlArena::Block XmlArena::AllocateFromNew(std::size_t bytes) {
  constexpr auto firstOffset = static_cast<std::uint16_t>(kHead / kUnit);
  // Sharing pages would waste much of the current page for a block of this size.
  if (bytes >= largest_ / 4) return {NewPage(kHead + bytes, 1) + kHead, firstOffset};
  ClosePage();
  const std::size_t size = std::max(nextSize_, kHead + bytes);
  page_ = NewPage(size, Page::kOpen);
  next_ = page_ + kHead;
  end_ = page_ + size;
  nextSize_ = std::clamp(nextSize_ * 2, kSecondPage, largest_);
  return Allocate(bytes);
}

void XmlArena::ClosePage() {
  if (page_) reinterpret_cast<Page*>(page_)->Drop(Page::kOpen - taken_);
  page_ = nullptr;
  taken_ = 0;
}

void XmlArena::Release(void* memory, std::uint16_t offset, [[maybe_unused]] std::size_t bytes) {
#if defined(TARN_POISONS_NODES)
  __asan_poison_memory_region(memory, bytes);
#endif
  reinterpret_cast<Page*>(static_cast<char*>(memory) - offset * kUnit)->Drop(1);
}

}  // namespace tarn
