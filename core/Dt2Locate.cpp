#include "core/Dt2.h"

#include "core/Prefetch.h"

#include <cmath>
#include <cstdlib>

namespace ZELK_QUOR2D
{

namespace
{

// After this many steps each step chooses its first edge at random: in a mesh that is not Delaunay a walk with a fixed
// rule can run in a circle.
constexpr std::size_t kMaxOrderedSteps = 2000;

// Walks of more steps than this ask for better starts.
constexpr std::size_t kLongWalk = 32;

constexpr int kContinueWalk = 3; // testHullLine() decided nothing

double squaredDistance(const Point2& a, const Point2& b)
{
    const double dx = a.x() - b.x();
    const double dy = a.y() - b.y();
    return dx * dx + dy * dy;
}

bool isCornerPlace(const Triangle2* pT, const Point2* p)
{
    return *pT->getCorner(0) == *p || *pT->getCorner(1) == *p || *pT->getCorner(2) == *p;
}

} // namespace

Triangle2* Dt2::locate(const Point2& p)
{
    if (!hasTriangles() || !std::isfinite(p.x()) || !std::isfinite(p.y()))
        return nullptr;
    const std::uint32_t key = hilbertCurve.getIndex(p);
    Triangle2* pT = nullptr;
    const int intState = walkFromNear(p, key, pT);
    if (intState == WALK_INSIDE || intState == WALK_ON_CORNER)
        return pT;
    // A point on a hull edge still belongs to its triangle.
    return predicates.getOrientation2(pT, intState, &p) == ORI2_ZERO ? pT : nullptr;
}

// The vertex inserted last may be nearer than what the vault knows: points often arrive in some order.
Triangle2* Dt2::findStartTriangle(const Point2& p, std::uint32_t key)
{
    const Point2* pNear = vertexVault.findRecent(key, p);
    if (!pNear)
        pNear = vertexVault.getCT(key)->getCorner(0);
    if (pLastInserted && pLastInserted->getIncidentTriangle() &&
        squaredDistance(*pLastInserted, p) < squaredDistance(*pNear, p))
        pNear = pLastInserted;
    return pNear->getIncidentTriangle();
}

int Dt2::walkFromNear(const Point2& p, std::uint32_t key, Triangle2*& pT)
{
    pT = findStartTriangle(p, key);
    const int intState = walkToTriangle(&p, pT);
    if (walkSteps > kLongWalk) {
        vertexVault.noteLongWalk(walkSteps);
        vertexVault.noteRecent(key, p, pT->getCorner(0));
    }
    return intState;
}

int Dt2::walkToTriangle(const Point2* p, Triangle2*& pT)
{
    int ith = 0;
    int remaining = 3;
    walkSteps = 0;
    bool bCrossed = false;
    // Ends: every turn either decides an edge of pT, of which there are three, or counts a step.
    for (;;) {
        int crossedEdge = ith;
        const Orientation2 orientation = predicates.getOrientation2(pT, ith, p);
        bCrossed = orientation == ORI2_NEGATIVE;
        if (orientation == ORI2_ZERO) {
            if (isCornerPlace(pT, p))
                return WALK_ON_CORNER;
            if (!pT->getOppositeTriangle(ith)) {
                crossedEdge = testHullLine(p, pT, ith);
                if (crossedEdge == ith)
                    return ith;
                bCrossed = crossedEdge != kContinueWalk;
                if (!bCrossed) {
                    ith = 0;
                    remaining = 3;
                    if (++walkSteps > kMaxOrderedSteps + numLiveTriangles())
                        return searchExhaustively(p, pT);
                    continue;
                }
            }
        }
        if (!bCrossed) {
            ith = next(ith);
            if (--remaining == 0)
                return WALK_INSIDE;
            continue;
        }
        Triangle2* pNext = pT->getOppositeTriangle(crossedEdge);
        if (!pNext)
            return crossedEdge;
        ith = next(pNext->getIntraTriangleIndex(pT));
        remaining = 2;
        pT = pNext;
        prefetchWhole(pT->getOppositeTriangle(ith));
        prefetchWhole(pT->getOppositeTriangle(next(ith)));
        if (++walkSteps > kMaxOrderedSteps) {
            if (walkSteps > kMaxOrderedSteps + numLiveTriangles())
                return searchExhaustively(p, pT);
            ith = std::rand() % 3;
            remaining = 3;
        }
    }
}

// p lies on the line of hull edge ith of pT and on none of its corners.
// Returns ith for a point strictly between the ends of the edge, another edge that has p strictly on its outer side, or
// kContinueWalk.
int Dt2::testHullLine(const Point2* p, const Triangle2* pT, int ith)
{
    const Orientation2 orientationNext = predicates.getOrientation2(pT, next(ith), p);
    const Orientation2 orientationPrev = predicates.getOrientation2(pT, prev(ith), p);
    if (orientationNext == ORI2_NEGATIVE)
        return next(ith);
    if (orientationPrev == ORI2_NEGATIVE)
        return prev(ith);
    return orientationNext == ORI2_POSITIVE && orientationPrev == ORI2_POSITIVE ? ith : kContinueWalk;
}

// The answer of last resort when a walk does not arrive: looks at every triangle.
int Dt2::searchExhaustively(const Point2* p, Triangle2*& pT)
{
    Triangle2* pContaining = nullptr;
    Triangle2* pBeyond = nullptr;
    int hullEdge = 0;
    forEachTriangle([&](Triangle2* pCandidate) {
        Orientation2 aOrientation[3];
        for (int i = 0; i < 3; ++i) {
            aOrientation[i] = predicates.getOrientation2(pCandidate, i, p);
            if (aOrientation[i] == ORI2_NEGATIVE && !pCandidate->getOppositeTriangle(i)) {
                pBeyond = pCandidate;
                hullEdge = i;
            }
        }
        const bool bOutside =
            aOrientation[0] == ORI2_NEGATIVE || aOrientation[1] == ORI2_NEGATIVE || aOrientation[2] == ORI2_NEGATIVE;
        const bool bFlat = aOrientation[0] == ORI2_ZERO && aOrientation[1] == ORI2_ZERO && aOrientation[2] == ORI2_ZERO;
        if (!bOutside && !bFlat)
            pContaining = pCandidate;
    });
    if (!pContaining) {
        QUOR2D_ASSERT(pBeyond != nullptr, "pBeyond!=NULL");
        if (pBeyond)
            pT = pBeyond;
        return hullEdge;
    }
    pT = pContaining;
    if (isCornerPlace(pT, p))
        return WALK_ON_CORNER;
    for (int i = 0; i < 3; ++i)
        if (!pT->getOppositeTriangle(i) && predicates.getOrientation2(pT, i, p) == ORI2_ZERO)
            return i;
    return WALK_INSIDE;
}

} // namespace ZELK_QUOR2D
