#include "core/Dt2.h"

#include "core/Prefetch.h"
#include "core/TriangleLinks.h"
#include "output/Message.h"

#include <algorithm>
#include <iostream>

namespace ZELK_QUOR2D
{

namespace
{

// The walk round a star waits for memory at each step. Meanwhile what removal is going to touch can arrive, too.
void prefetchBeyond(const Triangle2* pT, int apex)
{
    prefetch(pT->getCorner(next(apex)));
    prefetch(pT->getCorner(prev(apex)));
    prefetchWhole(pT->getOppositeTriangle(apex));
}

} // namespace

void Dt2::remove(Point2* pVtx, bool bInternal)
{
    if (!pVtx) {
        reportWarning("Dt2::remove(..)", "pVtx==NULL, nothing to do");
        return;
    }
    if (!isRemovable(pVtx)) {
        reportWarning("Dt2::remove()", "trying to remove a vertex which does not belong to the triangulation");
        std::cout << *pVtx << std::endl;
        return;
    }
    if (isConstraintVertex(pVtx)) {
        reportWarning("Dt2::remove()", "the vertex is an endpoint of a constraint segment, nothing to do");
        return;
    }
    const bool bClosed = collectStar(pVtx);
    if (bInternal)
        suspectBorderOfStar(pVtx);
    if (bClosed)
        removeInside(pVtx);
    else
        removeAtHull(pVtx);
    restoreCircles();
    forgetVertex(pVtx);
}

// The address decides: a copy, and a vertex of another triangulation, may have the same coordinates. Vertices that were
// removed, or wait for a triangulation, have no triangle.
//
// Reading the vertex is the first of the waits for memory that a removal consists of, so what comes next is asked for
// before. A batch makes its vertices along the curve, and two triangles with each of them: a star mostly lies where its
// vertex lies in the other pool, or a little before, and else around the vertex's triangle. How far around was found by
// measurement. (This stands here since compilers may drop the call of a function that does nothing else.)
bool Dt2::isRemovable(const Point2* pVtx) const
{
    constexpr std::size_t kMinVertices = 20000; // a cache holds the mesh of fewer ones
    const std::size_t index = vertexPool.indexOf(pVtx);
    if (index == SimplePool<Point2>::kNone)
        return false;
    if (vertexPool.numberOfElements() >= kMinVertices) {
        prefetchAround(pVtx, 4, 5);
        prefetchAround(trianglePool.elementAt(2 * index), 27, 4);
        prefetchAround(pVtx->getIncidentTriangle(), 13, 6);
    }
    return pVtx->getIncidentTriangle() != nullptr;
}

void Dt2::forgetVertex(Point2* pVtx)
{
    vertexVault.remove(pVtx);
    if (pLastInserted == pVtx)
        pLastInserted = nullptr;
    QUOR2D_ASSERT(pVtx->getIncidentTriangle() == nullptr, "pVtx->getIncidentTriangle()==NULL");
}

// Fills the ring, at the hull from the clockwise end on. Walks in both directions at once until the two meet, or each
// of them has met the hull.
//
// @return whether the star is closed
bool Dt2::collectStar(const Point2* pVtx)
{
    vStarCcw.clear();
    vStarCw.clear();
    Triangle2* pCcw = pVtx->getIncidentTriangle();
    Triangle2* pCw = pCcw;
    vStarCcw.push_back(StarTriangle{pCcw, nullptr});
    bool bClosed = false;
    const auto stepOn = [&](Triangle2*& pT, bool bCcw) {
        const int i = pT->getIntraTriangleIndex(pVtx);
        prefetchBeyond(pT, i);
        Point2* const pShared = pT->getCorner(bCcw ? prev(i) : next(i));
        pT = pT->getOppositeTriangle(bCcw ? next(i) : prev(i));
        prefetchWhole(pT);
        bClosed = pT && pCcw == pCw;
        if (pT && !bClosed)
            (bCcw ? vStarCcw : vStarCw).push_back(StarTriangle{pT, pShared});
    };
    // Ends: a star is finite.
    while (!bClosed && (pCcw || pCw)) {
        if (pCcw)
            stepOn(pCcw, true);
        if (pCw && !bClosed)
            stepOn(pCw, false);
    }
    fillRing(pVtx, bClosed);
    return bClosed;
}

void Dt2::fillRing(const Point2* pVtx, bool bClosed)
{
    const Triangle2* const pFirst = vStarCw.empty() ? vStarCcw.front().pT : vStarCw.back().pT;
    const Point2* pCorner = pFirst->getCorner(next(pFirst->getIntraTriangleIndex(pVtx)));
    ring.start(pVtx, vStarCw.size() + vStarCcw.size() + 1);
    for (auto it = vStarCw.rbegin(); it != vStarCw.rend(); ++it) {
        ring.add(pCorner, it->pT);
        pCorner = it->pShared;
    }
    ring.add(pCorner, vStarCcw.front().pT);
    for (std::size_t i = 1; i < vStarCcw.size(); ++i)
        ring.add(vStarCcw[i].pShared, vStarCcw[i].pT);
    if (!bClosed) {
        const Triangle2* const pLast = vStarCcw.back().pT;
        ring.add(pLast->getCorner(prev(pLast->getIntraTriangleIndex(pVtx))), nullptr);
    }
    ring.finish(bClosed);
}

// ---- a vertex inside

void Dt2::removeInside(Point2* pVtx)
{
    Star star{ring.triangleAfter(0), static_cast<int>(ring.size())};
    if (star.degree > 3) {
        flipInOrder(pVtx, star, FLAT_REFUSED);
        flipStar(pVtx, star, FLAT_REFUSED);
    }
    if (star.degree > 3)
        flipStuckStar(pVtx, star);
    mergeLastThree(pVtx, star.pT);
}

// Three triangles become one.
//
//           c                    c
//          /|\                  / \          pT = (v,a,b), pT1 = (v,b,c), pT2 = (v,c,a);
//         / v \      ->        /   \         afterwards pT = (a,b,c)
//        / / \ \              /  T  \                                                     .
//       a ----- b            a ----- b
void Dt2::mergeLastThree(const Point2* pVtx, Triangle2* pT)
{
    const int i = indexOf(pT, pVtx);
    Triangle2* const pT1 = pT->getOppositeTriangle(next(i));
    Triangle2* const pT2 = pT->getOppositeTriangle(prev(i));
    const int i1 = indexOf(pT1, pVtx);
    Triangle2* const pAcrossAB = pT->getOppositeTriangle(i);
    Triangle2* const pAcrossBC = pT1->getOppositeTriangle(i1);
    Triangle2* const pAcrossCA = pT2->getOppositeTriangle(indexOf(pT2, pVtx));
    QUOR2D_ASSERT(pT1->getOppositeTriangle(next(i1)) == pT2, "vRemainingT.size()==3");
    pT->setProperties(pT->getCorner(next(i)), pT->getCorner(prev(i)), pT1->getCorner(prev(i1)));
    pT->setOppTriangle(0, pAcrossBC);
    pT->setOppTriangle(1, pAcrossCA);
    pT->setOppTriangle(2, pAcrossAB);
    if (pAcrossBC)
        pAcrossBC->setOppTriangle(indexOf(pAcrossBC, pT1), pT);
    if (pAcrossCA)
        pAcrossCA->setOppTriangle(indexOf(pAcrossCA, pT2), pT);
    discardTriangle(pT1);
    discardTriangle(pT2);
}

// ---- a vertex of the hull

// Flips the vertex out of every triangle that stays; the others go away. What they leave uncovered lies beyond the hull
// of the remaining vertices: no corner of the border between them is left that turns strictly outwards.
//
// Where an outer neighbour is missing the edge is hull on both of its sides. Then the remaining vertices are collinear,
// all of them are corners of the star, and the triangulation is empty.
void Dt2::removeAtHull(Point2* pVtx)
{
    Triangle2* const pFirst = ring.triangleAfter(0); // flips never take it away
    Star star{pFirst, static_cast<int>(ring.size()) - 1};
    flipInOrder(pVtx, star, FLAT_ALLOWED);
    flipFan(pVtx, pFirst);
    for (Triangle2 *pT = pFirst, *pNext = nullptr; pT; pT = pNext) {
        const int i = indexOf(pT, pVtx);
        pNext = pT->getOppositeTriangle(next(i));
        Triangle2* const pOuter = pT->getOppositeTriangle(i);
        if (pOuter)
            pOuter->setOppTriangle(pOuter->getIntraTriangleIndex(pT), nullptr);
        pT->getCorner(next(i))->setIncidentTriangle(pOuter);
        pT->getCorner(prev(i))->setIncidentTriangle(pOuter);
        discardTriangle(pT);
        QUOR2D_ASSERT(pOuter || pNext || !hasTriangles(), "!hasTriangles()");
    }
    if (!mLongFans.empty())
        mLongFans.clear();
}

// ---- circles

// Where the vertex ended locked edges, circles beyond them reached across it to what they could not see, and now can.
// Flips of the star leave the entries valid: they change what lies on the inner side only.
void Dt2::suspectBorderOfStar(const Point2* pVtx)
{
    const auto suspect = [this, pVtx](const StarTriangle& entry) {
        const Triangle2* const pT = entry.pT;
        if (Triangle2* const pOuter = pT->getOppositeTriangle(indexOf(pT, pVtx)))
            vSuspectEdges.push_back(HullEdge{pOuter, pOuter->getIntraTriangleIndex(pT)});
    };
    std::for_each(vStarCw.begin(), vStarCw.end(), suspect);
    std::for_each(vStarCcw.begin(), vStarCcw.end(), suspect);
}

// Restores the empty circles by edge flips (Lawson 1977), level by level, beginning with the edges that the flips of
// the star made. Around a vertex that ended no locked edge the border of the hole needs no look at first: no circle
// outside has changed, and none of them contains a vertex that is left.
//
// Takes the plain sign: with the rule for rectangles the two diagonals of a square would replace each other for ever.
// Ends: every flip lowers the surface over the paraboloid that the mesh stands for, and there are finitely many.
void Dt2::restoreCircles()
{
    while (!vSuspectEdges.empty()) {
        for (const HullEdge& edge : vSuspectEdges) {
            if (!isCircleViolated(edge.pT, edge.ith) || isLockedEdge(edge.pT, edge.ith))
                continue;
            Triangle2* const pOpp = edge.pT->getOppositeTriangle(edge.ith);
            flipEdge(edge.pT, edge.ith);
            vSuspectNext.push_back(HullEdge{edge.pT, 0});
            vSuspectNext.push_back(HullEdge{edge.pT, 2});
            vSuspectNext.push_back(HullEdge{pOpp, 0});
            vSuspectNext.push_back(HullEdge{pOpp, 1});
        }
        vSuspectEdges.clear();
        vSuspectEdges.swap(vSuspectNext);
    }
}

// An entry can be out of date, since a flip renumbers the edges of two triangles. It then names another edge, which
// does no harm, and the flip has entered all sides of its quadrilateral again.
bool Dt2::isCircleViolated(const Triangle2* pT, int ith)
{
    const Triangle2* const pOpp = pT->getOppositeTriangle(ith);
    if (!pOpp)
        return false;
    const Point2* const pApex = pOpp->getCorner(indexOf(pOpp, pT));
    return predicates.inCircleSign(pT->getCorner(0), pT->getCorner(1), pT->getCorner(2), pApex) == ORI2_POSITIVE;
}

} // namespace ZELK_QUOR2D
