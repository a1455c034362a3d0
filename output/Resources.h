#pragma once

namespace ZELK_QUOR2D
{

/// Finds a text of the web scene (the page or one of the viewer's scripts) that is part of the library.
///
/// @param name  exact file name such as "index.html" or "jsc3d.js"
///
/// Returns the text, ended by a zero, with "\n" line ends and static lifetime; null for an unknown or null name.
const char* findResource(const char* name);

} // namespace ZELK_QUOR2D
