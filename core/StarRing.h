#pragma once

#include "Point2.h"
#include "Triangle2.h"

#include <limits>
#include <utility>
#include <vector>

namespace ZELK_QUOR2D
{

/// A corner of a star relative to its vertex.
struct StarPlace {
    StarPlace() = default;
    StarPlace(const Point2& corner, const Point2& center)
        : x(corner.x() - center.x()), y(corner.y() - center.y()), height(x * x + y * y)
    {
    }

    double crossWith(const StarPlace& p) const { return x * p.y - y * p.x; }

    double x, y;
    double height; // on the paraboloid
    double cross;  // with the next corner
};

/// The ear of corner a between w and b: the power of the vertex, that is squared radius minus squared distance to the
/// centre of the circle. It is the height over the vertex of the plane through the three lifted corners.
struct EarPower {
    EarPower(const StarPlace& w, const StarPlace& a, const StarPlace& b)
    {
        const double crossBW = b.crossWith(w);
        area = a.cross + crossBW + w.cross;
        power = (w.height * a.cross + a.height * crossBW + b.height * w.cross) / area;
    }

    double area; // twice; not positive for what is no ear
    double power;
};

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
        corner.place = StarPlace(*pCorner, *pCenter);
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
        StarPlace place;
        double power; // infinite for a corner that should not leave
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
