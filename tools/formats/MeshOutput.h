#pragma once

#include "formats/Formats.h"

#include <string>
#include <vector>

namespace quor2d_tool
{

/// Where a mesh goes: a path, or "-" for standard output, and a format.
struct OutputTarget {
    std::string path;
    Format format;
};

/// Throws FileError where one of the targets can clearly not be written.
void checkTargets(const std::vector<OutputTarget>& vTargets);

/// Writes the mesh to all targets; the files appear under their names when all of them are complete. Throws FileError,
/// and then leaves what was there before.
void writeMesh(const MeshData& mesh, const std::vector<OutputTarget>& vTargets);

} // namespace quor2d_tool
