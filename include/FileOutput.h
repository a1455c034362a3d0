#pragma once

#include "Quor2DExport.h"

namespace ZELK_QUOR2D
{

/// Creates a directory, one level deep, unless it exists.
///
/// @return true when `path` names a directory afterwards; false for null, for an empty path, and where a file is in
///         the way
QUOR2D_API bool createDirectory(const char* path);

} // namespace ZELK_QUOR2D
