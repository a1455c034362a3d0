// The part of refinement that splits constraint segments.
#include "core/Dt2.h"

#include "ConstraintSegment2.h"
#include "constraints/ConstraintMgr.h"
#include "core/IncidentTriangles.h"
#include "output/Message.h"
#include "refine/RefineCandidate.h"
#include "refine/RefineParams.h"
#include "refine/RefineZone.h"
#include "refine/SharpCorner.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <iostream>
#include <limits>

namespace ZELK_QUOR2D
{

namespace
{

double squaredDistance(const Point2& p, const Point2& q)
{
    const double dx = q.x() - p.x(), dy = q.y() - p.y();
    return dx * dx + dy * dy;
}

double middleOf(double a, double b)
{
    const double sum = a + b;
    return std::isfinite(sum) ? sum * 0.5 : a * 0.5 + b * 0.5;
}

double shortestEdge(const Triangle2* pT)
{
    return std::sqrt(std::min({pT->getSquaredEdgeLength(0), pT->getSquaredEdgeLength(1), pT->getSquaredEdgeLength(2)}));
}

// The triangle to the left of the edge from a vertex of low degree to another, or null.
Triangle2* findTriangleBefore(const Point2* pVtx, const Point2* pEnd)
{
    for (IncidentTriangles around(pVtx); !around.atEnd(); around.advance())
        if (around.nextCorner() == pEnd)
            return around.triangle();
    return nullptr;
}

void reportUnsplittable(const Triangle2* pT)
{
    reportWarning("Dt2::refineTriangles()",
                  "Double precision arithmetic does not allow to split a segment further, giving up");
    for (int i = 0; i < 3; ++i)
        std::cout << "EdgeLen2D(" << i << "): " << std::sqrt(pT->getSquaredEdgeLength(i)) << std::endl;
}

} // namespace

// Splits the segment that blocks the way to a circumcentre at its midpoint. @return whether it was possible
bool Dt2::splitConstraint(RefineZone& zoneTriangles, const RefineCandidate& candidate,
                          const RefineParams* pRefineParams)
{
    ConstraintSegment2* const pCSeg = candidate.pCSeg;
    if (!pRefineParams->bAllowConstraintSplitting || !pCSeg || !pCSeg->isAlive() ||
        zoneTriangles.sUnsplittable.count(pCSeg) > 0)
        return false;
    const Point2 &src = *pCSeg->getSrc(), &trg = *pCSeg->getTrg();
    if (std::sqrt(squaredDistance(src, trg)) < 2.0 * pRefineParams->minEdgeLength)
        return false;
    const Point2 middle(middleOf(src.x(), trg.x()), middleOf(src.y(), trg.y()));
    if (middle == src || middle == trg) {
        reportUnsplittable(candidate.pTriangle);
        zoneTriangles.sUnsplittable.insert(pCSeg);
        return false;
    }
    splitConstraintAt(zoneTriangles, pCSeg, middle, candidate.pContainingT, candidate.splitIndex,
                      squaredDistance(src, middle));
    return true;
}

// Splits a segment at a point between its ends and takes back circumcentres near the point.
//
// @param pT, ith  the segment's edge
void Dt2::splitConstraintAt(RefineZone& zoneTriangles, ConstraintSegment2* pCSeg, const Point2& p, Triangle2* pT,
                            int ith, double squaredRadius)
{
    Point2* const pFrom = pT->getCorner(next(ith)); // pT lies to the left of the way from here ...
    Point2* const pTo = pT->getCorner(prev(ith));   // ... to here
    const bool bLeft = RefineZone::contains(pT) || zoneTriangles.bGrows;
    const bool bRight = RefineZone::contains(pT->getOppositeTriangle(ith)) || zoneTriangles.bGrows;
    Point2* const pVtx = insertReleasedVertex(zoneTriangles, pCSeg, p, pT);
    QUOR2D_ASSERT(pVtx != pCSeg->getSrc(), "pInsertedVertex!=pCSeg->getSrc()");
    QUOR2D_ASSERT(pVtx != pCSeg->getTrg(), "pInsertedVertex!=pCSeg->getTrg()");
    pCSeg->split(pVtx);
    pVtx->marks &= ~static_cast<unsigned int>(VM_REFINEMENT);
    // Before vertices go: the triangles that fill their holes belong where their stars did.
    updateZoneBeside(zoneTriangles, pVtx, pTo, pFrom, bLeft);
    updateZoneBeside(zoneTriangles, pVtx, pFrom, pTo, bRight);
    removeSplitVerticesNear(pVtx, squaredRadius);
    if (zoneTriangles.bUncertain)
        finishSplit(pCSeg);
}

// The segment's edge may be flipped while the vertex, which as a rule does not lie on it exactly, goes in. A vertex
// that stands there is taken instead; it may lie beside the edge, which then has to be looked at.
Point2* Dt2::insertReleasedVertex(RefineZone& zoneTriangles, const ConstraintSegment2* pCSeg, const Point2& p,
                                  Triangle2* pStart)
{
    Triangle2* pT = pStart;
    const int intState = walkToTriangle(&p, pT);
    if (intState == WALK_ON_CORNER) {
        zoneTriangles.bUncertain = true;
        for (int i = 0; i < 3; ++i)
            if (*pT->getCorner(i) == p)
                return pT->getCorner(i);
    }
    Point2* pVtx = newVertex(p.x(), p.y());
    pConstraintMgr->prefetchSplit(pCSeg, pVtx);
    pReleasedSegment = pCSeg;
    insertVertex(&pVtx, pT, intState);
    pReleasedSegment = nullptr;
    return pVtx;
}

// The triangles on one side of a split segment, counterclockwise around the split vertex between the edges to pFrom and
// pTo: the zone has all of them or none. Where the pieces are no edges the zone gets uncertain.
void Dt2::updateZoneBeside(RefineZone& zoneTriangles, Point2* pVtx, Point2* pFrom, const Point2* pTo, bool bMember)
{
    Triangle2* pT = findTriangleBefore(pVtx, pFrom);
    if (!pT && findTriangleLeftOf(pFrom, pVtx))
        return; // beyond the hull
    // Ends: pTo or the hull is met before a turn is complete, since pFrom is not met again.
    while (pT) {
        const int i = pT->getIntraTriangleIndex(pVtx);
        zoneTriangles.set(pT, bMember);
        if (pT->getCorner(prev(i)) == pTo)
            return;
        pT = pT->getOppositeTriangle(next(i));
        if (pT && pT->getCorner(next(pT->getIntraTriangleIndex(pVtx))) == pFrom)
            break;
    }
    zoneTriangles.bUncertain = true;
}

// ---- conforming constraints

// Pieces with CIS_CONFORMING_DELAUNAY are to be Delaunay edges. During the passes they are kept like the others, so
// what the passes leave behind is split here. Ends like the splitting that the passes ask for.
//
// @return whether any piece was split
bool Dt2::splitIllegalPieces(RefineZone& zoneTriangles, const RefineParams* pRefineParams)
{
    if (!pConstraintMgr || !pConstraintMgr->hasConformingSegments() || !pRefineParams->bAllowConstraintSplitting)
        return false;
    std::vector<ConstraintSegment2*> vLive;
    pConstraintMgr->getLiveSegments(vLive);
    bool bSplit = false;
    for (ConstraintSegment2* pCSeg : vLive)
        if (pCSeg->getCIS() == CIS_CONFORMING_DELAUNAY && pCSeg->isAlive())
            bSplit = splitIllegalPiece(zoneTriangles, pCSeg, pRefineParams) || bSplit;
    return bSplit;
}

bool Dt2::splitIllegalPiece(RefineZone& zoneTriangles, ConstraintSegment2* pCSeg, const RefineParams* pRefineParams)
{
    Point2 *const src = pCSeg->getSrc(), *const trg = pCSeg->getTrg();
    Triangle2* const pLeft = findTriangleLeftOf(src, trg);
    Triangle2* const pRight = findTriangleLeftOf(trg, src);
    if (!pLeft || !pRight || (!RefineZone::contains(pLeft) && !RefineZone::contains(pRight)))
        return false;
    if (isRoundingGap(*pLeft) || isRoundingGap(*pRight))
        return false;
    const int inLeft = pLeft->getIntraTriangleIndex(pRight), inRight = pRight->getIntraTriangleIndex(pLeft);
    const Point2* const pApex = pRight->getCorner(inRight);
    if (predicates.inCircleSign(pLeft->getCorner(0), pLeft->getCorner(1), pLeft->getCorner(2), pApex) != ORI2_POSITIVE)
        return false;
    const Point2 middle(middleOf(src->x(), trg->x()), middleOf(src->y(), trg->y()));
    if (std::sqrt(squaredDistance(*src, *trg)) < 2.0 * pRefineParams->edgeFloor || middle == *src || middle == *trg ||
        findSparedCorner(*pRefineParams, pLeft, inLeft, pLeft, shortestEdge(pLeft)) ||
        findSparedCorner(*pRefineParams, pRight, inRight, pRight, shortestEdge(pRight)))
        return false;
    splitConstraintAt(zoneTriangles, pCSeg, middle, pLeft, inLeft, squaredDistance(*src, middle));
    return true;
}

// ---- sharp corners

// Where triangles stay below the angle bound because the pieces at a sharp corner are of different lengths, and halving
// does not help, the pieces are made equally long: concentric shells (Ruppert 1995).
//
// @return whether any piece was split
bool Dt2::evenOutCorners(RefineZone& zoneTriangles, const RefineParams* pRefineParams)
{
    if (!pRefineParams->bAllowConstraintSplitting)
        return false;
    std::vector<Point2*> vCorners;
    for (const OpenTriangle& open : zoneTriangles.keptOpen())
        if (open.pSparedCorner && !open.isStale())
            vCorners.push_back(open.pSparedCorner);
    std::sort(vCorners.begin(), vCorners.end(), std::less<Point2*>());
    vCorners.erase(std::unique(vCorners.begin(), vCorners.end()), vCorners.end());
    bool bEvenedOut = false;
    for (Point2* pCorner : vCorners)
        bEvenedOut = evenOutCorner(zoneTriangles, pCorner, pRefineParams) || bEvenedOut;
    return bEvenedOut;
}

// Happens once for a corner: from then on halving keeps the pieces even.
bool Dt2::evenOutCorner(RefineZone& zoneTriangles, Point2* pCorner, const RefineParams* pRefineParams)
{
    std::vector<Point2*> vEnds;
    findUnevenPieces(*pRefineParams, pCorner, vEnds);
    double squaredLength = std::numeric_limits<double>::max();
    for (const Point2* pEnd : vEnds)
        squaredLength = std::min(squaredLength, squaredDistance(*pCorner, *pEnd));
    const double radius = 0.5 * std::sqrt(squaredLength);
    if (radius < pRefineParams->edgeFloor)
        return false;
    bool bSplit = false;
    for (Point2* pEnd : vEnds)
        bSplit = splitAtDistance(zoneTriangles, pCorner, pEnd, radius) || bSplit;
    return bSplit;
}

bool Dt2::splitAtDistance(RefineZone& zoneTriangles, Point2* pCorner, Point2* pEnd, double radius)
{
    ConstraintSegment2* const pCSeg = findConstraintSegment(pCorner, pEnd);
    Triangle2* pT = findTriangleLeftOf(pCorner, pEnd);
    if (!pT)
        pT = findTriangleLeftOf(pEnd, pCorner);
    if (!pCSeg || !pT)
        return false;
    const double part = radius / std::sqrt(squaredDistance(*pCorner, *pEnd));
    const Point2 p(pCorner->x() + part * (pEnd->x() - pCorner->x()), pCorner->y() + part * (pEnd->y() - pCorner->y()));
    if (p == *pCorner || p == *pEnd)
        return false;
    const int ith = 3 - pT->getIntraTriangleIndex(pCorner) - pT->getIntraTriangleIndex(pEnd);
    splitConstraintAt(zoneTriangles, pCSeg, p, pT, ith, radius * radius);
    return true;
}

} // namespace ZELK_QUOR2D
