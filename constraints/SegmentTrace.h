#pragma once

#include "ConstraintSegment2.h"
#include "Point2.h"
#include "Triangle2.h"

#include <vector>

namespace ZELK_QUOR2D
{

/// How a walk along a segment ended.
enum TraceEnd {
    TRACE_UNDECIDED,
    TRACE_EDGE,       ///< the segment is an edge of the mesh
    TRACE_FREE,       ///< it crosses edges, and none of them stopped the walk
    TRACE_VERTEX,     ///< a vertex lies on the open segment
    TRACE_CONSTRAINT, ///< it crosses the edge of a live constraint segment
    TRACE_LOST        ///< the mesh is broken
};

/// What a walk along a segment finds. Nothing in it outlives a change of the mesh.
///
///       l1 ------- l2           vLeft = p0, l1, l2, p1 and vRight = p0, r1, p1: the border of the crossed triangles
///      /  \       /  \          on each side
///    p0 ===\=====/==== p1
///      \    \   /    /
///       ---- r1 ----
struct SegmentTrace {
    struct ChainVertex {
        Point2* p;
        Triangle2* pOuter; ///< beyond the edge from the chain's vertex before p; null at the hull and for p0
    };

    TraceEnd end = TRACE_UNDECIDED;
    Point2* p0 = nullptr; ///< where the walk started: one end of the segment, or the other
    Point2* p1 = nullptr;
    Triangle2* pFirst = nullptr; ///< the triangle at p0 that the segment crosses, TRACE_FREE and TRACE_CONSTRAINT
    Point2* pVertex = nullptr;   ///< TRACE_VERTEX: the one that lies on the segment
    Triangle2* pLast = nullptr;  ///< TRACE_CONSTRAINT: the triangle before the constraint edge
    ConstraintSegment2* pConstraint = nullptr; ///< TRACE_CONSTRAINT: the segment of this edge

    std::vector<Triangle2*> vCrossed; ///< from p0 to p1
    std::vector<ChainVertex> vLeft;
    std::vector<ChainVertex> vRight;
};

/// Lists that keep their capacity from one segment to the next.
struct ConstraintScratch {
    SegmentTrace trace;
    std::vector<SegmentTrace::ChainVertex> vEars;
    std::vector<Triangle2*> vNew;
    std::vector<Triangle2*> vChanged;
    std::vector<ConstraintSegment2*> vPieces;
};

} // namespace ZELK_QUOR2D
