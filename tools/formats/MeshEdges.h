#pragma once

#include "formats/Scene.h"

#include <vector>

namespace quor2d_tool
{

/// An edge of a mesh with its triangles: the first one has the edge in the direction from-to.
struct MeshEdge {
    static constexpr std::uint32_t kNone = 0xffffffffu;

    std::uint32_t from = 0;
    std::uint32_t to = 0;
    std::uint32_t left = kNone;  ///< the triangle that runs from-to
    std::uint32_t right = kNone; ///< the one that runs to-from
    int marker = 0;
    bool bBorder = false; ///< has one triangle
    bool bConstraint = false;
    bool bCrowded = false; ///< has two triangles in one direction, or three
};

/// Every edge of the triangles once, by vertex numbers ascending, with marker and constraint flag from mesh.vEdges.
/// O(n log n), stable for any triangles.
std::vector<MeshEdge> collectMeshEdges(const MeshData& mesh);

} // namespace quor2d_tool
