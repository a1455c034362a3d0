#pragma once

#include <cstddef>
#include <cstdlib>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace ZELK_QUOR2D
{

/// Memory for a pool block; null when there is none.
///
/// Walks jump about in meshes far larger than what the processor's address cache covers with small pages, so large
/// blocks ask the kernel for huge ones. Where it has none to give, nothing changes.
inline void* allocateBlock(std::size_t numBytes)
{
#if defined(__linux__) && defined(MADV_HUGEPAGE)
    constexpr std::size_t kHugePage = std::size_t(1) << 21;
    if (numBytes >= 2 * kHugePage) {
        void* pBlock = nullptr;
        if (posix_memalign(&pBlock, kHugePage, numBytes) != 0)
            return nullptr;
        madvise(pBlock, numBytes / kHugePage * kHugePage, MADV_HUGEPAGE);
        return pBlock;
    }
#endif
    return std::malloc(numBytes);
}

inline void freeBlock(void* pBlock)
{
    std::free(pBlock);
}

} // namespace ZELK_QUOR2D
