#pragma once

#include "cli/Arguments.h"
#include "formats/Scene.h"

#include <memory>
#include <string>
#include <vector>

namespace quor2d_tool
{

/// What came of building a mesh beside the mesh.
struct BuildNotes {
    std::size_t numDuplicates = 0;  ///< points at the place of another one
    std::size_t numCrossings = 0;   ///< crossings of segments that were given a vertex
    std::size_t numNewVertices = 0; ///< vertices of the mesh that are no points of the input
    std::size_t numUnrefined = 0;   ///< parts too thin to refine
    double seconds = 0.0;           ///< in the library and around it, without reading and writing
};

/// Makes the mesh that the arguments ask for. Throws FileError where the scene has none to give.
MeshData buildMesh(const Scene& scene, const Arguments& arguments, BuildNotes& notes);

} // namespace quor2d_tool
