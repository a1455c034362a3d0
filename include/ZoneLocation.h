#pragma once

namespace ZELK_QUOR2D
{

/// How a zone finds its triangles. @see Zone2
enum ZoneLocation {
    ZL_GLOBAL = 0,               ///< every triangle of the triangulation
    ZL_INSIDE = 1,               ///< the triangles inside one closed constraint polygon
    ZL_OUTSIDE = 2,              ///< the triangles outside one closed constraint polygon
    ZL_GROW = 3,                 ///< what a start point reaches without crossing the zone's constraint edges
    ZL_RESULT_UNION = 4,         ///< in either of two zones
    ZL_RESULT_INTERSECTION = 5,  ///< in both zones
    ZL_RESULT_DIFFERENCE = 6,    ///< in the first zone and not in the second
    ZL_RESULT_SYM_DIFFERENCE = 7 ///< in exactly one of two zones
};

} // namespace ZELK_QUOR2D
