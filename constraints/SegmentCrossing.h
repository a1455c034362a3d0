#pragma once

#include "Point2.h"

namespace ZELK_QUOR2D
{

/// The point where the segments a-b and c-d cross, rounded to the nearest double in each coordinate; so it lies in the
/// boxes of both segments. Computed with rational numbers, meant for rare use.
///
/// The ends of each segment must lie strictly on different sides of the other one.
Point2 crossingPoint(const Point2& a, const Point2& b, const Point2& c, const Point2& d);

} // namespace ZELK_QUOR2D
