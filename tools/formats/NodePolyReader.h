#pragma once

#include "formats/Scene.h"

#include <string>

namespace quor2d_tool
{

/// Reads a .node file: points with attributes and markers.
Scene readNode(const std::string& path);

/// Reads a .poly file: points (or the .node file beside it where its own list is empty), segments with markers, hole
/// points and region points. Points and segments are numbered one by one from 0 or 1.
Scene readPoly(const std::string& path);

/// Reads a mesh from the .node and .ele files with the base name of `path`. Constraint edges come from the .poly file
/// of that name, their markers too, where there is one.
MeshData readNodeEle(const std::string& path);

/// The path without its extension, if it has one.
std::string basePath(const std::string& path);

} // namespace quor2d_tool
