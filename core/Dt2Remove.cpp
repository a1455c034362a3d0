#include "core/Dt2.h"

#include "core/HoleFill.h"
#include "core/Prefetch.h"
#include "core/TriangleLinks.h"
#include "output/Message.h"

#include <iostream>
#include <iterator>

namespace ZELK_QUOR2D
{

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
    vertexStar.collect(pVtx);
    if (bInternal)
        suspectBorderOfStar(pVtx);
    if (vertexStar.isClosed())
        removeInside(pVtx);
    else
        removeAtHull(pVtx);
    restoreCircles();
    forgetVertex(pVtx);
}

// The address decides: a copy, and a vertex of another triangulation, may have the same coordinates. Vertices that were
// removed, or wait for a triangulation, have no triangle.
//
// What comes after the vertex is asked for before the vertex has arrived: a star mostly lies around the place that was
// noted when its vertex was inserted, and else around the vertex's triangle. How far around was found by measurement.
// (This stands here since compilers may drop the call of a function that does nothing else.)
bool Dt2::isRemovable(const Point2* pVtx) const
{
    constexpr std::size_t kMinVertices = 20000; // a cache holds the mesh of fewer ones
    const std::size_t index = vertexPool.indexOf(pVtx);
    if (index == SimplePool<Point2>::kNone)
        return false;
    if (vertexPool.numberOfElements() >= kMinVertices) {
        prefetchAround(pVtx, 4, 5);
        prefetchAround(trianglePool.elementAt(trianglePlaces.guess(index)), 16, 12);
        prefetchAround(pVtx->getIncidentTriangle(), 10, 4);
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

// ---- a vertex inside

// Of a star that is too large to be filled at once, or that rounding led astray in, edge flips leave three or four
// triangles. A hole of four corners is always filled: no rounding takes part in it.
void Dt2::removeInside(Point2* pVtx)
{
    if (fillHole(pVtx))
        return;
    fillRing(pVtx);
    Star star{ring.triangleAfter(0), static_cast<int>(ring.size())};
    flipInOrder(pVtx, star, FLAT_REFUSED);
    flipStar(pVtx, star);
    vertexStar.collect(pVtx);
    const bool bFilled = fillHole(pVtx);
    QUOR2D_ASSERT(bFilled, "the last three or four triangles are replaced");
    static_cast<void>(bFilled);
}

// Larger stars are rare, about one in a hundred.
bool Dt2::fillHole(const Point2* pVtx)
{
    constexpr bool (Dt2::*kFillHoleOf[])(const Point2*) = {
        &Dt2::fillHoleOf<3>, &Dt2::fillHoleOf<4>, &Dt2::fillHoleOf<5>, &Dt2::fillHoleOf<6>,
        &Dt2::fillHoleOf<7>, &Dt2::fillHoleOf<8>, &Dt2::fillHoleOf<9>};
    const std::size_t beyondThree = vertexStar.size() - 3;
    return beyondThree < std::size(kFillHoleOf) && (this->*kFillHoleOf[beyondThree])(pVtx);
}

// @return false if rounding led astray; then nothing has changed
template <int N>
bool Dt2::fillHoleOf(const Point2* pVtx)
{
    HoleFill<N> hole(vertexStar.begin());
    if (!hole.plan(pVtx, predicates))
        return false;
    hole.write(pVtx);
    hole.forEachLeftOver([this](Triangle2* pT) { discardTriangle(pT); });
    hole.forEachViolation(predicates, [this](Triangle2* pT) { vSuspectEdges.push_back(HullEdge{pT, 0}); });
    return true;
}

void Dt2::fillRing(const Point2* pVtx)
{
    ring.start(pVtx, vertexStar.size() + 1);
    for (const VertexStar::Spoke& spoke : vertexStar)
        ring.add(spoke.pCorner, spoke.pT);
    if (!vertexStar.isClosed())
        ring.add(vertexStar.getLastCorner(), nullptr);
    ring.finish(vertexStar.isClosed());
}

// ---- a vertex of the hull

// Flips the vertex out of every triangle that stays; the others go away. What they leave uncovered lies beyond the hull
// of the remaining vertices: no corner of the border between them is left that turns strictly outwards.
//
// Where an outer neighbour is missing the edge is hull on both of its sides. Then the remaining vertices are collinear,
// all of them are corners of the star, and the triangulation is empty.
void Dt2::removeAtHull(Point2* pVtx)
{
    fillRing(pVtx);
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
// What replaces the star leaves the entries valid: it changes what lies on the inner side only.
void Dt2::suspectBorderOfStar(const Point2* pVtx)
{
    for (const VertexStar::Spoke& spoke : vertexStar)
        if (Triangle2* const pOuter = spoke.pT->getOppositeTriangle(indexOf(spoke.pT, pVtx)))
            vSuspectEdges.push_back(HullEdge{pOuter, pOuter->getIntraTriangleIndex(spoke.pT)});
}

// Restores the empty circles by edge flips (Lawson 1977), level by level, beginning with edges inside the hole: those
// that flips made, or that are known to be wrong. Around a vertex that ended no locked edge the border of the hole
// needs no look at first: no circle outside has changed, and none of them contains a vertex that is left.
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
