#include "hosts/core/LargePages.h"

#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>

namespace tarn::host {

namespace {

constexpr int kReserve = 256 << 20;  // addresses; memory comes with the first touch
constexpr int kUsualReserve = 128 << 10;
constexpr int kLargestInHeap = 32 << 20;
constexpr std::uintptr_t kLargePage = 2 << 20;

}  // namespace

void PreferLargePages() {
  mallopt(M_MMAP_THRESHOLD, kLargestInHeap);
  mallopt(M_TRIM_THRESHOLD, kReserve);
  mallopt(M_TOP_PAD, kReserve);
  const auto before = reinterpret_cast<std::uintptr_t>(sbrk(0));
  void* volatile grown = std::malloc(kLargePage);  // volatile: or the pair would be left out
  std::free(grown);
  const auto after = reinterpret_cast<std::uintptr_t>(sbrk(0));
  const std::uintptr_t first = (before + kLargePage - 1) & ~(kLargePage - 1);
  if (after <= first) {
    // So much is not to be had here; every later growth would ask for it in vain.
    mallopt(M_TOP_PAD, kUsualReserve);
    return;
  }
  (void)madvise(reinterpret_cast<void*>(first), after - first, MADV_HUGEPAGE);
}

}  // namespace tarn::host
