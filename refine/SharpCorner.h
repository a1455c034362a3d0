#pragma once

#include <vector>

namespace ZELK_QUOR2D
{

class Dt2;
class Point2;
class Triangle2;

/// Splitting a constraint piece on behalf of a triangle may cut the tip off a sharp corner to no end.
///
/// Constraints that meet below 60 degrees encroach on each other: a short edge between them asks for a shorter piece at
/// the corner, that for shorter edges, and so on. So a piece at such a corner is halved only to balance the pieces
/// there, or for a reason that does not come from the corner itself (after Shewchuk 2000; Miller, Pav, Walkington
/// 2003).
///
/// @param pT, ith    the piece is this edge, and what asks for the split lies on this side
/// @param pTriangle  what asks for the split
/// @param shortest   its shortest edge
/// @return the corner, or null when the piece may be split
Point2* findSparedCorner(const Dt2& dt, const Triangle2* pT, int ith, const Triangle2* pTriangle, double shortest);

/// Collects the far ends of the pieces at a corner that have a neighbour within 60 degrees, if halving cannot bring the
/// lengths of all of them near enough to each other for the angle bound.
///
/// @param vEnds  replaced; empty when the pieces can stay as they are
void findUnevenPieces(const Dt2& dt, Point2* pCorner, double minAngleDegree, std::vector<Point2*>& vEnds);

} // namespace ZELK_QUOR2D
