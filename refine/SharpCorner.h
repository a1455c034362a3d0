#pragma once

namespace ZELK_QUOR2D
{

class Dt2;
class Point2;
class Triangle2;

/// Whether splitting a constraint piece on behalf of a triangle would cut the tip off a sharp corner to no end.
///
/// Constraints that meet below 60 degrees encroach on each other: a short edge between them asks for a shorter piece at
/// the corner, that for shorter edges, and so on. The cures that are known (Shewchuk 2000; Miller, Pav, Walkington
/// 2003) want the pieces at a corner to be of one length. Halving cannot do that, but it can balance them. Beyond
/// that a piece at a sharp corner is split only for a reason that does not come from the corner itself.
///
/// @param p0, p1     the ends of the piece; the side of the triangle is to the left of the way from p0 to p1
/// @param pTriangle  what asks for the split
/// @param shortest   its shortest edge
bool cutsOffSharpCorner(const Dt2& dt, const Point2* p0, const Point2* p1, const Triangle2* pTriangle, double shortest);

} // namespace ZELK_QUOR2D
