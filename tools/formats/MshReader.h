#pragma once

#include "formats/Scene.h"

#include <string>

namespace quor2d_tool
{

/// Reads the triangles and lines of a Gmsh 4.1 text file. Physical groups give regions and markers.
///
/// Throws FileError, also for binary files, other versions and elements that are neither points, lines nor triangles.
MeshData readMsh(const std::string& path);

} // namespace quor2d_tool
