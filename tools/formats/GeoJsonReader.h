#pragma once

#include "formats/Scene.h"

#include <string>

namespace quor2d_tool
{

/// Reads GeoJSON (RFC 7946): a geometry, a Feature or a FeatureCollection, streamed in one pass without a document in
/// memory. A feature's name is its property "name" (any case), else its id.
///
/// Throws FileError.
Scene readGeoJsonScene(const std::string& path);

/// Reads a triangle mesh: every polygon is a triangle, equal positions are one vertex, lines are constraint edges. The
/// properties "region" and "marker" are taken over.
MeshData readGeoJsonMesh(const std::string& path);

} // namespace quor2d_tool
