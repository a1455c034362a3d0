#include "refine/RefineCandidate.h"

#include "Triangle2.h"
#include "Vector2.h"
#include "core/Dt2.h"
#include "output/Message.h"
#include "refine/SharpCorner.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace ZELK_QUOR2D
{

namespace
{

// After this many steps each triangle is tested from a random edge on: a walk in a mesh with constraints can run in a
// circle.
constexpr std::size_t kMaxOrderedSteps = 2000;

double squaredDistance(const Point2& p, const Point2& q)
{
    const double dx = q.x() - p.x(), dy = q.y() - p.y();
    return dx * dx + dy * dy;
}

double distance(const Point2& p, const Point2& q)
{
    return std::sqrt(squaredDistance(p, q));
}

// Rounding puts crossings and midpoints a few units in the last place beside their segments.
constexpr double kRoundingUnits = 256.0;

int longestEdgeOf(const Triangle2& triangle)
{
    int longest = 0;
    for (int i = 1; i < 3; ++i)
        if (triangle.getSquaredEdgeLength(i) > triangle.getSquaredEdgeLength(longest))
            longest = i;
    return longest;
}

double maxAbs(const Point2& p)
{
    return std::max(std::fabs(p.x()), std::fabs(p.y()));
}

} // namespace

double heightOf(const Triangle2& triangle)
{
    const Point2 &p0 = *triangle.getCorner(0), &p1 = *triangle.getCorner(1), &p2 = *triangle.getCorner(2);
    const double doubledArea = (p1.x() - p0.x()) * (p2.y() - p0.y()) - (p1.y() - p0.y()) * (p2.x() - p0.x());
    return std::fabs(doubledArea) / std::sqrt(triangle.getSquaredEdgeLength(longestEdgeOf(triangle)));
}

bool isRoundingGap(const Triangle2& triangle)
{
    if (!Dt2::isConstraintVertex(triangle.getCorner(longestEdgeOf(triangle))))
        return false;
    const double largest =
        std::max({maxAbs(*triangle.getCorner(0)), maxAbs(*triangle.getCorner(1)), maxAbs(*triangle.getCorner(2))});
    return heightOf(triangle) < kRoundingUnits * std::numeric_limits<double>::epsilon() * largest;
}

// ---- the quick test

QuickTest::QuickTest(const Triangle2& triangle)
{
    const Point2 &p0 = *triangle.getCorner(0), &p1 = *triangle.getCorner(1), &p2 = *triangle.getCorner(2);
    const double x1 = p1.x() - p0.x(), y1 = p1.y() - p0.y();
    const double x2 = p2.x() - p0.x(), y2 = p2.y() - p0.y();
    const double x3 = x2 - x1, y3 = y2 - y1;
    const double a2 = x1 * x1 + y1 * y1, b2 = x2 * x2 + y2 * y2, c2 = x3 * x3 + y3 * y3;
    shortest2 = std::min({a2, b2, c2});
    middle2 = std::max(std::min(a2, b2), std::min(std::max(a2, b2), c2));
    longest2 = std::max({a2, b2, c2});
    doubledArea = x1 * y2 - x2 * y1;
}

// With edges a <= b <= c and area A the radius is abc/4A, so radius/a <= ratio where bc <= 4A ratio. The margin is far
// beyond rounding, for triangles in which nothing cancels: A is compared with bc.
bool QuickTest::clearlyMeets(const RefineParams& params) const
{
    const double bound = 2.0 * doubledArea * params.maxRadiusEdgeRatio;
    return longest2 < params.sqMaxEdgeLength * (1.0 - 1e-9) && longest2 * middle2 < bound * bound * (1.0 - 1e-9) &&
           shortest2 > 1e-290 && longest2 < 1e140;
}

double QuickTest::circumRadius() const
{
    const double radius = std::sqrt(shortest2) * std::sqrt(middle2 * longest2) / (2.0 * std::fabs(doubledArea));
    return radius >= 0.0 ? radius : 0.0;
}

// ---- the candidate

RefineCandidate::RefineCandidate(Dt2* pTriangulation, Triangle2* pTestedTriangle)
    : pDt(pTriangulation), pTriangle(pTestedTriangle), pContainingT(pTestedTriangle)
{
    const Point2 &p0 = *pTriangle->getCorner(0), &p1 = *pTriangle->getCorner(1), &p2 = *pTriangle->getCorner(2);
    const std::pair<Point2, bool> dual = pTriangle->getDual();
    steinerPoint = dual.first;
    circumRadius = distance(steinerPoint, p0);
    bValid = dual.second && std::isfinite(circumRadius);
    const double a = squaredDistance(p0, p1), b = squaredDistance(p1, p2), c = squaredDistance(p2, p0);
    aSqLengths = {std::min({a, b, c}), std::max(std::min(a, b), std::min(std::max(a, b), c)), std::max({a, b, c})};
}

bool RefineCandidate::needRefinement(const RefineParams& params)
{
    return missesBounds(params) && isRefinable(params);
}

bool RefineCandidate::isRefinable(const RefineParams& params)
{
    walk();
    pSparedCorner = nullptr;
    return aSqLengths[2] > params.sqMaxEdgeLength || isWorthwhile(params);
}

bool RefineCandidate::missesBounds(const RefineParams& params) const
{
    if (!bValid)
        return false;
    if (aSqLengths[2] > params.sqMaxEdgeLength)
        return true;
    const double shortest = std::sqrt(aSqLengths[0]);
    if (!(circumRadius / shortest > params.maxRadiusEdgeRatio) || hasSmallInputAngle(params.minAngleDegree))
        return false;
    return !(params.minEdgeLength / 10.0 > shortest) && !isRoundingGap(*pTriangle);
}

// Whether the refinement leaves edges that are long enough and does not spoil a sharp corner.
bool RefineCandidate::isWorthwhile(const RefineParams& params)
{
    switch (splitIndex) {
    case 0:
    case 1:
    case 2: {
        const double squaredLength = pContainingT->getSquaredEdgeLength(splitIndex);
        if (!pCSeg || std::sqrt(squaredLength) < 2.0 * params.edgeFloor)
            return false;
        pSparedCorner = findSparedCorner(params, pContainingT, splitIndex, pTriangle, std::sqrt(aSqLengths[0]));
        return !pSparedCorner;
    }
    case SPLIT_AT_CORNER:
    case SPLIT_LOST:
        return false;
    case SPLIT_NONE:
        return circumRadius >= params.edgeFloor && isWorthInserting(params);
    default:
        reportError("RefineCandidate::needRefinement", "bug, unexpected case");
        return false;
    }
}

// A point that sees a piece at a sharp corner under more than 120 degrees makes a sliver with it. If the piece must not
// be split for this triangle nothing is done. If it may, it is split at once: for the sliver it might not be.
bool RefineCandidate::isWorthInserting(const RefineParams& params)
{
    const double shortest = std::sqrt(aSqLengths[0]);
    for (int i = 0; i < 3; ++i) {
        const Point2 &p0 = *pContainingT->getCorner(next(i)), &p1 = *pContainingT->getCorner(prev(i));
        const double dot = (p0.x() - steinerPoint.x()) * (p1.x() - steinerPoint.x()) +
                           (p0.y() - steinerPoint.y()) * (p1.y() - steinerPoint.y());
        const double distance0 = distance(p0, steinerPoint), distance1 = distance(p1, steinerPoint);
        if (dot >= -0.5 * distance0 * distance1 || !pDt->isConstraintEdge(pContainingT, i))
            continue;
        pSparedCorner = findSparedCorner(params, pContainingT, i, pTriangle, shortest);
        if (pSparedCorner)
            return false;
        if (isSplitForOthersOnly(params, pContainingT, i, std::min(distance0, distance1))) {
            setSplitIndex(i);
            return params.bAllowConstraintSplitting && distance(p0, p1) >= 2.0 * params.edgeFloor;
        }
    }
    return true;
}

bool RefineCandidate::hasSmallInputAngle(double minAngleDegree) const
{
    bool aConstraint[3];
    for (int i = 0; i < 3; ++i)
        aConstraint[i] = pDt->isConstraintEdge(pTriangle, i);
    for (int i = 0; i < 3; ++i) {
        if (!aConstraint[next(i)] || !aConstraint[prev(i)])
            continue;
        const Point2 &corner = *pTriangle->getCorner(i), &pa = *pTriangle->getCorner(next(i)),
                     &pb = *pTriangle->getCorner(prev(i));
        const Vector2 a = normalize(Vector2(pa.x() - corner.x(), pa.y() - corner.y()));
        const Vector2 b = normalize(Vector2(pb.x() - corner.x(), pb.y() - corner.y()));
        const double cosine = std::clamp(a.x() * b.x() + a.y() * b.y(), -1.0, 1.0);
        // Deliberate: the short value of pi.
        if (minAngleDegree > std::acos(cosine) / 3.14159 * 180.0)
            return true;
    }
    return false;
}

// ---- the way to the Steiner point

// Ends: after as many random steps as there are triangles the point counts as lost.
void RefineCandidate::walk()
{
    pContainingT = pTriangle;
    bool bOnEdge = false; // not on the edge it came through: the point lies strictly beyond that
    int exit = findExit(0, 3, bOnEdge);
    std::size_t steps = 0;
    while (exit >= 0 && exit <= 2) {
        Triangle2* const pNext = pContainingT->getOppositeTriangle(exit);
        if (!pNext || pDt->isConstraintEdge(pContainingT, exit))
            break;
        if (++steps > kMaxOrderedSteps + pDt->numLiveTriangles()) {
            exit = SPLIT_LOST;
            break;
        }
        const int entry = pNext->getIntraTriangleIndex(pContainingT);
        pContainingT = pNext;
        exit = steps > kMaxOrderedSteps ? findExit(std::rand() % 3, 3, bOnEdge) : findExit(next(entry), 2, bOnEdge);
    }
    if (exit == SPLIT_NONE && bOnEdge)
        exit = findBlockingEdgeUnderPoint();
    setSplitIndex(exit);
}

void RefineCandidate::setSplitIndex(int index)
{
    splitIndex = index;
    pCSeg = index >= 0 && index <= 2
                ? pDt->findConstraintSegment(pContainingT->getCorner(next(index)), pContainingT->getCorner(prev(index)))
                : nullptr;
}

// The first of some edges of the containing triangle, counted from ith, that has the point on its outer side.
//
// @param bOnEdge  set to whether the point lies on one of these edges
int RefineCandidate::findExit(int ith, int numEdges, bool& bOnEdge) const
{
    bOnEdge = false;
    for (; numEdges > 0; --numEdges, ith = next(ith)) {
        const Orientation2 orientation = pDt->predicates.getOrientation2(pContainingT, ith, &steinerPoint);
        if (orientation == ORI2_NEGATIVE)
            return ith;
        if (orientation != ORI2_ZERO)
            continue;
        bOnEdge = true;
        for (int i = 0; i < 3; ++i)
            if (*pContainingT->getCorner(i) == steinerPoint)
                return SPLIT_AT_CORNER;
    }
    return SPLIT_NONE;
}

// A point exactly on a constraint or on the hull counts as blocked by it. The point lies in the triangle.
int RefineCandidate::findBlockingEdgeUnderPoint() const
{
    for (int i = 0; i < 3; ++i)
        if (pDt->predicates.getOrientation2(pContainingT, i, &steinerPoint) == ORI2_ZERO &&
            (!pContainingT->getOppositeTriangle(i) || pDt->isConstraintEdge(pContainingT, i)))
            return i;
    return SPLIT_NONE;
}

} // namespace ZELK_QUOR2D
