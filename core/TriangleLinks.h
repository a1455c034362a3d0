#pragma once

#include "Triangle2.h"

namespace ZELK_QUOR2D
{

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
