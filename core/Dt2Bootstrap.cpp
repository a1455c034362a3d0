#include "core/Dt2.h"

namespace ZELK_QUOR2D
{

// ---- the box and the curve over it

void Dt2::growBoxes(const Point2& p)
{
    bbox.add(p);
    rebuildOrderingIfLeft(p, p);
}

// The doubled box makes rebuilds rare while points keep arriving slightly outside.
void Dt2::rebuildOrderingIfLeft(const Point2& minPoint, const Point2& maxPoint)
{
    if (!curveBox.isValid() || minPoint.x() < curveBox.get_minX() || minPoint.y() < curveBox.get_minY() ||
        maxPoint.x() > curveBox.get_maxX() || maxPoint.y() > curveBox.get_maxY())
        rebuildOrdering();
}

// Doubles a copy: doubling the tight box itself, again and again while points arrive to the right, would blow it up in
// y, too.
void Dt2::rebuildOrdering()
{
    curveBox = Bbox2(&predicates);
    curveBox.add(bbox.getMinPoint());
    curveBox.add(bbox.getMaxPoint());
    curveBox.doubleTheBox();
    hilbertCurve = HC2(curveBox.get_minX(), curveBox.get_minY(), curveBox.get_maxX(), curveBox.get_maxY(), 30);
    if (hasTriangles()) // else the bootstrap computes the keys
        vertexVault.rekeyAll();
}

// ---- collecting: there are no triangles, all vertices are collinear and different

// Looks at the vertices that are there: none at first, some when removal has emptied the mesh.
void Dt2::startCollecting()
{
    if (bCollectorReady)
        return;
    bCollectorReady = true;
    vertexVault.compact();
    std::vector<Point2*> vVertices;
    getVertexPointers(vVertices);
    for (Point2* pVtx : vVertices) {
        sCollected.insert(pVtx);
        noteCollected(pVtx);
    }
}

void Dt2::noteCollected(Point2* pVtx)
{
    if (!pCollected0)
        pCollected0 = pVtx;
    else if (!pCollected1)
        pCollected1 = pVtx;
    else if (!pOffLine && predicates.getOrientation2(pCollected0, pCollected1, pVtx) != ORI2_ZERO)
        pOffLine = pVtx;
}

Point2* Dt2::collect(const Point2& p)
{
    startCollecting();
    if (Point2* pExisting = sCollected.find(p))
        return pExisting;
    Point2* pVtx = newVertex(p.x(), p.y());
    pVtx->setCustomIndex(p.getCustomIndex());
    sCollected.insert(pVtx);
    noteCollected(pVtx);
    if (pOffLine)
        makeFullDimensional(false);
    return pVtx;
}

// The first triangle, and then all other vertices.
//
// @param bOrdered  the entries of the vault are in curve order, with keys of the present curve
void Dt2::makeFullDimensional(bool bOrdered)
{
    Point2* const pA = pCollected0;
    const bool bClockwise = predicates.getOrientation2(pA, pCollected1, pOffLine) == ORI2_NEGATIVE;
    Point2* const pB = bClockwise ? pOffLine : pCollected1;
    Point2* const pC = bClockwise ? pCollected1 : pOffLine;
    stopCollecting();
    if (!bOrdered)
        vertexVault.rekeyAll();
    Triangle2* const pFirst = createTriangle(pA, pB, pC);
    insertRange(0, vertexVault.vIdxVtxAct.size(), pFirst);
    fullDimensional = true;
    vertexVault.updateSortedIndex(false);
    pLastInserted = pC;
}

void Dt2::stopCollecting()
{
    sCollected.clear();
    pCollected0 = pCollected1 = pOffLine = nullptr;
    bCollectorReady = false;
}

} // namespace ZELK_QUOR2D
