#include "TriangleAroundVertexIterator.h"

#include "geometry/TriangleIndex.h"

namespace ZELK_QUOR2D
{

TriangleAroundVertexIterator::TriangleAroundVertexIterator(Point2* pCenter)
    : TriangleAroundVertexIterator(pCenter, pCenter->getIncidentTriangle())
{
}

TriangleAroundVertexIterator::TriangleAroundVertexIterator(Point2* pCenter, Triangle2* pStart)
    : pVtx(pCenter), pTr(pStart)
{
    QUOR2D_ASSERT(pStart != nullptr, "pTr!=NULL");
}

TriangleAroundVertexIterator::TriangleAroundVertexIterator(const TriangleAroundVertexIterator& other)
    : TriangleAroundVertexIterator(other.pVtx, other.pTr)
{
}

TriangleAroundVertexIterator& TriangleAroundVertexIterator::operator++()
{
    if (!pTr) {
        loop();
        return *this;
    }
    pSavedTr = pTr;
    pTr = pTr->getOppositeTriangle(next(pTr->getIntraTriangleIndex(pVtx)));
    return *this;
}

TriangleAroundVertexIterator& TriangleAroundVertexIterator::operator--()
{
    if (!pTr) {
        loop();
        return *this;
    }
    pSavedTr = pTr;
    pTr = pTr->getOppositeTriangle(prev(pTr->getIntraTriangleIndex(pVtx)));
    return *this;
}

void TriangleAroundVertexIterator::loop()
{
    QUOR2D_ASSERT(pTr == nullptr && pSavedTr != nullptr, "pTr==NULL && pSavedTr!=NULL");
    enum { DIRECTION_NONE, DIRECTION_CW, DIRECTION_CCW } direction = DIRECTION_NONE;
    const int i = pSavedTr->getIntraTriangleIndex(pVtx);
    if (pSavedTr->getOppositeTriangle(prev(i)))
        direction = DIRECTION_CW;
    if (pSavedTr->getOppositeTriangle(next(i))) {
        QUOR2D_ASSERT(direction == DIRECTION_NONE, "direction==DIRECTION_NONE");
        direction = DIRECTION_CCW;
    }
    pTr = pSavedTr;
    if (direction == DIRECTION_NONE)
        return;
    // Ends: the fan of a hull vertex is finite and the walk leads away from the border it stands at.
    while (pTr) {
        if (direction == DIRECTION_CW)
            --*this;
        else
            ++*this;
    }
    pTr = pSavedTr;
}

} // namespace ZELK_QUOR2D
