#include "heap.h"

#include <cstdint>
#include <malloc.h>
#include <new>
#include <sys/mman.h>
#include <unistd.h>

namespace {

constexpr std::uintptr_t kMebibyte = std::uintptr_t{1} << 20, kHugePage = 2 * kMebibyte;
/// Address space at first: only what is touched becomes memory.
constexpr int kStep = 32 * kMebibyte;
/// What a start with a small drawing stays in; clearing a huge page would take longer than all of that.
constexpr std::uintptr_t kSmallHeap = kMebibyte;

constexpr int kUsualPad = 128 << 10;  // the allocator's own

std::uintptr_t heapEnd() {
  return reinterpret_cast<std::uintptr_t>(::sbrk(0));
}

bool hasRoomForStep() {
  if (::sbrk(2 * kStep) == reinterpret_cast<void*>(-1)) return false;
  ::sbrk(-2 * kStep);
  return true;
}

}  // namespace

void useHugePages() {
  if (!hasRoomForStep()) return;
  ::mallopt(M_MMAP_THRESHOLD, kStep);
  ::mallopt(M_TRIM_THRESHOLD, 2 * kStep);
  ::mallopt(M_TOP_PAD, kStep);
  const std::uintptr_t before = heapEnd();
  ::operator delete(::operator new(kSmallHeap));
  const std::uintptr_t end = heapEnd();
  ::mallopt(M_TOP_PAD, kUsualPad);
  const std::uintptr_t first = (before + kSmallHeap + kHugePage - 1) & ~(kHugePage - 1);
  if (first < end) ::madvise(reinterpret_cast<void*>(first), end - first, MADV_HUGEPAGE);
}
