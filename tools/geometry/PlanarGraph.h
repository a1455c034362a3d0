#pragma once

#include "formats/Scene.h"
#include "geometry/SegmentContacts.h"

#include <cstdint>
#include <vector>

namespace quor2d_tool
{

/// The lines and rings of a scene as segments that meet at common end points only: equal points are one vertex,
/// crossings and points on segments split the segments.
struct PlanarGraph {
    /// A segment and where it comes from: sources firstSource to firstSource + numSources - 1 of vSources, sorted. A
    /// source below the number of rings is a ring of the scene, a higher one a segment.
    struct Segment {
        std::uint32_t from = 0;
        std::uint32_t to = 0;
        std::uint32_t firstSource = 0;
        std::uint32_t numSources = 0;
    };
    static constexpr std::uint32_t kNewVertex = 0xffffffffu;

    std::vector<Coord> vCoords;
    std::vector<std::uint32_t> vPoints;        ///< per vertex the first point of the scene there, or kNewVertex
    std::vector<std::uint32_t> vVertexOfPoint; ///< per point of the scene its vertex
    std::vector<Segment> vSegments;
    std::vector<std::uint32_t> vSources;
    std::size_t numCrossings = 0; ///< crossings that were given a vertex
};

/// Near-linear in the size of the scene plus the number of crossings, see BoxTree. A crossing is rounded to doubles,
/// which bends its segments by less than a unit in the last place; what that makes touch is split in turn.
PlanarGraph makePlanar(const Scene& scene);

} // namespace quor2d_tool
