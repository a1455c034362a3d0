#pragma once

#include "formats/Scene.h"
#include "geometry/BoxTree.h"

#include <array>
#include <cstdint>
#include <vector>

namespace quor2d_tool
{

/// Where segments touch each other elsewhere than at common end points.
struct SegmentContacts {
    /// Vertex `vertex` lies inside segment `segment`. Overlapping collinear segments show up this way.
    struct Touch {
        std::uint32_t segment;
        std::uint32_t vertex;
    };
    std::vector<std::array<std::uint32_t, 2>> vCrossings; ///< pairs of segments that cross at inner points
    std::vector<Touch> vTouches;                          ///< may hold a pair twice
};

/// Two vertices; the same one twice stands for a lone point.
using VertexPair = std::array<std::uint32_t, 2>;

/// Finds all contacts, exactly. Vertices have distinct coordinates, segments are distinct.
///
/// @param vChanged  empty: every pair is looked at. Otherwise one flag per segment: only pairs with a flagged one are
SegmentContacts findContacts(const std::vector<Coord>& vCoords, const std::vector<VertexPair>& vSegments,
                             const std::vector<char>& vChanged = {});

/// Appends every vertex below numVertices that no segment ends at, as a lone point; nothing where there are no
/// segments.
void addLonePoints(std::size_t numVertices, std::vector<VertexPair>& vSegments);

} // namespace quor2d_tool
