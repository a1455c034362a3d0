#pragma once

#include <cstdint>
#include <utility>
#include <vector>

namespace quor2d_tool
{

/// A map from 64-bit keys to 32-bit values for large numbers of entries: open addressing, expected O(1) per call.
/// The key with all bits set is reserved.
class FlatMap
{
public:
    static constexpr std::uint32_t kNone = 0xffffffffu;

    explicit FlatMap(std::size_t numExpected)
    {
        std::size_t numSlots = 16;
        while (numSlots < 2 * numExpected + 2)
            numSlots *= 2;
        vSlots.assign(numSlots, {kFree, kNone});
    }

    /// Enters a key that is not there yet; no more keys than expected.
    void insert(std::uint64_t key, std::uint32_t value) { vSlots[find(key)] = {key, value}; }

    /// The value of a key, or kNone.
    std::uint32_t operator[](std::uint64_t key) const { return vSlots[find(key)].second; }

private:
    static constexpr std::uint64_t kFree = ~std::uint64_t(0);

    // The slot of a key, or the free one where it belongs. Ends because at most half of the slots are taken.
    std::size_t find(std::uint64_t key) const
    {
        std::uint64_t hash = (key ^ (key >> 31)) * 0x9E3779B97F4A7C15u;
        std::size_t slot = (hash ^ (hash >> 32)) & (vSlots.size() - 1);
        while (vSlots[slot].first != kFree && vSlots[slot].first != key)
            slot = (slot + 1) & (vSlots.size() - 1);
        return slot;
    }

    std::vector<std::pair<std::uint64_t, std::uint32_t>> vSlots;
};

/// The key of an undirected edge.
inline std::uint64_t edgeKey(std::uint32_t a, std::uint32_t b)
{
    return a < b ? (std::uint64_t(a) << 32) | b : (std::uint64_t(b) << 32) | a;
}

} // namespace quor2d_tool
