#pragma once

#include "formats/Scene.h"

#include <cstdint>
#include <cstring>
#include <vector>

namespace quor2d_tool
{

/// Numbers distinct coordinates 0, 1, 2, ... in the order of their first appearance; -0.0 equals 0.0. An open hash
/// table: expected O(1) per call.
class CoordIndex
{
public:
    explicit CoordIndex(std::size_t numExpected = 0) { rehash(2 * numExpected + 16); }

    /// The number of c, a new one where c has not been met before.
    std::uint32_t insert(const Coord& c)
    {
        std::size_t slot = find(c);
        if (vSlots[slot] != kFree)
            return vSlots[slot];
        vSlots[slot] = static_cast<std::uint32_t>(vCoords.size());
        vCoords.push_back(c);
        if (2 * vCoords.size() > vSlots.size())
            rehash(2 * vSlots.size());
        return static_cast<std::uint32_t>(vCoords.size() - 1);
    }

    std::size_t size() const { return vCoords.size(); }
    const Coord& operator[](std::size_t i) const { return vCoords[i]; }
    const std::vector<Coord>& coords() const { return vCoords; }

private:
    static constexpr std::uint32_t kFree = 0xffffffffu;

    static std::uint64_t bits(double value)
    {
        value += 0.0; // makes one zero of both
        std::uint64_t result;
        std::memcpy(&result, &value, sizeof result);
        return result;
    }

    // The slot of c, or the free one where it belongs. Ends because at most half of the slots are taken.
    std::size_t find(const Coord& c) const
    {
        std::uint64_t hash = (bits(c.x) * 0x9E3779B97F4A7C15u) ^ (bits(c.y) * 0xC2B2AE3D27D4EB4Fu);
        hash = (hash ^ (hash >> 29)) * 0xBF58476D1CE4E5B9u;
        std::size_t slot = (hash ^ (hash >> 32)) & (vSlots.size() - 1);
        while (vSlots[slot] != kFree && !(vCoords[vSlots[slot]] == c))
            slot = (slot + 1) & (vSlots.size() - 1);
        return slot;
    }

    void rehash(std::size_t numSlots)
    {
        std::size_t size = 16;
        while (size < numSlots)
            size *= 2;
        vSlots.assign(size, kFree);
        for (std::size_t i = 0; i < vCoords.size(); ++i)
            vSlots[find(vCoords[i])] = static_cast<std::uint32_t>(i);
    }

    std::vector<Coord> vCoords;
    std::vector<std::uint32_t> vSlots;
};

} // namespace quor2d_tool
