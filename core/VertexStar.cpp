#include "core/VertexStar.h"

#include "core/Prefetch.h"
#include "geometry/TriangleIndex.h"

#include <algorithm>

namespace ZELK_QUOR2D
{

namespace
{

// One end of what has been collected so far.
struct End {
    Triangle2* pNext; // null at the hull
    Point2* pCorner;  // shared with it
};

// Reads a triangle, which may have to come from memory.
//
// @return the index of the vertex in it
int arriveAt(const Triangle2* pT, const Point2* pVtx)
{
    const int i = pT->getIntraTriangleIndex(pVtx);
    prefetch(pT->getCorner(next(i)));
    prefetch(pT->getCorner(prev(i)));
    prefetchWhole(pT->getOppositeTriangle(i));
    return i;
}

End counterclockwiseEnd(const Triangle2* pT, int i)
{
    const End end{pT->getOppositeTriangle(next(i)), pT->getCorner(prev(i))};
    prefetchWhole(end.pNext);
    return end;
}

End clockwiseEnd(const Triangle2* pT, int i)
{
    const End end{pT->getOppositeTriangle(prev(i)), pT->getCorner(next(i))};
    prefetchWhole(end.pNext);
    return end;
}

} // namespace

void VertexStar::collect(const Point2* pVtx)
{
    Triangle2* const pStart = pVtx->getIncidentTriangle();
    const int i = arriveAt(pStart, pVtx);
    End ccw = counterclockwiseEnd(pStart, i);
    End cw = clockwiseEnd(pStart, i);
    start(Spoke{pStart, cw.pCorner});
    // Ends: a star is finite, and at the hull both ends are null.
    while (ccw.pNext != cw.pNext) {
        if (Triangle2* const pT = ccw.pNext) {
            addCounterclockwise(Spoke{pT, ccw.pCorner});
            ccw = counterclockwiseEnd(pT, arriveAt(pT, pVtx));
            if (ccw.pNext == cw.pNext)
                break;
        }
        if (Triangle2* const pT = cw.pNext) {
            cw = clockwiseEnd(pT, arriveAt(pT, pVtx));
            addClockwise(Spoke{pT, cw.pCorner});
        }
    }
    bClosed = ccw.pNext != nullptr;
    if (bClosed)
        addCounterclockwise(Spoke{ccw.pNext, ccw.pCorner});
    pLastCorner = bClosed ? nullptr : ccw.pCorner;
}

void VertexStar::start(const Spoke& spoke)
{
    first = last = vSpokes.size() / 2;
    vSpokes[first] = spoke;
}

void VertexStar::addClockwise(const Spoke& spoke)
{
    if (first == 0)
        makeRoom();
    vSpokes[--first] = spoke;
}

void VertexStar::addCounterclockwise(const Spoke& spoke)
{
    if (last + 1 == vSpokes.size())
        makeRoom();
    vSpokes[++last] = spoke;
}

// On both sides as much as there was altogether, so that adding takes constant time on average.
void VertexStar::makeRoom()
{
    const std::size_t room = vSpokes.size();
    std::vector<Spoke> vRoomier(3 * room);
    std::copy(vSpokes.begin(), vSpokes.end(), vRoomier.begin() + static_cast<std::ptrdiff_t>(room));
    vSpokes.swap(vRoomier);
    first += room;
    last += room;
}

} // namespace ZELK_QUOR2D
