#pragma once

#include "formats/Scene.h"

#include <string>

namespace quor2d_tool
{

/// Leads the group names of regions in files written by the tool.
inline constexpr const char* kObjRegionPrefix = "region_";

/// Reads the vertices, lines and faces of a Wavefront OBJ file. A face is a polygon; the faces of one group or object
/// (g, o) make a feature. Heights are kept where they are not all zero. Points count from 1.
Scene readObjScene(const std::string& path);

/// Reads a triangle mesh; lines are constraint edges, the groups of the faces are regions.
MeshData readObjMesh(const std::string& path);

} // namespace quor2d_tool
