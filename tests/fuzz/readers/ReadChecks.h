#pragma once

#include "formats/Formats.h"
#include "tests/fuzz/readers/FileBox.h"

namespace fuzz
{

/// Every number refers to something that is there, every coordinate is finite.
void checkScene(const quor2d_tool::Scene& scene);
void checkMeshData(const quor2d_tool::MeshData& mesh);

/// The mesh reads back as it was written, in every format that can be read.
void checkRoundTrip(const quor2d_tool::MeshData& mesh, const FileBox& box);

/// The scene makes a valid mesh or a FileError, with coordinates as they stand in the scene.
void checkTriangulation(const quor2d_tool::Scene& scene);

} // namespace fuzz
