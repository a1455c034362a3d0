#pragma once

#include "Quor_2D.h"

#include <algorithm>
#include <array>
#include <set>
#include <utility>
#include <vector>

namespace ZELK_QUOR2D
{
namespace test
{

using Place = std::pair<double, double>;
using Corners = std::array<Place, 3>;

/// A mesh as a set of corner coordinates, independent of addresses and orders.
using MeshSet = std::set<Corners>;

/// @param map  callable: corner -> place; lets a mesh be compared with that of moved points
template <class Map>
MeshSet meshSetOf(const Quor_2D& dt, Map map)
{
    std::vector<Triangle2*> vTriangles;
    dt.getTrianglePointers(vTriangles);
    MeshSet meshSet;
    for (const Triangle2* pT : vTriangles) {
        Corners corners;
        for (int i = 0; i < 3; ++i)
            corners[static_cast<std::size_t>(i)] = map(*pT->getCorner(i));
        std::sort(corners.begin(), corners.end());
        meshSet.insert(corners);
    }
    return meshSet;
}

inline MeshSet meshSetOf(const Quor_2D& dt)
{
    return meshSetOf(dt, [](const Point2& p) { return Place(p.x(), p.y()); });
}

} // namespace test
} // namespace ZELK_QUOR2D
