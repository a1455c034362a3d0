#pragma once

#include "Quor2DAssert.h"
#include "Triangle2.h"

namespace ZELK_QUOR2D
{

// Sums of comparisons, since GCC makes jumps of conditional expressions.

/// The index of a corner or neighbour, which the triangle must have, without a jump. Faster than
/// Triangle2::getIntraTriangleIndex() where the record is at hand; slower where it has to come from memory, since
/// nothing that follows is begun before it is there.
inline int indexOf(const Triangle2* pT, const Point2* pVtx)
{
    const int i = static_cast<int>(pT->getCorner(1) == pVtx) + 2 * static_cast<int>(pT->getCorner(2) == pVtx);
    QUOR2D_ASSERT(pT->getCorner(i) == pVtx, "pT->getCorner(i)==pVtx");
    return i;
}

inline int indexOf(const Triangle2* pT, const Triangle2* pNeighbor)
{
    const int i = static_cast<int>(pT->getOppositeTriangle(1) == pNeighbor) +
                  2 * static_cast<int>(pT->getOppositeTriangle(2) == pNeighbor);
    QUOR2D_ASSERT(pT->getOppositeTriangle(i) == pNeighbor, "pT->getOppositeTriangle(i)==pNeighbor");
    return i;
}

/// The index before that of a corner; some valid index where the triangle lacks it.
inline int indexBefore(const Triangle2* pT, const Point2* pVtx)
{
    return static_cast<int>(pT->getCorner(2) == pVtx) + 2 * static_cast<int>(pT->getCorner(0) == pVtx);
}

/// Unlike Triangle2::setProperties() these leave everything else as it is.
inline void setCorners(Triangle2* pT, Point2* p0, Point2* p1, Point2* p2)
{
    pT->setVertexPointer(0, p0);
    pT->setVertexPointer(1, p1);
    pT->setVertexPointer(2, p2);
}

inline void setNeighbors(Triangle2* pT, Triangle2* p0, Triangle2* p1, Triangle2* p2)
{
    pT->setOppTriangle(0, p0);
    pT->setOppTriangle(1, p1);
    pT->setOppTriangle(2, p2);
}

} // namespace ZELK_QUOR2D
