#pragma once

#include "commands/MeshTopology.h"
#include "formats/Scene.h"

#include <cstdint>
#include <vector>

namespace quor2d_tool
{

/// What a scene says of each triangle.
struct Classification {
    std::vector<char> vInside;   ///< per triangle
    std::vector<double> vRegion; ///< per triangle the number of its region; 0 for none
};

/// A triangle that holds a hole point or a region point.
struct SeedTriangle {
    std::uint32_t cell; ///< MeshTopology::kNone outside the hull
    bool bHole;
    double region;
};

/// Decides for each face, the triangles that no segment parts, whether it lies inside and in which region.
///
/// With polygons: inside is what an outer ring holds and no hole ring of its polygon; the last feature wins. Without:
/// inside is what segments part from the outside, or everything where there are no segments. Seeds come on top: holes
/// are not inside, regions number their face. Linear in the triangles, times the depth of nested rings.
Classification classifyFaces(const Scene& scene, const PlanarGraph& graph, const MeshTopology& topology,
                             const std::vector<SeedTriangle>& vSeeds);

} // namespace quor2d_tool
