#pragma once

#include "formats/MeshEdges.h"
#include "formats/Scene.h"

#include <string>
#include <vector>

namespace quor2d_tool
{

/// What an exact check of a mesh found.
struct MeshCheckResult {
    std::string defect;                        ///< the first one; empty for a valid mesh
    std::string delaunayDefect;                ///< an inner edge that is neither Delaunay nor a constraint
    std::size_t numNonDelaunay = 0;            ///< such edges
    std::size_t numConstraintsNotDelaunay = 0; ///< constraint edges that are not Delaunay
    bool bClockwise = false;                   ///< all triangles run clockwise
    std::vector<MeshEdge> vEdges;
};

/// Checks a mesh exactly, for any finite coordinates: triangles with area that run one way round, at most two at an
/// edge, edges that meet at common vertices only, no overlap anywhere, constraint edges among the edges; then the
/// empty circle at every inner edge. Turns the triangles of a clockwise mesh. O(n log n).
MeshCheckResult checkMesh(MeshData& mesh);

} // namespace quor2d_tool
