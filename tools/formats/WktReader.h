#pragma once

#include "formats/Scene.h"

#include <string>

namespace quor2d_tool
{

/// Reads well-known text: any number of geometries, POINT to GEOMETRYCOLLECTION, with a height (Z) and a measure (M,
/// ignored) or without, each perhaps led by "SRID=n;" and followed by ';'. Each geometry is a feature. A line that
/// begins with '#' is a comment.
///
/// Throws FileError.
Scene readWkt(const std::string& path);

} // namespace quor2d_tool
