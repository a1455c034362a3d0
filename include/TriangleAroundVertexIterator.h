#pragma once

#include "Point2.h"
#include "Quor2DExport.h"
#include "Triangle2.h"

namespace ZELK_QUOR2D
{

/// Walks the triangles around a vertex, `++` counterclockwise and `--` clockwise.
///
/// Around an interior vertex the walk goes round for ever. At a vertex of the convex hull it yields null once after
/// the last triangle of the fan and then goes on with the first one. Stop when the start triangle comes again.
class QUOR2D_API TriangleAroundVertexIterator
{
public:
    /// Starts at the vertex's incident triangle, which must not be null.
    explicit TriangleAroundVertexIterator(Point2* pVtx);

    /// Starts at `pTr`, which must have `pVtx` as a corner.
    TriangleAroundVertexIterator(Point2* pVtx, Triangle2* pTr);

    /// Deliberate: a copy has forgotten which triangle came before, an assigned iterator has not.
    TriangleAroundVertexIterator(const TriangleAroundVertexIterator& other);
    TriangleAroundVertexIterator& operator=(const TriangleAroundVertexIterator& other) = default;

    /// Same vertex and same current triangle.
    bool operator==(const TriangleAroundVertexIterator& other) const { return pVtx == other.pVtx && pTr == other.pTr; }
    bool operator!=(const TriangleAroundVertexIterator& other) const { return !(*this == other); }

    TriangleAroundVertexIterator& operator++();
    TriangleAroundVertexIterator& operator--();

    /// The current triangle; null once per turn at a hull vertex.
    Triangle2* operator*() const { return pTr; }

protected:
    /// From beyond the hull border to the far end of the fan.
    void loop();

private:
    Point2* pVtx;
    Triangle2* pTr;
    Triangle2* pSavedTr = nullptr; // the triangle before pTr; the last one of the fan while pTr is null
};

} // namespace ZELK_QUOR2D
