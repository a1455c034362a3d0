#pragma once

#include "formats/Scene.h"

namespace quor2d_tool
{

/// The exact sign of the orientation of a, b, c: 1 counterclockwise, -1 clockwise, 0 collinear. Right for all finite
/// doubles: a filter in floating point (Shewchuk 1997), then whole numbers of any length.
int orientation(const Coord& a, const Coord& b, const Coord& c);

/// The exact sign of the in-circle determinant: 1 where d lies inside the circle through a, b, c in counterclockwise
/// order, -1 outside, 0 on it.
int inCircle(const Coord& a, const Coord& b, const Coord& c, const Coord& d);

/// The point where the lines through a, b and c, d meet, computed exactly and then rounded to doubles. The lines must
/// not be parallel.
Coord lineCrossing(const Coord& a, const Coord& b, const Coord& c, const Coord& d);

/// True where p lies within the box of a and b; together with a zero orientation, on the segment.
inline bool inBoxOf(const Coord& p, const Coord& a, const Coord& b)
{
    return (a.x < b.x ? a.x <= p.x && p.x <= b.x : b.x <= p.x && p.x <= a.x) &&
           (a.y < b.y ? a.y <= p.y && p.y <= b.y : b.y <= p.y && p.y <= a.y);
}

} // namespace quor2d_tool
