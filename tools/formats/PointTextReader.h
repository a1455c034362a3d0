#pragma once

#include "formats/Scene.h"

#include <string>

namespace quor2d_tool
{

/// Reads points from text: one point a line, two or three numbers x, y and height.
///
/// Columns are separated by commas, semicolons, tabs or blanks, whichever the first line of content shows. A first
/// line without any number is a header; names such as x/y/z, lon/lat or easting/northing choose the columns. Without
/// them the first two columns are x and y, and the third is the height where the first point has exactly three columns.
/// Further columns are ignored. Empty lines and what follows '#' or '%' are comments.
///
/// Throws FileError.
Scene readPointText(const std::string& path);

} // namespace quor2d_tool
