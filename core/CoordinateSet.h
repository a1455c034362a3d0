#pragma once

#include "Point2.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace ZELK_QUOR2D
{

/// A flat hash set of vertices by their coordinates; -0.0 and 0.0 are one place.
class CoordinateSet
{
public:
    /// @return the vertex that stands at p's place; p itself when it was entered just now
    Point2* insert(Point2* p)
    {
        if (2 * (count + 1) > vSlots.size())
            grow();
        Point2*& pSlot = slotOf(*p);
        if (!pSlot) {
            pSlot = p;
            ++count;
        }
        return pSlot;
    }

    /// @return the vertex at the place of p, or null
    Point2* find(const Point2& p) const { return count == 0 ? nullptr : const_cast<CoordinateSet*>(this)->slotOf(p); }

    /// Gives the memory back.
    void clear()
    {
        std::vector<Point2*>().swap(vSlots);
        count = 0;
    }

private:
    static std::uint64_t bitsOf(double value)
    {
        if (value == 0.0)
            value = 0.0; // drops the sign, in every rounding mode
        std::uint64_t bits;
        std::memcpy(&bits, &value, sizeof bits);
        return bits;
    }

    static std::size_t hashOf(const Point2& p)
    {
        std::uint64_t h = bitsOf(p.x()) * 0x9E3779B97F4A7C15u + bitsOf(p.y());
        h ^= h >> 32;
        h *= 0xD6E8FEB86659FD93u;
        h ^= h >> 32;
        return static_cast<std::size_t>(h);
    }

    // Ends: the table is at most half full.
    Point2*& slotOf(const Point2& p)
    {
        const std::size_t mask = vSlots.size() - 1;
        std::size_t i = hashOf(p) & mask;
        while (vSlots[i] && *vSlots[i] != p)
            i = (i + 1) & mask;
        return vSlots[i];
    }

    void grow()
    {
        std::vector<Point2*> vOld(vSlots.empty() ? 16 : 2 * vSlots.size(), nullptr);
        vOld.swap(vSlots);
        for (Point2* p : vOld)
            if (p)
                slotOf(*p) = p;
    }

    std::vector<Point2*> vSlots; // a power of two, or empty
    std::size_t count = 0;
};

} // namespace ZELK_QUOR2D
