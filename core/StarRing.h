#pragma once

#include "Point2.h"
#include "Triangle2.h"

#include <limits>
#include <utility>
#include <vector>

namespace ZELK_QUOR2D
{

/// The corners around a vertex that is being removed, and the order in which they should leave its star.
///
/// The order is the one in which they would leave if the vertex were lifted, more and more, off the paraboloid
/// (Devillers 1999): the corner goes first whose ear (the triangle of it and its two neighbours) has the circle that
/// holds the vertex least deep. But for rounding the ears are then Delaunay triangles. Other orders are right, too, but
/// leave circles to restore, of a star of degree d up to O(d * d).
///
/// Deviation from the paper: keys are rounded, so the order is advice. Whether a corner can leave is the caller's
/// exact decision.
class StarRing
{
public:
    static constexpr int kNone = -1;

    /// @param maxCorners  how often add() is going to be called at most
    void start(const Point2* pVtx, std::size_t maxCorners)
    {
        pCenter = pVtx;
        numCorners = 0;
        vHeap.clear();
        if (vCorners.size() < maxCorners)
            vCorners.resize(maxCorners);
    }

    /// Corners come counterclockwise.
    /// @param pT  the triangle of the vertex, this corner and the next one; null after the last corner at the hull
    void add(const Point2* pCorner, Triangle2* pT)
    {
        Corner& corner = vCorners[numCorners];
        const int index = static_cast<int>(numCorners++);
        corner.x = pCorner->x() - pCenter->x();
        corner.y = pCorner->y() - pCenter->y();
        corner.height = corner.x * corner.x + corner.y * corner.y;
        corner.cross = 0.0;
        corner.prev = index - 1;
        corner.next = index + 1;
        corner.pT = pT;
    }

    /// @param bClosed  whether the first corner follows the last one
    void finish(bool bClosed);

    std::size_t size() const { return numCorners; }
    Triangle2* triangleAfter(int corner) const { return vCorners[static_cast<std::size_t>(corner)].pT; }

    /// @return the corner that should leave next, or kNone. It is not named again before one of its neighbours left
    int takeNext();

    /// The corner has left the star.
    void leave(int corner);

private:
    struct Corner {
        double x; // relative to the vertex
        double y;
        double height; // on the paraboloid
        double cross;  // with the next corner
        double power;  // infinite for a corner that should not leave
        int prev;
        int next;
        Triangle2* pT;
    };
    using HeapEntry = std::pair<double, int>;

    // With fewer corners looking at all of them is faster than a heap.
    static constexpr std::size_t kHeapFrom = 40;
    static constexpr double kNever = std::numeric_limits<double>::infinity();

    Corner& at(int corner) { return vCorners[static_cast<std::size_t>(corner)]; }
    void computePower(int corner);
    int takeSmallest();
    int takeFromHeap();

    const Point2* pCenter = nullptr;
    std::vector<Corner> vCorners; // numCorners of them are in use
    std::size_t numCorners = 0;
    std::vector<HeapEntry> vHeap; // may name corners that have left, and old powers
};

} // namespace ZELK_QUOR2D
