// The part of removal that takes corners away from the star of a vertex by edge flips.
//
//          b                      b
//         / \                    /|\           the corner a leaves the star of v: edge (v,a) becomes edge (w,b).
//        / t \                  / | \          pT = (v,a,b) becomes (a,b,w), pN = (v,w,a) becomes (v,w,b).
//       v --- a     ->         v N|T a         The triangle (w,a,b) is called the ear of a.
//        \ n /                  \ | /
//         \ /                    \|/
//          w                      w
#include "core/Dt2.h"

#include "core/TriangleLinks.h"

#include <algorithm>

namespace ZELK_QUOR2D
{

namespace
{

Triangle2* nextAround(const Point2* pVtx, const Triangle2* pT)
{
    return pT->getOppositeTriangle(next(pT->getIntraTriangleIndex(pVtx)));
}

} // namespace

// The ear must be strictly counterclockwise. What is left at the vertex must be, too, or may be flat where the caller
// knows that the vertex leaves all its triangles anyway.
Triangle2* Dt2::flipAway(Point2* pVtx, Triangle2* pT, FlatTriangles flatTriangles)
{
    const int i = indexOf(pT, pVtx);
    Triangle2* const pN = pT->getOppositeTriangle(prev(i));
    if (!pN)
        return nullptr;
    const int j = indexOf(pN, pVtx);
    Point2* const a = pT->getCorner(next(i));
    Point2* const b = pT->getCorner(prev(i));
    Point2* const w = pN->getCorner(next(j));
    if (predicates.getOrientation2(w, a, b) != ORI2_POSITIVE)
        return nullptr;
    const Orientation2 orientationLeft = predicates.getOrientation2(w, b, pVtx);
    if (orientationLeft == ORI2_NEGATIVE || (orientationLeft == ORI2_ZERO && flatTriangles == FLAT_REFUSED))
        return nullptr;

    Triangle2* const pAcrossAB = pT->getOppositeTriangle(i);
    Triangle2* const pAcrossBV = pT->getOppositeTriangle(next(i));
    Triangle2* const pAcrossWA = pN->getOppositeTriangle(j);
    Triangle2* const pAcrossVW = pN->getOppositeTriangle(prev(j));
    setCorners(pT, a, b, w);
    setNeighbors(pT, pN, pAcrossWA, pAcrossAB);
    setCorners(pN, pVtx, w, b);
    setNeighbors(pN, pT, pAcrossBV, pAcrossVW);
    if (pAcrossWA)
        pAcrossWA->setOppTriangle(indexOf(pAcrossWA, pN), pT);
    if (pAcrossBV)
        pAcrossBV->setOppTriangle(indexOf(pAcrossBV, pT), pN);
    a->setIncidentTriangle(pT);
    b->setIncidentTriangle(pT);
    w->setIncidentTriangle(pT);
    pVtx->setIncidentTriangle(pN);
    return pN;
}

// The same, and the new edge is to be looked at when the vertex has gone.
Triangle2* Dt2::takeCornerAway(Point2* pVtx, Triangle2* pT, FlatTriangles flatTriangles)
{
    Triangle2* const pLeft = flipAway(pVtx, pT, flatTriangles);
    if (pLeft)
        vSuspectEdges.push_back(HullEdge{pT, 0});
    return pLeft;
}

// Takes corners away in the order of the ring. Corners that are refused, or that the ring knows nothing about, stay.
void Dt2::flipInOrder(Point2* pVtx, Star& star, FlatTriangles flatTriangles)
{
    const int minDegree = flatTriangles == FLAT_ALLOWED ? 1 : 3;
    // Ends: a corner that was refused is not named again before one of its neighbours has left.
    while (star.degree > minDegree) {
        const int corner = ring.takeNext();
        if (corner == StarRing::kNone)
            return;
        Triangle2* const pLeft = takeCornerAway(pVtx, ring.triangleAfter(corner), flatTriangles);
        if (!pLeft)
            continue;
        star.pT = pLeft;
        if (--star.degree > minDegree)
            ring.leave(corner);
    }
}

// Takes corners away until three are left or none can go. Steps back after each flip: apart from the two corners next
// to the one that went, whatever was refused before is refused still. So there are at most degree refusals and two
// more for each flip.
//
// Of more than three that refuse every flip there are four: every polygon has two corners, not side by side, whose ears
// lie inside; such a corner is refused only when the vertex sees its two edges under 180 degrees or more; so two of
// them use up all of the 360. The vertex lies on the diagonal between the other two corners.
void Dt2::flipStar(Point2* pVtx, Star& star)
{
    int numOpen = star.degree; // triangles from pT on whose corner has not been refused
    while (star.degree > 3 && numOpen > 0) {
        if (Triangle2* const pLeft = takeCornerAway(pVtx, star.pT, FLAT_REFUSED)) {
            --star.degree;
            star.pT = pLeft;
            numOpen = std::min(std::max(numOpen, 2), star.degree);
        } else {
            star.pT = nextAround(pVtx, star.pT);
            --numOpen;
        }
    }
}

// The same at the hull, from one end of the fan to the other. Flat triangles are allowed: they hold the vertex and go
// away with it, and on the border of a grid there is no other way.
void Dt2::flipFan(Point2* pVtx, Triangle2* pFirst)
{
    for (Triangle2* pT = pFirst; pT;) {
        Triangle2* const pLeft = takeCornerAway(pVtx, pT, FLAT_ALLOWED);
        pT = pLeft ? pLeft : nextAround(pVtx, pT);
    }
}

} // namespace ZELK_QUOR2D
