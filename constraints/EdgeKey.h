#pragma once

#include "Point2.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>

namespace ZELK_QUOR2D
{

/// Puts the ends of an undirected edge in ascending order of their addresses.
template <class P>
void orderByAddress(P*& p0, P*& p1)
{
    if (std::less<P*>()(p1, p0))
        std::swap(p0, p1);
}

/// Vertices lie side by side in their pool, so the low bits of an address say little.
inline std::size_t hashOfEdge(const Point2* p0, const Point2* p1)
{
    std::uint64_t h = reinterpret_cast<std::uintptr_t>(p0) * 0x9E3779B97F4A7C15u;
    h ^= h >> 29;
    h = (h + reinterpret_cast<std::uintptr_t>(p1)) * 0xD6E8FEB86659FD93u;
    h ^= h >> 32;
    return static_cast<std::size_t>(h);
}

} // namespace ZELK_QUOR2D
