#pragma once

#include "Point2.h"
#include "Triangle2.h"
#include "geometry/TriangleIndex.h"

namespace ZELK_QUOR2D
{

/// Visits every triangle around a vertex once: counterclockwise until the fan closes or the hull ends it, then, at
/// the hull, clockwise from the start.
///
/// The mesh must not change in between. Ends for every valid mesh: a fan is finite.
class IncidentTriangles
{
public:
    explicit IncidentTriangles(const Point2* pCenter)
        : pVtx(pCenter), pStart(pCenter->getIncidentTriangle()), pT(pStart)
    {
        if (pT)
            index = pT->getIntraTriangleIndex(pVtx);
    }

    bool atEnd() const { return pT == nullptr; }
    Triangle2* triangle() const { return pT; }

    /// The index of the vertex in the current triangle.
    int apex() const { return index; }

    /// The corners after and before the vertex, counterclockwise.
    Point2* nextCorner() const { return pT->getCorner(next(index)); }
    Point2* prevCorner() const { return pT->getCorner(prev(index)); }

    bool hasCorner(const Point2* p) const { return nextCorner() == p || prevCorner() == p; }

    /// Whether the fan turned out to end at the hull; known once atEnd() holds.
    bool metHull() const { return bClockwise; }

    void advance()
    {
        Triangle2* pNew = pT->getOppositeTriangle(bClockwise ? prev(index) : next(index));
        if (!pNew && !bClockwise) {
            bClockwise = true;
            pT = pStart;
            pNew = pT->getOppositeTriangle(prev(pT->getIntraTriangleIndex(pVtx)));
        } else if (pNew == pStart && !bClockwise) {
            pNew = nullptr;
        }
        pT = pNew;
        if (pT)
            index = pT->getIntraTriangleIndex(pVtx);
    }

private:
    const Point2* pVtx;
    Triangle2* pStart;
    Triangle2* pT;
    int index = 0;
    bool bClockwise = false;
};

} // namespace ZELK_QUOR2D
