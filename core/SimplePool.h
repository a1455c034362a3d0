#pragma once

#include "Quor2DAssert.h"
#include "core/AscendingMemory.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <limits>
#include <numeric>
#include <vector>

namespace ZELK_QUOR2D
{

/// Hands out storage for elements that never move and are released together with the pool.
///
/// Blocks grow geometrically up to about 100 MB. The first growth deliberately halves the block size, so that a
/// capacity hint that was too small does not double the memory at once.
template <class T>
class SimplePool
{
public:
    static constexpr int kMaximumBlock = static_cast<int>(100000000 / sizeof(T));

    SimplePool() = default;
    SimplePool(const SimplePool&) = delete;
    SimplePool& operator=(const SimplePool&) = delete;

    /// Allocates the first block. Once per pool.
    ///
    /// @param numFirst   elements of the first block, clamped to [1, kMaximumBlock]
    /// @param numGrowth  elements of every later block; negative chooses by the growth rule
    void init(int numFirst, int numGrowth)
    {
        if (initialized)
            fail("SimplePool::init(..), ERROR: This pool is already initialized");
        firstSize = std::clamp(numFirst, 1, kMaximumBlock);
        growthArgument = numGrowth;
        addBlock(firstSize);
        initialized = true;
    }

    /// @return storage for one element, not initialised
    T* alloc()
    {
        QUOR2D_ASSERT(initialized, "initialized");
        if (++currentIndex >= currentCapacity) {
            addBlock(growthArgument);
            ++currentIndex;
        }
        return pCurrent + currentIndex;
    }

    /// The element counts of all blocks, in order.
    const std::vector<int>& getSizes() const { return vSizes; }

    /// The number of elements handed out so far.
    std::size_t numberOfElements() const { return fullBlocks + static_cast<std::size_t>(currentIndex + 1); }

    /// Whether `p` is the address of an element that was handed out. One comparison per block, the last and
    /// largest ones first.
    bool contains(const T* p) const { return indexOf(p) != kNone; }

    /// How many elements were handed out before this one; kNone for any other address. At the same cost.
    std::size_t indexOf(const T* p) const
    {
        const std::less<const T*> before;
        std::size_t first = fullBlocks; // index of the first element of the block
        for (std::size_t b = vBlocks.size(); b-- > 0;) {
            if (!before(p, vBlocks[b]) && before(p, vBlocks[b] + usedElements(b))) {
                const auto offset = reinterpret_cast<std::uintptr_t>(p) - reinterpret_cast<std::uintptr_t>(vBlocks[b]);
                return offset % sizeof(T) == 0 ? first + offset / sizeof(T) : kNone;
            }
            first -= b > 0 ? static_cast<std::size_t>(vSizes[b - 1]) : 0;
        }
        return kNone;
    }
    static constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

    /// The element before which `index` others were handed out; null where there are not so many. At the same cost.
    T* elementAt(std::size_t index) const
    {
        if (index >= numberOfElements())
            return nullptr;
        std::size_t b = vBlocks.size() - 1, first = fullBlocks;
        // Ends: the first block begins at 0.
        while (index < first)
            first -= static_cast<std::size_t>(vSizes[--b]);
        return vBlocks[b] + (index - first);
    }

    /// Calls `visit(T*)` for every element handed out, in the order of handing out.
    template <class Visitor>
    void forEach(Visitor visit) const
    {
        for (std::size_t b = 0; b < vBlocks.size(); ++b)
            for (T *p = vBlocks[b], *pEnd = p + usedElements(b); p != pEnd; ++p)
                visit(p);
    }

    /// The same in the order of the addresses.
    template <class Visitor>
    void forEachByAddress(Visitor visit) const
    {
        std::vector<std::size_t> vOrder(vBlocks.size());
        std::iota(vOrder.begin(), vOrder.end(), std::size_t(0));
        std::sort(vOrder.begin(), vOrder.end(),
                  [this](std::size_t a, std::size_t b) { return std::less<T*>()(vBlocks[a], vBlocks[b]); });
        for (const std::size_t b : vOrder)
            for (T *p = vBlocks[b], *pEnd = p + usedElements(b); p != pEnd; ++p)
                visit(p);
    }

private:
    [[noreturn]] static void fail(const char* text)
    {
        std::cout << text << std::endl;
        std::exit(1);
    }

    int usedElements(std::size_t block) const { return block + 1 == vBlocks.size() ? currentIndex + 1 : vSizes[block]; }

    int chooseBlockSize() const
    {
        QUOR2D_ASSERT(!vSizes.empty(), "!vSizes.empty()");
        QUOR2D_ASSERT(vSizes.back() > 0, "vSizes.back()>0");
        if (vSizes.size() == 1)
            return std::max(firstSize / 2, 1);
        return static_cast<int>(std::min<std::int64_t>(2 * static_cast<std::int64_t>(vSizes.back()), kMaximumBlock));
    }

    void addBlock(int requestedSize)
    {
        const int size = requestedSize < 0 ? chooseBlockSize() : requestedSize;
        T* pBlock = static_cast<T*>(memory.allocate(static_cast<std::size_t>(size) * sizeof(T)));
        if (!pBlock)
            fail("SimplePool::alloc(..), ERROR: Out of memory, sorry");
        fullBlocks += static_cast<std::size_t>(currentCapacity);
        vBlocks.push_back(pBlock);
        vSizes.push_back(size);
        pCurrent = pBlock;
        currentCapacity = size;
        currentIndex = -1;
    }

    // 2^26 elements have ascending addresses, about 33 million vertices' triangles.
    AscendingMemory memory{sizeof(T) << 26};
    std::vector<T*> vBlocks;
    std::vector<int> vSizes;
    T* pCurrent = nullptr;
    int currentIndex = -1; // of the last element handed out in the current block
    int currentCapacity = 0;
    std::size_t fullBlocks = 0; // elements of all blocks before the current one
    int firstSize = 0;
    int growthArgument = -1;
    bool initialized = false;
};

} // namespace ZELK_QUOR2D
