#pragma once

#include <cstddef>
#include <cstdlib>

namespace ZELK_QUOR2D
{

/// Memory for a pool block; null when there is none.
///
/// Large blocks are aligned to huge pages, so that a kernel that hands them out by itself can use them from the first
/// byte. They are not asked for (MADV_HUGEPAGE): that gained three percent of batch insertion where the kernel had
/// cleared memory at hand, and cost more than the whole insertion where a virtual machine had to get it from its host.
inline void* allocateBlock(std::size_t numBytes)
{
#if defined(__linux__)
    constexpr std::size_t kHugePage = std::size_t(1) << 21;
    if (numBytes >= 2 * kHugePage) {
        void* pBlock = nullptr;
        return posix_memalign(&pBlock, kHugePage, numBytes) == 0 ? pBlock : nullptr;
    }
#endif
    return std::malloc(numBytes);
}

inline void freeBlock(void* pBlock)
{
    std::free(pBlock);
}

} // namespace ZELK_QUOR2D
