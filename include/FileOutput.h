#pragma once

#include "Quor2DExport.h"

namespace ZELK_QUOR2D
{

/// Creates a directory, one level deep, unless it exists.
///
/// @return true when `path` names a directory afterwards; false for null, for an empty path, and where a file is in
///         the way
QUOR2D_API bool createDirectory(const char* path);

/// Writes a file of the web viewer to `dir`/`name`, over what is there.
///
/// @param name  "index.html", "jsc3d.js", "jsc3d.webgl.js", "jsc3d.touch.js", "jsc3d.ctm.js", "jsc3d.3ds.js",
///              "jsc3d.console.js" or "jsc3d.ie.js"; any other name, and null, is reported as an error and nothing is
///              written
/// @param dir   an existing directory. A file that cannot be opened is not reported.
QUOR2D_API void fileReplicate(const char* name, const char* dir);

} // namespace ZELK_QUOR2D
