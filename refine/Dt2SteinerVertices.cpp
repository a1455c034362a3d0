// The part of refinement that takes back circumcentres near a split segment (Chew 1993). Without it the pieces of the
// segment would be encroached on by vertices that were placed for longer ones.
#include "core/Dt2.h"

#include "core/IncidentTriangles.h"
#include "refine/RefineZone.h"

namespace ZELK_QUOR2D
{

// Searches along mesh edges inside the circle, but not past constraints. Only vertices of the record go: they are no
// ends of constraints and lie inside the hull.
void Dt2::removeSplitVerticesNear(Point2* pSplit, double squaredRadius)
{
    if (vSteinerVertices.empty())
        return;
    std::vector<Point2*>& vInside = vNearSplit;
    const auto visit = [&](Point2* p) {
        const double dx = p->x() - pSplit->x(), dy = p->y() - pSplit->y();
        if (squaredRadius > dx * dx + dy * dy && !(p->marks & VM_VISITED)) {
            p->marks |= VM_VISITED;
            vInside.push_back(p);
        }
    };
    vInside.assign(1, pSplit);
    pSplit->marks |= VM_VISITED;
    for (std::size_t k = 0; k < vInside.size(); ++k) {
        if (k > 0 && isConstraintVertex(vInside[k]))
            continue;
        for (IncidentTriangles around(vInside[k]); !around.atEnd(); around.advance()) {
            visit(around.nextCorner());
            if (!around.triangle()->getOppositeTriangle(next(around.apex())))
                visit(around.prevCorner()); // the last one before the hull
        }
    }
    for (Point2* p : vInside) {
        p->marks &= ~static_cast<unsigned int>(VM_VISITED);
        if ((p->marks & VM_REFINEMENT) && !isConstraintVertex(p))
            removeSteinerVertex(p);
    }
}

// Removes a circumcentre. The triangles that fill the hole belong to the zone if its star did: no constraint passes
// through the star.
void Dt2::removeSteinerVertex(Point2* pVtx)
{
    const bool bMember = RefineZone::contains(pVtx->getIncidentTriangle());
    vStarRing.clear(); // counterclockwise: the vertex lies inside the hull
    for (IncidentTriangles around(pVtx); !around.atEnd(); around.advance())
        vStarRing.push_back(around.nextCorner());
    pVtx->marks &= ~static_cast<unsigned int>(VM_REFINEMENT);
    remove(pVtx, true);
    if (pRefineZone)
        updateZoneInside(bMember);
}

// Turns around the corners of the ring, clockwise from one to the next, in the triangles that it encloses. Where the
// removal changed more than these, an edge of the ring is gone, and the zone gets uncertain.
void Dt2::updateZoneInside(bool bMember)
{
    const std::vector<Point2*>& vRing = vStarRing;
    Triangle2* pT = findTriangleLeftOf(vRing[0], vRing[1]);
    for (std::size_t k = vRing.size(); pT && k > 0; --k) {
        const Point2* const pCorner = vRing[k % vRing.size()];
        const Point2* const pEnd = vRing[k - 1];
        const Triangle2* const pStart = pT;
        pRefineZone->set(pT, bMember);
        // Ends: at the latest when the turn is complete.
        while (pT && pT->getCorner(prev(pT->getIntraTriangleIndex(pCorner))) != pEnd) {
            pT = pT->getOppositeTriangle(next(pT->getIntraTriangleIndex(pCorner)));
            if (pT == pStart)
                pT = nullptr;
            if (pT)
                pRefineZone->set(pT, bMember);
        }
    }
    if (!pT)
        pRefineZone->bUncertain = true;
}

} // namespace ZELK_QUOR2D
