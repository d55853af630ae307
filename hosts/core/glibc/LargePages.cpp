#include "hosts/core/LargePages.h"

#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>

namespace tarn::host {

namespace {

constexpr int kReserve = 256 << 20;  // address space; memory is committed on first access
constexpr int kUsualReserve = 128 << 10;
constexpr int kLargestInHeap = 32 << 20;
constexpr std::uintptr_t kLargePage = 2 << 20;

}  // namespace

void PreferLargePages() {
  mallopt(M_MMAP_THRESHOLD, kLargestInHeap);
  mallopt(M_TRIM_THRESHOLD, kReserve);
  mallopt(M_TOP_PAD, kReserve);
  const auto before = reinterpret_cast<std::uintptr_t>(sbrk(0));
  void* volatile grown = std::malloc(kLargePage);  // volatile: not optimised out
  std::free(grown);
  const auto after = reinterpret_cast<std::uintptr_t>(sbrk(0));
  const std::uintptr_t first = (before + kLargePage - 1) & ~(kLargePage - 1);
  if (after <= first) {
    // The OS can't provide that much here; don't request it again on every growth.
    mallopt(M_TOP_PAD, kUsualReserve);
    return;
  }
  (void)madvise(reinterpret_cast<void*>(first), after - first, MADV_HUGEPAGE);
}

}  // namespace tarn::host
