#include "HugePageAdvice.h"

#include <cstdint>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace
{
// Below this, a buffer holds too few huge pages to be worth a system call.
constexpr std::size_t smallestAdvisedBuffer = std::size_t { 8 } << 20;
constexpr std::uintptr_t hugePageSize = std::uintptr_t { 2 } << 20;
} // namespace

void adviseHugePages(void* data, std::size_t bytes)
{
#if defined(__linux__) && defined(MADV_HUGEPAGE)
    if (bytes < smallestAdvisedBuffer)
        return;
    // Only whole huge pages inside the buffer can be given; the edges keep small pages.
    const auto begin = reinterpret_cast<std::uintptr_t>(data);
    const std::uintptr_t first = (begin + hugePageSize - 1) & ~(hugePageSize - 1);
    const std::uintptr_t last = (begin + bytes) & ~(hugePageSize - 1);
    if (last > first)
        madvise(static_cast<char*>(data) + (first - begin), last - first, MADV_HUGEPAGE);
#else
    (void)data;
    (void)bytes;
#endif
}
