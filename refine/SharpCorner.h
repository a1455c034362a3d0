#pragma once

#include <vector>

namespace ZELK_QUOR2D
{

class Point2;
class Triangle2;
struct RefineParams;

/// Splitting a constraint piece on behalf of a triangle may cut the tip off a sharp corner to no end.
///
/// Between constraints that meet below the angle bound a short edge asks for a shorter piece at the corner, that for
/// shorter edges, and so on. So a piece at such a corner is halved only to balance the pieces there, or for a reason
/// that does not come from the corner itself (after Shewchuk 2000; Miller, Pav, Walkington 2003).
///
/// @param pT, ith    the piece is this edge, and what asks for the split lies on this side
/// @param pTriangle  what asks for the split
/// @param shortest   its shortest edge
/// @return the corner, or null when the piece may be split
Point2* findSparedCorner(const RefineParams& params, const Triangle2* pT, int ith, const Triangle2* pTriangle,
                         double shortest);

/// Whether a triangle between the piece and a new vertex could not have the piece split, because nothing but the corner
/// would be its reason. Arguments as above, the shortest edge being that of this triangle.
bool isSplitForOthersOnly(const RefineParams& params, const Triangle2* pT, int ith, double shortest);

/// Collects the far ends of the pieces at a corner that have a neighbour at a sharp angle, if halving cannot bring the
/// lengths of all of them near enough to each other for the angle bound.
///
/// @param vEnds  replaced; empty when the pieces can stay as they are
void findUnevenPieces(const RefineParams& params, Point2* pCorner, std::vector<Point2*>& vEnds);

} // namespace ZELK_QUOR2D
