#pragma once

#include "Point2.h"
#include "Triangle2.h"

#include <cstddef>
#include <vector>

namespace ZELK_QUOR2D
{

/// The triangles around a vertex in counterclockwise order, at the hull from the clockwise end on.
class VertexStar
{
public:
    struct Spoke {
        Triangle2* pT;   // has the vertex, this corner and the next one
        Point2* pCorner; // where the spoke ends
    };

    /// Asks for what a removal of the vertex is going to touch, on the way. The vertex must have a triangle.
    ///
    /// Walks in both directions at once, so that they wait for memory together, until the two meet, or each of them has
    /// met the hull. Of the triangle where they meet nothing is read: all corners are known by then.
    void collect(const Point2* pVtx);

    /// Whether the star goes all the way round. If not, it ends with getLastCorner().
    bool isClosed() const { return bClosed; }
    Point2* getLastCorner() const { return pLastCorner; }

    std::size_t size() const { return last + 1 - first; }
    const Spoke* begin() const { return vSpokes.data() + first; }
    const Spoke* end() const { return begin() + size(); }

private:
    static constexpr std::size_t kFirstRoom = 64;

    void start(const Spoke& spoke);
    void addClockwise(const Spoke& spoke);
    void addCounterclockwise(const Spoke& spoke);
    void makeRoom();

    std::vector<Spoke> vSpokes = std::vector<Spoke>(kFirstRoom); // those from first to last are in use
    std::size_t first = 0;
    std::size_t last = 0;
    Point2* pLastCorner = nullptr;
    bool bClosed = false;
};

} // namespace ZELK_QUOR2D
