#pragma once

namespace ZELK_QUOR2D
{

/// Bits of Triangle2::marks. A triangle record that is recycled loses them.
enum TriangleMark : unsigned char {
    TM_IN_ZONE = 1, ///< under refinement, see RefineZone
    TM_OPEN = 2,    ///< listed by refinement, and no turn yet
    TM_BORDER = 4   ///< and the two bits above: edges 0, 1, 2 that bound the zone being collected, see ZoneFill
};

} // namespace ZELK_QUOR2D
