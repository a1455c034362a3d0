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
#include <cmath>
#include <cstdlib>
#include <functional>
#include <limits>

namespace ZELK_QUOR2D
{

namespace
{

// Moving a vertex inside its star is tried this often, each time with so many positions. There may be none: in a
// square of neighbouring doubles only the middle lies inside.
constexpr int kMaxMoves = 8;
constexpr int kMaxPositions = 32;

// The offset formula wants 15 bits; rand() gives more on most systems.
constexpr int kRandomRange = 32768;

double randomOffset(double distance)
{
    return (std::rand() % kRandomRange) * 2.0 * distance / kRandomRange - distance;
}

Triangle2* nextAround(const Point2* pVtx, const Triangle2* pT)
{
    return pT->getOppositeTriangle(next(pT->getIntraTriangleIndex(pVtx)));
}

bool hasCorner(const Triangle2* pT, const Point2* p)
{
    return pT->getCorner(0) == p || pT->getCorner(1) == p || pT->getCorner(2) == p;
}

} // namespace

// The ear must be strictly counterclockwise. What is left at the vertex must be, too, or may be flat where the caller
// knows that the vertex leaves all its triangles anyway.
Triangle2* Dt2::flipAway(Point2* pVtx, Triangle2* pT, FlatTriangles flatTriangles)
{
    const int i = pT->getIntraTriangleIndex(pVtx);
    Triangle2* const pN = pT->getOppositeTriangle(prev(i));
    if (!pN)
        return nullptr;
    const int j = pN->getIntraTriangleIndex(pVtx);
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
        pAcrossWA->setOppTriangle(pAcrossWA->getIntraTriangleIndex(pN), pT);
    if (pAcrossBV)
        pAcrossBV->setOppTriangle(pAcrossBV->getIntraTriangleIndex(pT), pN);
    a->setIncidentTriangle(pT);
    b->setIncidentTriangle(pT);
    w->setIncidentTriangle(pT);
    pVtx->setIncidentTriangle(pN);
    vSuspectEdges.push_back(HullEdge{pT, 0});
    return pN;
}

// Takes corners away until three are left or none can go. Steps back after each flip: apart from the two corners next
// to the one that went, whatever was refused before is refused still. So there are at most degree refusals and two
// more for each flip.
void Dt2::flipStar(Point2* pVtx, Star& star, FlatTriangles flatTriangles)
{
    int numOpen = star.degree; // triangles from pFirst on whose corner has not been refused
    while (star.degree > 3 && numOpen > 0) {
        if (Triangle2* const pLeft = flipAway(pVtx, star.pFirst, flatTriangles)) {
            --star.degree;
            star.pFirst = pLeft;
            numOpen = std::min(std::max(numOpen, 2), star.degree);
        } else {
            star.pFirst = nextAround(pVtx, star.pFirst);
            --numOpen;
        }
    }
}

// The same at the hull, from one end of the fan to the other. Flat triangles are allowed: they hold the vertex and go
// away with it, and on the border of a grid there is no other way.
void Dt2::flipFan(Point2* pVtx, const Star& star)
{
    for (Triangle2* pT = star.pFirst; pT;) {
        Triangle2* const pLeft = flipAway(pVtx, pT, FLAT_ALLOWED);
        pT = pLeft ? pLeft : nextAround(pVtx, pT);
    }
}

// For a star of more than three triangles that refuses every flip: it has four corners, and the vertex lies on the
// diagonals between them that are inside. (Of two corners that are not neighbours and can be cut off, each is refused
// only when the vertex sees its two edges under 180 degrees or more, and the whole star has 360.)
//
// Moving the vertex helps if there is a place. If not, flat triangles are allowed: one flip leaves the vertex on an
// edge of a triangle of three corners, which is strictly counterclockwise.
void Dt2::flipStuckStar(Point2* pVtx, Star& star)
{
    const Point2 saved(*pVtx);
    for (int move = 0; star.degree > 3 && move < kMaxMoves && moveInsideStar(pVtx, star); ++move)
        flipStar(pVtx, star, FLAT_REFUSED);
    flipStar(pVtx, star, FLAT_ALLOWED);
    pVtx->coordX = saved.coordX;
    pVtx->coordY = saved.coordY;
}

// Moves the vertex to a random place strictly inside its star, no farther in x and y than its nearest neighbour.
// @return false when none was found
bool Dt2::moveInsideStar(Point2* pVtx, const Star& star)
{
    double distance = std::numeric_limits<double>::infinity();
    Triangle2* pT = star.pFirst;
    for (int k = 0; k < star.degree; ++k, pT = nextAround(pVtx, pT)) {
        const Point2& corner = *pT->getCorner(next(pT->getIntraTriangleIndex(pVtx)));
        distance = std::min(distance, std::hypot(corner.x() - pVtx->x(), corner.y() - pVtx->y()));
    }
    for (int k = 0; k < kMaxPositions; ++k) {
        const double x = pVtx->x() + randomOffset(distance);
        const double y = pVtx->y() + randomOffset(distance);
        const Point2 position(x, y);
        if (position == *pVtx || !isStrictlyInsideStar(position, pVtx, star))
            continue;
        pVtx->coordX = x;
        pVtx->coordY = y;
        return true;
    }
    return false;
}

bool Dt2::isStrictlyInsideStar(const Point2& p, const Point2* pVtx, const Star& star)
{
    if (!std::isfinite(p.x()) || !std::isfinite(p.y()))
        return false;
    const Triangle2* pT = star.pFirst;
    for (int k = 0; k < star.degree; ++k, pT = nextAround(pVtx, pT))
        if (predicates.getOrientation2(pT, pT->getIntraTriangleIndex(pVtx), &p) != ORI2_POSITIVE)
            return false;
    return true;
}

// ---- large stars

// Takes the corners of a large star away in the order in which they would leave it if the vertex were lifted, more and
// more, off the paraboloid (Devillers 1999): the ear whose circle holds the vertex least deep goes first. But for
// rounding no circle is left to restore, while arbitrary flips of a star of degree d could leave O(d * d) of them.
//
// Corners that are refused are left to the caller. O(d log d).
void Dt2::flipByPower(Point2* pVtx, Star& star, FlatTriangles flatTriangles)
{
    vEars.clear();
    Triangle2* pT = star.pFirst;
    for (int k = 0; k < star.degree; ++k, pT = nextAround(pVtx, pT))
        pushEar(pVtx, pT);
    const int minDegree = star.bAtHull ? 1 : 3;
    // Ends: every turn takes one ear, every flip adds two and makes the star smaller.
    while (star.degree > minDegree && !vEars.empty()) {
        std::pop_heap(vEars.begin(), vEars.end(), std::greater<Ear>());
        const Ear ear = vEars.back();
        vEars.pop_back();
        if (!isCurrent(ear, pVtx))
            continue;
        Triangle2* const pLeft = flipAway(pVtx, ear.pT, flatTriangles);
        if (!pLeft)
            continue;
        --star.degree;
        if (star.pFirst == ear.pT)
            star.pFirst = pLeft;
        pushEar(pVtx, pLeft);
        if (Triangle2* const pNext = nextAround(pVtx, pLeft))
            pushEar(pVtx, pNext);
    }
}

// The order only needs to be about right, so rounding errors do not matter here. @see flipAway()
void Dt2::pushEar(const Point2* pVtx, Triangle2* pT)
{
    const int i = pT->getIntraTriangleIndex(pVtx);
    const Triangle2* const pN = pT->getOppositeTriangle(prev(i));
    if (!pN)
        return;
    const Point2* const a = pT->getCorner(next(i));
    const Point2* const b = pT->getCorner(prev(i));
    const Point2* const w = pN->getCorner(next(pN->getIntraTriangleIndex(pVtx)));
    const double ax = a->x() - pVtx->x(), ay = a->y() - pVtx->y();
    const double bx = b->x() - a->x(), by = b->y() - a->y();
    const double wx = w->x() - a->x(), wy = w->y() - a->y();
    const double area = bx * wy - by * wx;
    if (!(area > 0.0))
        return;
    // Squared radius minus squared distance: zero at a, and linear in the lifted differences to a.
    const double b2 = bx * bx + by * by, w2 = wx * wx + wy * wy;
    const double power = -(ax * ax + ay * ay) - (ax * (b2 * wy - w2 * by) + ay * (bx * w2 - wx * b2)) / area;
    if (!std::isfinite(power))
        return;
    vEars.push_back(Ear{power, pT, w, a, b});
    std::push_heap(vEars.begin(), vEars.end(), std::greater<Ear>());
}

// Whether the ear is still there. Flips leave entries behind.
bool Dt2::isCurrent(const Ear& ear, const Point2* pVtx)
{
    if (!hasCorner(ear.pT, pVtx))
        return false;
    const int i = ear.pT->getIntraTriangleIndex(pVtx);
    const Triangle2* const pN = ear.pT->getOppositeTriangle(prev(i));
    return ear.pT->getCorner(next(i)) == ear.pCorner && ear.pT->getCorner(prev(i)) == ear.pNextCorner && pN &&
           pN->getCorner(next(pN->getIntraTriangleIndex(pVtx))) == ear.pPrevCorner;
}

} // namespace ZELK_QUOR2D
